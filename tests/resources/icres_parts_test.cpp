// The parts of icres that need no module: substitution, UTF conversion and output escaping.
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "output_format.h"
#include "substitute.h"
#include "utf.h"

namespace {

using ic::icres::EscapeRowText;
using ic::icres::FromUtf8;
using ic::icres::JsonString;
using ic::icres::ListParameters;
using ic::icres::Substitute;
using ic::icres::SubstitutionFault;
using ic::icres::ToUtf8;

TEST(IcresSubstituteTest, ListsParametersOnceInOrder) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(ListParameters("{b} and {a} and {b}"), (Names{"b", "a"}));
  EXPECT_EQ(ListParameters("{entityRef.entity} {duplicate_1} {x9}"),
            (Names{"entityRef.entity", "duplicate_1", "x9"}));
  EXPECT_EQ(ListParameters("none"), Names{});
  EXPECT_EQ(ListParameters(""), Names{});
}

TEST(IcresSubstituteTest, EscapedAndStrayBracesAreNoParameters) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(ListParameters("\\{a\\}"), Names{});
  EXPECT_EQ(ListParameters("\\{{a}\\}"), Names{"a"});
  EXPECT_EQ(ListParameters("{} { a} {a b} {a"), Names{});
  EXPECT_EQ(ListParameters("{{a}}"), Names{"a"});
  EXPECT_EQ(ListParameters("{-x}"), Names{});
}

TEST(IcresSubstituteTest, SubstitutesEveryOccurrence) {
  const auto result = Substitute("{a}-{b}-{a}", {{"a", "1"}, {"b", "2"}});
  EXPECT_EQ(result.fault, SubstitutionFault::None);
  EXPECT_EQ(result.text, "1-2-1");
}

TEST(IcresSubstituteTest, ResolvesEscapedBracesOnly) {
  EXPECT_EQ(Substitute("\\{x\\} {x}", {{"x", "v"}}).text, "{x} v");
  EXPECT_EQ(Substitute("a \\ b \\n {", {}).text, "a \\ b \\n {");  // other backslashes stay
  EXPECT_EQ(Substitute("\"\\\", \"\\{\"", {}).text, "\"\\\", \"{\"");
  EXPECT_EQ(Substitute("end\\", {}).text, "end\\");
}

TEST(IcresSubstituteTest, ValuesAreNotScannedAgain) {
  EXPECT_EQ(Substitute("{a}{b}", {{"a", "{b}"}, {"b", "\\{"}}).text, "{b}\\{");
}

TEST(IcresSubstituteTest, ReportsFaults) {
  const auto unknown = Substitute("{a}", {{"a", "1"}, {"z", "2"}});
  EXPECT_EQ(unknown.fault, SubstitutionFault::UnknownParameter);
  EXPECT_EQ(unknown.name, "z");
  EXPECT_EQ(unknown.text, "");
  const auto missing = Substitute("{a} {b}", {{"a", "1"}});
  EXPECT_EQ(missing.fault, SubstitutionFault::MissingValue);
  EXPECT_EQ(missing.name, "b");
  const auto escaped = Substitute("\\{a\\}", {{"a", "1"}});
  EXPECT_EQ(escaped.fault, SubstitutionFault::UnknownParameter);
  EXPECT_EQ(Substitute("{a}", {{"a", ""}}).fault, SubstitutionFault::None);  // empty is a value
}

TEST(IcresUtfTest, RoundTrip) {
  const std::string text = "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80";  // a é 中 😀
  const std::u16string wide = FromUtf8(text);
  EXPECT_EQ(wide, u"a\u00E9\u4E2D\U0001F600");
  EXPECT_EQ(ToUtf8(wide), text);
  EXPECT_EQ(ToUtf8(static_cast<const char16_t*>(nullptr)), "");
}

TEST(IcresUtfTest, IllFormedInput) {
  EXPECT_EQ(ToUtf8(std::u16string(u"x\xD800y")), "x\xEF\xBF\xBDy");
  EXPECT_EQ(ToUtf8(std::u16string(u"\xDC00")), "\xEF\xBF\xBD");
  EXPECT_EQ(FromUtf8("\x80"), u"\uFFFD");
  EXPECT_EQ(FromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD");                      // overlong
  EXPECT_EQ(FromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");            // a surrogate
  EXPECT_EQ(FromUtf8("\xE4\xB8"), u"\uFFFD\uFFFD");                      // cut short
  EXPECT_EQ(FromUtf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");  // above U+10FFFF
}

TEST(IcresOutputFormatTest, RowEscapes) {
  EXPECT_EQ(EscapeRowText("a\\b\nc\r\nd\te"), "a\\\\b\\nc\\r\\nd\\te");
  EXPECT_EQ(EscapeRowText("\xE4\xB8\xAD{x}"), "\xE4\xB8\xAD{x}");
}

TEST(IcresOutputFormatTest, JsonStrings) {
  EXPECT_EQ(JsonString(""), "\"\"");
  EXPECT_EQ(JsonString("say \"hi\" \\ now"), "\"say \\\"hi\\\" \\\\ now\"");
  EXPECT_EQ(JsonString("\n\r\t\b\f"), "\"\\n\\r\\t\\b\\f\"");
  EXPECT_EQ(JsonString(std::string("\x01\x1F\x00", 3)), "\"\\u0001\\u001f\\u0000\"");
  EXPECT_EQ(JsonString("\xE4\xB8\xAD/\x7F"), "\"\xE4\xB8\xAD/\x7F\"");
}

}  // namespace
