// The resource string compiler over malformed catalogue sources (data/bad, and two generated
// here: a 10 MB source and a deeply nested one). For each: a non-zero exit within a time limit,
// every fault that the source holds reported as "FILE(LINE): error: ..." in the one run, every
// line of standard error in that form, and no output file left behind.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "process.h"

namespace {

namespace fs = std::filesystem;

constexpr int kTimeLimitSeconds = 60;

struct Expected {
  long line;
  const char* text;  // a part of the message
};

struct Case {
  const char* file;
  std::vector<Expected> errors;
};

// The faults of each source in data/bad, by line.
const std::vector<Case> kCases = {
    {"truncated.xml",
     {{4, "unmatched opening brace '{' at position 4"}, {6, "XML error: no element found"}}},
    {"utf16.xml",
     {{1, "the file is in UTF-16"},
      {1, "names the encoding 'UTF-16'"},
      {5, "resource string 'a' of module 'm' is already defined at"}}},
    {"latin1_declared.xml",
     {{1, "names the encoding 'ISO-8859-1'"}, {5, "invalid resource name '1b'"}}},
    {"latin1_undeclared.xml",
     {{3, "unknown attribute 'bad' on a 'module' element"}, {4, "XML error: not well-formed"}}},
    {"bom.xml", {{1, "begins with a byte-order mark"}, {4, "contains a raw line break"}}},
    {"invalid_utf8.xml",
     {{4, "unmatched opening brace '{' at position 0"}, {5, "XML error: not well-formed"}}},
    {"unknown.xml",
     {{2, "unknown attribute 'lang' on the 'resources' element"},
      {3, "unknown attribute 'owner' on a 'module' element"},
      {4, "unknown meta attribute 'size'"},
      {5, "unexpected element 'comment' in module 'm'"},
      {6, "unexpected element 'b' inside resource string 'b'"},
      {8, "unexpected element 'other' in 'resources'"}}},
    {"duplicate_keys.xml",
     {{5, "resource string 'a' of module 'm' is already defined at"},
      {7, "resource string 'a' of module 'm' is already defined at"},
      {9, "the module 'm' is already defined at"}}},
    {"bad_keys.xml",
     {{4, "invalid resource name '1abc'"},
      {5, "invalid resource name 'a-b'"},
      {6, "invalid resource name ''"},
      {7, "missing 'name' attribute in a 'string' element"}}},
    {"braces.xml",
     {{4, "unmatched opening brace '{' at position 5"},
      {5, "closing brace '}' without an opening brace at position 7"},
      {6, "nested opening brace '{' at position 9"},
      {6, "closing brace '}' without an opening brace at position 12"}}},
    {"undeclared_param.xml",
     {{4, "parameter {file} at position 6"},
      {6, "parameter {line} at position 0"},
      {6, "parameter {column} at position 11"}}},
    {"empty.xml", {{1, "XML error: no element found"}}},
    // A device that never ends is no file to read.
    {"include_device.xml",
     {{2, "cannot open the included file '/dev/zero'"},
      {3, "unmatched opening brace '{' at position 0"}}},
    {"wrong_root.xml", {{2, "lacks the 'resources' root element (found 'catalogue')"}}},
};

// True for a line of the form "FILE(LINE): error: TEXT" or "FILE(LINE): warning: TEXT" with a
// non-empty file, a decimal line number and non-empty text.
bool IsDiagnostic(std::string_view line) {
  for (const std::string_view kind : {"): error: ", "): warning: "}) {
    const size_t close = line.find(kind);
    if (close == std::string_view::npos || close + kind.size() == line.size()) continue;
    const size_t open = line.rfind('(', close);
    if (open == std::string_view::npos || open == 0 || open + 1 == close) continue;
    const std::string_view number = line.substr(open + 1, close - open - 1);
    if (number.find_first_not_of("0123456789") == std::string_view::npos) return true;
  }
  return false;
}

class BadSourcesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "rescomp_bad_XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    dir_ = pattern;
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }

  // Compiles module m of `source` into the work folder; checks the exit, the time, the form of
  // every line of standard error and that nothing was written. Returns standard error.
  std::string CompileFails(const fs::path& source) {
    const ic::test::ProcessResult run = ic::test::RunProcess(
        IC_RESCOMP_PATH,
        {"--module", "m", "--out-cpp", (dir_ / "out.cpp").string(), "--out-h",
         (dir_ / "out.h").string(), "--out-keys", (dir_ / "keys.h").string(), source.string()},
        kTimeLimitSeconds);
    EXPECT_FALSE(run.timedOut) << source;
    EXPECT_EQ(run.status, 1) << source << "\n" << run.err;
    EXPECT_TRUE(run.out.empty()) << run.out;
    std::istringstream lines(run.err);
    for (std::string line; std::getline(lines, line);)
      EXPECT_TRUE(IsDiagnostic(line)) << "not a diagnostic: " << line;
    EXPECT_TRUE(fs::is_empty(dir_)) << "the compiler left files in " << dir_;
    return run.err;
  }

  fs::path dir_;
};

// The error lines of `err` for `file` at `line` that contain `text`.
int Count(const std::string& err, const fs::path& file, long line, const std::string& text) {
  const std::string head = file.string() + "(" + std::to_string(line) + "): error: ";
  int count = 0;
  std::istringstream lines(err);
  for (std::string l; std::getline(lines, l);)
    if (l.compare(0, head.size(), head) == 0 && l.find(text) != std::string::npos) ++count;
  return count;
}

int ErrorLines(const std::string& err) {
  int count = 0;
  std::istringstream lines(err);
  for (std::string l; std::getline(lines, l);)
    if (l.find("): error: ") != std::string::npos) ++count;
  return count;
}

TEST_F(BadSourcesTest, EachSourceReportsAllItsFaults) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.file);
    const fs::path source = fs::path(IC_BAD_SOURCES_DIR) / c.file;
    ASSERT_TRUE(fs::exists(source));
    const std::string err = CompileFails(source);
    for (const Expected& e : c.errors)
      EXPECT_GE(Count(err, source, e.line, e.text), 1)
          << "line " << e.line << ": " << e.text << "\n"
          << err;
    EXPECT_EQ(ErrorLines(err), static_cast<int>(c.errors.size())) << err;
  }
}

// A 10 MB source of 100,000 strings with a fault near the start, one in the middle and one at
// the end: all three are reported, at their lines, within the time limit.
TEST_F(BadSourcesTest, TenMegabyteSource) {
  const fs::path source = dir_.parent_path() / (dir_.filename().string() + "_large.xml");
  {
    std::ofstream out(source, std::ios::binary);
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<resources>\n<module name=\"m\">\n";
    const std::string filler(80, 'x');
    for (int i = 0; i < 100000; ++i) {
      out << "<string name=\"k" << i << "\">" << filler << (i == 10 ? " {" : "")
          << (i == 50000 ? " }" : "") << "</string>\n";
    }
    out << "<string name=\"k7\">again</string>\n</module>\n</resources>\n";
  }
  ASSERT_GE(fs::file_size(source), 10u * 1000 * 1000);
  const std::string err = CompileFails(source);
  fs::remove(source);
  EXPECT_EQ(Count(err, source, 14, "unmatched opening brace"), 1) << err;
  EXPECT_EQ(Count(err, source, 50004, "without an opening brace"), 1) << err;
  EXPECT_EQ(Count(err, source, 100004, "'k7' of module 'm' is already defined at"), 1) << err;
  EXPECT_EQ(ErrorLines(err), 3) << err;
}

// 100,000 nested elements inside a module: reported once, at the outermost, without running
// out of stack.
TEST_F(BadSourcesTest, DeepNesting) {
  const fs::path source = dir_.parent_path() / (dir_.filename().string() + "_deep.xml");
  {
    std::ofstream out(source, std::ios::binary);
    out << "<resources>\n<module name=\"m\">\n";
    for (int i = 0; i < 100000; ++i)
      out << "<n>";
    out << "\n";
    for (int i = 0; i < 100000; ++i)
      out << "</n>";
    out << "\n<string name=\"a\">{</string>\n</module>\n</resources>\n";
  }
  const std::string err = CompileFails(source);
  fs::remove(source);
  EXPECT_EQ(Count(err, source, 3, "unexpected element 'n' in module 'm'"), 1) << err;
  EXPECT_EQ(Count(err, source, 5, "unmatched opening brace"), 1) << err;
  EXPECT_EQ(ErrorLines(err), 2) << err;
}

}  // namespace
