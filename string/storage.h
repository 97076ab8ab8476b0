// What every string shape has in common: a pointer to the text of a block (or of the empty
// data), the block allocation and release, and the header reads that do not depend on who owns
// the block. The shapes (unique, shared, view) build their ownership rules on top of this.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include <ic/platform/export.h>
#include <ic/string/header.h>
#include <ic/string/null_data.h>

namespace ic {

template <class Unit>
class ICStringStorage {
 public:
  /// The text as a zero-terminated string; never null (the empty data for an empty string).
  const Unit* GetText() const noexcept { return _text; }
  operator const Unit*() const noexcept { return _text; }

 protected:
  /// @name Low-level block access, reached by the family and, through
  /// internal::StringAccess, by the library's own layers
  /// @{

  /// True if the handle holds no block: it points at the empty data of its width.
  bool _IsEmptyData() const noexcept { return _text == EmptyText<Unit>(); }

  /// The writable text pointer. Writes are only allowed after the shape's write preparation.
  Unit* _GetBuffer() const noexcept { return _text; }

  /// ShareWord of the block: flags in unique strings, further owners in shared ones.
  uint16_t _GetShareWord() const noexcept { return internal::GetShareWord(_text); }

  /// Capacity from the block header (0 for the empty data).
  int32_t _BlockCapacity() const noexcept { return internal::ReadCapacity(_text); }

  /// Length from the block header, measured and stored if not yet known.
  int32_t _BlockLength() const noexcept {
    const int16_t word = internal::GetLengthWord(_text);
    return word >= 0 ? word : _BlockLengthLong();
  }
  /// The rest of _BlockLength: the long form, or a length that must be measured.
  int32_t _BlockLengthLong() const noexcept;

  /// Stores a length in the block header, in the form the capacity dictates.
  void _SetBlockLength(int32_t length) const noexcept {
    internal::WriteStoredLength(_text, length);
  }

  /// Makes the block's length zero (first unit and length words); nothing on the empty data.
  void _ClearBlockText() const noexcept;

  /// Writes the terminator at text[length] and stores the length in the block header. On the
  /// empty data a positive length throws std::logic_error("ICString::_SetStringEnd attempt to
  /// write to a NULL string!"); zero and negative lengths pass in silence. The length is not
  /// compared with the capacity.
  void _SetBlockEnd(int32_t length) const;

  /// Points the handle at a new block of the capacity (at least 1), with LengthWord
  /// UnknownLength and nothing else written. Never frees what the handle held before.
  /// Throws std::runtime_error("ICString::_AllocateStorage out of memory!") if the allocator
  /// answers null, std::bad_array_new_length if the size does not fit in 32 bits.
  void _AllocateStorage(uint32_t capacity) {
    if ((capacity & 0x7fffu) == capacity) {
      _text = _AllocateShort(capacity);
    } else {
      _AllocateLong(capacity);
    }
  }

  /// A short-form block (capacity up to 0x7fff): the common case, expanded inline.
  static Unit* _AllocateShort(uint32_t capacity) {
    void* block = ::operator new(ShortHeaderBytes + (capacity + 1) * sizeof(Unit), std::nothrow);
    if (block == nullptr) _ReportOutOfMemory();
    Unit* text = reinterpret_cast<Unit*>(static_cast<char*>(block) + ShortHeaderBytes);
    internal::SetLengthWord(text, UnknownLength);
    internal::StoreWord(text, internal::kCapacityWord, static_cast<uint16_t>(capacity));
    internal::SetShareWord(text, 0);
    return text;
  }
  /// A long-form block, with the size check of 32-bit block sizes.
  void _AllocateLong(uint32_t capacity);
  [[noreturn]] static void _ReportOutOfMemory();

  /// The fixed block of capacity 1 used for one-unit strings.
  void _AllocateSingleUnit();

  /// Gives the block at `text` back to the allocator (its start, not the text pointer).
  static void _FreeBlock(Unit* text) noexcept;

  /// _Reserve of the shapes that own their block: exactly the capacity asked for (ReserveExact
  /// may shrink), the text carried over with ReserveKeepText, a terminator at the capacity with
  /// ReserveTerminate. `ownBuffer` is the text of the object's own buffer, read only when the
  /// block carries InlineCapable; `release` is the shape's _ReleaseStorage, called for a
  /// capacity of 0 with ReserveExact.
  void _ReserveBlock(int32_t capacity, unsigned options, Unit* ownBuffer,
                     void (*release)(ICStringStorage&));

  /// Allocates a block for `length` units and copies them, or takes the empty data for a
  /// length below 1. The length is stored and the text terminated.
  void _AllocateCopy(const Unit* text, int32_t length);
  /// @}

  ICStringStorage() noexcept : _text(EmptyText<Unit>()) {}
  explicit ICStringStorage(Unit* text) noexcept : _text(text) {}

  Unit* _text;
};

/// Copies n code units; the ranges must not overlap.
template <class Unit>
inline void CopyUnits(Unit* to, const Unit* from, size_t n) noexcept {
  if (n) std::memcpy(to, from, n * sizeof(Unit));
}

extern template class IC_API ICStringStorage<char>;
extern template class IC_API ICStringStorage<char16_t>;

}  // namespace ic
