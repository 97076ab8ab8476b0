// HTML text and quoted-printable encoding.
#include <gtest/gtest.h>

#include <string>

#include <ic/markup/html_entities.h>
#include <ic/string/ic_string.h>

#include "../path/path_test_util.h"

namespace ic {
namespace {

using namespace pathtest;

template <class S>
class Html : public ::testing::Test {};
TYPED_TEST_SUITE(Html, AllStrings);

template <class S>
std::string Encoded(const char* text, bool tags) {
  S s = Make<S>(text);
  s.ToHtml(tags);
  const std::string inPlace = Utf8(s);
  EXPECT_EQ(Utf8(S::HtmlEncoded(Make<S>(text).GetText(), tags)), inPlace);
  return inPlace;
}

TYPED_TEST(Html, EntitiesReferencesAndBreaks) {
  EXPECT_EQ(Encoded<TypeParam>("<a href=\"x\">&</a>", false),
            "&lt;a href=&quot;x&quot;&gt;&amp;&lt;/a&gt;");
  EXPECT_EQ(Encoded<TypeParam>("\xC3\x84\xC3\xB6\xC3\x9F\xC3\xBF", false),
            "&Auml;&ouml;&szlig;&yuml;");
  EXPECT_EQ(Encoded<TypeParam>("\t\xC2\xA0\xC3\x97\xC3\xB7\xE4\xB8\xAD", false),
            "&#9;&#160;&#215;&#247;&#20013;");
  EXPECT_EQ(Encoded<TypeParam>("it's  ~", false), "it's  ~");
  EXPECT_EQ(Encoded<TypeParam>("\x7F", false), "&#127;");
  EXPECT_EQ(Encoded<TypeParam>("a\r\nb", true), "a<BR>\r\nb");
  EXPECT_EQ(Encoded<TypeParam>("a\n\rb", true), "a<BR>\r\n<BR>\r\nb");
  EXPECT_EQ(Encoded<TypeParam>("a\rb", false), "a\rb");
  EXPECT_EQ(Encoded<TypeParam>("a\rb\nc\r\nd", true), "a<BR>\r\nb<BR>\r\nc<BR>\r\nd");
  EXPECT_EQ(Encoded<TypeParam>("a\n\r\nb", false), "a\n\r\nb");
  EXPECT_EQ(Encoded<TypeParam>("", true), "");
}

TYPED_TEST(Html, IntoClearsTheTarget) {
  TypeParam out = Make<TypeParam>("old text");
  TypeParam::EncodeHtmlInto(out, nullptr);
  EXPECT_TRUE(out.IsEmpty());
  out = Make<TypeParam>("old");
  TypeParam::EncodeHtmlInto(out, Make<TypeParam>("<").GetText());
  EXPECT_EQ(Utf8(out), "&lt;");
}

TEST(HtmlWidths, AstralCharacters) {
  EXPECT_STREQ(ICStringUnique::HtmlEncoded("\xF0\x9F\x98\x80").GetText(), "&#128512;");
  EXPECT_EQ(Str(ICStringUniqueW::HtmlEncoded(u"\U0001F600")), u"&#55357;&#56832;");
  // Invalid UTF-8 is decoded by its lead byte: 0xC1 0x81 is an overlong 'A'; a lone 0xFF takes
  // the bytes behind it.
  EXPECT_STREQ(ICStringUnique::HtmlEncoded("\xC1\x81").GetText(), "A");
  EXPECT_STREQ(ICStringUnique::HtmlEncoded("\xC3\xA4x").GetText(), "&auml;x");
  EXPECT_STREQ(ICStringUnique::HtmlEncoded("\xC3").GetText(), "&#3;");
}

TEST(HtmlTable, SixtySixNames) {
  int narrow = 0;
  int wide = 0;
  for (int v = 0; v < 256; ++v) {
    narrow += HtmlEntityTable[v] != nullptr;
    wide += HtmlEntityTableW[v] != nullptr;
    if (HtmlEntityTable[v]) {
      std::u16string w;
      for (const char* p = HtmlEntityTable[v]; *p; ++p)
        w += static_cast<char16_t>(*p);
      EXPECT_EQ(w, HtmlEntityTableW[v]);
    }
  }
  EXPECT_EQ(narrow, 66);
  EXPECT_EQ(wide, 66);
  EXPECT_EQ(HtmlEntityTable[0xD7], nullptr);
  EXPECT_EQ(HtmlEntityTable[0xF7], nullptr);
  EXPECT_EQ(HtmlEntityTable['\''], nullptr);
  EXPECT_STREQ(HtmlEntityTable[0xDE], "THORN");
  EXPECT_STREQ(HtmlEntityTable[0xC6], "AElig");
}

std::u16string QP(const std::u16string& text) {
  ICStringUniqueW s(text.c_str(), static_cast<int32_t>(text.size()));
  s.EncodeQuotedPrintable();
  return Str(s);
}

TEST(QuotedPrintable, EdgeCases) {
  EXPECT_EQ(QP(u"a=b"), u"a=3Db");
  EXPECT_EQ(QP(u"a \r\nb"), u"a=20\r\nb");
  EXPECT_EQ(QP(u"a\t\r\nb"), u"a=09\r\nb");
  EXPECT_EQ(QP(u".x"), u"=2Ex");
  EXPECT_EQ(QP(u".x\r\n.y"), u"=2Ex\r\n=2Ey");
  EXPECT_EQ(QP(u"x.y"), u"x.y");
  EXPECT_EQ(QP(u"a\nb"), u"a=0Ab");
  EXPECT_EQ(QP(u"a\rb"), u"a\r\nb");
  EXPECT_EQ(QP(u"\r\n\r\n"), u"\r\n\r\n");
  EXPECT_EQ(QP(u"\r\n\n"), u"\r\n");
  EXPECT_EQ(QP(u""), u"");
  EXPECT_EQ(QP(u"\u4E2D\u00E9\x7F\x01"), u"=4E2D=E9=7F=01");
  EXPECT_EQ(QP(u"end "), u"end ");
}

TEST(QuotedPrintable, SoftBreakAfterThe71stLetter) {
  const std::u16string letters(100, u'a');
  const std::u16string expected = letters.substr(0, 71) + u"=\r\n" + letters.substr(71);
  EXPECT_EQ(QP(letters), expected);
  // An encoded piece is never split: the break follows it whole.
  const std::u16string run(69, u'a');
  const std::u16string mixed = run + u"==b";
  EXPECT_EQ(QP(mixed), run + u"=3D=3D=\r\nb");
}

TEST(QuotedPrintable, BlankWithSoftBreakBeforeLineEnd) {
  // The blank finds the line at 70 and gets a soft break; the carriage return then steps back
  // over the last unit written, the soft break's line feed, and writes the blank encoded.
  const std::u16string letters(70, u'a');
  EXPECT_EQ(QP(letters + u" \r\nb"), letters + u" =\r=20\r\nb");
}

}  // namespace
}  // namespace ic
