#include <ic/text/trim_members.h>

#include <cstring>

#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>
#include <ic/text/internal/trim_core.h>

namespace ic {
namespace {

template <class Unit>
using TrimSet = internal::TrimSet<Unit>;

// Cuts the text to `units` units, the block made writable in place first.
template <class Str>
void CutAt(Str& self, int32_t units) {
  internal::StringAccess::PrepareInPlace(self);
  internal::StringAccess::_SetStringEnd(self, units);
}

template <class Str>
Str& TrimLeftBy(Str& self, const TrimSet<typename Str::UnitType>& set) {
  const auto* const text = self.GetText();
  const auto* const from = internal::SkipInSet(text, text + self.GetLength(), set);
  if (from != text) self.KeepFrom(static_cast<int32_t>(from - text));
  return self;
}

template <class Str>
Str& TrimRightBy(Str& self, const TrimSet<typename Str::UnitType>& set) {
  const int32_t length = self.GetLength();
  if (length == 0) return self;
  const auto* const text = self.GetText();
  const auto* const end = internal::TrimEndInSet(text, text + length, set);
  if (end != text + length) CutAt(self, static_cast<int32_t>(end - text));
  return self;
}

}  // namespace

bool IsBlank(const char* text) noexcept {
  return internal::IsBlankText(text, false);
}
bool IsBlank(const char16_t* text) noexcept {
  return internal::IsBlankText(text, false);
}
bool IsBlankOrNoBreak(const char* text) noexcept {
  return internal::IsBlankText(text, true);
}
bool IsBlankOrNoBreak(const char16_t* text) noexcept {
  return internal::IsBlankText(text, true);
}

#define IC_TRIM_MEMBERS(Name, By)                                                       \
  template <class Unit, class Storage>                                                  \
  auto ICStringTrimMembers<BasicICString<Unit, Storage>>::Name(const Unit* set)->Str& { \
    return By(Self(), TrimSet<Unit>::Of(set));                                          \
  }                                                                                     \
  template <class Unit, class Storage>                                                  \
  auto ICStringTrimMembers<BasicICString<Unit, Storage>>::Name(Code code)->Str& {       \
    return By(Self(), TrimSet<Unit>::Single(static_cast<uint32_t>(code)));              \
  }                                                                                     \
  template <class Unit, class Storage>                                                  \
  auto ICStringTrimMembers<BasicICString<Unit, Storage>>::Name()->Str& {                \
    return By(Self(), TrimSet<Unit>::DefaultBlanks());                                  \
  }

IC_TRIM_MEMBERS(TrimLeft, TrimLeftBy)
IC_TRIM_MEMBERS(TrimRight, TrimRightBy)
#undef IC_TRIM_MEMBERS

template <class Unit, class Storage>
auto ICStringTrimMembers<BasicICString<Unit, Storage>>::Trim(const Unit* set) -> Str& {
  TrimLeft(set);
  return TrimRight(set);
}
template <class Unit, class Storage>
auto ICStringTrimMembers<BasicICString<Unit, Storage>>::Trim(Code code) -> Str& {
  TrimLeft(code);
  return TrimRight(code);
}
template <class Unit, class Storage>
auto ICStringTrimMembers<BasicICString<Unit, Storage>>::Trim() -> Str& {
  TrimLeft();
  return TrimRight();
}

template <class Unit, class Storage>
const Unit* ICStringTrimMembers<BasicICString<Unit, Storage>>::SkipLeft(
    const Unit* set) const noexcept {
  const Str& self = Self();
  return internal::SkipInSet(self.GetText(), self.GetEnd(), TrimSet<Unit>::Of(set));
}
template <class Unit, class Storage>
const Unit* ICStringTrimMembers<BasicICString<Unit, Storage>>::SkipLeft(Code code) const noexcept {
  const Str& self = Self();
  return internal::SkipInSet(self.GetText(), self.GetEnd(),
                             TrimSet<Unit>::Single(static_cast<uint32_t>(code)));
}
template <class Unit, class Storage>
const Unit* ICStringTrimMembers<BasicICString<Unit, Storage>>::SkipLeft() const noexcept {
  const Str& self = Self();
  return internal::SkipInSet(self.GetText(), self.GetEnd(), TrimSet<Unit>::DefaultBlanks());
}

template <class Unit, class Storage>
auto ICStringTrimMembers<BasicICString<Unit, Storage>>::Pad(Code code, int32_t targetLength,
                                                            bool lengthInUnits, bool atStart)
    -> Str& {
  Str& self = Self();
  Unit encoded[4];
  int32_t size = 1;
  if constexpr (sizeof(Unit) == 1) {
    char* cursor = encoded;
    if (!EncodeCodePoint(cursor, static_cast<uint32_t>(code))) return self;
    size = static_cast<int32_t>(cursor - encoded);
    if (lengthInUnits && size > 1) return self;  // the count of units could not be met
  } else {
    encoded[0] = code;
  }
  const int32_t length = self.GetLength();
  const int32_t current = lengthInUnits ? length : self.GetCharCount(false);
  const int64_t missing = int64_t{targetLength} - current;
  if (missing < 1) return self;
  const int64_t units = missing * size;
  if (units > 0x7fffffff - int64_t{length}) return self;
  const int32_t count = static_cast<int32_t>(missing);
  if (atStart) {
    internal::FillRepeated(internal::StringAccess::_OpenGap(self, static_cast<int32_t>(units), 0),
                           count, encoded, size);
  } else {
    const int32_t newLength = length + static_cast<int32_t>(units);
    internal::StringAccess::_PrepareGrow(self, newLength);
    internal::FillRepeated(internal::StringAccess::_GetBuffer(self) + length, count, encoded, size);
    internal::StringAccess::_SetStringEnd(self, newLength);
  }
  return self;
}

template <class Unit, class Storage>
auto ICStringTrimMembers<BasicICString<Unit, Storage>>::InsertEvery(int32_t count, const Unit* text,
                                                                    bool atEnd) noexcept -> Str& {
  Str& self = Self();
  if (text == nullptr || text[0] == 0 || count < 1) return self;
  int32_t textLength = 0;
  while (text[textLength] != 0)
    ++textLength;
  const int32_t length = self.GetLength();
  const int64_t room = (int64_t{length} / count + 1) * textLength + length;
  ICStringUniqueT<Unit> result(static_cast<int32_t>(room), true, false);
  const int32_t written =
      internal::InsertEveryInto(internal::StringAccess::_GetBuffer(result), self.GetText(),
                                self.GetEnd(), count, text, textLength, atEnd);
  internal::StringAccess::_SetStringEnd(result, written);
  self = std::move(result);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringTrimMembers)

}  // namespace ic
