// The tables that the build generated from data/literals.xml, compiled into this program
// against the stand-in catalogue macros: every code unit is what the source says.

#include <gtest/gtest.h>

#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>

#include "catalogues/literals.h"

namespace {

namespace cat = ic::resources::catalogues::literals;

std::u16string Units(std::initializer_list<char16_t> units) {
  return std::u16string(units);
}

std::u16string Row(int row) {
  return cat::Texts()[row];
}

TEST(RescompTablesTest, CatalogueHasItsNameCountAndFinalNulls) {
  EXPECT_EQ(std::u16string(cat::Name()), Units({'l', 'i', 't', 'e', 'r', 'a', 'l', 's'}));
  ASSERT_EQ(cat::kRowCount, 8);
  EXPECT_EQ(cat::Texts()[cat::kRowCount], nullptr);
  EXPECT_EQ(cat::Keys()[cat::kRowCount], nullptr);
  const char* const keys[] = {"escapes", "controls", "quotes", "ascii",
                              "latin",   "cjk",      "astral", "blanks"};
  for (int row = 0; row < cat::kRowCount; ++row) {
    const std::string key = keys[row];
    EXPECT_EQ(std::u16string(cat::Keys()[row]), std::u16string(key.begin(), key.end()));
  }
}

TEST(RescompTablesTest, EscapesBecomeTheirCharacters) {
  EXPECT_EQ(Row(0), Units({'a', 0x0A, 'b', 0x0D, 'c', 0x09, 'd', '\\', 'e', '\\', '{', 'f', '\\',
                           '}', 'g'}));
}

TEST(RescompTablesTest, ControlCharactersKeepTheDigitsAfterThem) {
  EXPECT_EQ(Row(1), Units({0x7F, '1', 0x85, '7', 0x9F, 'F', 0x09, 'A', 0x09, '7', 0x0A, '0'}));
}

TEST(RescompTablesTest, QuotesBackslashesAndQuestionMarks) {
  const std::string expected = "say \"hi\" \\ back \\\\ two ?\?= ?\?/ end?";
  EXPECT_EQ(Row(2), std::u16string(expected.begin(), expected.end()));
}

TEST(RescompTablesTest, AsciiSpecials) {
  const std::string expected = "$@` ~<&>'";
  EXPECT_EQ(Row(3), std::u16string(expected.begin(), expected.end()));
}

TEST(RescompTablesTest, LatinAndPrivateUseCharacters) {
  EXPECT_EQ(Row(4), Units({0xA0, 'B', 0xFF, 0xE9, 0xE000, 0xFFFD}));
}

TEST(RescompTablesTest, ChineseText) {
  EXPECT_EQ(Row(5), Units({0x672A, 0x4E3A, 0x6587, 0x4EF6, '{', 'c', 'o', 'u', 'n', 't', '}',
                           0x6307, 0x5B9A, 0x7F16, 0x7801, 0x3002}));
}

TEST(RescompTablesTest, CharactersAboveTheBmpBecomeSurrogatePairs) {
  EXPECT_EQ(Row(6), Units({0xD83D, 0xDE00, 'x', 0xD840, 0xDC00, '{', 'n', 'a', 'm', 'e', '.', 'p',
                           'a', 'r', 't', '}'}));
}

TEST(RescompTablesTest, BlanksAroundATextAreKept) {
  EXPECT_EQ(Row(7), Units({' ', 0x884C, ' '}));
}

// The spelling in the generated source: three-digit octal escapes, so that the digit after a
// control character stays a character of its own.
TEST(RescompTablesTest, GeneratedSourceSpellsControlsInOctal) {
  std::ifstream in(IC_LITERALS_CPP, std::ios::binary);
  ASSERT_TRUE(in) << IC_LITERALS_CPP;
  std::stringstream content;
  content << in.rdbuf();
  const std::string text = content.str();
  EXPECT_NE(text.find(R"(u"\1771\2057\237F\011A\0117\0120",  // controls)"), std::string::npos)
      << text;
  EXPECT_NE(text.find(R"(u"\u00A0B\u00FF\u00E9\uE000\uFFFD",  // latin)"), std::string::npos)
      << text;
  EXPECT_NE(text.find(R"(u"\U0001F600x\U00020000{name.part}",  // astral)"), std::string::npos)
      << text;
}

}  // namespace
