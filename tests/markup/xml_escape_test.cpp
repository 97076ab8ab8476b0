// XML escaping and unescaping on every shape in both widths.
#include <gtest/gtest.h>

#include <string>

#include <ic/string/ic_string.h>

#include "../path/path_test_util.h"
#include "../string/counting_allocator.h"

namespace ic {
namespace {

using namespace pathtest;

template <class S>
class XmlEscape : public ::testing::Test {};
TYPED_TEST_SUITE(XmlEscape, AllStrings);

template <class S>
std::string Escaped(const char* text, bool quotes = false, const char* also = nullptr) {
  S s = Make<S>(text);
  const S set = Make<S>(also ? also : "");
  s.EscapeXml(quotes, also ? set.GetText() : nullptr);
  const std::string inPlace = Utf8(s);
  EXPECT_EQ(Utf8(S::EscapedXml(Make<S>(text).GetText(), quotes, also ? set.GetText() : nullptr)),
            inPlace);
  return inPlace;
}

template <class S>
std::string Unescaped(const char* text, bool refs = true, bool entities = true) {
  S s = Make<S>(text);
  s.UnescapeXml(refs, entities);
  return Utf8(s);
}

TYPED_TEST(XmlEscape, Replacements) {
  EXPECT_EQ(Escaped<TypeParam>("a<b"), "a&lt;b");
  EXPECT_EQ(Escaped<TypeParam>("<&>"), "&lt;&amp;&gt;");
  EXPECT_EQ(Escaped<TypeParam>("it's \"x\""), "it's \"x\"");
  EXPECT_EQ(Escaped<TypeParam>("it's \"x\"", true), "it&apos;s &quot;x&quot;");
  EXPECT_EQ(Escaped<TypeParam>("caf\xC3\xA9", false, "\xC3\xA9"), "caf&#233;");
  EXPECT_EQ(Escaped<TypeParam>("a\tb\rc\nd"), "a\tb\rc\nd");
  EXPECT_EQ(Escaped<TypeParam>("a\x01"
                               "b\x0B"),
            "a&#1;b&#11;");
  EXPECT_EQ(Escaped<TypeParam>("\x7F\xC2\x85"), "\x7F\xC2\x85");
  EXPECT_EQ(Escaped<TypeParam>("\x7F\xC2\x85", false, "\x7F\xC2\x85"), "&#127;&#133;");
  // Quotes listed in alsoEscape stay when quotes are not escaped.
  EXPECT_EQ(Escaped<TypeParam>("'x\"", false, "'\"x"), "'&#120;\"");
  EXPECT_EQ(Escaped<TypeParam>(""), "");
  EXPECT_EQ(Escaped<TypeParam>("\xE4\xB8\xAD<"), "\xE4\xB8\xAD&lt;");
}

TYPED_TEST(XmlEscape, IntoAppendsAndReportsWhetherItWrote) {
  TypeParam out = Make<TypeParam>("head:");
  EXPECT_TRUE(TypeParam::EscapeXmlInto(Make<TypeParam>("a<b").GetText(), out));
  EXPECT_EQ(Utf8(out), "head:a&lt;b");
  const auto* before = out.GetText();
  EXPECT_FALSE(TypeParam::EscapeXmlInto(Make<TypeParam>("plain").GetText(), out));
  EXPECT_FALSE(TypeParam::EscapeXmlInto(Make<TypeParam>("").GetText(), out));
  EXPECT_FALSE(TypeParam::EscapeXmlInto(nullptr, out));
  EXPECT_EQ(out.GetText(), before);
  EXPECT_EQ(Utf8(out), "head:a&lt;b");
}

TYPED_TEST(XmlEscape, GrowthFloorIs1024Units) {
  TypeParam out;
  EXPECT_TRUE(TypeParam::EscapeXmlInto(Make<TypeParam>("<").GetText(), out));
  EXPECT_EQ(out.GetCapacity(), 1024);
  EXPECT_EQ(out.GetLength(), 4);
}

TYPED_TEST(XmlEscape, Unescape) {
  EXPECT_EQ(Unescaped<TypeParam>("&#65;&#x41;&lt;"), "AA<");
  EXPECT_EQ(Unescaped<TypeParam>("&#0;"), "?");
  EXPECT_EQ(Unescaped<TypeParam>("&#;"), "&#;");
  EXPECT_EQ(Unescaped<TypeParam>("&#x;"), "&#x;");
  EXPECT_EQ(Unescaped<TypeParam>("&#X41;"), "&#X41;");
  EXPECT_EQ(Unescaped<TypeParam>("&nbsp;"), "&nbsp;");
  EXPECT_EQ(Unescaped<TypeParam>("&amp"), "&amp");
  EXPECT_EQ(Unescaped<TypeParam>("&amp;lt;"), "&lt;");
  EXPECT_EQ(Unescaped<TypeParam>("&gt;&apos;&quot;&amp;"), ">'\"&");
  EXPECT_EQ(Unescaped<TypeParam>("&LT;"), "&LT;");
  EXPECT_EQ(Unescaped<TypeParam>("&#65", true, true), "&#65");
  EXPECT_EQ(Unescaped<TypeParam>("&#6a;"), "&#6a;");
  EXPECT_EQ(Unescaped<TypeParam>("&#xe9;"), "\xC3\xA9");
  EXPECT_EQ(Unescaped<TypeParam>("&#65;", false, true), "&#65;");
  EXPECT_EQ(Unescaped<TypeParam>("&lt;", true, false), "&lt;");
  TypeParam refs = Make<TypeParam>("&#65;&lt;");
  refs.UnescapeXmlCharRefs();
  EXPECT_EQ(Utf8(refs), "A&lt;");
  TypeParam entities = Make<TypeParam>("&#65;&lt;");
  entities.UnescapeXmlEntities();
  EXPECT_EQ(Utf8(entities), "&#65;<");
  EXPECT_EQ(Unescaped<TypeParam>("no ampersand"), "no ampersand");
}

TEST(XmlEscapeWidths, AstralReferenceIsCutInWideAndWholeInNarrow) {
  ICStringUniqueW wide(u"&#x1F600;");
  wide.UnescapeXml();
  EXPECT_EQ(Str(wide), std::u16string(1, u'\uF600'));
  ICStringUnique narrow("&#x1F600;");
  narrow.UnescapeXml();
  EXPECT_EQ(Str(narrow), "\xF0\x9F\x98\x80");
  ICStringUnique surrogate("a&#xD800;b&#x110000;c");
  surrogate.UnescapeXml();
  EXPECT_EQ(Str(surrogate), "abc");
  // Values wrap: 2^32 + 65 in 32 bits narrow, 65536 + 65 in 16 bits wide.
  ICStringUnique wrapped("&#4294967361;");
  wrapped.UnescapeXml();
  EXPECT_EQ(Str(wrapped), "A");
  ICStringUniqueW wrappedWide(u"&#65601;");
  wrappedWide.UnescapeXml();
  EXPECT_EQ(Str(wrappedWide), u"A");
}

TEST(XmlEscapeWidths, WideEscapesUnitsAndNarrowCodePoints) {
  ICStringUniqueW wide(u"<\U0001F600");
  const char16_t also[] = {0xD83D, 0};
  wide.EscapeXml(false, also);
  EXPECT_EQ(Str(wide), std::u16string(u"&lt;&#55357;") + char16_t(0xDE00));
  ICStringUnique narrow("<\xF0\x9F\x98\x80");
  narrow.EscapeXml(false, "\xF0\x9F\x98\x80");
  EXPECT_EQ(Str(narrow), "&lt;&#128512;");
}

TEST(XmlEscapeWidths, NarrowDropsUnencodableCodePointsOnceStarted) {
  // "\xED\xA0\x80" decodes to the surrogate U+D800.
  ICStringUnique before("\xED\xA0\x80<");
  before.EscapeXml();
  EXPECT_EQ(Str(before), "\xED\xA0\x80&lt;");
  ICStringUnique after("<\xED\xA0\x80");
  after.EscapeXml();
  EXPECT_EQ(Str(after), "&lt;");
}

TEST(XmlEscapeShapes, NothingToEscapeAllocatesNothingAndKeepsTheBlock) {
  ICStringUnique unique("plain text, nothing to do");
  ICStringShared shared("plain text, nothing to do");
  ICStringShared other = shared;
  ICStringView view("plain text, nothing to do");
  ICStringUniqueW wide(u"plain text, nothing to do");
  const char* u = unique.GetText();
  const char* v = view.GetText();
  {
    test::AllocationScope scope;
    unique.EscapeXml(true);
    shared.EscapeXml(true);
    view.EscapeXml(true);
    wide.EscapeXml(true);
    ICStringUnique out;
    EXPECT_FALSE(ICStringUnique::EscapeXmlInto("plain", out, true));
    EXPECT_EQ(scope.Allocations(), 0);
    EXPECT_EQ(scope.Frees(), 0);
  }
  EXPECT_EQ(unique.GetText(), u);
  EXPECT_EQ(shared.GetText(), other.GetText());
  EXPECT_EQ(view.GetText(), v);
  EXPECT_FALSE(view.OwnsBlock());
}

TEST(XmlEscapeShapes, EscapeLeavesOtherOwnersAlone) {
  ICStringShared a("x<y");
  ICStringShared b = a;
  b.EscapeXml();
  EXPECT_STREQ(a.GetText(), "x<y");
  EXPECT_STREQ(b.GetText(), "x&lt;y");
  char foreign[] = "p&amp;q";
  ICStringView v(foreign);
  v.UnescapeXml();
  EXPECT_STREQ(v.GetText(), "p&q");
  EXPECT_STREQ(foreign, "p&amp;q");
}

}  // namespace
}  // namespace ic
