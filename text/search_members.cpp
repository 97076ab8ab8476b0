#include <ic/text/search_members.h>

#include <ic/string/ic_string.h>
#include <ic/text/internal/search_core.h>
#include <ic/text/plain_text.h>

namespace ic {
namespace {

using namespace internal;

// A single character as a zero-terminated text: UTF-8 for narrow strings, one unit for wide.
// A code point that cannot be encoded gives the empty text.
template <class Unit>
struct CodeText {
  Unit units[5] = {};
  explicit CodeText(uint32_t code) noexcept {
    if constexpr (sizeof(Unit) == 1) {
      char* p = units;
      EncodeCodePoint(p, code);
    } else {
      units[0] = static_cast<char16_t>(code);
    }
  }
};

template <class Str>
int32_t Length(const Str& s) noexcept {
  return s.GetLength();
}

// True for a null or empty zero-terminated text.
template <class Unit>
bool IsEmptyText(const Unit* text) noexcept {
  return text == nullptr || *text == 0;
}

// Runs `search(offset)` from the unit offset of `position` in the text; null when the position
// lies past the end.
template <class Unit, class Search>
const Unit* SearchForward(const Unit* text, int32_t length, int32_t position, bool lengthInUnits,
                          Search search) noexcept {
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  return offset < 0 ? nullptr : search(offset);
}

// Runs `search(limit)` below the unit limit of `position` for a backward search; null when the
// limit says there is nothing to search.
template <class Unit, class Search>
const Unit* SearchBackward(const Unit* text, int32_t length, int32_t position, bool lengthInUnits,
                           Search search) noexcept {
  const int32_t limit = BackwardLimit(text, length, position, lengthInUnits);
  return limit < 0 ? nullptr : search(limit);
}

// Units of the code point or unit at `p`.
template <class Unit>
int32_t UnitsAt(const Unit* p) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return StepSize(p);
  else
    return 1;
}

}  // namespace

// --- First occurrence ---------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindPointer(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  if (IsEmptyText(needle)) return nullptr;
  const Unit* text = Self().GetText();
  const int32_t length = Length(Self());
  return SearchForward(text, length, position, lengthInUnits,
                       [&](int32_t offset) { return FindText(text, length, offset, needle); });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindPointer(
    CodeType code, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  const Unit* text = Self().GetText();
  const int32_t length = Length(Self());
  return SearchForward(text, length, position, lengthInUnits, [&](int32_t offset) {
    return FindCode(text, length, offset, static_cast<uint32_t>(code));
  });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::Find(const Unit* needle, int32_t position,
                                                               bool lengthInUnits) const noexcept
    -> int32_t {
  return internal::IndexOf(Self().GetText(), FindPointer(needle, position, lengthInUnits),
                           lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::Find(CodeType code, int32_t position,
                                                               bool lengthInUnits) const noexcept
    -> int32_t {
  return internal::IndexOf(Self().GetText(), FindPointer(code, position, lengthInUnits),
                           lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::IndexOf(const Unit* needle,
                                                                  int32_t position,
                                                                  bool lengthInUnits) const noexcept
    -> int32_t {
  return Find(needle, position, lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::IndexOf(CodeType code, int32_t position,
                                                                  bool lengthInUnits) const noexcept
    -> int32_t {
  return Find(code, position, lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::IndexOfPointer(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  return FindPointer(needle, position, lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::IndexOfPointer(
    CodeType code, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  return FindPointer(code, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindNoCasePointer(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  if (IsEmptyText(needle)) return nullptr;
  const Unit* text = Self().GetText();
  const int32_t length = Length(Self());
  return SearchForward(text, length, position, lengthInUnits, [&](int32_t offset) {
    return FindTextNoCase(text, length, offset, needle);
  });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindNoCase(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return internal::IndexOf(Self().GetText(), FindNoCasePointer(needle, position, lengthInUnits),
                           lengthInUnits);
}

// --- Last occurrence ----------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLastPointer(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  if (IsEmptyText(needle)) return nullptr;
  const Unit* text = Self().GetText();
  const int32_t length = Length(Self());
  return SearchBackward(text, length, position, lengthInUnits, [&](int32_t limit) {
    return FindLastText(text, length, limit, position, needle);
  });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLastPointer(
    CodeType code, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  const Unit* text = Self().GetText();
  return SearchBackward(text, Length(Self()), position, lengthInUnits, [&](int32_t limit) {
    return FindLastCode(text, limit, static_cast<uint32_t>(code));
  });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLast(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return internal::IndexOf(Self().GetText(), FindLastPointer(needle, position, lengthInUnits),
                           lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLast(
    CodeType code, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return internal::IndexOf(Self().GetText(), FindLastPointer(code, position, lengthInUnits),
                           lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::LastIndexOf(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return FindLast(needle, position, lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::LastIndexOf(
    CodeType code, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return FindLast(code, position, lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::LastIndexOfPointer(
    const Unit* needle, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  return FindLastPointer(needle, position, lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::LastIndexOfPointer(
    CodeType code, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  return FindLastPointer(code, position, lengthInUnits);
}

// --- Sets ---------------------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindFirstOfPointer(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  if (IsEmptyText(set)) return nullptr;
  const Unit* text = Self().GetText();
  const int32_t length = Length(Self());
  return SearchForward(text, length, position, lengthInUnits, [&](int32_t offset) {
    return FindFirstInSet(text, length, offset, set, true);
  });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindFirstNotOfPointer(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  if (IsEmptyText(set)) return nullptr;
  const Unit* text = Self().GetText();
  const int32_t length = Length(Self());
  return SearchForward(text, length, position, lengthInUnits, [&](int32_t offset) {
    return FindFirstInSet(text, length, offset, set, false);
  });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLastOfPointer(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  if (IsEmptyText(set)) return nullptr;
  const Unit* text = Self().GetText();
  return SearchBackward(text, Length(Self()), position, lengthInUnits,
                        [&](int32_t limit) { return FindLastInSet(text, limit, set, true); });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLastNotOfPointer(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  if (IsEmptyText(set)) return nullptr;
  const Unit* text = Self().GetText();
  return SearchBackward(text, Length(Self()), position, lengthInUnits,
                        [&](int32_t limit) { return FindLastInSet(text, limit, set, false); });
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindFirstOf(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return internal::IndexOf(Self().GetText(), FindFirstOfPointer(set, position, lengthInUnits),
                           lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindFirstNotOf(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return internal::IndexOf(Self().GetText(), FindFirstNotOfPointer(set, position, lengthInUnits),
                           lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLastOf(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return internal::IndexOf(Self().GetText(), FindLastOfPointer(set, position, lengthInUnits),
                           lengthInUnits);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindLastNotOf(
    const Unit* set, int32_t position, bool lengthInUnits) const noexcept -> int32_t {
  return internal::IndexOf(Self().GetText(), FindLastNotOfPointer(set, position, lengthInUnits),
                           lengthInUnits);
}

// --- Words and nesting --------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindWord(const Unit* needle,
                                                                   const Unit* breakSet,
                                                                   int32_t position,
                                                                   bool lengthInUnits,
                                                                   bool reverse) const noexcept
    -> int32_t {
  const auto& self = Self();
  return FindWordOffset(self.GetText(), Length(self), needle, breakSet, position, lengthInUnits,
                        reverse);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::FindWord(const Unit* needle,
                                                                   int32_t position,
                                                                   bool lengthInUnits,
                                                                   bool reverse) const noexcept
    -> int32_t {
  return FindWord(needle, DefaultWordBreaks(), position, lengthInUnits, reverse);
}

template <class Unit, class Storage>
int32_t ICStringSearchMembers<BasicICString<Unit, Storage>>::FindBalanced(
    const Unit* open, const Unit* close, bool flat, int32_t position, bool lengthInUnits,
    int32_t depth) const {
  const auto& self = Self();
  if (open == nullptr || *open == 0 || close == nullptr || *close == 0) return -1;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  if (offset < 0) return -1;
  return internal::IndexOf(text, FindBalancedIn(text, length, offset, open, close, 0, flat, depth),
                           lengthInUnits);
}

template <class Unit, class Storage>
int32_t ICStringSearchMembers<BasicICString<Unit, Storage>>::FindBalanced(
    CodeType open, CodeType close, CodeType escape, bool flat, int32_t position, bool lengthInUnits,
    int32_t depth) const {
  const auto& self = Self();
  const CodeText<Unit> openText(static_cast<uint32_t>(open));
  const CodeText<Unit> closeText(static_cast<uint32_t>(close));
  if (openText.units[0] == 0 || closeText.units[0] == 0) return -1;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  if (offset < 0) return -1;
  return internal::IndexOf(text,
                           FindBalancedIn(text, length, offset, openText.units, closeText.units,
                                          static_cast<uint32_t>(escape), flat, depth),
                           lengthInUnits);
}

// --- The text around an occurrence --------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterFirstPointer(
    const Unit* needle, const Unit* fallback) const noexcept -> const Unit* {
  const Unit* found = FindPointer(needle, 0, true);
  return found ? found + TextLength(needle) : fallback;
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterFirstPointer(
    CodeType code, const Unit* fallback) const noexcept -> const Unit* {
  const Unit* found = FindPointer(code, 0, true);
  return found && *found != 0 ? found + UnitsAt(found) : fallback;
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterLastPointer(
    const Unit* needle, const Unit* fallback) const noexcept -> const Unit* {
  const Unit* found = FindLastPointer(needle, EndOfText, true);
  return found ? found + TextLength(needle) : fallback;
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterLastPointer(
    CodeType code, const Unit* fallback) const noexcept -> const Unit* {
  const Unit* found = FindLastPointer(code, EndOfText, true);
  return found ? found + UnitsAt(found) : fallback;
}

namespace {

// The tail or fallback as a string of the receiver's shape: unique and shared copy, a view views.
template <class Str, class Unit>
Str TailString(const Unit* tail) noexcept {
  return Str(tail);
}

// The first `count` units, as Left with a unit count makes them.
template <class Str, class Unit>
Str HeadString(const Str& self, const Unit* found, const Unit* fallback) noexcept {
  if (found == nullptr) return Str(fallback);
  const int32_t count = static_cast<int32_t>(found - self.GetText());
  if (count >= self.GetLength()) return Str(self);
  return Str(self.GetText(), count, true);
}

}  // namespace

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterFirst(
    const Unit* needle, const Unit* fallback) const noexcept -> Str {
  return TailString<Str>(AfterFirstPointer(needle, fallback));
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterFirst(
    CodeType code, const Unit* fallback) const noexcept -> Str {
  return TailString<Str>(AfterFirstPointer(code, fallback));
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterLast(
    const Unit* needle, const Unit* fallback) const noexcept -> Str {
  return TailString<Str>(AfterLastPointer(needle, fallback));
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::AfterLast(
    CodeType code, const Unit* fallback) const noexcept -> Str {
  return TailString<Str>(AfterLastPointer(code, fallback));
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::BeforeFirst(
    const Unit* needle, const Unit* fallback) const noexcept -> Str {
  return HeadString(Self(), FindPointer(needle, 0, true), fallback);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::BeforeFirst(
    CodeType code, const Unit* fallback) const noexcept -> Str {
  const Unit* found = FindPointer(code, 0, true);
  if (found != nullptr && *found == 0) found = nullptr;  // the terminator is no occurrence here
  return HeadString(Self(), found, fallback);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::BeforeLast(
    const Unit* needle, const Unit* fallback) const noexcept -> Str {
  return HeadString(Self(), FindLastPointer(needle, EndOfText, true), fallback);
}
template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::BeforeLast(
    CodeType code, const Unit* fallback) const noexcept -> Str {
  return HeadString(Self(), FindLastPointer(code, EndOfText, true), fallback);
}

// --- Comparing ----------------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::Equals(const Unit* other,
                                                                 bool exact) const noexcept
    -> bool {
  return ic::Equals(Self().GetText(), other, exact);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::StartsWith(const Unit* prefix,
                                                                     bool ignoreCase) const noexcept
    -> bool {
  return ic::StartsWith(Self().GetText(), prefix, ignoreCase);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::StartsWithAt(
    const Unit* prefix, int32_t position, bool lengthInUnits, bool ignoreCase) const noexcept
    -> bool {
  const auto& self = Self();
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  if (position < 0) return false;
  const int32_t offset = UnitOffsetWithin(text, length, position, lengthInUnits);
  if (offset > length) return false;
  if constexpr (sizeof(Unit) == 1) {
    // A count of code points beyond the end stops at the end: that is beyond the length too.
    if (!lengthInUnits && position != EndOfText &&
        CodePointsBetween(text, text + offset) < position)
      return false;
  }
  return ic::StartsWith(text + offset, prefix, ignoreCase);
}

template <class Unit, class Storage>
bool ICStringSearchMembers<BasicICString<Unit, Storage>>::StartsWithNoCase(
    const Unit* prefix) const noexcept requires(IsWide) {
  return ic::StartsWith(Self().GetText(), prefix, true);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::EndsWith(
    const Unit* suffix) const noexcept -> bool {
  const auto& self = Self();
  return EndsWithText(self.GetText(), Length(self), suffix, false);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::EndsWith(CodeType code) const noexcept
    -> bool {
  const auto& self = Self();
  const Unit* text = self.GetText();
  const Unit* end = text + Length(self);
  if (end == text) return false;
  return Previous(text, end) == static_cast<uint32_t>(code);
}

template <class Unit, class Storage>
auto ICStringSearchMembers<BasicICString<Unit, Storage>>::EndsWithNoCase(
    const Unit* suffix) const noexcept -> bool {
  const auto& self = Self();
  return EndsWithText(self.GetText(), Length(self), suffix, true);
}

IC_INSTANTIATE_STRING_MIXIN(ICStringSearchMembers)

}  // namespace ic
