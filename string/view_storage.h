// Ownership rules of ICStringView: a string that may look at text it does not own.
//
// A view is in one of three states: foreign (OwnsBlock clear, the pointer leads into a
// zero-terminated text of someone else), tiny (OwnsBlock clear, the pointer leads to the
// object's own TinyText, which holds one character without an allocation) or owning
// (OwnsBlock set; a block of its own or the empty data). The first write makes a foreign or
// tiny view owning through _MakeOwned; the foreign text is never written, except by ClearText.
#pragma once

#include <ic/string/storage.h>

namespace ic {

template <class Unit>
class ICStringViewStorage : public ICStringStorage<Unit> {
  using Base = ICStringStorage<Unit>;

 public:
  /// Units of TinyText: one narrow character of up to two UTF-8 bytes or one wide unit, and a
  /// terminator.
  static constexpr int TinyUnits = 4 / sizeof(Unit);

  /// The length in code units. A foreign or tiny view reads ViewLength, measuring the text on
  /// the first call and keeping the count; an owning view reads its block header.
  int32_t GetLength() const noexcept;
  /// The capacity of the view's own block; 0 while it owns none (foreign or tiny), since every
  /// write makes it owning first.
  int32_t GetCapacity() const noexcept { return _ownsBlock ? this->_BlockCapacity() : 0; }

  /// Makes the length zero. A foreign view writes the zero through its pointer into the text it
  /// views (callers that must not change that text call _MakeOwned first).
  void ClearText() noexcept;

  /// True if the pointer leads to a block of this object or to the empty data.
  bool OwnsBlock() const noexcept { return _ownsBlock; }
  /// The length of a view that owns no block; negative while not measured, stale otherwise.
  int32_t ViewLength() const noexcept { return _viewLength; }

 protected:
  /// The text pointer leads to the object's own TinyText.
  bool _IsTiny() const noexcept { return this->_text == _tinyText; }
  /// @name Low-level storage operations, reached by the family and, through
  /// internal::StringAccess, by the library's own layers
  /// @{
  void _SetStoredLength(int32_t length) const noexcept;
  void _SetStringEnd(int32_t length);
  void _SetStringEnd(const Unit* end) { _SetStringEnd(static_cast<int32_t>(end - this->_text)); }

  /// Copies a foreign or tiny text into a block of its own (or takes the empty data for an
  /// empty text) and sets OwnsBlock. The foreign text is not touched.
  void _MakeOwned();
  /// As the unique string's _Reserve; call _MakeOwned first.
  void _Reserve(int32_t capacity, unsigned options);
  /// Frees an own block and takes the empty data (owning).
  void _ReleaseStorage() noexcept;

  void _PrepareGrow(int32_t newLength) {
    _MakeOwned();
    if (newLength > GetCapacity()) _Reserve(newLength, ReserveKeepText);
  }
  void _PrepareReplace(int32_t newLength) {
    _MakeOwned();
    if (newLength > GetCapacity()) _Reserve(newLength, 0);
  }
  void _Clear() {
    _MakeOwned();
    ClearText();
  }
  /// @}

  ICStringViewStorage() noexcept = default;
  ~ICStringViewStorage() { _LetGo(); }

  /// Frees the block if the view owns one.
  void _LetGo() noexcept {
    if (_ownsBlock && !this->_IsEmptyData()) Base::_FreeBlock(this->_text);
  }
  void _CopyFrom(const Unit* text, int32_t length) {
    this->_AllocateCopy(text, length);
    _ownsBlock = true;
  }
  /// Becomes a copy of another view: a deep copy of an owning one; the same view of a foreign
  /// text; a TinyText of its own for a tiny one. The old state must have been let go of.
  void _CopyView(const ICStringViewStorage& other);
  /// Takes over another view: an owning one hands its block over and merely views it
  /// afterwards; a foreign or tiny one is copied.
  void _MoveView(ICStringViewStorage& other) noexcept;
  /// Becomes the same foreign view, or a tiny view with a TinyText of its own.
  void _CopyForeign(const ICStringViewStorage& other) noexcept;
  /// Becomes a foreign view of a zero-terminated text, or the owning empty data for null.
  void _ViewText(const Unit* text) noexcept;
  /// Holds a character of `length` units (0 to TinyUnits - 1) in TinyText.
  void _SetTiny(const Unit* units, int32_t length) noexcept;

  bool _ownsBlock = true;
  mutable int32_t _viewLength = -1;
  Unit _tinyText[TinyUnits] = {};

  template <class, class>
  friend class BasicICString;
};

extern template class IC_API ICStringViewStorage<char>;
extern template class IC_API ICStringViewStorage<char16_t>;

}  // namespace ic
