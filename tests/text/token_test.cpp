// ExtractToken, ExtractTokenText and FirstLines.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <ic/string/ic_string.h>

#include "../string/block_probe.h"
#include "../string/owned_text.h"

namespace ic {
namespace {

using test::Owned;
using test::TextOf;
using test::Units;

template <class S>
class Tokens : public ::testing::Test {};
TYPED_TEST_SUITE(Tokens, test::AllStringShapes);

// Walks the whole text with the set form and answers the tokens.
template <class S>
std::vector<std::string> Walk(const S& s, const char* delimiters, const char* quotes, bool merge) {
  using Unit = typename S::UnitType;
  const auto d = Units<Unit>(delimiters), q = Units<Unit>(quotes);
  std::vector<std::string> tokens;
  int32_t position = 0;
  bool atEnd = false;
  while (!atEnd) {
    tokens.push_back(TextOf(s.ExtractToken(d.c_str(), position, q.c_str(), merge, 0, &atEnd)));
    if (tokens.size() > 100) break;
  }
  return tokens;
}

using List = std::vector<std::string>;

TYPED_TEST(Tokens, EmptyTokensAndMerging) {
  const TypeParam s = Owned<TypeParam>("a,b,,c");
  EXPECT_EQ(Walk(s, ",", "", false), (List{"a", "b", "", "c"}));
  EXPECT_EQ(Walk(s, ",", "", true), (List{"a", "b", "c"}));
  EXPECT_EQ(Walk(Owned<TypeParam>("a,"), ",", "", false), (List{"a", ""}));
  EXPECT_EQ(Walk(Owned<TypeParam>(""), ",", "", false), (List{""}));
}

TYPED_TEST(Tokens, QuotesKeepDelimitersAndStayInTheToken) {
  EXPECT_EQ(Walk(Owned<TypeParam>("a,\"b,c\",d"), ",", "\"", false), (List{"a", "\"b,c\"", "d"}));
  EXPECT_EQ(Walk(Owned<TypeParam>("'x;y\";z"), ";", "\"'", false), (List{"'x;y\";z"}));
}

TYPED_TEST(Tokens, SkipCountAndPositions) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam s = Owned<TypeParam>("a,b,c");
  int32_t position = 0;
  bool atEnd = true;
  EXPECT_EQ(TextOf(s.ExtractToken(Unit(','), position, nullptr, false, 2, &atEnd)), "c");
  EXPECT_TRUE(atEnd);
  EXPECT_EQ(position, 5);
  position = 2;
  EXPECT_EQ(TextOf(s.ExtractToken(Unit(','), position, nullptr, false, -3, &atEnd)), "b");
  EXPECT_FALSE(atEnd);
  EXPECT_EQ(position, 4);
  position = 0;
  EXPECT_EQ(TextOf(s.ExtractToken(Unit(','), position, nullptr, false, 9, &atEnd)), "c");
  // Beyond the end: the empty string, and neither position nor atEnd change.
  position = 6;
  atEnd = false;
  EXPECT_EQ(s.ExtractToken(Unit(','), position, nullptr, false, 0, &atEnd).GetLength(), 0);
  EXPECT_EQ(position, 6);
  EXPECT_FALSE(atEnd);
  position = -1;
  EXPECT_EQ(s.ExtractToken(Unit(','), position).GetLength(), 0);
  EXPECT_EQ(position, -1);
  // On the terminator: the empty last token.
  position = 5;
  EXPECT_EQ(s.ExtractToken(Unit(','), position, nullptr, false, 0, &atEnd).GetLength(), 0);
  EXPECT_TRUE(atEnd);
}

TYPED_TEST(Tokens, WholeTextDelimiter) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam s = Owned<TypeParam>("a<>b<c<><>d");
  const auto d = Units<Unit>("<>");
  int32_t position = 0;
  bool atEnd = false;
  List tokens;
  while (!atEnd)
    tokens.push_back(TextOf(s.ExtractTokenText(d.c_str(), position, nullptr, true, 0, &atEnd)));
  EXPECT_EQ(tokens, (List{"a", "b<c", "d"}));
}

TEST(TokensFree, ExplicitLengthIsTheLimit) {
  const char text[] = "ab,cd,ef";
  int32_t position = 0;
  bool atEnd = false;
  EXPECT_STREQ(ExtractToken(text, 5, ',', position, nullptr, false, 0, &atEnd).GetText(), "ab");
  EXPECT_STREQ(ExtractToken(text, 5, ",", position, nullptr, false, 0, &atEnd).GetText(), "cd");
  EXPECT_TRUE(atEnd);
  EXPECT_EQ(position, 5);
  atEnd = false;
  EXPECT_EQ(ExtractToken(text, 5, ',', position, nullptr, false, 0, &atEnd).GetLength(), 0);
  EXPECT_FALSE(atEnd);  // a position at the explicit length is out of range
  position = 0;
  EXPECT_EQ(ExtractToken(static_cast<const char*>(nullptr), 5, ',', position).GetLength(), 0);
  const char16_t wide[] = u"x;y";
  position = 0;
  EXPECT_EQ(std::u16string(ExtractToken(wide, 3, u';', position, nullptr, false, 1).GetText()),
            u"y");
}

TEST(TokensFree, WholeTextDelimiter) {
  const char16_t text[] = u"a::b::c";
  int32_t position = 0;
  bool atEnd = false;
  EXPECT_EQ(std::u16string(
                ExtractTokenText(text, 7, u"::", position, nullptr, false, 1, &atEnd).GetText()),
            u"b");
  EXPECT_EQ(position, 6);
  EXPECT_FALSE(atEnd);
  EXPECT_STREQ(ExtractTokenText("x--y", 4, "--", position = 0).GetText(), "x");
}

TEST(TokensNarrow, MultiByteDelimitersAndQuotes) {
  const ICStringUnique s("a\u00e9b\u00ab\u00e9\u00abc");
  int32_t position = 0;
  EXPECT_STREQ(s.ExtractToken(U'\u00e9', position, "\u00ab").GetText(), "a");
  EXPECT_STREQ(s.ExtractToken(U'\u00e9', position, "\u00ab").GetText(), "b\u00ab\u00e9\u00abc");
}

// The reference walk over std::string: set delimiters or one whole delimiter, quotes, merge
// and skip.
struct RefToken {
  std::string token;
  int32_t position;
  bool atEnd;
};
RefToken Reference(const std::string& text, int32_t position, const std::string& delimiter,
                   bool whole, const std::string& quotes, bool merge, int skip) {
  size_t start = position, i = position;
  while (i < text.size()) {
    const char c = text[i];
    if (quotes.find(c) != std::string::npos) {
      const size_t close = text.find(c, i + 1);
      i = close == std::string::npos ? text.size() : close + 1;
      continue;
    }
    size_t matched = 0;
    if (whole) {
      if (!delimiter.empty() && text.compare(i, delimiter.size(), delimiter) == 0)
        matched = delimiter.size();
    } else if (delimiter.find(c) != std::string::npos) {
      matched = 1;
    }
    if (matched == 0) {
      ++i;
      continue;
    }
    const std::string token = text.substr(start, i - start);
    i += matched;
    if ((merge && token.empty()) || skip-- > 0) {
      start = i;
      continue;
    }
    return {token, static_cast<int32_t>(i), false};
  }
  return {text.substr(start), static_cast<int32_t>(text.size()), true};
}

template <class S>
void RandomWalks(bool whole) {
  using Unit = typename S::UnitType;
  std::mt19937 random(whole ? 21 : 20);
  const char alphabet[] = "ab,;\"' ";
  for (int trial = 0; trial < 3000; ++trial) {
    std::string text;
    for (int i = random() % 16; i > 0; --i)
      text += alphabet[random() % 7];
    const std::string delimiter = whole ? (random() % 2 ? ",;" : ",") : (random() % 2 ? ",;" : ";");
    const std::string quotes = random() % 2 ? "\"'" : "";
    const bool merge = random() % 2;
    const int skip = static_cast<int>(random() % 3);
    const S s = Owned<S>(text);
    const auto d = Units<Unit>(delimiter), q = Units<Unit>(quotes);
    int32_t position = static_cast<int32_t>(random() % (text.size() + 1));
    for (int step = 0; step < 20; ++step) {
      const RefToken expected = Reference(text, position, delimiter, whole, quotes, merge, skip);
      bool atEnd = false;
      const S token = whole
                          ? s.ExtractTokenText(d.c_str(), position, q.c_str(), merge, skip, &atEnd)
                          : s.ExtractToken(d.c_str(), position, q.c_str(), merge, skip, &atEnd);
      ASSERT_EQ(TextOf(token), expected.token) << text;
      ASSERT_EQ(position, expected.position) << text;
      ASSERT_EQ(atEnd, expected.atEnd) << text;
      if (atEnd) break;
    }
  }
}

TYPED_TEST(Tokens, SetWalksMatchAReference) {
  RandomWalks<TypeParam>(false);
}
TYPED_TEST(Tokens, WholeTextWalksMatchAReference) {
  RandomWalks<TypeParam>(true);
}

template <class S>
class FirstLines : public ::testing::Test {};
TYPED_TEST_SUITE(FirstLines, test::AllStringShapes);

template <class S>
std::string Lines(const std::string& text, int32_t maxLines, bool skip, bool trim,
                  const char* marker) {
  const auto m = Units<typename S::UnitType>(marker ? marker : "");
  const S s = Owned<S>(text);
  const S result = s.FirstLines(maxLines, skip, trim, marker ? m.c_str() : nullptr);
  EXPECT_EQ(TextOf(s), text);
  EXPECT_EQ(result.GetText()[result.GetLength()], 0);
  return TextOf(result);
}

TYPED_TEST(FirstLines, MixedLineEndsAndTheMarker) {
  EXPECT_EQ(Lines<TypeParam>("a\r\nb\nc", 2, false, false, "..."), "a\r\nb...");
  EXPECT_EQ(Lines<TypeParam>("a\r\nb\nc", 3, false, false, "..."), "a\r\nb\nc");
  EXPECT_EQ(Lines<TypeParam>("a\rb\n", 5, false, false, "..."), "a\rb");
  EXPECT_EQ(Lines<TypeParam>("a\n \n\t\n", 1, false, false, "..."), "a");
  EXPECT_EQ(Lines<TypeParam>("a\n \nb", 1, false, false, "..."), "a...");
  EXPECT_EQ(Lines<TypeParam>("a\nb", 1, false, false, nullptr), "a");
  EXPECT_EQ(Lines<TypeParam>("a\nb", 0, false, false, "+"), "+");
  EXPECT_EQ(Lines<TypeParam>("", 3, false, false, "+"), "");
}

TYPED_TEST(FirstLines, SkipAndTrim) {
  EXPECT_EQ(Lines<TypeParam>("\n  \n a \r\n\n b\n", 5, true, true, nullptr), "a\r\nb");
  // A skipped line takes its line end with it: the pending one is that of the line before.
  EXPECT_EQ(Lines<TypeParam>("\n\nx\n\r\ny", 2, true, false, nullptr), "x\ny");
  EXPECT_EQ(Lines<TypeParam>(" a \n b ", 2, false, true, nullptr), "a\nb");
  EXPECT_EQ(Lines<TypeParam>(" a \n b ", 2, false, false, nullptr), " a \n b ");
  EXPECT_EQ(Lines<TypeParam>("\n\n", 2, true, false, "..."), "");
}

TYPED_TEST(FirstLines, LongTextsGrow) {
  std::string text;
  for (int i = 0; i < 500; ++i)
    text += "line " + std::to_string(i) + "\n";
  const std::string all = text.substr(0, text.size() - 1);
  EXPECT_EQ(Lines<TypeParam>(text, 1000, false, false, "..."), all);
  EXPECT_EQ(Lines<TypeParam>(text, 2, false, false, "..."), "line 0\nline 1...");
}

}  // namespace
}  // namespace ic
