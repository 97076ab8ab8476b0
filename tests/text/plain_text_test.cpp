// The narrow plain-text helpers, the free comparisons, SearchNeedle and the wide searches.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <ic/platform/wide_runtime.h>
#include <ic/platform/wide_search.h>
#include <ic/text/plain_text.h>
#include <ic/text/search_needle.h>

namespace ic {
namespace {

TEST(PlainText, FindLastCodePoint) {
  const char* t = "a\u00E4b\u00E4c";
  EXPECT_EQ(FindLastCodePoint(t, 'b'), t + 3);
  EXPECT_EQ(FindLastCodePoint(t, 0xE4), t + 4);
  EXPECT_EQ(FindLastCodePoint(t, 0), t + 7);
  EXPECT_EQ(FindLastCodePoint(t, 0xF6), nullptr);
  EXPECT_EQ(FindLastCodePoint(nullptr, 'a'), nullptr);
}

TEST(PlainText, CodePointsBetween) {
  const char* t = "a\u00E4\u20AC\U0001F600z";
  EXPECT_EQ(CodePointsBetween(t, t + std::strlen(t)), 5);
  EXPECT_EQ(CodePointsBetween(t, t + 3), 2);
  EXPECT_EQ(CodePointsBetween(t, t), 0);
}

TEST(PlainText, Spans) {
  EXPECT_EQ(SpanOf("\u00E4a\u00E4bc", "a\u00E4"), 3);
  EXPECT_EQ(SpanOf("xyz", "a"), 0);
  EXPECT_EQ(SpanNotOf("ab\u00E4c", "\u00E4"), 2);
  EXPECT_EQ(SpanNotOf("abc", ""), 3);
  EXPECT_EQ(AsciiSpanOf("aab", "a"), 2u);
  EXPECT_EQ(AsciiSpanNotOf("aab", "b"), 2u);
  // A set with a byte of 128 or more answers 0 at once, also where a member leads the text.
  EXPECT_EQ(AsciiSpanOf("aab", "a\u00E4"), 0u);
  EXPECT_EQ(AsciiSpanNotOf("aab", "b\u00E4"), 0u);
}

TEST(PlainText, CopyCodePoints) {
  char target[16];
  std::memset(target, 'x', sizeof target);
  CopyCodePoints(target, "\u00E4b\u00F6c", 3);
  EXPECT_EQ(std::string(target, 6), "\u00E4b\u00F6x");  // no terminator at the count
  std::memset(target, 'x', sizeof target);
  CopyCodePoints(target, "ab", 5);
  EXPECT_EQ(std::string(target, 6), std::string("ab\0\0\0x", 6));  // zero-filled
}

TEST(PlainText, Comparisons) {
  EXPECT_EQ(CompareNoCase("\u00C9cole", "\u00E9COLE"), 0);
  EXPECT_EQ(CompareNoCase("abc", "ABD"), -1);
  EXPECT_EQ(CompareNoCase("abd", "ABC"), 1);
  EXPECT_EQ(CompareNoCase("ab", "ABC"), -1);
  EXPECT_EQ(CompareNoCase(nullptr, ""), 0);
  EXPECT_EQ(CompareCount("abcx", "abcy", 3), 0);
  EXPECT_EQ(CompareCount("abcx", "abcy", 4), -1);
  EXPECT_EQ(CompareCount("\u00E4x", "\u00E4y", 1), 0);
  EXPECT_EQ(CompareCountNoCase("\u00C4bX", "\u00E4By", 2), 0);
  EXPECT_EQ(CompareCountNoCase("\u00C4bX", "\u00E4By", 3), -1);
  EXPECT_TRUE(Equals("\u00C9", "\u00E9", false));
  EXPECT_FALSE(Equals("\u00C9", "\u00E9", true));
  EXPECT_TRUE(Equals(static_cast<const char*>(nullptr), ""));
  // Wide: by the wide run-time, where "É" and "é" pair up by the Unicode mapping, not in the C
  // run-time's default locale.
  EXPECT_EQ(Equals(u"\u00C9", u"\u00E9", false), ic::platform::WideCaseFollowsUnicode);
  EXPECT_TRUE(Equals(u"\u00C9X", u"\u00C9x", false));
  EXPECT_TRUE(Equals(static_cast<const char16_t*>(nullptr), u""));
}

TEST(PlainText, StartsWith) {
  EXPECT_FALSE(StartsWith("abc", ""));
  EXPECT_FALSE(StartsWith("abc", static_cast<const char*>(nullptr)));
  EXPECT_FALSE(StartsWith("", "a"));
  EXPECT_FALSE(StartsWith(static_cast<const char*>(nullptr), "a"));
  EXPECT_TRUE(StartsWith("abc", "ab"));
  EXPECT_FALSE(StartsWith("abc", "AB"));
  EXPECT_TRUE(StartsWith("abc", "AB", true));
  EXPECT_FALSE(StartsWith("ab", "abc", true));
  EXPECT_EQ(StartsWith(u"\u00C9cole", u"\u00E9C", true), ic::platform::WideCaseFollowsUnicode);
  EXPECT_TRUE(StartsWith(u"\u00C9cole", u"\u00C9C", true));
  EXPECT_FALSE(StartsWith(u"\u00C9cole", u"\u00E9C"));
  EXPECT_FALSE(StartsWith(u"", u"a", true));
}

TEST(SearchNeedle, NarrowDecodesAndMapsToUpperCase) {
  const SearchNeedle<char> n("a\u00E9\u0131", true);
  EXPECT_FALSE(n.IsOnHeap());
  EXPECT_FALSE(n.IsSingleCode());
  EXPECT_TRUE(n.IsInline());
  EXPECT_EQ(n.Codes()[0], 'A');
  EXPECT_EQ(n.Codes()[1], 0xC9u);
  EXPECT_EQ(n.Codes()[2], 'I');
  EXPECT_EQ(n.Codes()[3], 0u);
  EXPECT_TRUE(n.MatchesFirst('a'));
  const char* text = "\u00C9ix";
  const char* cursor = text;
  EXPECT_TRUE(n.MatchesRest(cursor));
  EXPECT_EQ(cursor, text + 3);
  const char* shorter = "\u00C9";
  cursor = shorter;
  EXPECT_FALSE(n.MatchesRest(cursor));  // the text ends first
  EXPECT_EQ(cursor, shorter);
}

TEST(SearchNeedle, EmptyAndSingle) {
  const SearchNeedle<char> empty(nullptr, false);
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_TRUE(empty.IsSingleCode());
  const SearchNeedle<char> single("\u00E4", false);
  EXPECT_TRUE(single.IsSingleCode());
  const char* cursor = "zzz";
  EXPECT_TRUE(single.MatchesRest(cursor));
}

TEST(SearchNeedle, HeapFromTheSizeOn) {
  const std::string fits(254, 'a');
  const std::string spills(255, 'a');
  EXPECT_FALSE(SearchNeedle<char>(fits.c_str(), false).IsOnHeap());
  EXPECT_TRUE(SearchNeedle<char>(spills.c_str(), false).IsOnHeap());
  const std::u16string wideFits(254, u'a');
  const std::u16string wideSpills(255, u'a');
  EXPECT_FALSE(SearchNeedle<char16_t>(wideFits.c_str(), true).IsOnHeap());
  EXPECT_TRUE(SearchNeedle<char16_t>(wideSpills.c_str(), true).IsOnHeap());
}

TEST(SearchNeedle, WideUsesThePlainNeedleInPlace) {
  const char16_t* text = u"abc";
  const SearchNeedle<char16_t> inPlace(text, false);
  EXPECT_EQ(inPlace.Codes(), text);
  const SearchNeedle<char16_t> copied(text, false, true);
  EXPECT_TRUE(copied.IsInline());
  const SearchNeedle<char16_t> folded(text, true);
  EXPECT_EQ(folded.Codes()[0], u'A');
  EXPECT_TRUE(folded.MatchesFirst(u'a'));
}

TEST(WideSearchFunctions, Basics) {
  const char16_t* t = u"hello world";
  EXPECT_EQ(platform::wcslen(t), 11u);
  EXPECT_EQ(platform::wcsstr(t, u"o w"), t + 4);
  EXPECT_EQ(platform::wcsstr(t, u""), t);
  EXPECT_EQ(platform::wcsstr(t, u"worlds"), nullptr);
  EXPECT_EQ(platform::wcschr(t, u'o'), t + 4);
  EXPECT_EQ(platform::wcschr(t, u'\0'), t + 11);
  EXPECT_EQ(platform::wcschr(t, u'z'), nullptr);
  EXPECT_EQ(platform::wcsrchr(t, u'o'), t + 7);
  EXPECT_EQ(platform::wcsncmp(u"abc", u"abd", 2), 0);
  EXPECT_LT(platform::wcsncmp(u"abc", u"abd", 3), 0);
  EXPECT_GT(platform::wcsncmp(u"\xFFFF", u"a", 1), 0);  // unsigned order
  EXPECT_EQ(platform::wcsncmp(u"ab", u"ab", 5), 0);
  EXPECT_EQ(platform::wcscspn(t, u"ow"), 4u);
  EXPECT_EQ(platform::wcsspn(t, u"leh"), 4u);
}

TEST(WideSearchFunctions, WorstCaseSwitchesToLinearMatching) {
  // A text of 'a' and a needle of many 'a' and one 'b': the candidate check alone would cost
  // needle length times text length; the result must still be right at every place.
  std::u16string text(100000, u'a');
  std::u16string needle(1000, u'a');
  needle += u'b';
  EXPECT_EQ(platform::wcsstr(text.c_str(), needle.c_str()), nullptr);
  text.replace(70000, needle.size(), needle);
  EXPECT_EQ(platform::wcsstr(text.c_str(), needle.c_str()), text.c_str() + 70000);
  // Periodic needles, after the switch.
  std::u16string periodic;
  for (int i = 0; i < 5000; ++i)
    periodic += u"abaab";
  const std::u16string pneedle = u"abaababaabaab";
  EXPECT_EQ(platform::FindUnits(periodic.data(), periodic.size(), pneedle.data(), pneedle.size()),
            std::u16string_view(periodic).find(pneedle));
}

}  // namespace
}  // namespace ic
