// Regular expressions over ICString: RegexSearch, RegexFind and RegexMatches with arbitrary
// patterns and subjects, narrow and wide. A pattern that does not compile answers as no match.
// Checks that the three members agree: the index that RegexFind gives is where RegexSearch
// points, and a whole match is also found at 0.
#include <cstdint>
#include <string>

#include <ic/string/ic_string.h>

#include "fuzz_input.h"

namespace {

template <class S>
void Check(const std::basic_string<typename S::UnitType>& pattern,
           const std::basic_string<typename S::UnitType>& subject, int32_t start) {
  using Unit = typename S::UnitType;
  const ic::fuzz::ExactText<Unit> exactPattern(pattern);
  const S s(subject.c_str(), static_cast<int32_t>(subject.size()));
  const Unit* found = s.RegexSearch(exactPattern.Get(), start, true);
  const int32_t index = s.RegexFind(exactPattern.Get(), start, true);
  IC_FUZZ_CHECK(found == nullptr ? index == -1 : index == found - s.GetText());
  if (s.RegexMatches(exactPattern.Get())) IC_FUZZ_CHECK(s.RegexFind(exactPattern.Get()) == 0);
  (void)s.RegexFind(exactPattern.Get(), start, false);
}

// True when a quantifier stands right behind another ("a**", "a+{2}", "()?{41}"; one '?'
// behind a quantifier only makes it lazy and is not counted). The engine accepts such patterns
// and, as it backtracks, takes time exponential in the subject's length on them: they are left
// out for the time they take, not for any fault. Bracket expressions are passed over.
bool StacksQuantifiers(const std::string& pattern) {
  bool afterQuantifier = false;
  bool lazy = false;
  for (size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '?' && afterQuantifier && !lazy) {
      lazy = true;
      continue;
    }
    lazy = false;
    if (c == '\\' || c == '[') {
      if (c == '\\') {
        ++i;
      } else {
        for (++i; i < pattern.size() && pattern[i] != ']'; ++i)
          if (pattern[i] == '\\') ++i;
      }
      afterQuantifier = false;
      continue;
    }
    const bool quantifier = c == '*' || c == '+' || c == '?' || c == '{';
    if (quantifier && afterQuantifier) return true;
    if (c == '{') {
      const size_t close = pattern.find('}', i);
      if (close == std::string::npos) return false;
      i = close;
    }
    afterQuantifier = quantifier;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  const bool wide = input.Bool();
  const int32_t start = input.Int(-2, 40);
  // Short patterns and subjects: the engine backtracks, and its time grows quickly with both.
  std::string pattern = input.Text(48);
  std::string subject = input.Text(64);
  pattern = pattern.substr(0, pattern.find('\0'));
  subject = subject.substr(0, subject.find('\0'));
  if (StacksQuantifiers(pattern)) return 0;
  if (!wide) {
    Check<ic::ICStringUnique>(pattern, subject, start);
  } else {
    std::u16string p(pattern.begin(), pattern.end());
    std::u16string t = ic::fuzz::FuzzInput::Units(subject);
    t = t.substr(0, t.find(u'\0'));
    for (char16_t& u : p)
      u = static_cast<char16_t>(u & 0xff);
    Check<ic::ICStringUniqueW>(p, t, start);
  }
  return 0;
}
