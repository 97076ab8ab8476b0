#include <ic/string/ic_string.h>

#include <memory>
#include <new>

#include <ic/string/chain.h>
#include <ic/string/internal/positions.h>
#include <ic/string/utf8.h>

namespace ic {

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(const BasicICString& other) : Storage() {
  if constexpr (IsShared)
    this->_AddOwner(other);
  else if constexpr (IsView)
    this->_CopyView(other);
  else
    this->_CopyFrom(other._text, other.GetLength());
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(BasicICString&& other) noexcept(!IsUnique) : Storage() {
  if constexpr (IsView) {
    this->_MoveView(other);
  } else if (IsUnique && (other._GetShareWord() & InlineCapable)) {
    this->_CopyFrom(other._text, other.GetLength());
  } else {
    this->_text = other._text;
    other._text = EmptyText<Unit>();
  }
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(const Unit* text) : Storage() {
  if constexpr (IsView)
    this->_ViewText(text);
  else if (text != nullptr)
    this->_CopyFrom(text, internal::MeasureText(text));
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(const Unit* text, int32_t length, bool lengthInUnits)
    : Storage() {
  if (text == nullptr || length < 1) return;
  this->_CopyFrom(text, internal::UnitOffsetOf(text, length, lengthInUnits));
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(const Unit* begin, const Unit* end) : Storage() {
  if (begin == nullptr || end == nullptr || end <= begin) return;
  this->_CopyFrom(begin, static_cast<int32_t>(end - begin));
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(ICStringRangeT<Unit> range) : Storage() {
  if (range.Length < 0) {
    if constexpr (IsView)
      this->_ViewText(range.Text);
    else if (range.Text != nullptr)
      this->_CopyFrom(range.Text, internal::MeasureText(range.Text));
  } else if (range.Text != nullptr) {
    this->_CopyFrom(range.Text, range.Length);
  }
}

template <class Unit, class Storage>
void BasicICString<Unit, Storage>::_FromUnits(const Unit* units, int32_t length, int32_t capacity) {
  if constexpr (IsView) {
    this->_SetTiny(units, length);
  } else {
    if (capacity == 1)
      this->_AllocateSingleUnit();
    else
      this->_AllocateStorage(static_cast<uint32_t>(capacity));
    CopyUnits(this->_text, units, static_cast<size_t>(length));
    this->_SetStringEnd(length);
  }
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(char ch) : Storage() {
  const unsigned char byte = static_cast<unsigned char>(ch);
  Unit units[2] = {};
  if constexpr (sizeof(Unit) == 1) {
    if (byte >= 0x80) {
      char* cursor = units;
      EncodeCodePoint(cursor, byte);  // Latin-1: always two bytes
      _FromUnits(units, 2, 2);
      return;
    }
  }
  units[0] = static_cast<Unit>(byte);
  _FromUnits(units, byte != 0 ? 1 : 0, 1);
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(char16_t unit) requires(std::is_same_v<Unit, char16_t>)
    : Storage() {
  _FromUnits(&unit, unit != 0 ? 1 : 0, 1);
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(char32_t codePoint) requires(std::is_same_v<Unit, char>)
    : Storage() {
  this->_AllocateStorage(static_cast<uint32_t>(GetUTF8CodePointSize(codePoint)));
  if constexpr (IsView) this->_ownsBlock = true;
  // The whole text is the code point; an unencodable one leaves length 0 and no terminator.
  char* cursor = this->_text;
  if (codePoint == 0) {
    cursor[0] = 0;
    this->_SetStoredLength(0);
  } else if (EncodeCodePoint(cursor, codePoint)) {
    *cursor = 0;
    this->_SetStoredLength(static_cast<int32_t>(cursor - this->_text));
  } else {
    this->_SetStoredLength(0);
  }
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(int32_t capacity, bool lengthInUnits, bool zeroFill)
    : Storage() {
  if (capacity < 1) return;
  uint64_t units = static_cast<uint64_t>(capacity);
  if (sizeof(Unit) == 1 && !lengthInUnits) units *= 4;  // a character takes at most 4 bytes
  // A request beyond 32 bits is passed on as the largest one, which the allocation refuses.
  this->_AllocateStorage(units > 0xffffffffu ? 0xffffffffu : static_cast<uint32_t>(units));
  if (zeroFill)
    for (uint32_t i = 0; i <= units; ++i)
      this->_text[i] = 0;
  this->_text[0] = 0;
  this->_SetStoredLength(0);
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>::BasicICString(const ICStringChainT<Unit>& chain) : Storage() {
  this->Assign(chain);
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>& BasicICString<Unit, Storage>::operator=(
    const ICStringChainT<Unit>& chain) {
  this->Assign(chain);
  return *this;
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>& BasicICString<Unit, Storage>::operator=(const BasicICString& other) {
  if (this == &other) return *this;
  if constexpr (IsUnique) {
    _AssignText(other._text, other.GetLength());
  } else if constexpr (IsShared) {
    if (this->_text == other._text) return *this;
    this->_LetGo();
    this->_AddOwner(other);
  } else {
    this->_LetGo();
    this->_CopyView(other);
  }
  return *this;
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>& BasicICString<Unit, Storage>::operator=(
    BasicICString&& other) noexcept(!IsUnique) {
  if (this == &other) return *this;
  if constexpr (IsView) {
    this->_LetGo();
    this->_MoveView(other);
  } else if (IsUnique && ((other._GetShareWord() | this->_GetShareWord()) & InlineCapable)) {
    _AssignText(other._text, other.GetLength());
  } else {
    this->_LetGo();
    this->_text = other._text;
    other._text = EmptyText<Unit>();
  }
  return *this;
}

template <class Unit, class Storage>
BasicICString<Unit, Storage>& BasicICString<Unit, Storage>::operator=(const Unit* text) {
  if constexpr (IsView) {
    this->_LetGo();
    this->_ViewText(text);
  } else if (text == nullptr) {
    this->_Clear();
  } else {
    _AssignText(text, internal::MeasureText(text));
  }
  return *this;
}

template <class Unit, class Storage>
void BasicICString<Unit, Storage>::_AssignText(const Unit* text, int32_t length) {
  if (text == this->_text) return;
  this->_PrepareReplace(length);
  if (length > 0) CopyUnits(this->_text, text, static_cast<size_t>(length));
  if (!this->_IsEmptyData()) this->_SetStringEnd(length);
}

template <class Unit, class Storage>
Unit* BasicICString<Unit, Storage>::DuplicateText() const {
  const int32_t length = this->GetLength();
  Unit* copy = new Unit[static_cast<size_t>(length) + 1];
  CopyUnits(copy, this->_text, static_cast<size_t>(length));
  copy[length] = 0;
  return copy;
}

template <class Unit, class Storage>
ICStringUniqueT<Unit>* BasicICString<Unit, Storage>::Clone() const requires(IsUnique) {
  // The object is held until its text is in, so that a failed copy of the text does not leak it.
  std::unique_ptr<ICStringUniqueT<Unit>> copy(new (std::nothrow) ICStringUniqueT<Unit>());
  if (copy != nullptr) copy->_AssignText(this->_text, this->GetLength());
  return copy.release();
}

#define IC_INSTANTIATE_STRING_(Unit, StorageTemplate, Unused) \
  template class BasicICString<Unit, StorageTemplate<Unit>>;
IC_FOR_EACH_STRING_TYPE(IC_INSTANTIATE_STRING_, ~)
#undef IC_INSTANTIATE_STRING_

}  // namespace ic
