// The generated key headers as a host uses them: the key constants name the rows of the built
// module, and Substitute replaces parameters by name in the module's texts.
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <ic/msg/Scintilla.h>
#include <ic/msg/core.h>
#include <ic/msg/cryptography.h>
#include <ic/msg/dispatch.h>
#include <ic/msg/gui.h>
#include <ic/msg/icgui.h>
#include <ic/msg/msg.h>
#include <ic/msg/os.h>
#include <ic/msg/pkg.h>
#include <ic/msg/regex.h>
#include <ic/msg/res.h>
#include <ic/msg/xml.h>
#include <ic/msg/xsdt.h>

#include "loaded_module.h"
#include "module_paths.h"
#include "utf8.h"

namespace {

using ic::resources::MessageKeyInfo;
using ic::resources::Param;
using ic::resources::ResourceStringLibrary;
using ic::resources::Substitute;
using namespace ic::resources::literals;
using ic::test::Utf8;

// What the key says of itself, at compile time.
using GIMatch = decltype(ic::msg::xml::wfc_GIMatch);
static_assert(GIMatch::CatalogueName == "xml");
static_assert(GIMatch::KeyName == "wfc_GIMatch");
static_assert(GIMatch::WideKeyName == u"wfc_GIMatch");
static_assert(GIMatch::ParameterNames.size() == 2);
static_assert(GIMatch::ParameterNames[0] == "etag" && GIMatch::ParameterNames[1] == "stag");
static_assert(decltype(ic::msg::msg::Error)::ParameterNames.empty());
static_assert(decltype(ic::msg::xml::nsc_uniqAttrs)::ParameterNames.size() == 4);
// A parameter name with a point.
static_assert(decltype(ic::msg::xml::wfc_EntityDeclared)::ParameterNames[0] == "entityRef.name");

// The parameter names of a text, each once, in order of first use: the test's own reading of
// the {name} convention, with \{ and \} as literal braces.
std::vector<std::string> ReferenceParameters(const std::string& text) {
  std::vector<std::string> names;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '{' || text[i + 1] == '}')) {
      ++i;
      continue;
    }
    if (text[i] != '{') continue;
    const size_t end = text.find('}', i);
    if (end == std::string::npos) break;
    const std::string name = text.substr(i + 1, end - i - 1);
    bool plain = !name.empty();
    for (char c : name) {
      plain = plain && (isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.');
    }
    if (!plain) continue;
    bool seen = false;
    for (const std::string& known : names)
      seen = seen || known == name;
    if (!seen) names.push_back(name);
    i = end;
  }
  return names;
}

class MessageKeyTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(_module.IsLoaded()) << _module.Error(); }
  ResourceStringLibrary* First() const { return _module.getFirst(); }
  ic::test::LoadedModule _module{ic::test::ModulePath};
};

TEST_F(MessageKeyTest, SubstitutesByNameInTheModulesText) {
  const char16_t* text = ic::resources::FindMessageText(First(), ic::msg::xml::wfc_GIMatch);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(std::u16string(text), u"结束标记名称{etag}与开始标记名称{stag}不匹配。");
  EXPECT_EQ(Substitute(ic::msg::xml::wfc_GIMatch, text, "etag"_param = u"b", "stag"_param = u"a"),
            u"结束标记名称b与开始标记名称a不匹配。");
  // Order of the values does not matter, and both spellings of a name work.
  EXPECT_EQ(Substitute(ic::msg::xml::wfc_GIMatch, text, Param<"stag"> = u"a", Param<"etag"> = u"b"),
            u"结束标记名称b与开始标记名称a不匹配。");
}

TEST_F(MessageKeyTest, Utf8TextAndValues) {
  const std::string text = Utf8(ic::resources::FindMessageText(First(), ic::msg::xml::wfc_GIMatch));
  EXPECT_EQ(Substitute(ic::msg::xml::wfc_GIMatch, std::string_view(text), "etag"_param = "x",
                       "stag"_param = "{stag}"),
            "结束标记名称x与开始标记名称{stag}不匹配。");  // values are inserted as they are
}

TEST_F(MessageKeyTest, MessagesWithoutParametersAndEscapedBraces) {
  const char16_t* hint = ic::resources::FindMessageText(First(), ic::msg::msg::Hint);
  EXPECT_EQ(Substitute(ic::msg::msg::Hint, hint), u"提示");
  const char16_t* brace =
      ic::resources::FindMessageText(First(), ic::msg::regex::expected_opening_curly_bracket);
  EXPECT_EQ(Substitute(ic::msg::regex::expected_opening_curly_bracket, brace),
            u"在此位置需要一个左大括号“{”。");
  const char16_t* lines =
      ic::resources::FindMessageText(First(), ic::msg::icgui::BorderDialog_LineSettings_Tooltip);
  EXPECT_EQ(Substitute(ic::msg::icgui::BorderDialog_LineSettings_Tooltip, lines,
                       "Width"_param = u"2", "Color"_param = u"red", "Style"_param = u"solid"),
            u"宽度：2\n颜色：red\n样式：solid");
}

TEST(MessageKeyRuntimeTest, TextsOfAnotherVersionKeepUnknownParametersAndRepeatValues) {
  // The text at run time may differ from the source the header was made from.
  EXPECT_EQ(Substitute(ic::msg::xml::wfc_GIMatch, u"{etag}/{etag} {other} {stag} \\{etag\\}",
                       "etag"_param = u"E", "stag"_param = u"S"),
            u"E/E {other} S {etag}");
  EXPECT_EQ(Substitute(ic::msg::xml::wfc_GIMatch, static_cast<const char16_t*>(nullptr),
                       "etag"_param = u"E", "stag"_param = u"S"),
            u"");
  EXPECT_EQ(Substitute(ic::msg::msg::Hint, u"{ a } {} {x \\ \\{"), u"{ a } {} {x \\ {");
}

TEST_F(MessageKeyTest, FindMessageTextOfAbsentCatalogueOrChain) {
  EXPECT_EQ(ic::resources::FindMessageText(nullptr, ic::msg::xml::wfc_GIMatch), nullptr);
  const ic::resources::MessageKey<"xml", "no_such_key"> absentKey;
  EXPECT_EQ(ic::resources::FindMessageText(First(), absentKey), nullptr);
  const ic::resources::MessageKey<"nothing", "wfc_GIMatch"> absentCatalogue;
  EXPECT_EQ(ic::resources::FindMessageText(First(), absentCatalogue), nullptr);
}

// Every key of every header is the row of the same place in the built module, with the
// parameters of the module's text.
TEST_F(MessageKeyTest, EveryHeaderMatchesTheModuleRowByRow) {
  const std::map<std::string, std::span<const MessageKeyInfo>> headers = {
      {"Scintilla", ic::msg_index::Scintilla},
      {"core", ic::msg_index::core},
      {"cryptography", ic::msg_index::cryptography},
      {"dispatch", ic::msg_index::dispatch},
      {"gui", ic::msg_index::gui},
      {"icgui", ic::msg_index::icgui},
      {"msg", ic::msg_index::msg},
      {"os", ic::msg_index::os},
      {"pkg", ic::msg_index::pkg},
      {"regex", ic::msg_index::regex},
      {"res", ic::msg_index::res},
      {"xml", ic::msg_index::xml},
      {"xsdt", ic::msg_index::xsdt}};
  size_t rows = 0;
  for (ResourceStringLibrary* record : _module.Chain()) {
    const std::string name = Utf8(record->Name);
    const auto header = headers.find(name);
    ASSERT_NE(header, headers.end()) << name;
    ASSERT_EQ(header->second.size(), static_cast<size_t>(record->Count)) << name;
    for (int32_t row = 0; row < record->Count; ++row) {
      const MessageKeyInfo& info = header->second[static_cast<size_t>(row)];
      SCOPED_TRACE(name + "/" + std::string(info.key));
      EXPECT_EQ(info.catalogue, name);
      EXPECT_EQ(info.key, Utf8(record->GetKey(record, row)));
      const std::vector<std::string> expected =
          ReferenceParameters(Utf8(record->GetText(record, row)));
      EXPECT_EQ(std::vector<std::string>(info.parameters.begin(), info.parameters.end()), expected);
      ++rows;
    }
  }
  EXPECT_EQ(rows, 514u);
}

}  // namespace
