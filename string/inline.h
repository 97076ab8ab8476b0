// ICStringInline: a unique string with a buffer of N code units inside the object.
//
// The object lays out, after the text pointer, a short block header (LengthWord, CapacityWord,
// ShareWord) directly followed by the buffer, so that buffer and header read as a block. The
// text starts in that buffer; a request beyond N spills to a heap block that carries
// InlineCapable, and the text comes back when a request fits again (ReserveExact) or when the
// storage is released. In every other way it is an ICStringUnique: code written for one needs
// no knowledge of the buffer.
#pragma once

#include <cstddef>
#include <stdexcept>

#include <ic/string/ic_string.h>

namespace ic {

template <class Unit, int N>
class BasicICStringInline : public ICStringUniqueT<Unit> {
  using Base = ICStringUniqueT<Unit>;
  static_assert(N >= 1 && N <= 0x7fff, "the buffer holds 1 to 0x7fff code units");

 public:
  /// An empty string in its own buffer; no allocation.
  BasicICStringInline() noexcept(false) { _InitBuffer(); }
  /// A copy of another inline string's text (in the buffer if it fits).
  BasicICStringInline(const BasicICStringInline& other) : BasicICStringInline() {
    this->_AssignText(other.GetText(), other.GetLength());
  }
  /// Moving from an inline string copies: the source keeps its text.
  BasicICStringInline(BasicICStringInline&& other) : BasicICStringInline() {
    this->_AssignText(other.GetText(), other.GetLength());
  }
  /// A copy of any string's text.
  template <class Storage>
  BasicICStringInline(const BasicICString<Unit, Storage>& other) : BasicICStringInline() {
    this->_AssignText(other.GetText(), other.GetLength());
  }
  /// A copy of a zero-terminated text (null gives the empty string).
  BasicICStringInline(const Unit* text) : BasicICStringInline() { Base::operator=(text); }

  BasicICStringInline& operator=(const BasicICStringInline& other) {
    Base::operator=(static_cast<const Base&>(other));
    return *this;
  }
  BasicICStringInline& operator=(BasicICStringInline&& other) {
    Base::operator=(static_cast<const Base&>(other));
    return *this;
  }
  using Base::operator=;

  /// Units that the object's own buffer holds before the terminator.
  static constexpr int32_t InlineCapacity = N;

  /// True while the text lies in the object's own buffer.
  bool IsInBuffer() const noexcept { return this->_text == _inlineBlock.buffer; }

 private:
  struct InlineBlockLayout {
    int16_t LengthWord;
    int16_t CapacityWord;
    uint16_t ShareWord;
    Unit buffer[N + 1];
  };
  static_assert(offsetof(InlineBlockLayout, buffer) == ShortHeaderBytes,
                "ICStringInline_TVerifyMemberPlacement failed!");

  void _InitBuffer() {
    // The header must sit directly behind the text pointer: the unique string's storage code
    // finds the buffer from there.
    if (reinterpret_cast<const char*>(&_inlineBlock) !=
        reinterpret_cast<const char*>(this) + sizeof(Unit*))
      // The message text is part of the contract of ICStringInline and stays as it stands,
      // though it names the check rather than a function of the code.
      throw std::logic_error("ICStringInline_TVerifyMemberPlacement failed!");
    _inlineBlock.LengthWord = 0;
    _inlineBlock.CapacityWord = static_cast<int16_t>(N);
    _inlineBlock.ShareWord = InlineCapable | InlineBlock;
    _inlineBlock.buffer[0] = 0;
    this->_text = _inlineBlock.buffer;
  }

  InlineBlockLayout _inlineBlock;
};

template <int N>
using ICStringInline = BasicICStringInline<char, N>;
template <int N>
using ICStringInlineW = BasicICStringInline<char16_t, N>;

}  // namespace ic
