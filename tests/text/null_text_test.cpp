// nullptr as the text of the narrow/wide pairs of plain-text functions: it picks no width, so
// these calls would not compile without the overloads that take it. Each gives what a null
// pointer of a width gives.
#include <gtest/gtest.h>

#include <ic/string/utf_convert.h>
#include <ic/text/filter_members.h>
#include <ic/text/plain_text.h>

namespace ic {
namespace {

TEST(NullText, ConvertToUTF8GivesTheEmptyData) {
  const ICStringUnique converted = ConvertToUTF8(nullptr);
  EXPECT_EQ(converted.GetLength(), 0);
  EXPECT_STREQ(converted.GetText(), "");
  EXPECT_EQ(converted.GetText(), ConvertToUTF8(static_cast<const char16_t*>(nullptr)).GetText());
}

TEST(NullText, CountCodeCountsNothing) {
  EXPECT_EQ(CountCode(nullptr, U'a'), 0);
  EXPECT_EQ(CountCode(nullptr, u'\0', 0, false), 0);
  EXPECT_EQ(CountCode(nullptr, 'a', 1), 0);
  EXPECT_EQ(CountCode(nullptr, U'a', 3), CountCode(static_cast<const char16_t*>(nullptr), u'a', 3));
}

TEST(NullText, EqualsAndStartsWithCountItAsEmpty) {
  EXPECT_TRUE(Equals(nullptr, nullptr));
  EXPECT_TRUE(Equals(nullptr, nullptr, false));
  EXPECT_EQ(Equals(nullptr, nullptr), Equals(static_cast<const char16_t*>(nullptr), nullptr));
  EXPECT_FALSE(StartsWith(nullptr, nullptr));
  EXPECT_FALSE(StartsWith(nullptr, nullptr, true));
}

}  // namespace
}  // namespace ic
