#include <ic/regex/regex_members.h>

#include <ic/regex/internal/regex_core.h>
#include <ic/string/ic_string.h>

namespace ic {

template <class Unit, class Storage>
auto ICStringRegexMembers<BasicICString<Unit, Storage>>::RegexSearch(
    const Unit* pattern, int32_t start, bool lengthInUnits, RegexMask& mask) const -> const Unit* {
  const auto& self = Self();
  return internal::RegexSearchUnits(self.GetText(), self.GetLength(), pattern, start, lengthInUnits,
                                    &mask);
}

template <class Unit, class Storage>
auto ICStringRegexMembers<BasicICString<Unit, Storage>>::RegexSearch(const Unit* pattern,
                                                                     int32_t start,
                                                                     bool lengthInUnits) const
    -> const Unit* {
  const auto& self = Self();
  return internal::RegexSearchUnits<Unit>(self.GetText(), self.GetLength(), pattern, start,
                                          lengthInUnits, nullptr);
}

template <class Unit, class Storage>
int32_t ICStringRegexMembers<BasicICString<Unit, Storage>>::RegexFind(const Unit* pattern,
                                                                      int32_t start,
                                                                      bool lengthInUnits,
                                                                      RegexMask& mask) const {
  const auto& self = Self();
  return internal::RegexIndexOf(self.GetText(), RegexSearch(pattern, start, lengthInUnits, mask),
                                lengthInUnits);
}

template <class Unit, class Storage>
int32_t ICStringRegexMembers<BasicICString<Unit, Storage>>::RegexFind(const Unit* pattern,
                                                                      int32_t start,
                                                                      bool lengthInUnits) const {
  const auto& self = Self();
  return internal::RegexIndexOf(self.GetText(), RegexSearch(pattern, start, lengthInUnits),
                                lengthInUnits);
}

template <class Unit, class Storage>
bool ICStringRegexMembers<BasicICString<Unit, Storage>>::RegexMatches(const Unit* pattern,
                                                                      RegexMask& mask) const {
  const auto& self = Self();
  return internal::RegexMatchesUnits(self.GetText(), self.GetLength(), pattern, &mask);
}

template <class Unit, class Storage>
bool ICStringRegexMembers<BasicICString<Unit, Storage>>::RegexMatches(const Unit* pattern) const {
  const auto& self = Self();
  return internal::RegexMatchesUnits<Unit>(self.GetText(), self.GetLength(), pattern, nullptr);
}

IC_INSTANTIATE_STRING_MIXIN(ICStringRegexMembers)

}  // namespace ic
