#include <ic/string/shared_storage.h>

#include <stdexcept>

namespace ic {

template <class Unit>
void ICStringSharedStorage<Unit>::_DropOwner(Unit* text) noexcept {
  if (text == EmptyText<Unit>()) return;
  const uint16_t owners = internal::GetShareWord(text);
  if (owners == 0)
    Base::_FreeBlock(text);
  else
    internal::SetShareWord(text, static_cast<uint16_t>(owners - 1));
}

template <class Unit>
void ICStringSharedStorage<Unit>::_LetGo() noexcept {
  _DropOwner(this->_text);
  this->_text = EmptyText<Unit>();
}

template <class Unit>
void ICStringSharedStorage<Unit>::_AddOwner(const ICStringSharedStorage& other) {
  Unit* const text = other._text;
  if (text == EmptyText<Unit>()) {
    this->_text = text;
    return;
  }
  const uint16_t owners = internal::GetShareWord(text);
  const uint16_t raised = static_cast<uint16_t>(owners + 1);
  if (raised != 0) {
    internal::SetShareWord(text, raised);
    this->_text = text;
    return;
  }
  // The count is full: this copy gets a block of its own.
  const int32_t length = other.GetLength();
  this->_AllocateCopy(text, length);
}

template <class Unit>
void ICStringSharedStorage<Unit>::_ReallocateDetached(int32_t capacity) {
  Unit* const oldText = this->_text;
  const int32_t oldCapacity = internal::ReadCapacity(oldText);
  this->_AllocateStorage(static_cast<uint32_t>(capacity));
  CopyUnits(this->_text, oldText, static_cast<size_t>(oldCapacity) + 1);
  _DropOwner(oldText);
}

template <class Unit>
void ICStringSharedStorage<Unit>::_Detach(int32_t capacity) {
  Unit* const oldText = this->_text;
  const int32_t oldLength = internal::ReadStoredLength(oldText);
  if (capacity < 0) capacity = internal::ReadCapacity(oldText);
  if (capacity > 0) {
    this->_AllocateStorage(static_cast<uint32_t>(capacity));
    CopyUnits(this->_text, oldText, static_cast<size_t>(capacity) + 1);
    if (oldLength >= 0 && oldLength <= capacity) this->_SetBlockLength(oldLength);
  } else {
    this->_text = EmptyText<Unit>();
  }
  _DropOwner(oldText);
}

template <class Unit>
void ICStringSharedStorage<Unit>::_PrepareReplace(int32_t newLength) {
  if (newLength > GetCapacity() || this->_GetShareWord() != 0) {
    _LetGo();
    if (newLength >= 1) this->_AllocateStorage(static_cast<uint32_t>(newLength));
  }
}

template class ICStringSharedStorage<char>;
template class ICStringSharedStorage<char16_t>;

}  // namespace ic
