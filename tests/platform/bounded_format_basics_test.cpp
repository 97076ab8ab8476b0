// The bounded formatters of the platform layer: the measure of what fits, truncation, the
// terminator, refused arguments, and the wide form's numbers and non-ASCII format text.
#include <ic/platform/bounded_format.h>

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace {

using ic::platform::BoundedFormat;

TEST(BoundedFormatNarrow, WritesTheTextAndAnswersItsLength) {
  char buffer[32];
  EXPECT_EQ(BoundedFormat(buffer, sizeof buffer, "%d-%s-%5.2f", 42, "ab", 3.14159), 11);
  EXPECT_STREQ(buffer, "42-ab- 3.14");
}

TEST(BoundedFormatNarrow, ExactFitAndOneShort) {
  char buffer[6];
  EXPECT_EQ(BoundedFormat(buffer, 6, "%s", "abcde"), 5);  // five units and the terminator
  EXPECT_STREQ(buffer, "abcde");
  EXPECT_EQ(BoundedFormat(buffer, 6, "%s", "abcdef"), -1);  // cut to count - 1 units
  EXPECT_STREQ(buffer, "abcde");
}

TEST(BoundedFormatNarrow, CountOneLeavesOnlyTheTerminator) {
  char buffer[4] = {'x', 'x', 'x', 'x'};
  EXPECT_EQ(BoundedFormat(buffer, 1, "%d", 7), -1);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(buffer[1], 'x');
}

TEST(BoundedFormatNarrow, RefusesNoBufferNoRoomAndNoFormat) {
  char buffer[4] = {'x', 'x', 'x', 0};
  EXPECT_EQ(BoundedFormat(static_cast<char*>(nullptr), 4, "%d", 1), -1);
  EXPECT_EQ(BoundedFormat(buffer, 0, "%d", 1), -1);
  EXPECT_EQ(buffer[0], 'x');  // count 0 writes nothing
  EXPECT_EQ(BoundedFormat(buffer, 4, static_cast<const char*>(nullptr)), -1);
  EXPECT_EQ(buffer[0], 0);
}

TEST(BoundedFormatNarrow, AgreesWithSnprintfOnManySpecs) {
  const char* const specs[] = {"%d", "%5d", "%-5d|", "%05d", "%+d", "%x",   "%#X",
                               "%o", "%u",  "%ld",   "%lld", "%hd", "%.3d", "%c"};
  const long long values[] = {0, 1, -1, 42, -77, 255, 65535, 2147483647};
  for (const char* spec : specs) {
    for (long long v : values) {
      char expected[64];
      char actual[64];
      const std::string s(spec);
      int n;
      if (s.find("ll") != std::string::npos) {
        n = std::snprintf(expected, sizeof expected, spec, v);
        EXPECT_EQ(BoundedFormat(actual, sizeof actual, spec, v), n) << spec << " " << v;
      } else if (s.find('l') != std::string::npos) {
        n = std::snprintf(expected, sizeof expected, spec, static_cast<long>(v));
        EXPECT_EQ(BoundedFormat(actual, sizeof actual, spec, static_cast<long>(v)), n);
      } else {
        n = std::snprintf(expected, sizeof expected, spec, static_cast<int>(v));
        EXPECT_EQ(BoundedFormat(actual, sizeof actual, spec, static_cast<int>(v)), n);
      }
      EXPECT_STREQ(actual, expected) << spec << " " << v;
    }
  }
}

// "hh" is a C99 length that the C library knows; the Windows run-time's formatter takes it as "h".
TEST(BoundedFormatNarrow, TakesTheLengthOfACharacter) {
  char buffer[8];
  EXPECT_EQ(BoundedFormat(buffer, sizeof buffer, "%hhd", 255), 2);
  EXPECT_STREQ(buffer, "-1");
}

TEST(BoundedFormatWide, NumbersFormatAsInTheNarrowForm) {
  char16_t buffer[32];
  EXPECT_EQ(BoundedFormat(buffer, 32, u"%d|%04x|%.1f", -12, 0xab, 2.25), 12);
  EXPECT_EQ(std::u16string(buffer), u"-12|00ab|2.2");
}

TEST(BoundedFormatWide, NonAsciiFormatTextComesBackAsItWent) {
  char16_t buffer[32];
  EXPECT_EQ(BoundedFormat(buffer, 32, u"\u00E9\u4E2D%d\U0001F600", 5), 5);
  EXPECT_EQ(std::u16string(buffer), u"\u00E9\u4E2D5\U0001F600");
}

TEST(BoundedFormatWide, TruncatesAndTerminates) {
  char16_t buffer[4];
  EXPECT_EQ(BoundedFormat(buffer, 4, u"%d", 12345), -1);
  EXPECT_EQ(std::u16string(buffer), u"123");
  EXPECT_EQ(BoundedFormat(buffer, 4, u"%d", 123), 3);
  EXPECT_EQ(std::u16string(buffer), u"123");
}

TEST(BoundedFormatWide, RefusesNoBufferNoRoomAndNoFormat) {
  char16_t buffer[4] = {u'x', u'x', u'x', 0};
  EXPECT_EQ(BoundedFormat(static_cast<char16_t*>(nullptr), 4, u"%d", 1), -1);
  EXPECT_EQ(BoundedFormat(buffer, 0, u"%d", 1), -1);
  EXPECT_EQ(buffer[0], u'x');
  EXPECT_EQ(BoundedFormat(buffer, 4, static_cast<const char16_t*>(nullptr)), -1);
  EXPECT_EQ(buffer[0], 0);
}

}  // namespace
