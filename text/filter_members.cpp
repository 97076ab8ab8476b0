#include <ic/text/filter_members.h>

#include <ic/string/ic_string.h>
#include <ic/string/internal/positions.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>
#include <ic/text/internal/filter_core.h>

namespace ic {
namespace {

using internal::CodeLookup;

// The owner's side of a lazy rewrite: the block made writable in place, with its text.
template <class Str>
typename Str::UnitType* PrepareBlock(void* owner) {
  Str& self = *static_cast<Str*>(owner);
  internal::StringAccess::PrepareInPlace(self);
  return internal::StringAccess::_GetBuffer(self);
}

template <class Str>
internal::LazyBlock<typename Str::UnitType> Lazy(Str& self) {
  return {&self, &PrepareBlock<Str>};
}

// Stores the length a core answers (-1: nothing changed).
template <class Str>
Str& Finish(Str& self, int32_t newLength) {
  if (newLength >= 0) internal::StringAccess::_SetStringEnd(self, newLength);
  return self;
}

template <class Str>
Str& SqueezeBy(Str& self, const typename Str::UnitType* keepSet, typename Str::UnitType replacement,
               const typename Str::UnitType* collapseSet, bool trimRuns) {
  using Unit = typename Str::UnitType;
  if constexpr (sizeof(Unit) == 1)
    if (static_cast<unsigned char>(replacement) - 1u >= 0x7fu) replacement = ' ';
  const int32_t length = self.GetLength();
  if (length == 0) return self;
  const CodeLookup<Unit> keep(keepSet), collapse(collapseSet);
  return Finish(self, internal::SqueezeText(self.GetText(), length, Lazy(self), keep, replacement,
                                            collapse, trimRuns));
}

template <class Str>
Str& TranslateBy(Str& self, const typename Str::UnitType* from, const typename Str::UnitType* to) {
  using Unit = typename Str::UnitType;
  const SearchNeedle<Unit> fromNeedle(from, false), toNeedle(to, false);
  if (fromNeedle.IsEmpty()) return self;
  const int32_t length = self.GetLength();
  const int32_t first = internal::FirstCodeIn(self.GetText(), length, fromNeedle);
  if (first < 0) return self;
  if constexpr (sizeof(Unit) == 1) {
    if (internal::TranslationGrows(fromNeedle, toNeedle)) {
      // Read from a copy and write into the string, which makes room for four bytes per code
      // point.
      const ICStringUniqueT<Unit> copy(self.GetText(), length);
      const int32_t points = self.GetCharCount(false);
      internal::StringAccess::PrepareRoomKeep(self, points * 4, points * 4);
      return Finish(self, internal::TranslateInto(copy.GetText(), length, first,
                                                  internal::StringAccess::_GetBuffer(self),
                                                  fromNeedle, toNeedle));
    }
  }
  internal::StringAccess::PrepareInPlace(self);
  Unit* const buffer = internal::StringAccess::_GetBuffer(self);
  return Finish(self, internal::TranslateInto(buffer, length, first, buffer, fromNeedle, toNeedle));
}

template <class Unit>
int32_t CountCodeFrom(const Unit* text, int32_t length, uint32_t code, int32_t position,
                      bool lengthInUnits) noexcept {
  if (position < 0) position = 0;
  int32_t offset = position;
  if constexpr (sizeof(Unit) == 1)
    if (!lengthInUnits && position > 0 && position != 0x7fffffff)
      offset = GetUTF8Offset(text, static_cast<uint32_t>(position));
  if (offset > length) return 0;
  return internal::CountCodeIn(text, length, offset, code);
}

template <class Unit>
int32_t TextLength(const Unit* text) noexcept {
  int32_t n = 0;
  while (text[n] != 0)
    ++n;
  return n;
}

}  // namespace

int32_t CountCode(const char* text, char32_t code, int32_t position, bool lengthInUnits) noexcept {
  if (text == nullptr) return 0;
  return CountCodeFrom(text, TextLength(text), code, position, lengthInUnits);
}
int32_t CountCode(const char16_t* text, char16_t code, int32_t position,
                  bool lengthInUnits) noexcept {
  if (text == nullptr) return 0;
  return CountCodeFrom(text, TextLength(text), code, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::Squeeze(const Unit* keepSet,
                                                                  Unit replacement,
                                                                  const Unit* collapseSet) -> Str& {
  return SqueezeBy(Self(), keepSet, replacement, collapseSet, false);
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::SqueezeTrim(const Unit* keepSet,
                                                                      Unit replacement,
                                                                      const Unit* collapseSet)
    -> Str& {
  return SqueezeBy(Self(), keepSet, replacement, collapseSet, true);
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::KeepOnly(const Unit* setSpec) -> Str& {
  Str& self = Self();
  if (setSpec == nullptr || setSpec[0] == 0) return self.KeepLeft(0);
  const internal::RangeSpec<Unit> spec(setSpec);
  return Finish(self, internal::KeepInSpec(self.GetText(), self.GetLength(), Lazy(self), spec));
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::RemoveAll(const Unit* set) -> Str& {
  Str& self = Self();
  const CodeLookup<Unit> lookup(set);
  if (lookup.IsEmpty()) return self;
  return Finish(self,
                internal::KeepCodes(self.GetText(), self.GetLength(), Lazy(self), lookup, true));
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::RemoveAll(Code code) -> Str& {
  const auto one = internal::MakeCodePointArgument(Unit{}, static_cast<uint32_t>(code));
  return RemoveAll(one.Data());
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::Translate(const Unit* from,
                                                                    const Unit* to) -> Str& {
  return TranslateBy(Self(), from, to);
}
template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::Translate(Code from, const Unit* to)
    -> Str& {
  const auto one = internal::MakeCodePointArgument(Unit{}, static_cast<uint32_t>(from));
  return TranslateBy(Self(), one.Data(), to);
}
template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::Translate(const Unit* from, Code to)
    -> Str& {
  const auto one = internal::MakeCodePointArgument(Unit{}, static_cast<uint32_t>(to));
  return TranslateBy(Self(), from, one.Data());
}
template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::Translate(Code from, Code to) -> Str& {
  Str& self = Self();
  self.Replace(from, to);
  return self;
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::ExpandDoubleSpaces(
    const Unit* text) noexcept -> Str& {
  Str& self = Self();
  const int32_t length = self.GetLength();
  const int32_t count = internal::CountDoubleSpaces(self.GetText(), length);
  if (count == 0) return self;
  const int32_t insertLength = text == nullptr ? 0 : TextLength(text);
  const int32_t newLength = length + count * (insertLength - 1);
  ICStringUniqueT<Unit> result(newLength, true, false);
  if (newLength > 0) {
    internal::StringAccess::_SetStringEnd(
        result, internal::ExpandDoubleSpacesInto(internal::StringAccess::_GetBuffer(result),
                                                 self.GetText(), length, text, insertLength));
  }
  self = std::move(result);
  return self;
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::RemoveBalanced(const Unit* open,
                                                                         const Unit* close,
                                                                         bool flat) -> Str& {
  Str& self = Self();
  if (open == nullptr || close == nullptr) return self;
  return Finish(self, internal::RemoveBalancedText(self.GetText(), self.GetLength(), Lazy(self),
                                                   open, close, 0, flat));
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::RemoveBalanced(Code open, Code close,
                                                                         Code escape, bool flat)
    -> Str& {
  Str& self = Self();
  const auto opening = internal::MakeCodePointArgument(Unit{}, static_cast<uint32_t>(open));
  const auto closing = internal::MakeCodePointArgument(Unit{}, static_cast<uint32_t>(close));
  return Finish(self, internal::RemoveBalancedText(self.GetText(), self.GetLength(), Lazy(self),
                                                   opening.Data(), closing.Data(),
                                                   static_cast<uint32_t>(escape), flat));
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::Reverse(int32_t first,
                                                                  bool firstLengthInUnits,
                                                                  int32_t last,
                                                                  bool lastLengthInUnits) -> Str& {
  Str& self = Self();
  if (firstLengthInUnits != lastLengthInUnits) return self;
  const Unit* const text = self.GetText();
  const int32_t length = self.GetLength();
  if (first < 0) first = 0;
  first = internal::UnitOffsetOf(text, first, firstLengthInUnits);
  if (first > length || last <= 0) return self;
  last = internal::UnitOffsetOf(text, last, lastLengthInUnits);
  if (last > length) last = length;
  if (first >= last) return self;
  internal::StringAccess::PrepareInPlace(self);
  internal::ReverseUnits(internal::StringAccess::_GetBuffer(self), first, last);
  return self;
}

template <class Unit, class Storage>
auto ICStringFilterMembers<BasicICString<Unit, Storage>>::Reverse(int32_t count, bool lengthInUnits)
    -> Str& {
  if (count < 1) return Self();
  return Reverse(0, lengthInUnits, count, lengthInUnits);
}

template <class Unit, class Storage>
int32_t ICStringFilterMembers<BasicICString<Unit, Storage>>::CountCode(
    Code code, int32_t position, bool lengthInUnits) const noexcept {
  const Str& self = Self();
  return CountCodeFrom(self.GetText(), self.GetLength(), static_cast<uint32_t>(code), position,
                       lengthInUnits);
}

IC_INSTANTIATE_STRING_MIXIN(ICStringFilterMembers)

}  // namespace ic
