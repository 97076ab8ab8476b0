#include <ic/string/cut_members.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/positions.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>

namespace ic {

// --- Positions -------------------------------------------------------------------------------

template <class Unit, class Storage>
int32_t ICStringCutMembers<BasicICString<Unit, Storage>>::_ToUnitsIn(const Unit* text,
                                                                     int32_t position,
                                                                     bool lengthInUnits) noexcept {
  return internal::UnitOffsetOf(text, position, lengthInUnits);
}

template <class Unit, class Storage>
int32_t ICStringCutMembers<BasicICString<Unit, Storage>>::GetCharCount(
    bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if constexpr (IsNarrow) {
    if (!lengthInUnits) return static_cast<int32_t>(CountCodePoints(self.GetText()));
  }
  return self.GetLength();
}

// --- Reading parts ---------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Left(int32_t count,
                                                            bool lengthInUnits) const noexcept
    -> Str {
  const Str& self = Self();
  if (count < 0) return Str();
  if (count >= GetCharCount(lengthInUnits)) return Str(self);
  const int32_t units =
      internal::CountUnits(self.GetText(), count, lengthInUnits, self.GetLength());
  return Str(self.GetText(), units);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Mid(int32_t position,
                                                           bool lengthInUnits) const noexcept
    -> Str {
  const Str& self = Self();
  if (position <= 0) return Str(self);
  if (position > GetCharCount(lengthInUnits)) return Str();
  const int32_t length = self.GetLength();
  const int32_t offset = std::min(_ToUnitsIn(self.GetText(), position, lengthInUnits), length);
  return Str(self.GetText() + offset, length - offset);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Mid(int32_t position, bool lengthInUnits,
                                                           int32_t count) const noexcept -> Str {
  const Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.position;
  const int64_t wanted = folded.count;
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length || wanted < 1) return Str();
  const Unit* const from = self.GetText() + offset;
  const int32_t units =
      internal::CountUnits(from, static_cast<int32_t>(wanted), lengthInUnits, length - offset);
  return Str(from, units);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::GetTailPointer(
    int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  const Str& self = Self();
  if (position < 1) return self.GetText();
  if (position > GetCharCount(lengthInUnits)) return nullptr;
  return self.GetText() + _ToUnitsIn(self.GetText(), position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::GetSpan(int32_t& length, int32_t position,
                                                               bool lengthInUnits,
                                                               int32_t count) const noexcept
    -> const Unit* {
  const Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.position;
  const int64_t wanted = folded.count;
  const int32_t total = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= total) return nullptr;
  const Unit* const from = self.GetText() + offset;
  length = internal::CountUnits(from, static_cast<int32_t>(std::max<int64_t>(wanted, 0)),
                                lengthInUnits, total - offset);
  return from;
}

template <class Unit, class Storage>
bool ICStringCutMembers<BasicICString<Unit, Storage>>::GetPositionAt(
    const Unit*& slot, int32_t index, bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if (index < 1) {
    slot = self.GetText();
    return true;
  }
  if (index > GetCharCount(lengthInUnits)) return false;
  slot = self.GetText() + _ToUnitsIn(self.GetText(), index, lengthInUnits);
  return true;
}

template <class Unit, class Storage>
bool ICStringCutMembers<BasicICString<Unit, Storage>>::GetPositionFromEnd(
    const Unit*& slot, int32_t count, bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if (count < 0) return false;
  if (count >= GetCharCount(lengthInUnits)) {
    slot = self.GetText();
    return true;
  }
  const Unit* const end = self.GetEnd();
  if constexpr (IsNarrow) {
    if (!lengthInUnits) {
      slot = internal::StepBackCodePoints(self.GetText(), end, count);
      return true;
    }
  }
  slot = end - count;
  return true;
}

// --- Cutting in place ------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::KeepLeft(int32_t count, bool lengthInUnits)
    -> Str& {
  Str& self = Self();
  if (count <= 0) {
    internal::StringAccess::_Clear(self);
    return self;
  }
  const int32_t length = self.GetLength();
  const int32_t units = internal::CountUnits(self.GetText(), count, lengthInUnits, length);
  if (units < length) {
    internal::StringAccess::PrepareInPlace(self);
    internal::StringAccess::_SetStringEnd(self, units);
  }
  return self;
}

template <class Unit, class Storage>
void ICStringCutMembers<BasicICString<Unit, Storage>>::_RemoveBefore(const Unit* from) {
  Str& self = Self();
  const ptrdiff_t offset = from - self.GetText();
  if (offset <= 0) return;
  const int32_t length = self.GetLength();
  internal::StringAccess::PrepareInPlace(self);
  Unit* const buffer = internal::StringAccess::_GetBuffer(self);
  const int32_t rest = length - static_cast<int32_t>(offset);
  std::memmove(buffer, buffer + offset, (static_cast<size_t>(rest) + 1) * sizeof(Unit));
  internal::StringAccess::_SetStoredLength(self, rest);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::KeepFrom(int32_t position,
                                                                bool lengthInUnits) -> Str& {
  Str& self = Self();
  if (position <= 0) return self;
  if (position > GetCharCount(lengthInUnits)) {
    internal::StringAccess::_Clear(self);
    return self;
  }
  _RemoveBefore(self.GetText() + _ToUnitsIn(self.GetText(), position, lengthInUnits));
  return self;
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::KeepRange(int32_t position,
                                                                 bool lengthInUnits, int32_t count)
    -> Str& {
  Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.position;
  const int64_t wanted = folded.count;
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length) {
    internal::StringAccess::_Clear(self);
    return self;
  }
  const int32_t units = internal::CountUnits(self.GetText() + offset,
                                             static_cast<int32_t>(std::max<int64_t>(wanted, 0)),
                                             lengthInUnits, length - offset);
  if (offset == 0 && units == length) return self;  // the whole text: nothing to write
  internal::StringAccess::PrepareInPlace(self);
  Unit* const buffer = internal::StringAccess::_GetBuffer(self);
  std::memmove(buffer, buffer + offset, static_cast<size_t>(units) * sizeof(Unit));
  internal::StringAccess::_SetStringEnd(self, units);
  return self;
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Remove(int32_t position, bool lengthInUnits,
                                                              int32_t count) -> Str& {
  Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.position;
  const int64_t wanted = folded.count;
  if (wanted < 0) return self;
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length) return self;
  const int32_t units = internal::CountUnits(self.GetText() + offset, static_cast<int32_t>(wanted),
                                             lengthInUnits, length - offset);
  if (units == 0) return self;
  internal::StringAccess::PrepareInPlace(self);
  if (offset + units >= length) {
    internal::StringAccess::_SetStringEnd(self, offset);
    return self;
  }
  Unit* const buffer = internal::StringAccess::_GetBuffer(self);
  std::memmove(buffer + offset, buffer + offset + units,
               (static_cast<size_t>(length - offset - units) + 1) * sizeof(Unit));
  internal::StringAccess::_SetStoredLength(self, length - units);
  return self;
}

// --- Inserting and overwriting ---------------------------------------------------------------

template <class Unit, class Storage>
Unit* ICStringCutMembers<BasicICString<Unit, Storage>>::_OpenGap(int32_t count, int32_t position) {
  Str& self = Self();
  const int32_t length = self.GetLength();
  internal::StringAccess::_PrepareGrow(self, length + count);
  Unit* const buffer = internal::StringAccess::_GetBuffer(self);
  std::memmove(buffer + position + count, buffer + position,
               (static_cast<size_t>(length - position) + 1) * sizeof(Unit));
  internal::StringAccess::_SetStoredLength(self, length + count);
  return buffer + position;
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::_InsertUnits(const Unit* text,
                                                                    int32_t length,
                                                                    int32_t position,
                                                                    bool lengthInUnits) -> Str& {
  Str& self = Self();
  if (text == nullptr || length < 1 || position < 0) return self;
  if (position > GetCharCount(lengthInUnits)) return self;
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (internal::PointsInto(text, self.GetText(), self.GetCapacity())) {
    // The source is this string's own text, which the gap moves: insert a copy.
    const ICStringUniqueT<Unit> copy(text, length);
    CopyUnits(_OpenGap(length, offset), copy.GetText(), static_cast<size_t>(length));
    return self;
  }
  CopyUnits(_OpenGap(length, offset), text, static_cast<size_t>(length));
  return self;
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Insert(const ICStringChainT<Unit>& source,
                                                              int32_t position, bool lengthInUnits)
    -> Str& {
  const Unit* text = source.GetChainText();
  return _InsertUnits(text, source.GetChainLength(), position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Insert(const Unit* source, int32_t position,
                                                              bool lengthInUnits) -> Str& {
  if (source == nullptr) return Self();
  return _InsertUnits(source, internal::MeasureText(source), position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Insert(char32_t codePoint, int32_t position,
                                                              bool lengthInUnits)
    -> Str& requires(IsNarrow) {
  const auto a = internal::MakeCodePointArgument(Unit{}, codePoint);
  return _InsertUnits(a.Data(), a.length, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::Insert(char16_t unit, int32_t position,
                                                              bool lengthInUnits)
    -> Str& requires(IsWide) {
  return _InsertUnits(&unit, unit != 0 ? 1 : 0, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::SetTail(int32_t position, bool lengthInUnits,
                                                               const Unit* text) -> Str& {
  Str& self = Self();
  if (position < 0) position = 0;
  const int32_t length = self.GetLength();
  const int32_t offset = std::min(_ToUnitsIn(self.GetText(), position, lengthInUnits), length);
  if (length <= offset) return self;
  const int32_t size = text ? internal::MeasureText(text) : 0;
  const int32_t newLength = offset + size;
  internal::StringAccess::_PrepareGrow(self, newLength);
  CopyUnits(internal::StringAccess::_GetBuffer(self) + offset, text, static_cast<size_t>(size));
  internal::StringAccess::_SetStringEnd(self, newLength);
  return self;
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::SetTail(int32_t position, bool lengthInUnits,
                                                               char32_t codePoint) -> Str& {
  const auto a = internal::MakeCodePointArgument(Unit{}, codePoint);
  return SetTail(position, lengthInUnits, a.Data());
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::PutRepeated(const Unit* value,
                                                                   int32_t repeatCount,
                                                                   int32_t position,
                                                                   bool lengthInUnits) -> Str& {
  Str& self = Self();
  const int32_t size = value ? internal::MeasureText(value) : 0;
  if (size == 0 || position < 0 || repeatCount < 1) return self;
  if (position > GetCharCount(lengthInUnits)) return self;
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  const int64_t newLength = offset + int64_t{size} * repeatCount;
  if (newLength > EndOfText) throw std::length_error("ICString::PutRepeated too long");
  internal::StringAccess::_PrepareGrow(self, static_cast<int32_t>(newLength));
  Unit* const at = internal::StringAccess::_GetBuffer(self) + offset;
  // The first copy, then the written part doubles until the total is reached.
  CopyUnits(at, value, static_cast<size_t>(size));
  int64_t written = size;
  const int64_t total = newLength - offset;
  while (written < total) {
    const int64_t chunk = std::min(written, total - written);
    CopyUnits(at + written, at, static_cast<size_t>(chunk));
    written += chunk;
  }
  internal::StringAccess::_SetStringEnd(self, static_cast<int32_t>(newLength));
  return self;
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::PutRepeated(Unit value, int32_t repeatCount,
                                                                   int32_t position,
                                                                   bool lengthInUnits) -> Str& {
  const Unit units[2] = {value, 0};
  return PutRepeated(units, repeatCount, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringCutMembers<BasicICString<Unit, Storage>>::PutRepeated(char32_t value,
                                                                   int32_t repeatCount,
                                                                   int32_t position,
                                                                   bool lengthInUnits)
    -> Str& requires(IsNarrow) {
  const auto a = internal::MakeCodePointArgument(Unit{}, value);
  return PutRepeated(a.Data(), repeatCount, position, lengthInUnits);
}

IC_INSTANTIATE_STRING_MIXIN(ICStringCutMembers)

}  // namespace ic
