// Ownership rules of ICStringShared: a block with an owner count in its ShareWord (0 means one
// owner). A copy adds an owner; every write first detaches a block that others still hold.
// The count is a plain 16-bit field: a block has at most 65536 owners, and the copy that would
// make one more becomes a deep copy instead.
#pragma once

#include <ic/string/storage.h>

namespace ic {

template <class Unit>
class ICStringSharedStorage : public ICStringStorage<Unit> {
  using Base = ICStringStorage<Unit>;

 public:
  /// The length in code units; measures and stores it if the header says UnknownLength.
  int32_t GetLength() const noexcept { return this->_BlockLength(); }
  /// The capacity in code units.
  int32_t GetCapacity() const noexcept { return this->_BlockCapacity(); }

  /// Makes the length zero and keeps the block. Does not detach: all owners see the change,
  /// so callers detach first. Nothing happens on the empty data.
  void ClearText() noexcept { this->_ClearBlockText(); }

 protected:
  /// @name Low-level storage operations, reached by the family and, through
  /// internal::StringAccess, by the library's own layers
  /// @{
  void _SetStoredLength(int32_t length) const noexcept { this->_SetBlockLength(length); }
  /// Writes the terminator at text[length] and stores the length; see ICStringUniqueStorage.
  void _SetStringEnd(int32_t length) { this->_SetBlockEnd(length); }
  void _SetStringEnd(const Unit* end) { _SetStringEnd(static_cast<int32_t>(end - this->_text)); }

  /// Shares the other's block (the copy of a shared string).
  void _AddOwner(const ICStringSharedStorage& other);
  /// Grows into a new block of `capacity` (at least the old one), copying the old capacity
  /// plus one units; the length is left unknown. The old block loses an owner.
  void _ReallocateDetached(int32_t capacity);
  /// Copy-on-write: a block of its own with `capacity` units (negative: the old capacity).
  void _Detach(int32_t capacity);
  /// Drops this handle's ownership of its block and takes the empty data.
  void _LetGo() noexcept;

  /// Room for a new length, keeping the old text.
  void _PrepareGrow(int32_t newLength) {
    if (newLength > GetCapacity())
      _ReallocateDetached(newLength);
    else if (this->_GetShareWord() != 0)
      _Detach(newLength);
  }
  /// Room for a new text; the old text need not survive.
  void _PrepareReplace(int32_t newLength);
  /// Empties the string: a shared block is let go of, an own block is cleared.
  void _Clear() noexcept {
    if (this->_GetShareWord() != 0)
      _LetGo();
    else
      ClearText();
  }
  /// @}

  ICStringSharedStorage() noexcept = default;
  ~ICStringSharedStorage() { _LetGo(); }

  void _CopyFrom(const Unit* text, int32_t length) { this->_AllocateCopy(text, length); }
  /// One owner less for the block at `text`: freed when it was the last.
  static void _DropOwner(Unit* text) noexcept;

  template <class, class>
  friend class BasicICString;
};

extern template class IC_API ICStringSharedStorage<char>;
extern template class IC_API ICStringSharedStorage<char16_t>;

}  // namespace ic
