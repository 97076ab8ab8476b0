#include <ic/string/storage.h>

#include <algorithm>
#include <new>
#include <stdexcept>

namespace ic {

template <class Unit>
int32_t ICStringStorage<Unit>::_BlockLengthLong() const noexcept {
  const int32_t stored = internal::ReadStoredLength(_text);
  if (stored >= 0) return stored;
  const int32_t measured = internal::MeasureText(_text);
  internal::WriteStoredLength(_text, measured);
  return measured;
}

template <class Unit>
void ICStringStorage<Unit>::_ClearBlockText() const noexcept {
  if (_IsEmptyData()) return;
  _text[0] = 0;
  internal::SetLengthWord(_text, 0);
  if (internal::IsLongForm(_text)) internal::StoreWord(_text, internal::kLengthLow, 0);
}

template <class Unit>
void ICStringStorage<Unit>::_SetBlockEnd(int32_t length) const {
  if (_IsEmptyData()) {
    // The message text is part of the string core's contract: hosts match it as it stands.
    if (length > 0)
      throw std::logic_error("ICString::_SetStringEnd attempt to write to a NULL string!");
    return;
  }
  _text[length] = 0;
  internal::WriteStoredLength(_text, length);
}

template <class Unit>
void ICStringStorage<Unit>::_ReportOutOfMemory() {
  // The message text is part of the string core's contract: hosts match it as it stands.
  throw std::runtime_error("ICString::_AllocateStorage out of memory!");
}

template <class Unit>
void ICStringStorage<Unit>::_AllocateLong(uint32_t capacity) {
  const uint64_t size = (uint64_t{capacity} + 1) * sizeof(Unit) + LongHeaderBytes;
  // The block size is a 32-bit quantity; a request beyond it is refused as an array size.
  if (size > 0xffffffffull) throw std::bad_array_new_length();
  void* block = ::operator new(static_cast<size_t>(size), std::nothrow);
  if (block == nullptr) _ReportOutOfMemory();
  Unit* text = reinterpret_cast<Unit*>(static_cast<char*>(block) + LongHeaderBytes);
  const uint32_t negated = 0u - capacity;
  internal::SetShareWord(text, 0);
  internal::StoreWord(text, internal::kCapacityLow, static_cast<uint16_t>(negated));
  internal::StoreWord(text, internal::kCapacityWord, static_cast<uint16_t>(negated >> 16));
  internal::SetLengthWord(text, UnknownLength);
  _text = text;
}

template <class Unit>
void ICStringStorage<Unit>::_AllocateSingleUnit() {
  void* block = ::operator new(ShortHeaderBytes + 2 * sizeof(Unit), std::nothrow);
  if (block == nullptr) _ReportOutOfMemory();
  Unit* text = reinterpret_cast<Unit*>(static_cast<char*>(block) + ShortHeaderBytes);
  internal::SetLengthWord(text, UnknownLength);
  internal::StoreWord(text, internal::kCapacityWord, 1);
  internal::SetShareWord(text, 0);
  _text = text;
}

template <class Unit>
void ICStringStorage<Unit>::_FreeBlock(Unit* text) noexcept {
  const int header = internal::IsLongForm(text) ? LongHeaderBytes : ShortHeaderBytes;
  ::operator delete(reinterpret_cast<char*>(text) - header);
}

template <class Unit>
void ICStringStorage<Unit>::_AllocateCopy(const Unit* text, int32_t length) {
  if (length < 1) {
    _text = EmptyText<Unit>();
    return;
  }
  _AllocateStorage(static_cast<uint32_t>(length));
  CopyUnits(_text, text, static_cast<size_t>(length));
  _text[length] = 0;
  internal::WriteStoredLength(_text, length);
}

template <class Unit>
void ICStringStorage<Unit>::_ReserveBlock(int32_t capacity, unsigned options, Unit* ownBuffer,
                                          void (*release)(ICStringStorage&)) {
  if (capacity == 0) {
    if (options & ReserveExact) release(*this);
    if ((options & ReserveTerminate) && !_IsEmptyData()) {
      _text[0] = 0;
      _SetBlockLength(0);
    }
    return;
  }
  if (_IsEmptyData()) {
    _AllocateStorage(static_cast<uint32_t>(capacity));
    if (options & (ReserveTerminate | ReserveKeepText)) {
      _text[0] = 0;
      _SetBlockLength(0);
    }
    return;
  }
  Unit* const oldText = _text;
  const int32_t oldCapacity = internal::ReadCapacity(oldText);
  const int32_t oldLength = internal::ReadStoredLength(oldText);
  if (options & ReserveExact) {
    if (capacity == oldCapacity) return;
  } else if (capacity <= oldCapacity) {
    return;
  }
  const uint16_t flags = internal::GetShareWord(oldText);
  Unit* const oldBlock = (flags & InlineBlock) ? nullptr : oldText;
  if ((flags & InlineCapable) && capacity <= internal::ReadCapacity(ownBuffer)) {
    // Back into the object's own buffer.
    if (ownBuffer == oldText) return;
    _text = ownBuffer;
    internal::SetLengthWord(ownBuffer, UnknownLength);
  } else {
    _AllocateStorage(static_cast<uint32_t>(capacity));
    // The flag travels from block to block for the object's whole life.
    if (flags & InlineCapable) internal::SetShareWord(_text, InlineCapable);
  }
  if (options & ReserveKeepText) {
    CopyUnits(_text, oldText, static_cast<size_t>(std::min(oldCapacity, capacity)) + 1);
    if (oldLength >= 0 && oldLength <= capacity) _SetBlockLength(oldLength);
  }
  if (oldBlock) _FreeBlock(oldBlock);
  if (options & ReserveTerminate) _text[capacity] = 0;
}

template class ICStringStorage<char>;
template class ICStringStorage<char16_t>;

}  // namespace ic
