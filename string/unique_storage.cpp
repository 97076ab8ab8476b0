#include <ic/string/unique_storage.h>

namespace ic {

template <class Unit>
void ICStringUniqueStorage<Unit>::_Reserve(int32_t capacity, unsigned options) {
  this->_ReserveBlock(capacity, options, _OwnBuffer(), [](Base& self) {
    static_cast<ICStringUniqueStorage&>(self)._ReleaseStorage();
  });
}

template <class Unit>
void ICStringUniqueStorage<Unit>::_ReleaseStorage() noexcept {
  if (this->_IsEmptyData()) return;
  const uint16_t flags = this->_GetShareWord();
  if (!(flags & InlineCapable)) {
    Base::_FreeBlock(this->_text);
    this->_text = EmptyText<Unit>();
    return;
  }
  if (!(flags & InlineBlock)) {
    Base::_FreeBlock(this->_text);
    this->_text = _OwnBuffer();
  }
  this->_text[0] = 0;
  this->_SetBlockLength(0);
}

template class ICStringUniqueStorage<char>;
template class ICStringUniqueStorage<char16_t>;

}  // namespace ic
