// Random texts: Find, FindLast, FindFirstOf and their relatives against std::string_view's find
// family, positions converted to code points where lengthInUnits is false.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <ic/string/ic_string.h>
#include <ic/text/plain_text.h>

namespace ic {
namespace {

constexpr int32_t End = 0x7FFFFFFF;

// Code points from a small alphabet, so that matches are frequent: ASCII letters and two-,
// three- and four-byte characters.
const std::vector<std::string>& Alphabet(bool ascii) {
  static const std::vector<std::string> asciiOnly = {"a", "b", "c", " "};
  static const std::vector<std::string> utf8 = {"a", "b", "\u00E4", "\u20AC", "\U0001F600", " "};
  return ascii ? asciiOnly : utf8;
}

std::string RandomText(std::mt19937& rng, bool ascii, int maxCodePoints) {
  const auto& alphabet = Alphabet(ascii);
  std::uniform_int_distribution<int> length(0, maxCodePoints);
  std::uniform_int_distribution<size_t> pick(0, alphabet.size() - 1);
  std::string s;
  for (int n = length(rng); n > 0; --n)
    s += alphabet[pick(rng)];
  return s;
}

// The code point index of a unit offset (npos stays npos).
int32_t ToCodePoints(const std::string& s, size_t offset) {
  if (offset == std::string::npos) return -1;
  return CodePointsBetween(s.c_str(), s.c_str() + offset);
}

// Unit offsets of each code point start, and the end.
std::vector<size_t> Starts(const std::string& s) {
  std::vector<size_t> starts;
  for (size_t i = 0; i < s.size(); ++i)
    if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80) starts.push_back(i);
  starts.push_back(s.size());
  return starts;
}

// The code points of a set as separate strings.
std::vector<std::string> Members(const std::string& set) {
  std::vector<std::string> members;
  const std::vector<size_t> starts = Starts(set);
  for (size_t i = 0; i + 1 < starts.size(); ++i)
    members.push_back(set.substr(starts[i], starts[i + 1] - starts[i]));
  return members;
}

bool InSet(const std::vector<std::string>& members, std::string_view cp) {
  for (const auto& m : members)
    if (m == cp) return true;
  return false;
}

class Differential : public ::testing::TestWithParam<bool> {};

TEST_P(Differential, AgreesWithStringView) {
  const bool ascii = GetParam();
  std::mt19937 rng(ascii ? 12345 : 67890);
  for (int round = 0; round < 3000; ++round) {
    const std::string text = RandomText(rng, ascii, 24);
    std::string needle = RandomText(rng, ascii, 3);
    const std::string_view view(text);
    const ICStringUnique s(text.c_str());
    const std::vector<size_t> starts = Starts(text);
    const int32_t codePoints = static_cast<int32_t>(starts.size()) - 1;
    for (int32_t cp = 0; cp <= codePoints + 1; ++cp) {
      const size_t unit = cp <= codePoints ? starts[cp] : text.size();
      SCOPED_TRACE("text '" + text + "' needle '" + needle + "' position " + std::to_string(cp));

      // Find: the first occurrence at or behind the position.
      const size_t expectedFirst = needle.empty() ? std::string::npos : view.find(needle, unit);
      EXPECT_EQ(s.Find(needle.c_str(), cp), ToCodePoints(text, expectedFirst));
      if (cp <= codePoints) {
        EXPECT_EQ(s.Find(needle.c_str(), static_cast<int32_t>(unit), true),
                  expectedFirst == std::string::npos ? -1 : static_cast<int32_t>(expectedFirst));
      }

      // FindLast: the last occurrence that ends at or before the position (in units).
      size_t expectedLast = std::string::npos;
      if (!needle.empty() && cp > 0 && needle.size() <= unit)
        expectedLast = view.rfind(needle, unit - needle.size());
      if (cp <= codePoints) {
        EXPECT_EQ(s.FindLast(needle.c_str(), static_cast<int32_t>(unit), true),
                  expectedLast == std::string::npos ? -1 : static_cast<int32_t>(expectedLast));
      }
      // In code points the needle's length in units is also compared with the position.
      if (needle.size() <= static_cast<size_t>(cp)) {
        EXPECT_EQ(s.FindLast(needle.c_str(), cp), ToCodePoints(text, expectedLast));
      }

      // The set searches, by whole code points.
      const std::vector<std::string> set = Members(needle);
      int32_t firstOf = -1, firstNotOf = -1, lastOf = -1, lastNotOf = -1;
      for (int32_t i = cp; i < codePoints && !needle.empty(); ++i) {
        const bool in = InSet(set, view.substr(starts[i], starts[i + 1] - starts[i]));
        if (in && firstOf < 0) firstOf = i;
        if (!in && firstNotOf < 0) firstNotOf = i;
      }
      for (int32_t i = std::min(cp, codePoints) - 1; i >= 0 && !needle.empty(); --i) {
        const bool in = InSet(set, view.substr(starts[i], starts[i + 1] - starts[i]));
        if (in && lastOf < 0) lastOf = i;
        if (!in && lastNotOf < 0) lastNotOf = i;
      }
      EXPECT_EQ(s.FindFirstOf(needle.c_str(), cp), firstOf);
      EXPECT_EQ(s.FindFirstNotOf(needle.c_str(), cp), firstNotOf);
      EXPECT_EQ(s.FindLastOf(needle.c_str(), cp), lastOf);
      EXPECT_EQ(s.FindLastNotOf(needle.c_str(), cp), lastNotOf);
      if (ascii) {
        // Code points are units here: the std set searches apply directly.
        const size_t fo = needle.empty() ? std::string::npos : view.find_first_of(needle, unit);
        EXPECT_EQ(s.FindFirstOf(needle.c_str(), cp, true),
                  fo == std::string::npos ? -1 : static_cast<int32_t>(fo));
        const size_t fno =
            needle.empty() ? std::string::npos : view.find_first_not_of(needle, unit);
        EXPECT_EQ(s.FindFirstNotOf(needle.c_str(), cp, true),
                  fno == std::string::npos ? -1 : static_cast<int32_t>(fno));
        if (cp > 0) {
          const size_t lo =
              needle.empty() ? std::string::npos : view.find_last_of(needle, unit - 1);
          EXPECT_EQ(s.FindLastOf(needle.c_str(), cp, true),
                    lo == std::string::npos ? -1 : static_cast<int32_t>(lo));
          const size_t lno =
              needle.empty() ? std::string::npos : view.find_last_not_of(needle, unit - 1);
          EXPECT_EQ(s.FindLastNotOf(needle.c_str(), cp, true),
                    lno == std::string::npos ? -1 : static_cast<int32_t>(lno));
        }
      }
    }
    // Single code points and the whole-text forms.
    const std::vector<std::string> cps = Members(text);
    if (!cps.empty()) {
      const std::string& one = cps[rng() % cps.size()];
      const char* p = one.c_str();
      uint32_t code = 0;
      {
        const unsigned char lead = static_cast<unsigned char>(p[0]);
        const int n = one.size();
        code = n == 1 ? lead : lead & (0x7F >> n);
        for (int i = 1; i < n; ++i)
          code = (code << 6) | (static_cast<unsigned char>(p[i]) & 63);
      }
      EXPECT_EQ(s.Find(static_cast<char32_t>(code)), ToCodePoints(text, view.find(one)));
      EXPECT_EQ(s.FindLast(static_cast<char32_t>(code)), ToCodePoints(text, view.rfind(one)));
      EXPECT_EQ(s.FindLast(static_cast<char32_t>(code), End, true),
                static_cast<int32_t>(view.rfind(one)));
    }
    if (!needle.empty()) {
      const size_t first = view.find(needle);
      EXPECT_EQ(s.AfterFirstPointer(needle.c_str(), nullptr),
                first == std::string::npos ? nullptr : s.GetText() + first + needle.size());
      EXPECT_EQ(std::string(s.BeforeFirst(needle.c_str(), "-").GetText()),
                first == std::string::npos ? "-" : text.substr(0, first));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AsciiAndUtf8, Differential, ::testing::Values(true, false));

TEST(DifferentialWide, FindAndFindLastAgreeWithU16StringView) {
  std::mt19937 rng(4242);
  std::uniform_int_distribution<int> unit(0, 3);
  const char16_t alphabet[] = {u'a', u'b', u'\xD83D', u'\xDE00'};
  for (int round = 0; round < 3000; ++round) {
    std::u16string text, needle;
    for (int n = rng() % 40; n > 0; --n)
      text += alphabet[unit(rng)];
    for (int n = rng() % 4; n > 0; --n)
      needle += alphabet[unit(rng)];
    const ICStringUniqueW s(text.c_str());
    const std::u16string_view view(text);
    for (int32_t pos = 0; pos <= static_cast<int32_t>(text.size()); ++pos) {
      const size_t first = needle.empty() ? std::u16string::npos : view.find(needle, pos);
      ASSERT_EQ(s.Find(needle.c_str(), pos),
                first == std::u16string::npos ? -1 : static_cast<int32_t>(first));
      size_t last = std::u16string::npos;
      if (!needle.empty() && pos > 0 && needle.size() <= static_cast<size_t>(pos))
        last = view.rfind(needle, pos - needle.size());
      ASSERT_EQ(s.FindLast(needle.c_str(), pos),
                last == std::u16string::npos ? -1 : static_cast<int32_t>(last));
      const size_t fo = needle.empty() ? std::u16string::npos : view.find_first_of(needle, pos);
      ASSERT_EQ(s.FindFirstOf(needle.c_str(), pos),
                fo == std::u16string::npos ? -1 : static_cast<int32_t>(fo));
    }
  }
}

}  // namespace
}  // namespace ic
