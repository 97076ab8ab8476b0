// FirstLineEnd, FindForeignLineEnd, EnsureLineEnds, LineColumnAt, OffsetAt and Format.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include <ic/string/ic_string.h>

#include "../string/block_probe.h"
#include "../string/counting_allocator.h"
#include "../string/owned_text.h"

namespace ic {
namespace {

using test::Owned;
using test::TextOf;
using test::Units;

template <class S>
class Lines : public ::testing::Test {};
TYPED_TEST_SUITE(Lines, test::AllStringShapes);

TYPED_TEST(Lines, FirstLineEnd) {
  using Unit = typename TypeParam::UnitType;
  const auto fallback = Units<Unit>("fb");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a\nb\r\n").FirstLineEnd(fallback.c_str())), "\n");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a\r\nb\n").FirstLineEnd()), "\r\n");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a\rb\n").FirstLineEnd()), "\r");
  EXPECT_EQ(TextOf(Owned<TypeParam>("ab").FirstLineEnd(fallback.c_str())), "fb");
  EXPECT_EQ(Owned<TypeParam>("ab").FirstLineEnd().GetLength(), 0);
}

TEST(LinesView, FirstLineEndViewsTheConstantAndTheFallback) {
  const ICStringView s("a\r\nb");
  const ICStringView crlf = s.FirstLineEnd();
  EXPECT_EQ(crlf.GetText(), LineEndCRLF<char>);
  EXPECT_FALSE(crlf.OwnsBlock());
  const char16_t fallback[] = u"none";
  const ICStringViewW w(u"x");
  const ICStringViewW answer = w.FirstLineEnd(fallback);
  EXPECT_EQ(answer.GetText(), fallback);
  test::AllocationScope scope;
  const ICStringView lf = ICStringView("a\n").FirstLineEnd();
  EXPECT_STREQ(lf.GetText(), "\n");
  EXPECT_EQ(scope.Allocations(), 0);
}

TYPED_TEST(Lines, FindForeignLineEnd) {
  using Unit = typename TypeParam::UnitType;
  const auto a = Units<Unit>("a\nb"), b = Units<Unit>("a\r\nb"), c = Units<Unit>("a\rb\r\n");
  const auto lf = Units<Unit>("\n"), crlf = Units<Unit>("\r\n"), cr = Units<Unit>("\r");
  const auto lfcr = Units<Unit>("\n\r"), empty = Units<Unit>("");
  EXPECT_EQ(FindForeignLineEnd(a.c_str(), lf.c_str()), nullptr);
  EXPECT_EQ(FindForeignLineEnd(a.c_str(), crlf.c_str()), a.c_str() + 1);
  EXPECT_EQ(FindForeignLineEnd(b.c_str(), lf.c_str()), b.c_str() + 1);
  EXPECT_EQ(FindForeignLineEnd(b.c_str(), cr.c_str()), b.c_str() + 1);
  EXPECT_EQ(FindForeignLineEnd(b.c_str(), crlf.c_str()), nullptr);
  EXPECT_EQ(FindForeignLineEnd(c.c_str(), crlf.c_str()), c.c_str() + 1);
  EXPECT_EQ(FindForeignLineEnd(c.c_str(), cr.c_str()), c.c_str() + 3);
  EXPECT_EQ(FindForeignLineEnd(a.c_str(), lfcr.c_str()), nullptr);
  EXPECT_EQ(FindForeignLineEnd(a.c_str(), empty.c_str()), nullptr);
  EXPECT_EQ(FindForeignLineEnd(a.c_str(), static_cast<const Unit*>(nullptr)), nullptr);
  EXPECT_EQ(FindForeignLineEnd(static_cast<const Unit*>(nullptr), lf.c_str()), nullptr);
}

TYPED_TEST(Lines, EnsureLineEnds) {
  using Unit = typename TypeParam::UnitType;
  const auto good = Units<Unit>("a\r\nb"), bad = Units<Unit>("a\nb\rc");
  const auto crlf = Units<Unit>("\r\n");
  TypeParam owner = Owned<TypeParam>("keep");
  TypeParam s = owner;
  const auto* block = s.GetText();
  {
    test::AllocationScope scope;
    EXPECT_EQ(s.EnsureLineEnds(good.c_str(), crlf.c_str()), good.c_str());
    EXPECT_EQ(scope.Allocations(), 0);
  }
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(TextOf(s), "keep");
  const Unit* normal = s.EnsureLineEnds(bad.c_str(), crlf.c_str());
  EXPECT_EQ(normal, s.GetText());
  EXPECT_EQ(TextOf(s), "a\r\nb\r\nc");
  EXPECT_EQ(TextOf(owner), "keep");
}

TYPED_TEST(Lines, LineColumnAndOffset) {
  const TypeParam s = Owned<TypeParam>("a\r\nb");
  int32_t line = -1, column = -1, offset = -1;
  EXPECT_TRUE(s.LineColumnAt(3, line, column));
  EXPECT_EQ(line, 1);
  EXPECT_EQ(column, 0);
  EXPECT_FALSE(s.LineColumnAt(2, line, column));
  EXPECT_EQ(line, 1);
  EXPECT_EQ(column, 0);
  EXPECT_FALSE(s.LineColumnAt(9, line, column));
  EXPECT_EQ(line, 1);
  EXPECT_EQ(column, 1);
  EXPECT_TRUE(Owned<TypeParam>("a\nb").OffsetAt(1, 0, offset));
  EXPECT_EQ(offset, 2);
  EXPECT_FALSE(Owned<TypeParam>("ab\ncd").OffsetAt(0, 5, offset));
  EXPECT_EQ(offset, 2);
  EXPECT_TRUE(Owned<TypeParam>("ab\ncd").OffsetAt(1, 5, offset));
  EXPECT_EQ(offset, 5);
  EXPECT_TRUE(Owned<TypeParam>("ab").OffsetAt(7, 1, offset));
  EXPECT_EQ(offset, 2);
}

// Round trips on random texts with all three line ends.
TYPED_TEST(Lines, RoundTripsMatchAReference) {
  std::mt19937 random(41);
  const char* const pieces[] = {"a", "bc", "\r\n", "\r", "\n", "d"};
  for (int trial = 0; trial < 2000; ++trial) {
    std::string text;
    for (int i = random() % 10; i > 0; --i)
      text.append(pieces[random() % 6]);
    const TypeParam s = Owned<TypeParam>(text);
    // Reference: the line and column of each offset that starts a unit outside a pair.
    int32_t line = 0, start = 0;
    for (int32_t i = 0; i <= static_cast<int32_t>(text.size()); ++i) {
      const bool insidePair =
          i > 0 && text[i - 1] == '\r' && i < static_cast<int32_t>(text.size()) && text[i] == '\n';
      if (!insidePair) {
        int32_t l = -1, c = -1, back = -1;
        ASSERT_TRUE(s.LineColumnAt(i, l, c)) << text << " " << i;
        ASSERT_EQ(l, line);
        ASSERT_EQ(c, i - start);
        ASSERT_TRUE(s.OffsetAt(l, c, back) || back == i);
        ASSERT_EQ(back, i);
      }
      if (i < static_cast<int32_t>(text.size()) &&
          (text[i] == '\n' || (text[i] == '\r' && !(i + 1 < static_cast<int32_t>(text.size()) &&
                                                    text[i + 1] == '\n')))) {
        ++line;
        start = i + 1;
      }
    }
  }
}

template <class S>
class Format : public ::testing::Test {};
TYPED_TEST_SUITE(Format, test::AllStringShapes);

TYPED_TEST(Format, ReplacesTheTextAndShrinksToIt) {
  using Unit = typename TypeParam::UnitType;
  TypeParam owner = Owned<TypeParam>("old");
  TypeParam s = owner;
  const auto format = Units<Unit>("%d-%05.1f-%x");
  // 2.2 lies on no rounding tie, where the C library and the Windows run-time round differently.
  s.Format(format.c_str(), 42, 2.2, 255u);
  EXPECT_EQ(TextOf(s), "42-002.2-ff");
  EXPECT_EQ(s.GetCapacity(), s.GetLength());
  EXPECT_EQ(TextOf(owner), "old");
  ic::Format(s, format.c_str(), -1, 0.5, 16u);
  EXPECT_EQ(TextOf(s), "-1-000.5-10");
  s.Format(static_cast<const Unit*>(nullptr));
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(Format, GrowsInStepsOf1024AndEndsExact) {
  using Unit = typename TypeParam::UnitType;
  const auto format = Units<Unit>(std::string(2499, 'x').append("%d|"));
  TypeParam s;
  {
    test::AllocationScope scope;
    s.Format(format.c_str(), 7);
    // 1024, 2048 and 3072 units tried, then the exact block.
    EXPECT_EQ(scope.Allocations(), 4);
  }
  EXPECT_EQ(s.GetLength(), 2501);
  EXPECT_EQ(s.GetCapacity(), 2501);
  EXPECT_EQ(s.GetText()[2498], Unit('x'));
  EXPECT_EQ(s.GetText()[2499], Unit('7'));
  EXPECT_EQ(s.GetText()[2500], Unit('|'));
}

TEST(FormatWide, TakesSixteenBitTexts) {
  ICStringUniqueW s;
  s.Format(u"%s=%S (%c)", u"\u4e2d", "n", u'\u00e9');
  EXPECT_EQ(std::u16string(s.GetText()), u"\u4e2d=n (\u00e9)");
  ICStringUnique n;
  n.Format("%s=%d", "\u4e2d", 3);
  EXPECT_STREQ(n.GetText(), "\u4e2d=3");
}

}  // namespace
}  // namespace ic
