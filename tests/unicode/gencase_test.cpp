// The case table generator: parsing, classes and variants, the checks, and the program's
// behaviour on bad input (a failure that names the file and line) and on failed checks.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "case_data.h"

namespace ic::gencase {
namespace {

// Fifteen fields with the given simple uppercase and lowercase mappings.
std::string Row(const char* code, const char* upper, const char* lower) {
  return std::string(code) + ";NAME;Lu;0;L;;;;;N;;;" + upper + ";" + lower + ";\n";
}

CaseMappings Parse(const std::string& unicodeData, const std::string& caseFolding) {
  CaseMappings m;
  std::istringstream u(unicodeData), c(caseFolding);
  ParseUnicodeData(u, "UnicodeData.txt", m);
  ParseCaseFolding(c, "CaseFolding.txt", m);
  return m;
}

std::string ErrorOf(const std::string& unicodeData, const std::string& caseFolding) {
  try {
    Parse(unicodeData, caseFolding);
  } catch (const InputError& e) {
    return e.what();
  }
  return "";
}

const std::string SmallFolding = "# comment\n\n0041; C; 0061; # A\n";

TEST(GencaseParse, FieldCountIsCheckedWithFileAndLine) {
  const std::string data = Row("0041", "", "0061") + "0042;B;Lu\n";
  EXPECT_EQ(ErrorOf(data, SmallFolding), "UnicodeData.txt:2: expected 15 fields, found 3");
}

TEST(GencaseParse, BadCodePointAndMapping) {
  EXPECT_EQ(ErrorOf(Row("00G1", "", ""), SmallFolding), "UnicodeData.txt:1: bad code point '00G1'");
  EXPECT_EQ(ErrorOf(Row("0041", "", "61"), SmallFolding),
            "UnicodeData.txt:1: bad simple lowercase mapping '61'");
  EXPECT_EQ(ErrorOf(Row("0041", "110000", ""), SmallFolding),
            "UnicodeData.txt:1: bad simple uppercase mapping '110000'");
}

TEST(GencaseParse, CodePointsMustRise) {
  EXPECT_EQ(ErrorOf(Row("0061", "0041", "") + Row("0041", "", "0061"), SmallFolding),
            "UnicodeData.txt:2: code point U+0041 is out of order");
}

TEST(GencaseParse, CaseFoldingRowsAreChecked) {
  const std::string data = Row("0041", "", "0061");
  EXPECT_EQ(ErrorOf(data, "0041; X; 0061; # A\n"), "CaseFolding.txt:1: bad status 'X'");
  EXPECT_EQ(ErrorOf(data, "#\n0041; C; 0061 0062; # A\n"),
            "CaseFolding.txt:2: bad simple folding '0061 0062'");
  EXPECT_EQ(ErrorOf(data, "0041; C\n"),
            "CaseFolding.txt:1: expected '<code>; <status>; <mapping>;'");
  EXPECT_EQ(ErrorOf(data, "0041; C; 0061; # A\n0041; S; 0062; # A\n"),
            "CaseFolding.txt:2: second simple folding for U+0041");
  EXPECT_EQ(ErrorOf(data, "# nothing but comments\n"), "CaseFolding.txt:1: no data");
}

TEST(GencaseParse, FullAndTurkicFoldingsAreSkipped) {
  const CaseMappings m = Parse(Row("0041", "", "0061"),
                               "00DF; F; 0073 0073; # sharp s\n"
                               "0049; T; 0131; # I\n0041; C; 0061;\n");
  EXPECT_EQ(m.fold.size(), 1u);
  EXPECT_EQ(m.fold.at(0x41), 0x61u);
}

TEST(GencaseBuild, ClassesAndVariants) {
  // K, k and the Kelvin sign; A and a; a lone letter with no partner.
  const std::string data = Row("0041", "", "0061") + Row("004B", "", "006B") +
                           Row("0061", "0041", "") + Row("006B", "004B", "") + Row("00AA", "", "") +
                           Row("212A", "", "006B");
  const std::string folding = "0041; C; 0061;\n004B; C; 006B;\n212A; C; 006B;\n";
  const std::vector<CaseRow> rows = BuildCaseRows(Parse(data, folding));
  ASSERT_EQ(rows.size(), 5u);
  EXPECT_EQ(rows[0], (CaseRow{0x41, 0x41, 0x61, 0x61, 0, 0}));
  EXPECT_EQ(rows[1], (CaseRow{0x4B, 0x4B, 0x6B, 0x6B, 0x212A, 0}));
  EXPECT_EQ(rows[2], (CaseRow{0x61, 0x41, 0x61, 0x61, 0, 0}));
  EXPECT_EQ(rows[3], (CaseRow{0x6B, 0x4B, 0x6B, 0x6B, 0x212A, 0}));
  EXPECT_EQ(rows[4], (CaseRow{0x212A, 0x212A, 0x6B, 0x6B, 0x4B, 0}));
}

TEST(GencaseBuild, MoreThanTwoVariantsFails) {
  const std::string data = Row("0041", "", "0061") + Row("0061", "0041", "");
  const std::string folding = "0041; C; 0061;\n0100; C; 0061;\n0101; C; 0061;\n0102; C; 0061;\n";
  try {
    BuildCaseRows(Parse(data, folding));
    FAIL() << "no error";
  } catch (const DataError& e) {
    EXPECT_STREQ(e.what(), "U+0041 has 3 variants; the table has room for two");
  }
}

TEST(GencaseCheck, SmallTableFailsTheChecks) {
  const std::vector<CaseRow> rows = {{0x41, 0x41, 0x61, 0x61, 0, 0},
                                     {0x61, 0x41, 0x61, 0x61, 0, 0}};
  const std::vector<std::string> failures = CheckCaseRows(rows);
  ASSERT_FALSE(failures.empty());
  EXPECT_EQ(failures[0], "expected 2622 records, got 2");
  EXPECT_NE(std::find(failures.begin(), failures.end(), "last record is U+0061, expected U+1E943"),
            failures.end());
  EXPECT_NE(std::find(failures.begin(), failures.end(), "sample U+0049 has no record"),
            failures.end());
}

class GencaseOnFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    dir = std::filesystem::temp_directory_path() /
          ("gencase_test_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
           "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(dir);
  }
  void TearDown() override { std::filesystem::remove_all(dir); }

  std::string Write(const std::string& name, const std::string& text) {
    const std::filesystem::path p = dir / name;
    std::ofstream(p, std::ios::binary) << text;
    return p.string();
  }
  static std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }
  int Run(const std::string& unicodeData, const std::string& caseFolding, std::string& messages) {
    std::ostringstream err;
    const int rc = RunGencase({"--unicode-data", unicodeData, "--case-folding", caseFolding,
                               "--out", (dir / "case_table.cpp").string()},
                              err);
    messages = err.str();
    return rc;
  }
  bool OutputExists() const { return std::filesystem::exists(dir / "case_table.cpp"); }

  std::filesystem::path dir;
};

TEST_F(GencaseOnFiles, BadInputFailsNamingFileAndLine) {
  const std::string data = Write("UnicodeData.txt", Row("0041", "", "0061") + "0042;B\n");
  const std::string folding = Write("CaseFolding.txt", SmallFolding);
  std::string messages;
  EXPECT_EQ(Run(data, folding, messages), 1);
  EXPECT_EQ(messages, "gencase: error: " + data + ":2: expected 15 fields, found 2\n");
  EXPECT_FALSE(OutputExists());
}

TEST_F(GencaseOnFiles, MissingFileFails) {
  std::string messages;
  EXPECT_EQ(Run((dir / "nope.txt").string(), (dir / "nope2.txt").string(), messages), 1);
  EXPECT_NE(messages.find("nope.txt: cannot open"), std::string::npos);
  EXPECT_FALSE(OutputExists());
}

TEST_F(GencaseOnFiles, FailedChecksFailTheRun) {
  // Well-formed data that gives far too small a table.
  const std::string data =
      Write("UnicodeData.txt", Row("0041", "", "0061") + Row("0061", "0041", ""));
  const std::string folding = Write("CaseFolding.txt", SmallFolding);
  std::string messages;
  EXPECT_EQ(Run(data, folding, messages), 1);
  EXPECT_NE(messages.find("gencase: error: check failed: expected 2622 records, got 2\n"),
            std::string::npos);
  EXPECT_FALSE(OutputExists());
}

TEST_F(GencaseOnFiles, ChangedSampleRowFailsTheRun) {
  // The real data with one mapping changed: U+0130 loses its lowercase mapping, so the class
  // of i and I changes and the samples no longer match.
  std::string unicodeData = ReadAll(IC_UNICODE_DATA_DIR "/UnicodeData.txt");
  const std::string line =
      "0130;LATIN CAPITAL LETTER I WITH DOT ABOVE;Lu;0;L;0049 0307;;;;N;"
      "LATIN CAPITAL LETTER I DOT;;;0069;";
  const size_t at = unicodeData.find(line);
  ASSERT_NE(at, std::string::npos);
  unicodeData.replace(at, line.size(), line.substr(0, line.size() - 5) + ";");
  const std::string data = Write("UnicodeData.txt", unicodeData);
  const std::string folding =
      Write("CaseFolding.txt", ReadAll(IC_UNICODE_DATA_DIR "/CaseFolding.txt"));
  std::string messages;
  EXPECT_EQ(Run(data, folding, messages), 1);
  EXPECT_NE(messages.find("check failed: sample U+0069"), std::string::npos) << messages;
  EXPECT_NE(messages.find("check failed: expected 2622 records, got 2621"), std::string::npos)
      << messages;
}

TEST_F(GencaseOnFiles, RealDataGivesTheTable) {
  std::string messages;
  ASSERT_EQ(
      Run(IC_UNICODE_DATA_DIR "/UnicodeData.txt", IC_UNICODE_DATA_DIR "/CaseFolding.txt", messages),
      0)
      << messages;
  EXPECT_EQ(messages, "");
  const std::string text = ReadAll((dir / "case_table.cpp").string());
  EXPECT_EQ(text.rfind("// Generated by gencase from UnicodeData.txt and CaseFolding.txt "
                       "(Unicode 9.0.0). Do not edit.\n",
                       0),
            0u);
  EXPECT_NE(text.find("    {0x0345, 0x0399, 0x0345, 0x03B9, 0x03B9, 0x1FBE},\n"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(dir / "case_table.cpp.tmp"));
}

TEST(GencaseUsage, UnknownArgumentIsAUsageError) {
  std::ostringstream err;
  EXPECT_EQ(RunGencase({"--bogus"}, err), 2);
  EXPECT_NE(err.str().find("usage:"), std::string::npos);
}

}  // namespace
}  // namespace ic::gencase
