// The wide case functions: one unit at a time, independent of the process locale, surrogates
// left alone, and the bounded in-place forms.
#include <ic/platform/wide_runtime.h>

#include <cerrno>
#include <clocale>
#include <string>

#include <gtest/gtest.h>

namespace {

using ic::platform::_wcsicmp;
using ic::platform::_wcslwr_s;
using ic::platform::_wcsupr_s;
using ic::platform::towlower;
using ic::platform::towupper;

TEST(WideRuntimeTest, MapsAsciiLetters) {
  EXPECT_EQ(towlower(u'A'), u'a');
  EXPECT_EQ(towlower(u'Z'), u'z');
  EXPECT_EQ(towlower(u'a'), u'a');
  EXPECT_EQ(towupper(u'q'), u'Q');
  EXPECT_EQ(towupper(u'Q'), u'Q');
  EXPECT_EQ(towlower(u'@'), u'@');
  EXPECT_EQ(towupper(u'['), u'[');
  EXPECT_EQ(towupper(u'`'), u'`');
  EXPECT_EQ(towlower(u'7'), u'7');
  EXPECT_EQ(towlower(0), 0);
}

TEST(WideRuntimeTest, MapsLettersBeyondAscii) {
  EXPECT_EQ(towlower(u'\u00C9'), u'\u00E9');  // É -> é
  EXPECT_EQ(towupper(u'\u00E9'), u'\u00C9');
  EXPECT_EQ(towlower(u'\u03A3'), u'\u03C3');  // Greek sigma
  EXPECT_EQ(towupper(u'\u03C2'), u'\u03A3');  // final sigma upper-cases to sigma
  EXPECT_EQ(towlower(u'\u0416'), u'\u0436');  // Cyrillic zhe
  EXPECT_EQ(towlower(u'\uFF21'), u'\uFF41');  // full-width A
  EXPECT_EQ(towupper(u'\u00FF'), u'\u0178');  // ÿ -> Ÿ, leaves Latin-1
}

TEST(WideRuntimeTest, LeavesUnitsWithoutCaseAlone) {
  EXPECT_EQ(towlower(u'\u4E2D'), u'\u4E2D');  // 中
  EXPECT_EQ(towupper(u'\u4E2D'), u'\u4E2D');
  EXPECT_EQ(towupper(u'\u00DF'), u'\u00DF');  // ß has no one-unit upper case
  EXPECT_EQ(towlower(u'\u3002'), u'\u3002');
}

TEST(WideRuntimeTest, LeavesSurrogatesAlone) {
  for (char16_t unit : {u'\xD800', u'\xD801', u'\xDBFF', u'\xDC00', u'\xDC28', u'\xDFFF'}) {
    EXPECT_EQ(towlower(unit), unit);
    EXPECT_EQ(towupper(unit), unit);
  }
  // U+10400 DESERET CAPITAL LONG I as a pair: not mapped unit by unit.
  std::u16string text = u"\xD801\xDC00";
  ASSERT_EQ(_wcslwr_s(text.data(), text.size() + 1), 0);
  EXPECT_EQ(text, std::u16string(u"\xD801\xDC00"));
}

TEST(WideRuntimeTest, DoesNotDependOnTheProcessLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(towlower(u'\u00C9'), u'\u00E9');
  EXPECT_EQ(_wcsicmp(u"\u00C9t\u00C9", u"\u00E9T\u00E9"), 0);
  std::setlocale(LC_ALL, before.c_str());
}

TEST(WideRuntimeTest, LowerAndUpperCaseInPlace) {
  std::u16string text = u"Hello \u00C9COLE \u0391\u0392\u0393 \u4E2D";
  ASSERT_EQ(_wcslwr_s(text.data(), text.size() + 1), 0);
  EXPECT_EQ(text, std::u16string(u"hello \u00E9cole \u03B1\u03B2\u03B3 \u4E2D"));
  ASSERT_EQ(_wcsupr_s(text.data(), text.size() + 1), 0);
  EXPECT_EQ(text, std::u16string(u"HELLO \u00C9COLE \u0391\u0392\u0393 \u4E2D"));
}

TEST(WideRuntimeTest, InPlaceStopsAtTheTerminator) {
  char16_t buffer[8] = {u'A', u'B', 0, u'C', u'D', 0, 0, 0};
  ASSERT_EQ(_wcslwr_s(buffer, 8), 0);
  EXPECT_EQ(buffer[0], u'a');
  EXPECT_EQ(buffer[1], u'b');
  EXPECT_EQ(buffer[3], u'C');  // behind the terminator: untouched
  EXPECT_EQ(buffer[4], u'D');
}

TEST(WideRuntimeTest, InPlaceRefusesBadArguments) {
  EXPECT_EQ(_wcslwr_s(nullptr, 4), EINVAL);
  EXPECT_EQ(_wcsupr_s(nullptr, 4), EINVAL);
  // A size of 0 holds no terminator: the text is made empty, as the Windows run-time does.
  char16_t text[4] = {u'A', u'B', 0, 0};
  EXPECT_EQ(_wcslwr_s(text, 0), EINVAL);
  EXPECT_EQ(text[0], 0);
  EXPECT_EQ(text[1], u'B');
  // No terminator within the size: the text is made empty.
  char16_t unterminated[3] = {u'A', u'B', u'C'};
  EXPECT_EQ(_wcsupr_s(unterminated, 3), EINVAL);
  EXPECT_EQ(unterminated[0], 0);
  EXPECT_EQ(unterminated[1], u'B');
  // The empty text with room for its terminator only is fine.
  char16_t empty[1] = {0};
  EXPECT_EQ(_wcslwr_s(empty, 1), 0);
  EXPECT_EQ(empty[0], 0);
}

TEST(WideRuntimeTest, ComparesIgnoringCase) {
  EXPECT_EQ(_wcsicmp(u"en", u"EN"), 0);
  EXPECT_EQ(_wcsicmp(u"En", u"eN"), 0);
  EXPECT_EQ(_wcsicmp(u"", u""), 0);
  EXPECT_EQ(_wcsicmp(u"\u00C9", u"\u00E9"), 0);
  EXPECT_LT(_wcsicmp(u"de", u"EN"), 0);
  EXPECT_GT(_wcsicmp(u"ZH", u"ja"), 0);
  EXPECT_LT(_wcsicmp(u"en", u"eng"), 0);  // a prefix sorts first
  EXPECT_GT(_wcsicmp(u"eng", u"EN"), 0);
  EXPECT_NE(_wcsicmp(u"e", u"\u00E9"), 0);
  // Units are compared after lower-casing: "_" (0x5F) sorts before "a" (0x61).
  EXPECT_LT(_wcsicmp(u"_", u"A"), 0);
}

TEST(WideRuntimeTest, CompareOfNullIsAnError) {
  EXPECT_EQ(_wcsicmp(nullptr, u"en"), ic::platform::NlsCompareError);
  EXPECT_EQ(_wcsicmp(u"en", nullptr), ic::platform::NlsCompareError);
  EXPECT_EQ(_wcsicmp(nullptr, nullptr), ic::platform::NlsCompareError);
}

}  // namespace
