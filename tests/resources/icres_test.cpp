// The host tool icres, run as a user runs it: its output, its exit status and its faults.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "module_paths.h"
#include "process.h"

namespace {

using ic::test::ProcessResult;

ProcessResult Icres(const std::vector<std::string>& arguments) {
  return ic::test::RunProcess(ic::test::IcresPath, arguments);
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < text.size()) {
    const size_t end = text.find('\n', start);
    if (end == std::string::npos) {
      lines.push_back(text.substr(start));
      break;
    }
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

// A fault: status 2, nothing on standard output, one line on standard error.
void ExpectFault(const std::vector<std::string>& arguments, const std::string& mention) {
  std::string shown;
  for (const std::string& argument : arguments)
    shown += " " + argument;
  SCOPED_TRACE("icres" + shown);
  const ProcessResult result = Icres(arguments);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  ASSERT_FALSE(result.err.empty());
  EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;  // exactly one line
  EXPECT_EQ(result.err.rfind("icres: ", 0), 0u) << result.err;
  EXPECT_NE(result.err.find(mention), std::string::npos) << result.err;
}

TEST(IcresTest, ListsTheCataloguesInChainOrder) {
  const ProcessResult result = Icres({"list"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "gui\t16\nxsdt\t15\ndispatch\t6\nregex\t21\ncryptography\t34\nxml\t182\n"
            "Scintilla\t33\nmsg\t10\nicgui\t2\nres\t23\ncore\t31\npkg\t82\nos\t59\n");
}

TEST(IcresTest, ModuleCanBeNamed) {
  const ProcessResult result = Icres({"--module", ic::test::ModulePath, "list"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Lines(result.out).size(), 13u);
  const ProcessResult inlineForm = Icres({std::string("--module=") + ic::test::ModulePath, "list"});
  EXPECT_EQ(inlineForm.out, result.out);
}

TEST(IcresTest, ShowsRowsOnOneLineEach) {
  const ProcessResult result = Icres({"show", "icgui"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "BorderDialog_MultipleLineSettings_Tooltip\t\xE5\xA4\x9A\xE4\xB8\xAA\xE4\xB8\x8D\xE5"
            "\x90\x8C\xE7\x9A\x84\xE8\xA1\x8C\xE8\xAE\xBE\xE7\xBD\xAE\n"
            "BorderDialog_LineSettings_Tooltip\t\xE5\xAE\xBD\xE5\xBA\xA6\xEF\xBC\x9A{Width}\\n"
            "\xE9\xA2\x9C\xE8\x89\xB2\xEF\xBC\x9A{Color}\\n\xE6\xA0\xB7\xE5\xBC\x8F\xEF\xBC\x9A"
            "{Style}\n");
}

TEST(IcresTest, ShowEscapesLikeTheRowListing) {
  const ProcessResult scintilla = Icres({"show", "Scintilla"});
  ASSERT_EQ(scintilla.status, 0) << scintilla.err;
  const std::vector<std::string> lines = Lines(scintilla.out);
  ASSERT_EQ(lines.size(), 33u);
  EXPECT_EQ(lines[0], "ResultWndFindPos\t{index} of {count}");
  EXPECT_NE(lines[32].find("\\r\\n"), std::string::npos) << lines[32];

  const ProcessResult regex = Icres({"show", "regex"});
  ASSERT_EQ(regex.status, 0);
  const std::vector<std::string> regexLines = Lines(regex.out);
  ASSERT_EQ(regexLines.size(), 21u);
  EXPECT_NE(regexLines[2].find("\"\\\\\", \"?\""), std::string::npos) << regexLines[2];
  EXPECT_NE(regexLines[4].find("\\\\{"), std::string::npos) << regexLines[4];
}

TEST(IcresTest, GetsAMessageWithItsParameters) {
  const ProcessResult result = Icres({"get", "xml", "wfc_GIMatch", "etag=b", "stag=a"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  // 结束标记名称b与开始标记名称a不匹配。
  EXPECT_EQ(result.out,
            "\xE7\xBB\x93\xE6\x9D\x9F\xE6\xA0\x87\xE8\xAE\xB0\xE5\x90\x8D\xE7\xA7\xB0"
            "b\xE4\xB8\x8E\xE5\xBC\x80\xE5\xA7\x8B\xE6\xA0\x87\xE8\xAE\xB0\xE5\x90\x8D\xE7\xA7\xB0"
            "a\xE4\xB8\x8D\xE5\x8C\xB9\xE9\x85\x8D\xE3\x80\x82\n");
  // The order of the name=value pairs does not matter.
  EXPECT_EQ(Icres({"get", "xml", "wfc_GIMatch", "stag=a", "etag=b"}).out, result.out);
}

TEST(IcresTest, ValuesAreInsertedAsTheyAre) {
  const ProcessResult result =
      Icres({"get", "core", "encoding_error", "to=UTF-8", "uri={x}", "from=\xE4\xB8\xAD"});
  EXPECT_EQ(result.status, 0) << result.err;
  // 使用UTF-8编码编写文件{x}时出现错误。中编码的输入流包含无法转换为UTF-8的字符。
  EXPECT_EQ(result.out,
            "\xE4\xBD\xBF\xE7\x94\xA8UTF-8\xE7\xBC\x96\xE7\xA0\x81\xE7\xBC\x96\xE5\x86\x99\xE6"
            "\x96\x87\xE4\xBB\xB6{x}\xE6\x97\xB6\xE5\x87\xBA\xE7\x8E\xB0\xE9\x94\x99\xE8\xAF\xAF"
            "\xE3\x80\x82\xE4\xB8\xAD\xE7\xBC\x96\xE7\xA0\x81\xE7\x9A\x84\xE8\xBE\x93\xE5\x85\xA5"
            "\xE6\xB5\x81\xE5\x8C\x85\xE5\x90\xAB\xE6\x97\xA0\xE6\xB3\x95\xE8\xBD\xAC\xE6\x8D\xA2"
            "\xE4\xB8\xBAUTF-8\xE7\x9A\x84\xE5\xAD\x97\xE7\xAC\xA6\xE3\x80\x82\n");
}

TEST(IcresTest, GetResolvesEscapedBraces) {
  const ProcessResult result = Icres({"get", "regex", "expected_opening_curly_bracket"});
  EXPECT_EQ(result.status, 0) << result.err;
  // 在此位置需要一个左大括号“{”。
  EXPECT_EQ(result.out,
            "\xE5\x9C\xA8\xE6\xAD\xA4\xE4\xBD\x8D\xE7\xBD\xAE\xE9\x9C\x80\xE8\xA6\x81\xE4\xB8\x80"
            "\xE4\xB8\xAA\xE5\xB7\xA6\xE5\xA4\xA7\xE6\x8B\xAC\xE5\x8F\xB7\xE2\x80\x9C{\xE2\x80\x9D"
            "\xE3\x80\x82\n");
  const ProcessResult meta = Icres({"get", "regex", "unexpected_metaChar"});
  EXPECT_EQ(meta.status, 0) << meta.err;
  EXPECT_NE(meta.out.find("\"\\\", \"?\", \"*\", \"+\", \"{\", \"}\", \"(\""), std::string::npos)
      << meta.out;
}

TEST(IcresTest, GetKeepsLineBreaksAndBlanks) {
  const ProcessResult line = Icres({"get", "msg", "Line"});
  EXPECT_EQ(line.status, 0) << line.err;
  EXPECT_EQ(line.out, "\xE8\xA1\x8C \n");  // 行 and its blank
  const ProcessResult tooltip = Icres(
      {"get", "icgui", "BorderDialog_LineSettings_Tooltip", "Width=2", "Color=red", "Style=solid"});
  EXPECT_EQ(tooltip.status, 0) << tooltip.err;
  EXPECT_EQ(tooltip.out,
            "\xE5\xAE\xBD\xE5\xBA\xA6\xEF\xBC\x9A"
            "2\n\xE9\xA2\x9C\xE8\x89\xB2\xEF\xBC\x9Ared\n"
            "\xE6\xA0\xB7\xE5\xBC\x8F\xEF\xBC\x9Asolid\n");
  const ProcessResult english =
      Icres({"get", "Scintilla", "ResultWndFindPos", "index=3", "count=7"});
  EXPECT_EQ(english.out, "3 of 7\n");
}

TEST(IcresTest, LanguageIsSetThroughTheModule) {
  EXPECT_EQ(Icres({"language"}).out, "en\n");
  const ProcessResult zh = Icres({"--lang", "ZH", "language"});
  EXPECT_EQ(zh.status, 0) << zh.err;
  EXPECT_EQ(zh.out, "ZH\n");  // the caller's spelling
  EXPECT_EQ(Icres({"--lang=ko", "language"}).out, "ko\n");
  EXPECT_EQ(Icres({"language", "--lang", "de"}).out, "de\n");  // options go anywhere
  // Any command takes it.
  const ProcessResult list = Icres({"--lang", "zh", "list"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(Lines(list.out).size(), 13u);
  EXPECT_EQ(Icres({"--lang", "en", "get", "msg", "Hint"}).out, "\xE6\x8F\x90\xE7\xA4\xBA\n");
}

TEST(IcresTest, PlainDumpHasEveryRow) {
  const ProcessResult result = Icres({"dump"});
  EXPECT_EQ(result.status, 0) << result.err;
  const std::vector<std::string> lines = Lines(result.out);
  ASSERT_EQ(lines.size(), 514u);
  EXPECT_EQ(lines.front(), "gui\t0\tGuiColorAqua\t\xE6\xB0\xB4\xE7\xBB\xBF\xE8\x89\xB2");
  EXPECT_EQ(lines.back().rfind("os\t58\t", 0), 0u) << lines.back();
}

TEST(IcresTest, HelpGoesToStandardOutput) {
  const ProcessResult result = Icres({"--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.rfind("usage: icres", 0), 0u);
  EXPECT_EQ(result.err, "");
}

TEST(IcresTest, UnknownCatalogueOrKey) {
  ExpectFault({"show", "nothing"}, "unknown catalogue \"nothing\"");
  ExpectFault({"show", "scintilla"}, "unknown catalogue \"scintilla\"");  // names keep their case
  ExpectFault({"get", "nothing", "key"}, "unknown catalogue \"nothing\"");
  ExpectFault({"get", "xml", "wfc_gimatch"}, "catalogue \"xml\" has no key \"wfc_gimatch\"");
  ExpectFault({"get", "gui", ""}, "has no key");
}

TEST(IcresTest, ParameterFaults) {
  ExpectFault({"get", "xml", "wfc_GIMatch", "etag=b"}, "parameter {stag} of xml/wfc_GIMatch");
  ExpectFault({"get", "xml", "wfc_GIMatch"}, "has no value");
  ExpectFault({"get", "xml", "wfc_GIMatch", "etag=b", "stag=a", "other=c"},
              "xml/wfc_GIMatch has no parameter {other}");
  ExpectFault({"get", "gui", "GuiColorRed", "x=1"}, "gui/GuiColorRed has no parameter {x}");
  // \{ is no parameter, so it takes no value.
  ExpectFault({"get", "regex", "expected_opening_curly_bracket", "x=1"}, "has no parameter {x}");
  ExpectFault({"get", "xml", "wfc_GIMatch", "etag"}, "expected name=value");
  ExpectFault({"get", "xml", "wfc_GIMatch", "=b"}, "expected name=value");
  ExpectFault({"get", "xml", "wfc_GIMatch", "etag=a", "etag=b"}, "given twice");
}

TEST(IcresTest, ModuleThatDoesNotLoad) {
  ExpectFault({"--module", "/nonexistent/libicres_zh.so", "list"},
              "cannot load module /nonexistent/libicres_zh.so");
  ExpectFault({"--module", ic::test::IcresPath, "list"}, "cannot load module");
  ExpectFault({"--module", IC_TEST_OTHER_LIBRARY_PATH, "list"}, "is not a language module");
}

TEST(IcresTest, BadUsage) {
  ExpectFault({}, "no command given");
  ExpectFault({"frobnicate"}, "unknown command \"frobnicate\"");
  ExpectFault({"show"}, "show takes one catalogue name");
  ExpectFault({"show", "gui", "msg"}, "show takes one catalogue name");
  ExpectFault({"get", "gui"}, "get takes a catalogue name and a key");
  ExpectFault({"list", "extra"}, "list takes no arguments");
  ExpectFault({"--json", "list"}, "--json goes with dump and check only");
  ExpectFault({"--verbose", "list"}, "unknown option --verbose");
  ExpectFault({"list", "--module"}, "--module needs a value");
  ExpectFault({"--lang", "", "list"}, "--lang needs a language code");
  ExpectFault({"--json=yes", "dump"}, "--json takes no value");
}

}  // namespace

namespace {

// Sets an environment variable for the programs started while it lives.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const std::string& value) : _name(name) {
    setenv(name, value.c_str(), 1);
  }
  ~ScopedEnvironment() { unsetenv(_name); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  const char* _name;
};

TEST(IcresModuleChoiceTest, BuildTreeModuleWithoutOptionOrEnvironment) {
  const ProcessResult result = Icres({"module"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, std::string(ic::test::ModulePath) + "\tbuild tree\n");
}

TEST(IcresModuleChoiceTest, EnvironmentNamesTheModule) {
  const ScopedEnvironment environment("ICRES_MODULE", IC_TEST_OTHER_LIBRARY_PATH);
  const ProcessResult chosen = Icres({"module"});
  EXPECT_EQ(chosen.status, 0) << chosen.err;
  EXPECT_EQ(chosen.out, std::string(IC_TEST_OTHER_LIBRARY_PATH) + "\tICRES_MODULE\n");
  ExpectFault({"list"}, "is not a language module");
  // --module still wins over the environment.
  const ProcessResult listed = Icres({"--module", ic::test::ModulePath, "list"});
  EXPECT_EQ(listed.status, 0) << listed.err;
  EXPECT_EQ(Lines(listed.out).size(), 13u);
}

TEST(IcresModuleChoiceTest, ModuleTakesNoArguments) {
  ExpectFault({"module", "extra"}, "module takes no arguments");
}

}  // namespace
