// Tests of the compiler's parts that need no subprocess: literal spelling, names and UTF-8.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "names.h"
#include "table_writer.h"
#include "text_checks.h"
#include "utf8.h"

namespace {

using namespace ic::rescomp;

TEST(RescompLiteralTest, PrintableAsciiStandsAsItIs) {
  EXPECT_EQ(EncodeLiteral(u"Az09 $@`~'"), "Az09 $@`~'");
  EXPECT_EQ(EncodeLiteral(u""), "");
}

TEST(RescompLiteralTest, QuoteBackslashAndDoubledQuestionMarkAreEscaped) {
  EXPECT_EQ(EncodeLiteral(u"a\"b\\c"), "a\\\"b\\\\c");
  EXPECT_EQ(EncodeLiteral(u"?\?=?"), "?\\?=?");
  EXPECT_EQ(EncodeLiteral(u"???"), "?\\?\\?");
}

TEST(RescompLiteralTest, ControlCharactersAreThreeDigitOctal) {
  EXPECT_EQ(EncodeLiteral(std::u16string(1, u'\0') + u"7"), "\\0007");
  EXPECT_EQ(EncodeLiteral(u"\x01"
                          u"1\n\r\t\x1F"),
            "\\0011\\012\\015\\011\\037");
  EXPECT_EQ(EncodeLiteral(u"\x7F\x80\x9F"
                          u"F"),
            "\\177\\200\\237F");
}

TEST(RescompLiteralTest, OtherCharactersAreUniversalCharacterNames) {
  EXPECT_EQ(EncodeLiteral(u"\u00A0\u00E9\u672A\uFFFD"), "\\u00A0\\u00E9\\u672A\\uFFFD");
  EXPECT_EQ(EncodeLiteral(u"\U0001F600x\U0010FFFF"), "\\U0001F600x\\U0010FFFF");
}

TEST(RescompLiteralTest, LoneSurrogateIsRejected) {
  EXPECT_THROW(EncodeLiteral(std::u16string(1, char16_t(0xD800))), std::invalid_argument);
  EXPECT_THROW(EncodeLiteral(std::u16string(1, char16_t(0xDC00)) + u"a"), std::invalid_argument);
  const char16_t reversed[] = {0xDE00, 0xD83D, 0};
  EXPECT_THROW(EncodeLiteral(reversed), std::invalid_argument);
}

TEST(RescompNamesTest, ResourceNames) {
  EXPECT_TRUE(IsResourceName("a"));
  EXPECT_TRUE(IsResourceName("_x9"));
  EXPECT_TRUE(IsResourceName("JSON_SyntaxError_Other"));
  EXPECT_TRUE(IsResourceName("class"));  // keys are only strings in the tables
  EXPECT_FALSE(IsResourceName(""));
  EXPECT_FALSE(IsResourceName("9a"));
  EXPECT_FALSE(IsResourceName("a-b"));
  EXPECT_FALSE(IsResourceName("a.b"));
  EXPECT_FALSE(IsResourceName("\xC3\xA9"));
}

TEST(RescompNamesTest, ModuleNamesAreUsableNamespaces) {
  EXPECT_TRUE(IsModuleName("core"));
  EXPECT_TRUE(IsModuleName("Scintilla"));
  EXPECT_TRUE(IsModuleName("_lower"));
  for (const char* keyword : {"class", "and", "co_await", "char8_t", "requires", "xor_eq",
                              "alignas", "while", "namespace", "reinterpret_cast"}) {
    EXPECT_TRUE(IsCppKeyword(keyword)) << keyword;
    EXPECT_FALSE(IsModuleName(keyword)) << keyword;
  }
  EXPECT_FALSE(IsCppKeyword("core"));
  EXPECT_FALSE(IsModuleName("a__b"));
  EXPECT_FALSE(IsModuleName("_Upper"));
  EXPECT_FALSE(IsModuleName("x-y"));
}

TEST(RescompNamesTest, ParameterNames) {
  EXPECT_TRUE(IsParameterName(U"uri"));
  EXPECT_TRUE(IsParameterName(U"entityRef.entity"));
  EXPECT_TRUE(IsParameterName(U"duplicate_1"));
  EXPECT_TRUE(IsParameterName(U"0"));
  EXPECT_FALSE(IsParameterName(U""));
  EXPECT_FALSE(IsParameterName(U"a b"));
  EXPECT_FALSE(IsParameterName(U"a-b"));
  EXPECT_FALSE(IsParameterName(U"\u540D"));
}

TEST(RescompUtf8Test, DecodesAndRejects) {
  EXPECT_EQ(DecodeUtf8("a\xC3\xA9\xE6\x9C\xAA\xF0\x9F\x98\x80"), U"a\u00E9\u672A\U0001F600");
  EXPECT_FALSE(DecodeUtf8("\x80"));              // stray continuation byte
  EXPECT_FALSE(DecodeUtf8("\xC3"));              // truncated
  EXPECT_FALSE(DecodeUtf8("\xC0\xAF"));          // overlong
  EXPECT_FALSE(DecodeUtf8("\xED\xA0\x80"));      // surrogate
  EXPECT_FALSE(DecodeUtf8("\xF4\x90\x80\x80"));  // above U+10FFFF
  EXPECT_FALSE(
      DecodeUtf8("\xE6\x9C"
                 "a"));  // bad continuation
  EXPECT_EQ(ToUtf16(U"a\U0001F600"), u"a\U0001F600");
  EXPECT_EQ(ToUtf8(U"\u672A\U00020000"), "\xE6\x9C\xAA\xF0\xA0\x80\x80");
}

TEST(RescompTextTest, PositionsCountDecodedCodePoints) {
  // "\n" is one code point of the decoded text, U+1F600 one more: the brace is at 2.
  const DecodedText decoded = DecodeEscapes(U"\\n\U0001F600{x");
  EXPECT_TRUE(decoded.faults.empty());
  const auto faults = CheckParameters(decoded.text, nullptr, "m");
  ASSERT_EQ(faults.size(), 1u);
  EXPECT_EQ(faults[0],
            std::string("unmatched opening brace '{' at position 2 ") + std::string(kPositionNote));
}

TEST(RescompTextTest, BackslashBeforeABraceMakesItLiteral) {
  EXPECT_TRUE(CheckParameters(U"\\{ \\} {a}", nullptr, "m").empty());
  // The backslash of "\\" followed by a brace reads as a literal brace to the host too, so
  // the closing brace then has no opening one.
  const DecodedText decoded = DecodeEscapes(U"\\\\{a}");
  EXPECT_EQ(decoded.text, U"\\{a}");
  EXPECT_EQ(CheckParameters(decoded.text, nullptr, "m").size(), 1u);
}

TEST(RescompTextTest, LooksEmpty) {
  EXPECT_TRUE(LooksEmpty(U""));
  EXPECT_TRUE(LooksEmpty(U" \t\u3000"));
  EXPECT_FALSE(LooksEmpty(U" x "));
}

}  // namespace
