// Find and its relatives, sets, words, nesting, and the text around an occurrence.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

template <class S>
class NarrowSearch : public ::testing::Test {};
template <class S>
class WideSearch : public ::testing::Test {};
using NarrowShapes = ::testing::Types<ICStringUnique, ICStringShared, ICStringView>;
using WideShapes = ::testing::Types<ICStringUniqueW, ICStringSharedW, ICStringViewW>;
TYPED_TEST_SUITE(NarrowSearch, NarrowShapes);
TYPED_TEST_SUITE(WideSearch, WideShapes);

constexpr int32_t End = 0x7FFFFFFF;

TYPED_TEST(NarrowSearch, EmptyNeedleNeverMatches) {
  const TypeParam s("abc");
  EXPECT_EQ(s.Find(""), -1);
  EXPECT_EQ(s.Find(static_cast<const char*>(nullptr)), -1);
  EXPECT_EQ(s.FindPointer(""), nullptr);
  EXPECT_EQ(s.FindLast(""), -1);
  EXPECT_EQ(s.FindNoCase(""), -1);
  EXPECT_EQ(s.FindFirstOf(""), -1);
  EXPECT_EQ(s.FindLastNotOf(nullptr), -1);
}

TYPED_TEST(NarrowSearch, PositionsAtTheEdges) {
  const TypeParam s("abcabc");
  EXPECT_EQ(s.Find("bc", -5), 1);
  EXPECT_EQ(s.Find("bc", 2), 4);
  EXPECT_EQ(s.Find("c", 6), -1);   // the empty end: no needle there
  EXPECT_EQ(s.Find(U'\0', 6), 6);  // but code point 0 finds the terminator
  EXPECT_EQ(s.Find(U'\0'), 6);
  EXPECT_EQ(s.Find("c", 7, true), -1);
  EXPECT_EQ(s.Find("c", End), -1);
}

TYPED_TEST(NarrowSearch, PositionsInCodePointsOrUnits) {
  const TypeParam s("\u00E4b\u00E4b");  // äbäb: ä is two bytes
  EXPECT_EQ(s.Find("b"), 1);
  EXPECT_EQ(s.Find("b", 0, true), 2);
  EXPECT_EQ(s.Find("b", 2), 3);        // from the second ä
  EXPECT_EQ(s.Find("b", 3, true), 5);  // from unit 3, the second ä
  EXPECT_EQ(s.Find(U'\u00E4', 1), 2);
  EXPECT_EQ(s.Find(U'\u00E4', 2, true), 3);
  EXPECT_EQ(s.IndexOf("b"), 1);
  EXPECT_EQ(s.IndexOfPointer("b", 0, true), s.GetText() + 2);
  EXPECT_EQ(s.FindPointer(U'b', 2), s.GetText() + 5);
}

TYPED_TEST(NarrowSearch, FindLastLimits) {
  const TypeParam s("abcabc");
  EXPECT_EQ(s.FindLast("bc", 0), -1);
  EXPECT_EQ(s.FindLast("bc", -3), -1);
  EXPECT_EQ(s.FindLast("bc", End), 4);
  EXPECT_EQ(s.FindLast("bc"), 4);
  EXPECT_EQ(s.FindLast("bc", 3), 1);  // must end by position 3
  EXPECT_EQ(s.FindLast("bc", 2), -1);
  EXPECT_EQ(s.FindLast("abcabcx"), -1);
  EXPECT_EQ(s.FindLast(U'a'), 3);
  EXPECT_EQ(s.FindLast(U'a', 3), 0);
  EXPECT_EQ(s.LastIndexOf("a"), 3);
  EXPECT_EQ(s.LastIndexOfPointer(U'c'), s.GetText() + 5);
  EXPECT_EQ(s.FindLastPointer("ab", 5), s.GetText() + 3);
}

TYPED_TEST(NarrowSearch, FindLastInCodePoints) {
  const TypeParam s("\u00E4x\u00E4x\u00E4");
  EXPECT_EQ(s.FindLast("x"), 3);
  EXPECT_EQ(s.FindLast("x", End, true), 5);
  EXPECT_EQ(s.FindLast("x", 3), 1);  // ends by code point 3
  EXPECT_EQ(s.FindLast(U'\u00E4'), 4);
  EXPECT_EQ(s.FindLast(U'\u00E4', 4), 2);
  EXPECT_EQ(s.FindLast("\u00E4x"), 2);
}

TYPED_TEST(NarrowSearch, FindLastRefusesNeedlesLongerInUnitsThanThePosition) {
  // Two code points of two bytes each: four units, compared with a position in code points.
  const TypeParam s("\u00E4\u00F6abc");
  EXPECT_EQ(s.FindLast("\u00E4\u00F6", 3), -1);
  EXPECT_EQ(s.FindLast("\u00E4\u00F6", 4), 0);
  EXPECT_EQ(s.FindLast("\u00E4\u00F6", 4, true), 0);
}

TYPED_TEST(NarrowSearch, FindNoCase) {
  const TypeParam s("Stra\u00DFe \u0394\u03AD\u03BB\u03C4\u03B1 ABC abc");
  EXPECT_EQ(s.FindNoCase("abc"), 13);
  EXPECT_EQ(s.FindNoCase("abc", 14), 17);
  EXPECT_EQ(s.FindNoCase("\u03B4\u0388\u039B"), 7);  // δΈΛ finds Δέλ
  EXPECT_EQ(s.FindNoCase("STRASSE"), -1);            // simple mappings only
  EXPECT_EQ(s.FindNoCase("stra\u00DF"), 0);
  EXPECT_EQ(s.FindNoCase("ABC", 0, true), 19);
  EXPECT_EQ(s.FindNoCasePointer("c a"), s.GetText() + 21);
}

TYPED_TEST(NarrowSearch, FindNoCaseMapsByUpperCase) {
  // U+0131 (dotless i) uppers to I, so it matches "i" here; StartsWith lowers, and does not.
  const TypeParam s("\u0131x");
  EXPECT_EQ(s.FindNoCase("ix"), 0);
  EXPECT_FALSE(s.StartsWith("ix", true));
}

TYPED_TEST(NarrowSearch, FirstAndLastOf) {
  const TypeParam s("a,\u00E4;b c");
  EXPECT_EQ(s.FindFirstOf(",;"), 1);
  EXPECT_EQ(s.FindFirstOf(";\u00E4"), 2);
  EXPECT_EQ(s.FindFirstOf(";\u00E4", 0, true), 2);
  EXPECT_EQ(s.FindFirstOf(";", 0, true), 4);
  EXPECT_EQ(s.FindFirstOf("xyz"), -1);
  EXPECT_EQ(s.FindFirstNotOf("a,\u00E4"), 3);
  EXPECT_EQ(s.FindFirstNotOf("a,;\u00E4bc "), -1);
  EXPECT_EQ(s.FindLastOf(",;"), 3);
  EXPECT_EQ(s.FindLastOf(",;", 0), -1);
  EXPECT_EQ(s.FindLastOf("a", 1), 0);  // position 1 looks at the first code point only
  EXPECT_EQ(s.FindLastOf(",", 1), -1);
  EXPECT_EQ(s.FindLastNotOf("c "), 4);
  EXPECT_EQ(s.FindLastNotOf("c ", End, true), 5);
  EXPECT_EQ(s.FindFirstOfPointer("b"), s.GetText() + 5);
  EXPECT_EQ(s.FindLastNotOfPointer("a"), s.GetText() + 7);
  EXPECT_EQ(s.FindFirstNotOfPointer("a"), s.GetText() + 1);
  EXPECT_EQ(s.FindLastOfPointer("\u00E4"), s.GetText() + 2);
}

TYPED_TEST(NarrowSearch, FindWord) {
  EXPECT_EQ(TypeParam("concat cat").FindWord("cat"), 7);
  EXPECT_EQ(TypeParam("cat").FindWord("cat"), 0);
  EXPECT_EQ(TypeParam("cat,").FindWord("cat"), 0);
  EXPECT_EQ(TypeParam("cats").FindWord("cat"), -1);
  EXPECT_EQ(TypeParam("cat cat").FindWord("cat", End, false, true), 4);
  EXPECT_EQ(TypeParam("cat cat").FindWord("cat", 0, false, true), -1);
  EXPECT_EQ(TypeParam("cat cats").FindWord("cat", End, false, true), 0);
  EXPECT_EQ(TypeParam("(cat)").FindWord("cat"), 1);
  EXPECT_EQ(TypeParam("cat-cat").FindWord("cat", "-"), 0);
  EXPECT_EQ(TypeParam("xcat-cat").FindWord("cat", "-"), 5);
  EXPECT_EQ(TypeParam("cat").FindWord("cat", ""), -1);
  EXPECT_EQ(TypeParam("cat").FindWord(""), -1);
  // The result is in units even when the position counts code points.
  EXPECT_EQ(TypeParam("\u00E4\u00E4 cat").FindWord("cat", 1), 5);
}

TYPED_TEST(NarrowSearch, FindBalanced) {
  EXPECT_EQ(TypeParam("a(b(c)d)e").FindBalanced("(", ")"), 7);
  EXPECT_EQ(TypeParam("b(c)d)e").FindBalanced("(", ")", false, 0, false, 1), 5);
  EXPECT_EQ(TypeParam("a(b(c)d)e").FindBalanced("(", ")", true), 5);  // flat: no nesting
  EXPECT_EQ(TypeParam("a(b").FindBalanced("(", ")"), -1);
  EXPECT_EQ(TypeParam("x\"y\"z").FindBalanced("\"", "\""), 3);
  EXPECT_EQ(TypeParam("x\"y\\\"z\"w").FindBalanced(U'"', U'"', U'\\'), 6);
  EXPECT_EQ(TypeParam("x\"y\\\"z\"w").FindBalanced(U'"', U'"', U'\0'), 4);
  EXPECT_EQ(TypeParam("<<a>>b>>").FindBalanced("<<", ">>"), 3);
  EXPECT_EQ(TypeParam("\u00E4(\u00F6)").FindBalanced("(", ")"), 3);
  EXPECT_EQ(TypeParam("\u00E4(\u00F6)").FindBalanced("(", ")", false, 0, true), 5);
  EXPECT_EQ(TypeParam("(a)").FindBalanced("(", ")", false, 4), -1);
  EXPECT_EQ(TypeParam("(a)").FindBalanced("", ")"), -1);
}

TYPED_TEST(NarrowSearch, AroundAnOccurrence) {
  const TypeParam s("a=b=c");
  EXPECT_EQ(s.AfterFirstPointer("=", nullptr), s.GetText() + 2);
  EXPECT_EQ(s.AfterFirstPointer(U'=', nullptr), s.GetText() + 2);
  EXPECT_EQ(s.AfterLastPointer("=", nullptr), s.GetText() + 4);
  EXPECT_EQ(s.AfterLastPointer(U'=', nullptr), s.GetText() + 4);
  const char* fallback = "none";
  EXPECT_EQ(s.AfterFirstPointer(":", fallback), fallback);
  EXPECT_EQ(s.AfterFirstPointer(":", nullptr), nullptr);
  EXPECT_EQ(s.AfterLastPointer(U':', fallback), fallback);
  EXPECT_STREQ(s.AfterFirst("=").GetText(), "b=c");
  EXPECT_STREQ(s.AfterLast("=").GetText(), "c");
  EXPECT_STREQ(s.AfterFirst(U'=').GetText(), "b=c");
  EXPECT_STREQ(s.BeforeFirst("=").GetText(), "a");
  EXPECT_STREQ(s.BeforeLast("=").GetText(), "a=b");
  EXPECT_STREQ(s.BeforeLast(U'=').GetText(), "a=b");
  EXPECT_STREQ(s.BeforeFirst(U'a').GetText(), "");
  EXPECT_STREQ(s.BeforeFirst(":", "fb").GetText(), "fb");  // the fallback, not the whole string
  EXPECT_STREQ(s.BeforeFirst(":").GetText(), "");
  EXPECT_STREQ(s.AfterLast(":", "fb").GetText(), "fb");
  EXPECT_TRUE(s.AfterFirst(":").IsEmpty());
}

TEST(AroundAnOccurrenceShapes, ViewsReturnViewsOfTheirOwnTail) {
  const char text[] = "key=value";
  const ICStringView v(text);
  const ICStringView tail = v.AfterFirst("=");
  EXPECT_FALSE(tail.OwnsBlock());
  EXPECT_EQ(tail.GetText(), text + 4);
  EXPECT_EQ(tail.GetLength(), 5);
  const ICStringView head = v.BeforeFirst("=");
  EXPECT_TRUE(head.OwnsBlock());
  EXPECT_STREQ(head.GetText(), "key");

  const ICStringUnique u("key=value");
  const ICStringUnique copy = u.AfterFirst("=");
  EXPECT_NE(copy.GetText(), u.GetText() + 4);
  EXPECT_STREQ(copy.GetText(), "value");
}

TYPED_TEST(NarrowSearch, StartsAndEnds) {
  const TypeParam s("\u00C9cole");
  EXPECT_TRUE(s.StartsWith("\u00C9c"));
  EXPECT_FALSE(s.StartsWith("\u00E9c"));
  EXPECT_TRUE(s.StartsWith("\u00E9C", true));
  EXPECT_FALSE(s.StartsWith(""));
  EXPECT_TRUE(s.StartsWithAt("ole", 2));
  EXPECT_TRUE(s.StartsWithAt("ole", 3, true));
  EXPECT_FALSE(s.StartsWithAt("ole", 3));
  EXPECT_TRUE(s.StartsWithAt("OLE", 2, false, true));
  EXPECT_FALSE(s.StartsWithAt("e", -1));
  EXPECT_FALSE(s.StartsWithAt("e", 6));
  EXPECT_FALSE(s.StartsWithAt("e", 7, true));
  EXPECT_TRUE(s.EndsWith("ole"));
  EXPECT_FALSE(s.EndsWith(""));
  EXPECT_FALSE(s.EndsWith(static_cast<const char*>(nullptr)));
  EXPECT_FALSE(s.EndsWith("x\u00C9cole"));
  EXPECT_TRUE(s.EndsWith("\u00C9cole"));
  EXPECT_TRUE(s.EndsWith(U'e'));
  EXPECT_FALSE(s.EndsWith(U'l'));
  EXPECT_TRUE(s.EndsWithNoCase("\u00E9COLE"));
  EXPECT_FALSE(s.EndsWithNoCase("\u00E9COL"));
  EXPECT_TRUE(TypeParam("a\u00E9").EndsWith(U'\u00E9'));
  EXPECT_FALSE(TypeParam("").EndsWith(U'a'));
}

TYPED_TEST(NarrowSearch, Equals) {
  const TypeParam s("\u00C9t\u00E9");
  EXPECT_TRUE(s.Equals("\u00C9t\u00E9"));
  EXPECT_FALSE(s.Equals("\u00E9t\u00E9"));
  EXPECT_TRUE(s.Equals("\u00E9T\u00C9", false));
  EXPECT_FALSE(s.Equals(nullptr));
  EXPECT_TRUE(TypeParam().Equals(nullptr));
  EXPECT_TRUE(TypeParam().Equals(""));
}

// --- Wide -------------------------------------------------------------------------------------

TYPED_TEST(WideSearch, FindFamily) {
  const TypeParam s(u"abc\U0001F600abc");  // a surrogate pair counts two units
  EXPECT_EQ(s.Find(u"abc", 1), 5);
  EXPECT_EQ(s.Find(u"abc", 1, false), 5);  // lengthInUnits has no effect
  EXPECT_EQ(s.Find(u""), -1);
  EXPECT_EQ(s.Find(u'\0'), 8);
  EXPECT_EQ(s.Find(u'c', 8), -1);
  EXPECT_EQ(s.Find(u'\0', 8), 8);
  EXPECT_EQ(s.Find(u"abc", 9), -1);
  EXPECT_EQ(s.FindLast(u"abc"), 5);
  EXPECT_EQ(s.FindLast(u"abc", 7), 0);
  EXPECT_EQ(s.FindLast(u'a'), 5);
  EXPECT_EQ(s.FindLast(u'a', 0), -1);
  EXPECT_EQ(s.FindFirstOf(u"c\xD83D"), 2);
  EXPECT_EQ(s.FindFirstNotOf(u"abc"), 3);
  EXPECT_EQ(s.FindLastOf(u"\xDE00"), 4);
  EXPECT_EQ(s.FindLastNotOf(u"abc"), 4);
  EXPECT_EQ(s.FindNoCase(u"BC\U0001F600A"), 1);
  EXPECT_EQ(s.FindNoCasePointer(u"CA"), nullptr);
  EXPECT_EQ(s.IndexOf(u"c"), 2);
  EXPECT_EQ(s.LastIndexOf(u"c"), 7);
}

TYPED_TEST(WideSearch, WordsNestingAndAround) {
  EXPECT_EQ(TypeParam(u"concat cat").FindWord(u"cat"), 7);
  EXPECT_EQ(TypeParam(u"cats").FindWord(u"cat"), -1);
  EXPECT_EQ(TypeParam(u"cat cat").FindWord(u"cat", 0x7FFFFFFF, false, true), 4);
  EXPECT_EQ(TypeParam(u"a(b(c)d)e").FindBalanced(u"(", u")"), 7);
  EXPECT_EQ(TypeParam(u"x\"y\\\"z\"w").FindBalanced(u'"', u'"', u'\\'), 6);
  const TypeParam s(u"a=b=c");
  EXPECT_EQ(std::u16string(s.AfterFirst(u"=").GetText()), u"b=c");
  EXPECT_EQ(std::u16string(s.BeforeLast(u'=').GetText()), u"a=b");
  EXPECT_EQ(std::u16string(s.BeforeFirst(u":", u"fb").GetText()), u"fb");
}

TYPED_TEST(WideSearch, Compare) {
  const TypeParam s(u"\u00C9cole");
  // "É" and "é" are one letter by the Unicode mapping, two in the C run-time's default locale.
  EXPECT_EQ(s.Equals(u"\u00E9COLE", false), ic::platform::WideCaseFollowsUnicode);
  EXPECT_TRUE(s.Equals(u"\u00C9COLE", false));
  EXPECT_FALSE(s.Equals(u"\u00E9COLE"));
  EXPECT_FALSE(s.Equals(nullptr));
  EXPECT_EQ(s.StartsWithNoCase(u"\u00E9c"), ic::platform::WideCaseFollowsUnicode);
  EXPECT_TRUE(s.StartsWithNoCase(u"\u00C9C"));
  EXPECT_FALSE(s.StartsWithNoCase(u""));
  EXPECT_TRUE(s.StartsWithAt(u"ole", 2));
  EXPECT_TRUE(s.EndsWith(u"le"));
  EXPECT_TRUE(s.EndsWith(u'e'));
  EXPECT_TRUE(s.EndsWithNoCase(u"\u00C9COLE"));
  EXPECT_FALSE(s.EndsWith(u""));
}

// The single-character form without an escape: a backslash is plain text, nesting counts, and
// it finds what the escape form with 0 and the string form of the same delimiters find.
TYPED_TEST(NarrowSearch, FindBalancedWithoutEscape) {
  EXPECT_EQ(TypeParam("a(b(c)d)e").FindBalanced(U'(', U')'), 7);
  EXPECT_EQ(TypeParam("x\"y\\\"z\"w").FindBalanced(U'"', U'"'),
            4);  // the backslash escapes nothing
  EXPECT_EQ(TypeParam("a(b").FindBalanced(U'(', U')'), -1);
  EXPECT_EQ(TypeParam("\u00E4(\u00F6)").FindBalanced(U'(', U')'), 3);
  EXPECT_EQ(TypeParam("\u00AB\u00AB\u00BB\u00BB").FindBalanced(U'\u00AB', U'\u00BB'), 3);
  EXPECT_EQ(TypeParam("(a)").FindBalanced(U'\0', U')'), -1);
  std::mt19937 rng(5);
  const char* pieces[] = {"(", ")", "a", "\\", "\u00E4"};
  for (int i = 0; i < 500; ++i) {
    std::string text;
    for (int n = static_cast<int>(rng() % 12); n > 0; --n)
      text += pieces[rng() % 5];
    const TypeParam s(text.c_str());
    EXPECT_EQ(s.FindBalanced(U'(', U')'), s.FindBalanced(U'(', U')', U'\0')) << text;
    EXPECT_EQ(s.FindBalanced(U'(', U')'), s.FindBalanced("(", ")")) << text;
  }
}

TYPED_TEST(WideSearch, FindBalancedWithoutEscape) {
  EXPECT_EQ(TypeParam(u"a(b(c)d)e").FindBalanced(u'(', u')'), 7);
  EXPECT_EQ(TypeParam(u"x\"y\\\"z\"w").FindBalanced(u'"', u'"'), 4);
  EXPECT_EQ(TypeParam(u"[[]").FindBalanced(u'[', u']'), -1);
  std::mt19937 rng(6);
  const char16_t* pieces[] = {u"[", u"]", u"a", u"\\", u"\u00E4"};
  for (int i = 0; i < 500; ++i) {
    std::u16string text;
    for (int n = static_cast<int>(rng() % 12); n > 0; --n)
      text += pieces[rng() % 5];
    const TypeParam s(text.c_str());
    EXPECT_EQ(s.FindBalanced(u'[', u']'), s.FindBalanced(u'[', u']', u'\0'));
    EXPECT_EQ(s.FindBalanced(u'[', u']'), s.FindBalanced(u"[", u"]"));
  }
}

}  // namespace
}  // namespace ic
