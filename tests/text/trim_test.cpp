// TrimLeft, TrimRight, Trim, SkipLeft, IsBlank, IsBlankOrNoBreak, Pad and InsertEvery.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>

#include "../string/block_probe.h"
#include "../string/counting_allocator.h"
#include "../string/owned_text.h"

namespace ic {
namespace {

using test::Owned;
using test::TextOf;
using test::Units;

template <class S>
class Trim : public ::testing::Test {};
TYPED_TEST_SUITE(Trim, test::AllStringShapes);

TYPED_TEST(Trim, DefaultBlanksAtBothEnds) {
  TypeParam s = Owned<TypeParam>(" \t\r\nab c \n");
  EXPECT_EQ(TextOf(TypeParam(s).TrimLeft()), "ab c \n");
  EXPECT_EQ(TextOf(TypeParam(s).TrimRight()), " \t\r\nab c");
  s.Trim();
  EXPECT_EQ(TextOf(s), "ab c");
  EXPECT_EQ(s.GetLength(), 4);
  EXPECT_EQ(s.GetText()[4], 0);
}

TYPED_TEST(Trim, BlanksAloneGiveTheEmptyTextInTheSameBlock) {
  TypeParam s = Owned<TypeParam>(" \t \n");
  const auto* block = s.GetText();
  const int32_t capacity = s.GetCapacity();
  s.Trim();
  EXPECT_EQ(s.GetLength(), 0);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(s.GetCapacity(), capacity);
  EXPECT_EQ(s.GetText()[0], 0);
}

TYPED_TEST(Trim, SetsAndSingleCodes) {
  using Unit = typename TypeParam::UnitType;
  const auto set = Units<Unit>("xy");
  EXPECT_EQ(TextOf(Owned<TypeParam>("xyaxby").Trim(set.c_str())), "axb");
  EXPECT_EQ(TextOf(Owned<TypeParam>("--a-").TrimLeft(Unit('-'))), "a-");
  EXPECT_EQ(TextOf(Owned<TypeParam>("--a-").TrimRight(Unit('-'))), "--a");
  EXPECT_EQ(TextOf(Owned<TypeParam>("--a-").Trim(Unit('-'))), "a");
  EXPECT_EQ(TextOf(Owned<TypeParam>("xxx").Trim(set.c_str())), "");
}

TYPED_TEST(Trim, EmptyOrNullSetsChangeNothing) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Owned<TypeParam>("  a  ");
  const Unit empty[1] = {0};
  s.TrimLeft(static_cast<const Unit*>(nullptr));
  s.TrimRight(empty);
  s.Trim(Unit(0));
  EXPECT_EQ(TextOf(s), "  a  ");
}

TYPED_TEST(Trim, NothingToDoLeavesTheBlockUntouched) {
  TypeParam owner = Owned<TypeParam>("abc");
  TypeParam s = owner;
  const auto* block = s.GetText();
  {
    test::AllocationScope scope;
    s.Trim();
    s.TrimLeft(typename TypeParam::UnitType('q'));
    EXPECT_EQ(scope.Allocations(), 0);
    EXPECT_EQ(scope.Frees(), 0);
  }
  EXPECT_EQ(s.GetText(), block);
  if constexpr (TypeParam::IsShared) {
    EXPECT_EQ(test::ShareWord(block), 1);
  }
}

TYPED_TEST(Trim, ChangesDetachFromOtherOwnersAndForeignText) {
  using Unit = typename TypeParam::UnitType;
  TypeParam owner = Owned<TypeParam>("  abc  ");
  TypeParam s = owner;
  s.Trim();
  EXPECT_EQ(TextOf(s), "abc");
  EXPECT_EQ(TextOf(owner), "  abc  ");
  const auto foreign = Units<Unit>(" x ");
  TypeParam view(foreign.c_str());
  view.TrimRight();
  EXPECT_EQ(TextOf(view), " x");
  EXPECT_EQ(foreign, Units<Unit>(" x "));
}

TEST(TrimNarrow, MultiByteSetMembersGoWhole) {
  ICStringUnique s("\u00e9a\u00e9\u20ac\u00e9");
  s.TrimRight("\u00e9\u20ac");
  EXPECT_STREQ(s.GetText(), "\u00e9a");
  s.TrimLeft(U'\u00e9');
  EXPECT_STREQ(s.GetText(), "a");
  // A set holding a two-byte character does not remove a lone byte of it.
  ICStringUnique t("a\xc3");
  t.TrimRight("\u00c3");
  EXPECT_STREQ(t.GetText(), "a\xc3");
}

TEST(TrimNarrow, SkipLeftPointsIntoTheText) {
  const ICStringUnique s("  \u00e9\u00e9b");
  EXPECT_EQ(s.SkipLeft(), s.GetText() + 2);
  EXPECT_EQ(s.SkipLeft(" \u00e9"), s.GetText() + 6);
  EXPECT_EQ(s.SkipLeft(U' '), s.GetText() + 2);
  const ICStringUnique blanks("   ");
  EXPECT_EQ(blanks.SkipLeft(), blanks.GetEnd());
  const ICStringUnique empty;
  EXPECT_EQ(empty.SkipLeft(), empty.GetText());
}

// A random model: trimming with a set against a reference over std::u32string.
TEST(TrimNarrow, MatchesAReferenceOnRandomText) {
  const char32_t alphabet[] = {U'a', U' ', U'\u00e9', U'\u20ac', U'\U0001F600', U'b'};
  std::mt19937 random(8);
  for (int trial = 0; trial < 3000; ++trial) {
    std::u32string text, set;
    for (int i = random() % 12; i > 0; --i)
      text += alphabet[random() % 6];
    for (int i = random() % 4; i > 0; --i)
      set += alphabet[random() % 6];
    size_t first = 0, last = text.size();
    while (first < last && set.find(text[first]) != std::u32string::npos)
      ++first;
    while (last > first && set.find(text[last - 1]) != std::u32string::npos)
      --last;
    ICStringShared s(test::Utf8(text).c_str());
    const ICStringShared other = s;
    s.Trim(test::Utf8(set).c_str());
    ASSERT_EQ(std::string(s.GetText()), test::Utf8(text.substr(first, last - first)));
    ASSERT_EQ(std::string(other.GetText()), test::Utf8(text));
  }
}

TEST(BlankTests, NullEmptyAndNoBreak) {
  EXPECT_TRUE(IsBlank(static_cast<const char*>(nullptr)));
  EXPECT_TRUE(IsBlank(""));
  EXPECT_TRUE(IsBlank(u" \t\r\n"));
  EXPECT_FALSE(IsBlank(" x "));
  EXPECT_FALSE(IsBlank(u"\u00a0"));
  EXPECT_TRUE(IsBlankOrNoBreak(u" \u00a0"));
  EXPECT_TRUE(IsBlankOrNoBreak(static_cast<const char16_t*>(nullptr)));
  EXPECT_TRUE(IsBlankOrNoBreak(" \xa0"));
  EXPECT_FALSE(IsBlankOrNoBreak(" \u00a0"));  // the UTF-8 no-break space is two other bytes
  EXPECT_EQ(std::char_traits<char>::length(DefaultBlanks<char>), 4u);
  EXPECT_EQ(BlanksWithNoBreak<char16_t>[4], u'\u00a0');
}

template <class S>
class Pad : public ::testing::Test {};
TYPED_TEST_SUITE(Pad, test::AllStringShapes);

TYPED_TEST(Pad, AtStartAndAtEnd) {
  using Unit = typename TypeParam::UnitType;
  EXPECT_EQ(TextOf(Owned<TypeParam>("7").Pad(Unit('0'), 3, true, true)), "007");
  EXPECT_EQ(TextOf(Owned<TypeParam>("7").Pad(Unit('.'), 4)), "7...");
  EXPECT_EQ(TextOf(TypeParam().Pad(Unit('x'), 2)), "xx");
  TypeParam s = Owned<TypeParam>("abcd");
  const auto* block = s.GetText();
  s.Pad(Unit('0'), 4);
  s.Pad(Unit('0'), 2, true, true);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(TextOf(s), "abcd");
  TypeParam owner = Owned<TypeParam>("ab");
  TypeParam other = owner;
  other.Pad(Unit('-'), 3, true, true);
  EXPECT_EQ(TextOf(owner), "ab");
  EXPECT_EQ(TextOf(other), "-ab");
}

TEST(PadNarrow, MultiByteCharacters) {
  ICStringUnique s("\u00e9\u00e9");
  s.Pad(U'\u00fc', 4, false, false);  // two code points short: four bytes
  EXPECT_STREQ(s.GetText(), "\u00e9\u00e9\u00fc\u00fc");
  EXPECT_EQ(s.GetLength(), 8);
  s.Pad(U'\u00fc', 20, true, false);  // a two-byte character cannot meet a count of units
  EXPECT_EQ(s.GetLength(), 8);
  s.Pad(U'\u20ac', 5, false, true);
  EXPECT_STREQ(s.GetText(), "\u20ac\u00e9\u00e9\u00fc\u00fc");
  s.Pad(0xD800, 9, false, false);  // a surrogate cannot be encoded
  EXPECT_EQ(s.GetLength(), 11);
}

template <class S>
class InsertEvery : public ::testing::Test {};
TYPED_TEST_SUITE(InsertEvery, test::AllStringShapes);

TYPED_TEST(InsertEvery, GroupsAndTheEnd) {
  using Unit = typename TypeParam::UnitType;
  const auto dash = Units<Unit>("-");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").InsertEvery(2, dash.c_str())), "ab-cd-ef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").InsertEvery(2, dash.c_str(), true)), "ab-cd-ef-");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcde").InsertEvery(2, dash.c_str(), true)), "ab-cd-e-");
  EXPECT_EQ(TextOf(TypeParam().InsertEvery(2, dash.c_str(), true)), "");
  TypeParam owner = Owned<TypeParam>("abc");
  TypeParam s = owner;
  s.InsertEvery(1, Units<Unit>("::").c_str());
  EXPECT_EQ(TextOf(s), "a::b::c");
  EXPECT_EQ(TextOf(owner), "abc");
  const auto* block = owner.GetText();
  owner.InsertEvery(1, static_cast<const Unit*>(nullptr));
  owner.InsertEvery(1, Units<Unit>("").c_str());
  EXPECT_EQ(owner.GetText(), block);
}

TEST(InsertEveryNarrow, CountsCodePoints) {
  ICStringUnique s("\u00e9\u20ac\U0001F600x");
  s.InsertEvery(2, " ");
  EXPECT_STREQ(s.GetText(), "\u00e9\u20ac \U0001F600x");
  ICStringUniqueW w(u"\U0001F600a");
  w.InsertEvery(1, u".");
  EXPECT_EQ(std::u16string(w.GetText()), u"\xd83d.\xde00.a");
}

}  // namespace
}  // namespace ic
