// The Unicode table generator: parsing each file, building the rows, the checks, and the
// program's behaviour on bad input (a message naming the file and line, nothing overwritten),
// bad usage and failed checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "table_data.h"

namespace ic::genunicode {
namespace {

template <class Fn>
std::string ErrorOf(Fn fn) {
  try {
    fn();
  } catch (const InputError& e) {
    return e.what();
  } catch (const DataError& e) {
    return e.what();
  }
  return "";
}

std::vector<TableRow> Blocks(const std::string& text) {
  std::istringstream in(text);
  return ParseBlocks(in, "Blocks.txt");
}

std::map<std::string, std::vector<CodeRange>> Categories(const std::string& text) {
  std::istringstream in(text);
  return ParseCategories(in, "UnicodeData.txt");
}

std::string Row(const char* code, const char* name, const char* category) {
  return std::string(code) + ";" + name + ";" + category + ";0;L;;;;;N;;;;;\n";
}

const std::map<std::string, std::string> Aliases = {
    {"Latn", "Latn"}, {"Latin", "Latn"}, {"Grek", "Grek"}, {"Greek", "Grek"}};

TEST(GenunicodeParse, Blocks) {
  const std::vector<TableRow> rows =
      Blocks("# comment\n\n0000..007F; Basic Latin\n0080..00FF; Latin-1 Supplement # x\n");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0], (TableRow{"BasicLatin", {{0, 0x7F}}}));
  EXPECT_EQ(rows[1], (TableRow{"Latin-1Supplement", {{0x80, 0xFF}}}));
  EXPECT_EQ(ErrorOf([] { Blocks("0000..007F; Basic Latin\n0080..00FF\n"); }),
            "Blocks.txt:2: expected '<range>; <value>'");
  EXPECT_EQ(ErrorOf([] { Blocks("00FF..0080; Backwards\n"); }),
            "Blocks.txt:1: bad code point range '00FF..0080'");
  EXPECT_EQ(ErrorOf([] { Blocks("0000..007F; Basic \"Latin\"\n"); }),
            "Blocks.txt:1: bad block name 'Basic \"Latin\"'");
  EXPECT_EQ(ErrorOf([] { Blocks("# nothing\n"); }), "Blocks.txt:0: no data");
}

TEST(GenunicodeParse, CategoriesMergeAndExpandRanges) {
  const auto cats = Categories(Row("0041", "A", "Lu") + Row("0042", "B", "Lu") +
                               Row("0061", "a", "Ll") + Row("3400", "<CJK, First>", "Lo") +
                               Row("4DB5", "<CJK, Last>", "Lo") + Row("4DB6", "X", "Lo"));
  EXPECT_EQ(cats.at("Lu"), (std::vector<CodeRange>{{0x41, 0x42}}));
  EXPECT_EQ(cats.at("Ll"), (std::vector<CodeRange>{{0x61, 0x61}}));
  EXPECT_EQ(cats.at("Lo"), (std::vector<CodeRange>{{0x3400, 0x4DB6}}));
}

TEST(GenunicodeParse, CategoryErrorsNameFileAndLine) {
  EXPECT_EQ(ErrorOf([] { Categories(Row("0041", "A", "Lu") + "0042;B;Lu\n"); }),
            "UnicodeData.txt:2: expected 15 fields, found 3");
  EXPECT_EQ(ErrorOf([] { Categories(Row("0041", "A", "Xx")); }),
            "UnicodeData.txt:1: unknown general category 'Xx'");
  EXPECT_EQ(ErrorOf([] { Categories(Row("0041", "A", "Cn")); }),
            "UnicodeData.txt:1: unknown general category 'Cn'");
  EXPECT_EQ(ErrorOf([] { Categories(Row("0042", "B", "Lu") + Row("0041", "A", "Lu")); }),
            "UnicodeData.txt:2: code point U+0041 is out of order");
  EXPECT_EQ(ErrorOf([] { Categories(Row("3400", "<CJK, First>", "Lo") + Row("3401", "X", "Lo")); }),
            "UnicodeData.txt:2: expected the Last line of a range");
  EXPECT_EQ(ErrorOf([] { Categories(Row("4DB5", "<CJK, Last>", "Lo")); }),
            "UnicodeData.txt:1: Last line without First");
  EXPECT_EQ(ErrorOf([] { Categories(Row("3400", "<CJK, First>", "Lo")); }),
            "UnicodeData.txt:1: range without its Last line");
  EXPECT_EQ(ErrorOf([] {
              Categories(Row("3400", "<CJK, First>", "Lo") + Row("4DB5", "<CJK, Last>", "Lu"));
            }),
            "UnicodeData.txt:2: range ends in another category than it starts");
  EXPECT_EQ(ErrorOf([] { Categories(Row("11FFFF", "A", "Lu")); }),
            "UnicodeData.txt:1: bad code point '11FFFF'");
}

TEST(GenunicodeParse, ScriptsAndExtensions) {
  std::istringstream aliasText(
      "# x\nsc ; Latn ; Latin\nsc ; Copt ; Coptic ; Qaac\ngc ; Lu ; Uppercase_Letter\n");
  const auto aliases = ParseScriptAliases(aliasText, "PropertyValueAliases.txt");
  EXPECT_EQ(aliases.at("Latin"), "Latn");
  EXPECT_EQ(aliases.at("Latn"), "Latn");
  EXPECT_EQ(aliases.at("Qaac"), "Copt");
  EXPECT_EQ(aliases.count("Lu"), 0u);

  std::istringstream scripts("0041..005A ; Latin # L&\n0370 ; Greek\n0061 ; Latn\n");
  const std::vector<NamedRange> s = ParseScripts(scripts, "Scripts.txt", Aliases);
  ASSERT_EQ(s.size(), 3u);
  EXPECT_EQ(s[0], (NamedRange{"Latn", {0x41, 0x5A}}));
  EXPECT_EQ(s[1], (NamedRange{"Grek", {0x370, 0x370}}));
  EXPECT_EQ(s[2], (NamedRange{"Latn", {0x61, 0x61}}));
  std::istringstream badScript("0041 ; Klingon\n");
  EXPECT_EQ(ErrorOf([&] { ParseScripts(badScript, "Scripts.txt", Aliases); }),
            "Scripts.txt:1: unknown script 'Klingon'");

  std::istringstream extensions("0300 ; Grek Latn # Mn\n0100 ; Latn\n");
  const std::vector<NamedRange> e = ParseScriptExtensions(extensions, "SE.txt", Aliases);
  ASSERT_EQ(e.size(), 3u);
  EXPECT_EQ(e[0], (NamedRange{"Grek", {0x300, 0x300}}));
  EXPECT_EQ(e[1], (NamedRange{"Latn", {0x300, 0x300}}));
  EXPECT_EQ(e[2], (NamedRange{"Latn", {0x100, 0x100}}));
  std::istringstream longName("0300 ; Latin\n");
  EXPECT_EQ(ErrorOf([&] { ParseScriptExtensions(longName, "SE.txt", Aliases); }),
            "SE.txt:1: unknown script code 'Latin'");
  std::istringstream noCode("\n0300 ;  \n");
  EXPECT_EQ(ErrorOf([&] { ParseScriptExtensions(noCode, "SE.txt", Aliases); }),
            "SE.txt:2: no script code");
}

TEST(GenunicodeBuild, BlockRowsAreSortedByBytesWithTheOlderNames) {
  const std::vector<TableRow> rows =
      BuildBlockRows({{"Carian", {{0x102A0, 0x102DF}}}, {"CJKCompatibility", {{0x3300, 0x33FF}}}});
  ASSERT_EQ(rows.size(), 2 + OldBlockNames().size());
  EXPECT_EQ(rows[0].name, "CJKCompatibility");
  EXPECT_EQ(rows[1].name, "Carian");
  EXPECT_EQ(ErrorOf([] {
              BuildBlockRows({{"Greek", {{0x370, 0x3FF}}}});
            }),
            "block name 'Greek' appears twice");
}

TEST(GenunicodeBuild, CategoryRowsUnionsAndUnassigned) {
  const std::vector<TableRow> rows = BuildCategoryRows({{"Lu", {{0x41, 0x5A}}},
                                                        {"Ll", {{0x61, 0x7A}}},
                                                        {"Lo", {{0x5B, 0x5B}}},
                                                        {"Nd", {{0x30, 0x39}}}});
  std::vector<std::string> names;
  for (const TableRow& row : rows)
    names.push_back(row.name);
  EXPECT_EQ(names, (std::vector<std::string>{"C", "Cn", "L", "LC", "Ll", "Lo", "Lu", "N", "Nd"}));
  EXPECT_EQ(rows[1].ranges,
            (std::vector<CodeRange>{{0, 0x2F}, {0x3A, 0x40}, {0x5C, 0x60}, {0x7B, 0x10FFFF}}));
  EXPECT_EQ(rows[0].ranges, rows[1].ranges);
  EXPECT_EQ(rows[2].ranges, (std::vector<CodeRange>{{0x41, 0x5B}, {0x61, 0x7A}}));
  EXPECT_EQ(rows[3].ranges, (std::vector<CodeRange>{{0x41, 0x5A}, {0x61, 0x7A}}));
}

TEST(GenunicodeBuild, NamedRowsKeepFileOrderAndTouchingRanges) {
  const std::vector<TableRow> rows = BuildNamedRows({{"Latn", {0x61, 0x7A}},
                                                     {"Adlm", {0x1E900, 0x1E943}},
                                                     {"Latn", {0x41, 0x5A}},
                                                     {"Adlm", {0x1E944, 0x1E94A}}});
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0], (TableRow{"Adlm", {{0x1E900, 0x1E943}, {0x1E944, 0x1E94A}}}));
  EXPECT_EQ(rows[1], (TableRow{"Latn", {{0x61, 0x7A}, {0x41, 0x5A}}}));
}

TEST(GenunicodeCheck, SmallTablesFailTheChecks) {
  UnicodeTables tables;
  tables.blocks = BuildBlockRows({{"BasicLatin", {{0, 0x7F}}}, {"Odd", {{0x100, 0x105}}}});
  tables.categories = BuildCategoryRows({{"Lu", {{0x41, 0x5A}}}});
  tables.scripts = BuildNamedRows({{"Latn", {0x41, 0x5A}}});
  const std::vector<std::string> failures = CheckTables(tables);
  auto has = [&](const std::string& message) {
    return std::find(failures.begin(), failures.end(), message) != failures.end();
  };
  EXPECT_TRUE(has("expected 279 block rows, got 8"));
  EXPECT_TRUE(has("expected 38 category rows, got 5"));
  EXPECT_TRUE(has("expected 5752 category ranges, got 7"));
  EXPECT_TRUE(has("expected 137 script rows, got 1"));
  EXPECT_TRUE(has("expected 59 extension rows, got 0"));
  EXPECT_TRUE(has("expected 579 ranges in script Zyyy, got no row"));
  EXPECT_TRUE(has("category L holds 26 code points, expected 116766"));
  EXPECT_TRUE(has("category M holds 0 code points, expected 2097"));
  EXPECT_TRUE(has("block Odd does not run over whole columns"));
  EXPECT_TRUE(has("block Adlam has no row"));
  EXPECT_TRUE(has("category Zs has no row"));
  EXPECT_FALSE(has("block BasicLatin does not hold the documented ranges"));
  EXPECT_FALSE(has("block Greek is missing or altered"));
}

TEST(GenunicodeCheck, SingleLetterRowsMustCoverEachCodePointOnce) {
  UnicodeTables tables;
  tables.categories = {{"C", {{0, 10}}}, {"L", {{5, 0x10FFFF}}}};
  std::vector<std::string> failures = CheckTables(tables);
  EXPECT_NE(std::find(failures.begin(), failures.end(),
                      "the single-letter categories cover U+0005 2 times"),
            failures.end());
  tables.categories = {{"C", {{0, 10}}}, {"L", {{12, 0x10FFFF}}}};
  failures = CheckTables(tables);
  EXPECT_NE(std::find(failures.begin(), failures.end(),
                      "the single-letter categories cover U+000B 0 times"),
            failures.end());
}

class GenunicodeOnFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    dir = std::filesystem::temp_directory_path() /
          ("genunicode_test_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
           "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(dir);
    for (const char* name : {"Blocks.txt", "UnicodeData.txt", "PropertyValueAliases.txt",
                             "Scripts.txt", "ScriptExtensions.txt"})
      std::filesystem::copy_file(std::filesystem::path(IC_UNICODE_DATA_DIR) / name, dir / name);
  }
  void TearDown() override { std::filesystem::remove_all(dir); }

  std::string Path(const char* name) const { return (dir / name).string(); }
  std::vector<std::string> Args() const {
    return {"--blocks",
            Path("Blocks.txt"),
            "--unicode-data",
            Path("UnicodeData.txt"),
            "--property-value-aliases",
            Path("PropertyValueAliases.txt"),
            "--scripts",
            Path("Scripts.txt"),
            "--script-extensions",
            Path("ScriptExtensions.txt"),
            "--out",
            Path("out.cpp")};
  }
  int Run(const std::vector<std::string>& args, std::string& messages) {
    std::ostringstream err;
    const int rc = RunGenunicode(args, err);
    messages = err.str();
    return rc;
  }
  static std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }
  void Append(const char* name, const std::string& text) {
    std::ofstream(dir / name, std::ios::binary | std::ios::app) << text;
  }

  std::filesystem::path dir;
};

TEST_F(GenunicodeOnFiles, TheUnicodeFilesGiveTheTables) {
  std::string messages;
  ASSERT_EQ(Run(Args(), messages), 0) << messages;
  EXPECT_EQ(messages, "");
  const std::string out = ReadAll(Path("out.cpp"));
  EXPECT_NE(out.find("UnicodeBlockTableSize == 279 && UnicodeBlockRangeCount == 281"),
            std::string::npos);
  EXPECT_NE(out.find("UnicodeCategoryTableSize == 38 && UnicodeCategoryRangeCount == 5752"),
            std::string::npos);
  EXPECT_NE(out.find("{\"Adlam\", 5, 0, 1},"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(Path("out.cpp.tmp")));
}

TEST_F(GenunicodeOnFiles, BadInputNamesFileAndLineAndLeavesTheOutput) {
  std::ofstream(dir / "out.cpp") << "previous";
  Append("Blocks.txt", "E0100..E01EF; Variation \"Selectors\n");
  std::string messages;
  EXPECT_EQ(Run(Args(), messages), 1);
  EXPECT_NE(messages.find("genunicode: error: " + Path("Blocks.txt") + ":"), std::string::npos)
      << messages;
  EXPECT_NE(messages.find(": bad block name"), std::string::npos);
  EXPECT_EQ(ReadAll(Path("out.cpp")), "previous");
}

TEST_F(GenunicodeOnFiles, ExtraDataFailsTheChecks) {
  std::ofstream(dir / "out.cpp") << "previous";
  Append("Scripts.txt", "E0200 ; Latin\n");
  std::string messages;
  EXPECT_EQ(Run(Args(), messages), 1);
  EXPECT_NE(messages.find("genunicode: error: check failed: expected 1922 script ranges, got 1923"),
            std::string::npos)
      << messages;
  EXPECT_EQ(ReadAll(Path("out.cpp")), "previous");
}

TEST_F(GenunicodeOnFiles, UsageAndMissingFiles) {
  std::string messages;
  EXPECT_EQ(Run({"--blocks"}, messages), 2);
  EXPECT_NE(messages.find("unknown or incomplete argument '--blocks'"), std::string::npos);
  EXPECT_EQ(Run({"--frobnicate", "x"}, messages), 2);
  std::vector<std::string> args = Args();
  args.resize(10);
  EXPECT_EQ(Run(args, messages), 2);
  EXPECT_NE(messages.find("missing --out"), std::string::npos);
  args = Args();
  args[1] = Path("NoSuchFile.txt");
  EXPECT_EQ(Run(args, messages), 1);
  EXPECT_EQ(messages, "genunicode: error: " + Path("NoSuchFile.txt") + ": cannot open\n");
  EXPECT_FALSE(std::filesystem::exists(Path("out.cpp")));
}

}  // namespace
}  // namespace ic::genunicode
