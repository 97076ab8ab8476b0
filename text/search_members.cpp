#include <ic/text/search_members.h>

#include <ic/string/ic_string.h>
#include <ic/text/plain_text.h>
#include <ic/text/search_core.h>

namespace ic {
namespace {

using namespace textdetail;

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

// Units of the code point or unit at `p`.
template <class Unit>
int32_t UnitsAt(const Unit* p) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return StepSize(p);
  else
    return 1;
}

}  // namespace

#define IC_SEARCH_MEMBER(Result, Name, ...)                                   \
  template <class Unit, class Storage>                                        \
  auto ICStringSearchMembers<BasicICString<Unit, Storage>>::Name(__VA_ARGS__) \
      const noexcept->Result

// --- First occurrence ---------------------------------------------------------------------------

IC_SEARCH_MEMBER(const Unit*, FindPointer, const Unit* needle, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  if (needle == nullptr || *needle == 0) return nullptr;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  return offset < 0 ? nullptr : FindText(text, length, offset, needle);
}

IC_SEARCH_MEMBER(const Unit*, FindPointer, CodeType code, int32_t position, bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  return offset < 0 ? nullptr : FindCode(text, length, offset, static_cast<uint32_t>(code));
}

IC_SEARCH_MEMBER(int32_t, Find, const Unit* needle, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindPointer(needle, position, lengthInUnits), lengthInUnits);
}

IC_SEARCH_MEMBER(int32_t, Find, CodeType code, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindPointer(code, position, lengthInUnits), lengthInUnits);
}

IC_SEARCH_MEMBER(int32_t, IndexOf, const Unit* needle, int32_t position, bool lengthInUnits) {
  return Find(needle, position, lengthInUnits);
}
IC_SEARCH_MEMBER(int32_t, IndexOf, CodeType code, int32_t position, bool lengthInUnits) {
  return Find(code, position, lengthInUnits);
}
IC_SEARCH_MEMBER(const Unit*, IndexOfPointer, const Unit* needle, int32_t position,
                 bool lengthInUnits) {
  return FindPointer(needle, position, lengthInUnits);
}
IC_SEARCH_MEMBER(const Unit*, IndexOfPointer, CodeType code, int32_t position, bool lengthInUnits) {
  return FindPointer(code, position, lengthInUnits);
}

IC_SEARCH_MEMBER(const Unit*, FindNoCasePointer, const Unit* needle, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  if (needle == nullptr || *needle == 0) return nullptr;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  return offset < 0 ? nullptr : FindTextNoCase(text, length, offset, needle);
}

IC_SEARCH_MEMBER(int32_t, FindNoCase, const Unit* needle, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindNoCasePointer(needle, position, lengthInUnits),
                             lengthInUnits);
}

// --- Last occurrence ----------------------------------------------------------------------------

IC_SEARCH_MEMBER(const Unit*, FindLastPointer, const Unit* needle, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  if (needle == nullptr || *needle == 0) return nullptr;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t limit = BackwardLimit(text, length, position, lengthInUnits);
  return limit < 0 ? nullptr : FindLastText(text, length, limit, position, needle);
}

IC_SEARCH_MEMBER(const Unit*, FindLastPointer, CodeType code, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  const Unit* text = self.GetText();
  const int32_t limit = BackwardLimit(text, Length(self), position, lengthInUnits);
  return limit < 0 ? nullptr : FindLastCode(text, limit, static_cast<uint32_t>(code));
}

IC_SEARCH_MEMBER(int32_t, FindLast, const Unit* needle, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindLastPointer(needle, position, lengthInUnits), lengthInUnits);
}
IC_SEARCH_MEMBER(int32_t, FindLast, CodeType code, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindLastPointer(code, position, lengthInUnits), lengthInUnits);
}
IC_SEARCH_MEMBER(int32_t, LastIndexOf, const Unit* needle, int32_t position, bool lengthInUnits) {
  return FindLast(needle, position, lengthInUnits);
}
IC_SEARCH_MEMBER(int32_t, LastIndexOf, CodeType code, int32_t position, bool lengthInUnits) {
  return FindLast(code, position, lengthInUnits);
}
IC_SEARCH_MEMBER(const Unit*, LastIndexOfPointer, const Unit* needle, int32_t position,
                 bool lengthInUnits) {
  return FindLastPointer(needle, position, lengthInUnits);
}
IC_SEARCH_MEMBER(const Unit*, LastIndexOfPointer, CodeType code, int32_t position,
                 bool lengthInUnits) {
  return FindLastPointer(code, position, lengthInUnits);
}

// --- Sets ---------------------------------------------------------------------------------------

IC_SEARCH_MEMBER(const Unit*, FindFirstOfPointer, const Unit* set, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  if (set == nullptr || *set == 0) return nullptr;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  return offset < 0 ? nullptr : FindFirstInSet(text, length, offset, set, true);
}

IC_SEARCH_MEMBER(const Unit*, FindFirstNotOfPointer, const Unit* set, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  if (set == nullptr || *set == 0) return nullptr;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  return offset < 0 ? nullptr : FindFirstInSet(text, length, offset, set, false);
}

IC_SEARCH_MEMBER(const Unit*, FindLastOfPointer, const Unit* set, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  if (set == nullptr || *set == 0) return nullptr;
  const Unit* text = self.GetText();
  const int32_t limit = BackwardLimit(text, Length(self), position, lengthInUnits);
  return limit < 0 ? nullptr : FindLastInSet(text, limit, set, true);
}

IC_SEARCH_MEMBER(const Unit*, FindLastNotOfPointer, const Unit* set, int32_t position,
                 bool lengthInUnits) {
  const auto& self = static_cast<const Str&>(*this);
  if (set == nullptr || *set == 0) return nullptr;
  const Unit* text = self.GetText();
  const int32_t limit = BackwardLimit(text, Length(self), position, lengthInUnits);
  return limit < 0 ? nullptr : FindLastInSet(text, limit, set, false);
}

IC_SEARCH_MEMBER(int32_t, FindFirstOf, const Unit* set, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindFirstOfPointer(set, position, lengthInUnits), lengthInUnits);
}
IC_SEARCH_MEMBER(int32_t, FindFirstNotOf, const Unit* set, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindFirstNotOfPointer(set, position, lengthInUnits),
                             lengthInUnits);
}
IC_SEARCH_MEMBER(int32_t, FindLastOf, const Unit* set, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindLastOfPointer(set, position, lengthInUnits), lengthInUnits);
}
IC_SEARCH_MEMBER(int32_t, FindLastNotOf, const Unit* set, int32_t position, bool lengthInUnits) {
  const Unit* text = static_cast<const Str&>(*this).GetText();
  return textdetail::IndexOf(text, FindLastNotOfPointer(set, position, lengthInUnits),
                             lengthInUnits);
}

// --- Words and nesting --------------------------------------------------------------------------

IC_SEARCH_MEMBER(int32_t, FindWord, const Unit* needle, const Unit* breakSet, int32_t position,
                 bool lengthInUnits, bool reverse) {
  const auto& self = static_cast<const Str&>(*this);
  return FindWordOffset(self.GetText(), Length(self), needle, breakSet, position, lengthInUnits,
                        reverse);
}

IC_SEARCH_MEMBER(int32_t, FindWord, const Unit* needle, int32_t position, bool lengthInUnits,
                 bool reverse) {
  return FindWord(needle, DefaultWordBreaks(), position, lengthInUnits, reverse);
}

template <class Unit, class Storage>
int32_t ICStringSearchMembers<BasicICString<Unit, Storage>>::FindBalanced(
    const Unit* open, const Unit* close, bool flat, int32_t position, bool lengthInUnits,
    int32_t depth) const {
  const auto& self = static_cast<const Str&>(*this);
  if (open == nullptr || *open == 0 || close == nullptr || *close == 0) return -1;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  if (offset < 0) return -1;
  return textdetail::IndexOf(
      text, FindBalancedIn(text, length, offset, open, close, 0, flat, depth), lengthInUnits);
}

template <class Unit, class Storage>
int32_t ICStringSearchMembers<BasicICString<Unit, Storage>>::FindBalanced(
    CodeType open, CodeType close, CodeType escape, bool flat, int32_t position, bool lengthInUnits,
    int32_t depth) const {
  const auto& self = static_cast<const Str&>(*this);
  const CodeText<Unit> openText(static_cast<uint32_t>(open));
  const CodeText<Unit> closeText(static_cast<uint32_t>(close));
  if (openText.units[0] == 0 || closeText.units[0] == 0) return -1;
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  const int32_t offset = ForwardOffset(text, length, position, lengthInUnits);
  if (offset < 0) return -1;
  return textdetail::IndexOf(text,
                             FindBalancedIn(text, length, offset, openText.units, closeText.units,
                                            static_cast<uint32_t>(escape), flat, depth),
                             lengthInUnits);
}

// --- The text around an occurrence --------------------------------------------------------------

IC_SEARCH_MEMBER(const Unit*, AfterFirstPointer, const Unit* needle, const Unit* fallback) {
  const Unit* found = FindPointer(needle, 0, true);
  return found ? found + TextLength(needle) : fallback;
}
IC_SEARCH_MEMBER(const Unit*, AfterFirstPointer, CodeType code, const Unit* fallback) {
  const Unit* found = FindPointer(code, 0, true);
  return found && *found != 0 ? found + UnitsAt(found) : fallback;
}
IC_SEARCH_MEMBER(const Unit*, AfterLastPointer, const Unit* needle, const Unit* fallback) {
  const Unit* found = FindLastPointer(needle, EndOfText, true);
  return found ? found + TextLength(needle) : fallback;
}
IC_SEARCH_MEMBER(const Unit*, AfterLastPointer, CodeType code, const Unit* fallback) {
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

IC_SEARCH_MEMBER(Str, AfterFirst, const Unit* needle, const Unit* fallback) {
  return TailString<Str>(AfterFirstPointer(needle, fallback));
}
IC_SEARCH_MEMBER(Str, AfterFirst, CodeType code, const Unit* fallback) {
  return TailString<Str>(AfterFirstPointer(code, fallback));
}
IC_SEARCH_MEMBER(Str, AfterLast, const Unit* needle, const Unit* fallback) {
  return TailString<Str>(AfterLastPointer(needle, fallback));
}
IC_SEARCH_MEMBER(Str, AfterLast, CodeType code, const Unit* fallback) {
  return TailString<Str>(AfterLastPointer(code, fallback));
}
IC_SEARCH_MEMBER(Str, BeforeFirst, const Unit* needle, const Unit* fallback) {
  return HeadString(static_cast<const Str&>(*this), FindPointer(needle, 0, true), fallback);
}
IC_SEARCH_MEMBER(Str, BeforeFirst, CodeType code, const Unit* fallback) {
  const Unit* found = FindPointer(code, 0, true);
  if (found != nullptr && *found == 0) found = nullptr;  // the terminator is no occurrence here
  return HeadString(static_cast<const Str&>(*this), found, fallback);
}
IC_SEARCH_MEMBER(Str, BeforeLast, const Unit* needle, const Unit* fallback) {
  return HeadString(static_cast<const Str&>(*this), FindLastPointer(needle, EndOfText, true),
                    fallback);
}
IC_SEARCH_MEMBER(Str, BeforeLast, CodeType code, const Unit* fallback) {
  return HeadString(static_cast<const Str&>(*this), FindLastPointer(code, EndOfText, true),
                    fallback);
}

// --- Comparing ----------------------------------------------------------------------------------

IC_SEARCH_MEMBER(bool, Equals, const Unit* other, bool exact) {
  return ic::Equals(static_cast<const Str&>(*this).GetText(), other, exact);
}

IC_SEARCH_MEMBER(bool, StartsWith, const Unit* prefix, bool ignoreCase) {
  return ic::StartsWith(static_cast<const Str&>(*this).GetText(), prefix, ignoreCase);
}

IC_SEARCH_MEMBER(bool, StartsWithAt, const Unit* prefix, int32_t position, bool lengthInUnits,
                 bool ignoreCase) {
  const auto& self = static_cast<const Str&>(*this);
  const Unit* text = self.GetText();
  const int32_t length = Length(self);
  if (position < 0) return false;
  const int32_t offset = ToUnits(text, length, position, lengthInUnits);
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
  return ic::StartsWith(static_cast<const Str&>(*this).GetText(), prefix, true);
}

IC_SEARCH_MEMBER(bool, EndsWith, const Unit* suffix) {
  const auto& self = static_cast<const Str&>(*this);
  return EndsWithText(self.GetText(), Length(self), suffix, false);
}

IC_SEARCH_MEMBER(bool, EndsWith, CodeType code) {
  const auto& self = static_cast<const Str&>(*this);
  const Unit* text = self.GetText();
  const Unit* end = text + Length(self);
  if (end == text) return false;
  return Previous(text, end) == static_cast<uint32_t>(code);
}

IC_SEARCH_MEMBER(bool, EndsWithNoCase, const Unit* suffix) {
  const auto& self = static_cast<const Str&>(*this);
  return EndsWithText(self.GetText(), Length(self), suffix, true);
}

#undef IC_SEARCH_MEMBER

IC_INSTANTIATE_STRING_MIXIN(ICStringSearchMembers)

}  // namespace ic
