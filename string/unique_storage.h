// Ownership rules of ICStringUnique: one owner, deep copy, growth through _Reserve.
//
// The same storage serves ICStringInline, whose object carries a buffer with a block header in
// front of it directly behind the text pointer. Blocks of such an object carry InlineCapable in
// their ShareWord, and the buffer itself also InlineBlock; the code here finds the buffer from
// the flags alone, so nothing else needs to know about it.
#pragma once

#include <ic/string/storage.h>

namespace ic {

template <class Unit>
class ICStringUniqueStorage : public ICStringStorage<Unit> {
  using Base = ICStringStorage<Unit>;

 public:
  /// The length in code units; measures and stores it if the header says UnknownLength.
  int32_t GetLength() const noexcept { return this->_BlockLength(); }
  /// The capacity in code units (units that fit before the terminator).
  int32_t GetCapacity() const noexcept { return this->_BlockCapacity(); }

  /// Makes the length zero and keeps the block. Nothing happens on the empty data.
  void ClearText() noexcept { this->_ClearBlockText(); }

 protected:
  /// @name Low-level storage operations, reached by the family and, through
  /// internal::StringAccess, by the library's own layers
  /// @{
  void _SetStoredLength(int32_t length) const noexcept { this->_SetBlockLength(length); }
  /// Writes the terminator at text[length] and stores the length. On the empty data a positive
  /// length throws std::logic_error; zero and negative lengths pass in silence.
  void _SetStringEnd(int32_t length) { this->_SetBlockEnd(length); }
  void _SetStringEnd(const Unit* end) { _SetStringEnd(static_cast<int32_t>(end - this->_text)); }

  /// Makes room for `capacity` units with ReserveExact / ReserveTerminate / ReserveKeepText.
  void _Reserve(int32_t capacity, unsigned options);
  /// Gives the block back; an object with a buffer of its own returns to it, with empty text.
  void _ReleaseStorage() noexcept;

  /// Room for a new length, keeping the old text (append-style writes).
  void _PrepareGrow(int32_t newLength) {
    if (newLength <= GetCapacity()) return;
    if (this->_IsEmptyData()) {
      // What _Reserve does for the empty data, without the detour.
      this->_AllocateStorage(static_cast<uint32_t>(newLength));
      this->_text[0] = 0;
      this->_SetBlockLength(0);
    } else {
      _Reserve(newLength, ReserveKeepText);
    }
  }
  /// Room for a new text of `newLength` units; the old text need not survive.
  void _PrepareReplace(int32_t newLength) {
    if (newLength <= GetCapacity()) return;
    if (this->_IsEmptyData())
      this->_AllocateStorage(static_cast<uint32_t>(newLength));  // as _Reserve would
    else
      _Reserve(newLength, 0);
  }
  /// Empties the string, keeping its block.
  void _Clear() noexcept { ClearText(); }
  /// @}

  ICStringUniqueStorage() noexcept = default;
  ~ICStringUniqueStorage() {
    if (!this->_IsEmptyData() && !(this->_GetShareWord() & InlineBlock))
      Base::_FreeBlock(this->_text);
  }

  /// Text pointer of the buffer of an ICStringInline object; valid only with InlineCapable set.
  Unit* _OwnBuffer() const noexcept {
    return reinterpret_cast<Unit*>(const_cast<char*>(reinterpret_cast<const char*>(this)) +
                                   sizeof(Unit*) + ShortHeaderBytes);
  }
  bool _IsInlineCapable() const noexcept { return (this->_GetShareWord() & InlineCapable) != 0; }

  /// Copy construction: a deep copy, the empty data for an empty source.
  void _CopyFrom(const Unit* text, int32_t length) { this->_AllocateCopy(text, length); }
  /// Lets go of the block before taking another (the object's buffer stays).
  void _LetGo() noexcept { _ReleaseStorage(); }

  template <class, class>
  friend class BasicICString;
};

extern template class IC_API ICStringUniqueStorage<char>;
extern template class IC_API ICStringUniqueStorage<char16_t>;

}  // namespace ic
