// ICStringBuilder: assembles a run of values into a string, in two modes.
//
// Measuring (Writing false): each Add only raises Count by the size of the value; the target is
// not touched. Writing (Writing true): each Add copies the value to the target's text at Count,
// growing the block when it is too small to the larger of 1024 and twice the needed length (or
// by ReserveHint when that is not 0), writes a terminator and leaves the stored length unknown,
// so that nothing is measured until someone asks for the length.
//
// The two-pass use writes the assembling loop once and runs it twice: measure, reserve once,
// reset Count to the start, switch to writing, run again; the second pass never grows.
//
//   ICStringBuilder<ICStringUnique> b{&s, s.GetLength(), 0, true};
//   b.Add(name).Add('=').Add(value);
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/ic_string.h>
#include <ic/string/move_units.h>
#include <ic/string/write_steps.h>

namespace ic {

template <class Str>
struct ICStringBuilder {
  using Unit = typename Str::UnitType;

  /// The string being built; not owned.
  Str* Target = nullptr;
  /// Units added so far, and in writing mode the place of the next write. The target's existing
  /// text counts only if the builder starts with its length.
  int32_t Count = 0;
  /// Extra room per growth; 0 means geometric growth.
  int32_t ReserveHint = 0;
  /// False: measuring; true: writing.
  bool Writing = false;

  /// `length` units of `text`; a negative length means up to the terminator, a null text is "".
  void Add(const Unit* text, int32_t length) {
    if (text == nullptr)
      length = 0;
    else if (length < 0)
      length = static_cast<int32_t>(std::char_traits<Unit>::length(text));
    if (!Writing) {
      Count += length;
      return;
    }
    Str& target = *Target;
    const int32_t count = Count;
    const int32_t needed = count + length;
    if (needed <= target.GetCapacity() && internal::IsWritableInPlace(target)) {
      // The common step of a long assembly: room is there, so copy, terminate, leave the
      // length unmeasured. The block stays where it is, so a text taken from the target itself
      // is still readable: MoveUnits allows the overlap.
      // Writable: IsWritableInPlace holds, so the text pointer leads into the target's own
      // block.
      Unit* const buffer = const_cast<Unit*>(target.GetText());
      MoveUnits(buffer + count, text, static_cast<size_t>(length));
      buffer[needed] = 0;
      internal::SetLengthWord(buffer, UnknownLength);
      Count = needed;
      return;
    }
    _AddSlow(text, length);
  }
  /// A range, as text and length.
  ICStringBuilder& Add(ICStringRangeT<Unit> range) {
    Add(range.Text, range.Length);
    return *this;
  }
  /// A string of any shape of this width.
  template <class Storage>
  ICStringBuilder& Add(const BasicICString<Unit, Storage>& string) {
    Add(string.GetText(), string.GetLength());
    return *this;
  }
  /// A zero-terminated text; null adds nothing.
  ICStringBuilder& Add(const Unit* text) {
    Add(text, -1);
    return *this;
  }
  /// One 8-bit character. Narrow: from 0x80 on a Latin-1 code point in two UTF-8 bytes. Wide:
  /// the value AND 255 as a unit.
  ICStringBuilder& Add(char ch);
  /// A code point in UTF-8 (narrow strings). Measuring counts GetUTF8CodePointSize; a value
  /// that EncodeCodePoint refuses writes nothing.
  ICStringBuilder& Add(char32_t codePoint) requires(std::is_same_v<Unit, char>);
  /// One 16-bit unit (wide strings).
  ICStringBuilder& Add(char16_t unit) requires(std::is_same_v<Unit, char16_t>);

 private:
  /// Add in writing mode when the target must grow or be made writable first.
  void _AddSlow(const Unit* text, int32_t length);
};

extern template struct IC_API ICStringBuilder<ICStringUnique>;
extern template struct IC_API ICStringBuilder<ICStringUniqueW>;
extern template struct IC_API ICStringBuilder<ICStringShared>;
extern template struct IC_API ICStringBuilder<ICStringSharedW>;
extern template struct IC_API ICStringBuilder<ICStringView>;
extern template struct IC_API ICStringBuilder<ICStringViewW>;

}  // namespace ic
