#include <ic/string/view_storage.h>

namespace ic {

template <class Unit>
int32_t ICStringViewStorage<Unit>::GetLength() const noexcept {
  if (_ownsBlock) return this->_BlockLength();
  if (_viewLength < 0) _viewLength = internal::MeasureText(this->_text);
  return _viewLength;
}

template <class Unit>
void ICStringViewStorage<Unit>::ClearText() noexcept {
  if (_ownsBlock) {
    this->_ClearBlockText();
    return;
  }
  _viewLength = 0;
  if (!this->_IsEmptyData()) this->_text[0] = 0;
}

template <class Unit>
void ICStringViewStorage<Unit>::_SetStoredLength(int32_t length) const noexcept {
  if (_ownsBlock)
    this->_SetBlockLength(length);
  else
    _viewLength = length;
}

template <class Unit>
void ICStringViewStorage<Unit>::_SetStringEnd(int32_t length) {
  if (_ownsBlock) {
    this->_SetBlockEnd(length);
    return;
  }
  if (this->_IsEmptyData()) {
    this->_SetBlockEnd(length);  // throws for a positive length
    return;
  }
  this->_text[length] = 0;
  _viewLength = length;
}

template <class Unit>
void ICStringViewStorage<Unit>::_MakeOwned() {
  if (_ownsBlock) return;
  const int32_t length = GetLength();
  if (length >= 1) {
    const Unit* const foreign = this->_text;
    this->_AllocateStorage(static_cast<uint32_t>(length));
    CopyUnits(this->_text, foreign, static_cast<size_t>(length));
    // Still not owning here, so the length goes to ViewLength and the block keeps
    // UnknownLength: the first GetLength afterwards measures.
    _SetStringEnd(length);
  } else {
    this->_text = EmptyText<Unit>();
  }
  _ownsBlock = true;
}

template <class Unit>
void ICStringViewStorage<Unit>::_Reserve(int32_t capacity, unsigned options) {
  this->_ReserveBlock(capacity, options, nullptr, [](Base& self) {
    static_cast<ICStringViewStorage&>(self)._ReleaseStorage();
  });
}

template <class Unit>
void ICStringViewStorage<Unit>::_ReleaseStorage() noexcept {
  _LetGo();
  this->_text = EmptyText<Unit>();
  _ownsBlock = true;
}

template <class Unit>
void ICStringViewStorage<Unit>::_CopyView(const ICStringViewStorage& other) {
  if (other._ownsBlock) {
    _CopyFrom(other._text, other.GetLength());
    return;
  }
  _CopyForeign(other);
}

template <class Unit>
void ICStringViewStorage<Unit>::_MoveView(ICStringViewStorage& other) noexcept {
  if (other._ownsBlock) {
    this->_text = other._text;
    _ownsBlock = true;
    other._ownsBlock = false;  // the source now merely views the same text
    return;
  }
  _CopyForeign(other);
}

template <class Unit>
void ICStringViewStorage<Unit>::_CopyForeign(const ICStringViewStorage& other) noexcept {
  _ownsBlock = false;
  _viewLength = other._viewLength;
  for (int i = 0; i < TinyUnits; ++i)
    _tinyText[i] = other._tinyText[i];
  this->_text = other._IsTiny() ? _tinyText : other._text;
}

template <class Unit>
void ICStringViewStorage<Unit>::_ViewText(const Unit* text) noexcept {
  if (text == nullptr) {
    this->_text = EmptyText<Unit>();
    _ownsBlock = true;
    return;
  }
  this->_text = const_cast<Unit*>(text);
  _ownsBlock = false;
  _viewLength = -1;
}

template <class Unit>
void ICStringViewStorage<Unit>::_SetTiny(const Unit* units, int32_t length) noexcept {
  for (int i = 0; i < TinyUnits; ++i)
    _tinyText[i] = i < length ? units[i] : Unit{0};
  this->_text = _tinyText;
  _ownsBlock = false;
  _viewLength = length;
}

template class ICStringViewStorage<char>;
template class ICStringViewStorage<char16_t>;

}  // namespace ic
