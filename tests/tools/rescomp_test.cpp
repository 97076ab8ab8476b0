// Runs the resource string compiler as a subprocess over sources written to a temporary
// directory, and checks its faults (message, file, line, exit status), its outputs and that a
// failed run leaves the outputs as they were.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;

constexpr const char* kProlog = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr const char* kPositionNote = "(0-based code point index in the decoded text)";

struct RunResult {
  int exitCode = -1;
  std::string out;
  std::string err;
};

std::string ReadAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream content;
  content << in.rdbuf();
  return content.str();
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}

fs::path MakeTempDir(const char* stem) {
  std::string pattern = (fs::temp_directory_path() / (std::string(stem) + "XXXXXX")).string();
  const char* made = mkdtemp(pattern.data());
  if (made == nullptr) throw std::runtime_error("mkdtemp failed");
  return made;
}

class RescompTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = MakeTempDir("rescomp_test_");
    capture_ = MakeTempDir("rescomp_capture_");
  }

  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
    fs::remove_all(capture_, ignored);
  }

  // Writes a file under the work directory, creating its folders.
  fs::path Write(const std::string& name, const std::string& content) {
    const fs::path path = dir_ / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

  // A source with one module `m` whose body is `body`; the module element is on line 3.
  fs::path WriteModule(const std::string& body, const std::string& attributes = "") {
    return Write("src.xml", std::string(kProlog) + "<resources>\n<module name=\"m\"" + attributes +
                                ">\n" + body + "</module>\n</resources>\n");
  }

  RunResult Run(const std::vector<std::string>& args) {
    std::vector<std::string> all = {IC_RESCOMP_PATH};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& arg : all)
      argv.push_back(arg.data());
    argv.push_back(nullptr);
    const std::string outPath = (capture_ / "stdout").string();
    const std::string errPath = (capture_ / "stderr").string();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    pid_t pid = 0;
    RunResult result;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
      ADD_FAILURE() << "cannot start " << argv[0];
      return result;
    }
    int status = 0;
    waitpid(pid, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.out = ReadAll(outPath);
    result.err = ReadAll(errPath);
    return result;
  }

  // Compiles module `module` of `source` into out.cpp and out.h in the work directory.
  RunResult Compile(const fs::path& source, const std::string& module = "m") {
    return Run({"--module", module, "--out-cpp", OutCpp().string(), "--out-h", OutH().string(),
                source.string()});
  }

  fs::path OutCpp() const { return dir_ / "out.cpp"; }
  fs::path OutH() const { return dir_ / "out.h"; }

  // Names in the work directory, sorted.
  std::vector<std::string> Entries() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  fs::path dir_;
  fs::path capture_;
};

// The stderr lines that begin with "FILE(LINE): SEVERITY: " and contain `text`.
int CountDiagnostics(const std::string& err, const fs::path& file, long line,
                     const std::string& severity, const std::string& text) {
  std::string head = file.string();
  if (line > 0) {
    head += '(';
    head += std::to_string(line);
    head += ')';
  }
  head += ": ";
  head += severity;
  head += ": ";
  int count = 0;
  for (const std::string& l : Lines(err)) {
    if (l.rfind(head, 0) == 0 && l.find(text, head.size()) != std::string::npos) ++count;
  }
  return count;
}

#define EXPECT_DIAGNOSTIC(result, file, line, severity, text)                               \
  EXPECT_EQ(CountDiagnostics((result).err, (file), (line), (severity), (text)), 1)          \
      << "expected one " << (severity) << " at " << (file).string() << "(" << (line) << ")" \
      << " with \"" << (text) << "\"; stderr was:\n"                                        \
      << (result).err

// A run that failed on a source fault: status 1 and no output beside the sources.
#define EXPECT_FAILED_WITHOUT_OUTPUT(result)         \
  do {                                               \
    EXPECT_EQ((result).exitCode, 1) << (result).err; \
    EXPECT_FALSE(fs::exists(OutCpp()));              \
    EXPECT_FALSE(fs::exists(OutH()));                \
  } while (false)

TEST_F(RescompTest, CompilesAModuleIntoHeaderAndSource) {
  const fs::path source = WriteModule(
      "<string name=\"first\">未为文件{uri}指定编码。</string>\n"
      "<string name=\"second\" note=\"a note for translators\">Plain text</string>\n",
      " params=\"uri\"");
  const RunResult result = Compile(source);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(ReadAll(OutH()),
            "// Generated by rescomp from src.xml. Do not edit.\n"
            "#pragma once\n"
            "#include <ic/resources/catalogue.h>\n"
            "namespace ic::resources::catalogues::m {\n"
            "IC_RESOURCE_CATALOGUE_DECLARATIONS(2)\n"
            "}  // namespace ic::resources::catalogues::m\n");
  EXPECT_EQ(ReadAll(OutCpp()),
            "// Generated by rescomp from src.xml. Do not edit.\n"
            "#include \"out.h\"\n"
            "namespace ic::resources::catalogues::m {\n"
            "namespace {\n"
            "const char16_t* const kTexts[2 + 1] = {\n"
            "    u\"\\u672A\\u4E3A\\u6587\\u4EF6{uri}\\u6307\\u5B9A\\u7F16\\u7801\\u3002\",  // "
            "first\n"
            "    u\"Plain text\",  // second\n"
            "    nullptr};\n"
            "const char16_t* const kKeys[2 + 1] = {\n"
            "    u\"first\",\n"
            "    u\"second\",\n"
            "    nullptr};\n"
            "}  // namespace\n"
            "IC_RESOURCE_CATALOGUE(u\"m\", 2, kTexts, kKeys)\n"
            "}  // namespace ic::resources::catalogues::m\n");
  EXPECT_EQ(Entries(), (std::vector<std::string>{"out.cpp", "out.h", "src.xml"}));
}

TEST_F(RescompTest, HeaderInAnotherDirectoryIsIncludedByARelativePath) {
  const fs::path source = WriteModule("<string name=\"s\">x</string>\n");
  fs::create_directories(dir_ / "src");
  fs::create_directories(dir_ / "include");
  const RunResult result = Run({"--module", "m", "--out-cpp", (dir_ / "src" / "m.cpp").string(),
                                "--out-h", (dir_ / "include" / "m.h").string(), source.string()});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(ReadAll(dir_ / "src" / "m.cpp").find("#include \"../include/m.h\"\n"),
            std::string::npos);
}

TEST_F(RescompTest, EscapesAreDecoded) {
  const fs::path source = WriteModule("<string name=\"s\">a\\nb\\rc\\td\\\\e\\{f\\}</string>\n");
  const RunResult result = Compile(source);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(ReadAll(OutCpp()).find("    u\"a\\012b\\015c\\011d\\\\e\\\\{f\\\\}\",  // s\n"),
            std::string::npos)
      << ReadAll(OutCpp());
}

TEST_F(RescompTest, MalformedXmlGivesExpatsMessageAndLine) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<resources>\n"
                                               "<module name=\"m\">\n"
                                               "<string name=\"s\">text</strin>\n"
                                               "</module>\n"
                                               "</resources>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error", "XML error: mismatched tag");
}

TEST_F(RescompTest, MissingResourcesRootElement) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<catalogue>\n"
                                               "<module name=\"m\"><string name=\"s\">x</string>"
                                               "</module>\n"
                                               "</catalogue>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 2, "error", "lacks the 'resources' root element");
  EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
}

TEST_F(RescompTest, ModuleWithoutName) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<resources>\n"
                                               "\n"
                                               "  <module params=\"a\">\n"
                                               "    <string name=\"s\">x</string>\n"
                                               "  </module>\n"
                                               "</resources>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error", "missing 'name' attribute in a 'module' element");
}

TEST_F(RescompTest, StringWithoutName) {
  const fs::path source = WriteModule(
      "<string name=\"a\">x</string>\n"
      "<string note=\"n\">y</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    "missing 'name' attribute in a 'string' element of module 'm'");
}

TEST_F(RescompTest, RawLineBreakInAString) {
  const fs::path source = WriteModule(
      "<string name=\"ok\">x</string>\n"
      "<string name=\"broken\">first line\n"
      "second line</string>\n"
      "<string name=\"by_reference\">a&#13;b</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    "resource string 'broken' contains a raw line break; use the \\n sequence");
  EXPECT_DIAGNOSTIC(result, source, 7, "error",
                    "resource string 'by_reference' contains a raw line break; use the \\n "
                    "sequence");
}

TEST_F(RescompTest, UnmatchedOpeningBrace) {
  const fs::path source = WriteModule(
      "<string name=\"ascii\">ab{cd</string>\n"
      "<string name=\"cjk\">未为{uri</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error",
                    std::string("resource string 'ascii': unmatched opening brace '{' at "
                                "position 2 ") +
                        kPositionNote);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    std::string("resource string 'cjk': unmatched opening brace '{' at "
                                "position 2 ") +
                        kPositionNote);
}

TEST_F(RescompTest, ClosingBraceWithoutOpeningBrace) {
  // U+1F600 is one code point (two UTF-16 units, four UTF-8 bytes): the brace is at 1.
  const fs::path source = WriteModule(
      "<string name=\"astral\">😀}</string>\n"
      "<string name=\"after_parameter\">\\n{a}}</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error",
                    std::string("resource string 'astral': closing brace '}' without an opening "
                                "brace at position 1 ") +
                        kPositionNote);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    std::string("resource string 'after_parameter': closing brace '}' without "
                                "an opening brace at position 4 ") +
                        kPositionNote);
}

TEST_F(RescompTest, NestedOpeningBrace) {
  const fs::path source = WriteModule("<string name=\"s\">{a{b}</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(
      result, source, 4, "error",
      std::string("resource string 's': nested opening brace '{' at position 2 ") + kPositionNote);
  EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
}

TEST_F(RescompTest, EscapedBracesAreNoParameters) {
  const fs::path source = WriteModule(
      "<string name=\"pair\">\\{x y\\}</string>\n"
      "<string name=\"opening\">a \"\\{\" b</string>\n"
      "<string name=\"closing\">\\} and {p}</string>\n",
      " params=\"p\"");
  const RunResult result = Compile(source);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
}

TEST_F(RescompTest, ModuleDefinedTwice) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<resources>\n"
                                               "<module name=\"m\"><string name=\"a\">x</string>"
                                               "</module>\n"
                                               "<module name=\"n\"/>\n"
                                               "<module name=\"m\"><string name=\"b\">y</string>"
                                               "</module>\n"
                                               "</resources>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    "the module 'm' is already defined at " + source.string() + "(3)");
}

TEST_F(RescompTest, StringDefinedTwiceInAModule) {
  const fs::path source = WriteModule(
      "<string name=\"a\">x</string>\n"
      "<string name=\"b\">y</string>\n"
      "<string name=\"a\">z</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(
      result, source, 6, "error",
      "the resource string 'a' of module 'm' is already defined at " + source.string() + "(4)");
}

TEST_F(RescompTest, SameStringNameInTwoModulesIsAllowed) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<resources>\n"
                                               "<module name=\"m\"><string name=\"a\">x</string>"
                                               "</module>\n"
                                               "<module name=\"n\"><string name=\"a\">y</string>"
                                               "</module>\n"
                                               "</resources>\n");
  const RunResult result = Compile(source, "n");
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
}

TEST_F(RescompTest, InvalidResourceNames) {
  const std::vector<std::string> names = {"1abc", "a-b", "a.b", "", "名字", "a b"};
  std::string body;
  for (const std::string& name : names)
    body += "<string name=\"" + name + "\">x</string>\n";
  body += "<string name=\"_fine9\">x</string>\n<string name=\"class\">x</string>\n";
  const RunResult result = Compile(WriteModule(body));
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_DIAGNOSTIC(result, dir_ / "src.xml", static_cast<long>(4 + i), "error",
                      "invalid resource name '" + names[i] + "'");
  }
  EXPECT_EQ(Lines(result.err).size(), names.size()) << result.err;
}

TEST_F(RescompTest, InvalidModuleNames) {
  const std::vector<std::string> names = {"class", "my-mod", "9x", "a__b", "_Upper", "namespace"};
  std::string text = std::string(kProlog) + "<resources>\n";
  for (const std::string& name : names)
    text += "<module name=\"" + name + "\"/>\n";
  text += "<module name=\"_lower\"/>\n</resources>\n";
  const fs::path source = Write("src.xml", text);
  const RunResult result = Run({"--list", source.string()});
  EXPECT_EQ(result.exitCode, 1);
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_DIAGNOSTIC(result, source, static_cast<long>(3 + i), "error",
                      "invalid module name '" + names[i] + "'");
  }
  EXPECT_EQ(Lines(result.err).size(), names.size()) << result.err;
}

TEST_F(RescompTest, IncludeWithoutFileAttribute) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<resources>\n"
                                               "<module name=\"m\"><string name=\"a\">x</string>"
                                               "</module>\n"
                                               "<Include path=\"other.xml\"/>\n"
                                               "</resources>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error", "the Include element lacks the 'file' attribute");
}

TEST_F(RescompTest, UnknownMetaAttribute) {
  const fs::path source = WriteModule(
      "<string name=\"a\" note=\"known\">x</string>\n"
      "<string name=\"b\" lang=\"de\">y</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    "unknown meta attribute 'lang' in resource string 'b' of module 'm'");
  EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
}

TEST_F(RescompTest, ParameterNotInTheModulesList) {
  const fs::path source = WriteModule(
      "<string name=\"known\">{uri} {entityRef.name} {uri}</string>\n"
      "<string name=\"unknown\">文件{path}</string>\n",
      " params=\"uri entityRef.name\"");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    std::string("resource string 'unknown': parameter {path} at position 2 ") +
                        kPositionNote + " is not a parameter of module 'm'");
  EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
}

TEST_F(RescompTest, AnyParameterWithoutAParamsList) {
  const fs::path source = WriteModule("<string name=\"s\">{anything} {duplicate_1}</string>\n");
  const RunResult result = Compile(source);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
}

TEST_F(RescompTest, MalformedParameterNames) {
  const fs::path source = WriteModule(
      "<string name=\"blank\">a {b c}</string>\n"
      "<string name=\"empty\">{}</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error",
                    "resource string 'blank': invalid parameter name {b c} at position 2");
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    "resource string 'empty': invalid parameter name {} at position 0");
}

TEST_F(RescompTest, MalformedNameInTheParamsList) {
  const fs::path source = WriteModule("<string name=\"s\">x</string>\n", " params=\"a, b\"");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 3, "error", "invalid parameter name 'a,' in the 'params'");
}

TEST_F(RescompTest, UnknownEscape) {
  const fs::path source = WriteModule(
      "<string name=\"q\">ab\\n\\qc</string>\n"
      "<string name=\"tail\">abc\\</string>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error",
                    std::string("resource string 'q': unknown escape sequence '\\q' at position "
                                "3 ") +
                        kPositionNote);
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    "resource string 'tail': incomplete escape sequence: a backslash ends the "
                    "text at position 3");
}

TEST_F(RescompTest, EmptyStringIsOnlyAWarning) {
  const fs::path source = WriteModule(
      "<string name=\"full\">x</string>\n"
      "<string name=\"empty\"></string>\n"
      "<string name=\"blank\">  </string>\n");
  const RunResult result = Compile(source);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_DIAGNOSTIC(result, source, 5, "warning", "resource string 'empty' seems to be empty");
  EXPECT_DIAGNOSTIC(result, source, 6, "warning", "resource string 'blank' seems to be empty");
  EXPECT_EQ(Lines(result.err).size(), 2u) << result.err;
  const std::string cpp = ReadAll(OutCpp());
  EXPECT_NE(cpp.find("    u\"\",  // empty\n"), std::string::npos) << cpp;
  EXPECT_NE(cpp.find("    u\"  \",  // blank\n"), std::string::npos) << cpp;
}

TEST_F(RescompTest, EveryFaultOfAFileIsReportedInOrder) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<resources>\n"
                                               "<module name=\"m\">\n"
                                               "<string name=\"a\">{x</string>\n"
                                               "<string>y</string>\n"
                                               "<string name=\"a\">z</string>\n"
                                               "<string name=\"e\" meta=\"1\">\\z</string>\n"
                                               "</module>\n"
                                               "<Include/>\n"
                                               "<module><string name=\"c\">}</string></module>\n"
                                               "</resources>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  const std::vector<std::string> lines = Lines(result.err);
  const std::vector<std::pair<long, std::string>> expected = {
      {4, "unmatched opening brace"},
      {5, "missing 'name' attribute"},
      {6, "already defined"},
      {7, "unknown meta attribute 'meta'"},
      {7, "unknown escape sequence '\\z'"},
      {9, "lacks the 'file' attribute"},
      {10, "missing 'name' attribute"},
      {10, "closing brace '}' without an opening brace"},
  };
  ASSERT_EQ(lines.size(), expected.size()) << result.err;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const std::string head =
        source.string() + "(" + std::to_string(expected[i].first) + "): error: ";
    EXPECT_EQ(lines[i].rfind(head, 0), 0u) << lines[i];
    EXPECT_NE(lines[i].find(expected[i].second), std::string::npos) << lines[i];
  }
}

TEST_F(RescompTest, ElementsAndTextOutOfPlace) {
  const fs::path source = Write("src.xml", std::string(kProlog) +
                                               "<resources>\n"
                                               "<module name=\"m\">\n"
                                               "<strin name=\"a\">x</strin>\n"
                                               "<string name=\"b\">y<b>bold</b></string>\n"
                                               "stray text\n"
                                               "</module>\n"
                                               "<string name=\"c\">z</string>\n"
                                               "</resources>\n");
  const RunResult result = Compile(source);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 4, "error", "unexpected element 'strin' in module 'm'");
  EXPECT_DIAGNOSTIC(result, source, 5, "error",
                    "unexpected element 'b' inside resource string 'b'");
  EXPECT_DIAGNOSTIC(result, source, 6, "error", "unexpected text outside a resource string");
  EXPECT_DIAGNOSTIC(result, source, 8, "error", "unexpected element 'string' in 'resources'");
  EXPECT_EQ(Lines(result.err).size(), 4u) << result.err;
}

TEST_F(RescompTest, FailedRunKeepsExistingOutputs) {
  Write("out.cpp", "previous source\n");
  Write("out.h", "previous header\n");
  const fs::path source = WriteModule("<string name=\"s\">{broken</string>\n");
  const RunResult result = Compile(source);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(ReadAll(OutCpp()), "previous source\n");
  EXPECT_EQ(ReadAll(OutH()), "previous header\n");
  EXPECT_EQ(Entries(), (std::vector<std::string>{"out.cpp", "out.h", "src.xml"}));
}

TEST_F(RescompTest, SuccessfulRunReplacesOutputsAndLeavesNoTemporaries) {
  Write("out.cpp", "previous source\n");
  Write("out.h", "previous header\n");
  const fs::path source = WriteModule("<string name=\"s\">text</string>\n");
  const RunResult result = Compile(source);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(ReadAll(OutCpp()).find("u\"text\",  // s"), std::string::npos);
  EXPECT_NE(ReadAll(OutH()).find("IC_RESOURCE_CATALOGUE_DECLARATIONS(1)"), std::string::npos);
  EXPECT_EQ(Entries(), (std::vector<std::string>{"out.cpp", "out.h", "src.xml"}));
}

TEST_F(RescompTest, UnwritableOutputWritesNothing) {
  const fs::path source = WriteModule("<string name=\"s\">text</string>\n");
  const fs::path missing = dir_ / "no_such_dir" / "out.cpp";
  const RunResult result = Run({"--module", "m", "--out-cpp", missing.string(), "--out-h",
                                OutH().string(), source.string()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_DIAGNOSTIC(result, missing, 0, "error", "cannot write the file");
  EXPECT_EQ(Entries(), (std::vector<std::string>{"src.xml"}));
}

TEST_F(RescompTest, UnknownModule) {
  const fs::path source = WriteModule("<string name=\"s\">text</string>\n");
  const RunResult result = Compile(source, "other");
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, source, 0, "error", "the module 'other' is not defined");
}

TEST_F(RescompTest, MissingSourceFile) {
  const RunResult result = Compile(dir_ / "absent.xml");
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, dir_ / "absent.xml", 0, "error", "cannot open the file");
}

TEST_F(RescompTest, BadCommandLinesGiveUsageAndStatus2) {
  const std::string source = WriteModule("<string name=\"s\">x</string>\n").string();
  const std::vector<std::vector<std::string>> bad = {
      {},
      {"--frobnicate", source},
      {"--module", "m", source},
      {"--module", "m", "--out-cpp", "a.cpp", source},
      {"--module", "m", "--out-cpp", "a.cpp", "--out-h", "a.h", source, source},
      {"--list", "--module", "m", source},
      {source},
      {"--module"},
  };
  for (const auto& args : bad) {
    const RunResult result = Run(args);
    EXPECT_EQ(result.exitCode, 2) << ::testing::PrintToString(args);
    EXPECT_NE(result.err.find("usage: rescomp"), std::string::npos) << result.err;
  }
  EXPECT_EQ(Entries(), (std::vector<std::string>{"src.xml"}));
  const RunResult help = Run({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_NE(help.out.find("usage: rescomp"), std::string::npos);
}

TEST_F(RescompTest, IncludesAreRelativeToTheIncludingFile) {
  const fs::path main = Write("main.xml", std::string(kProlog) +
                                              "<resources>\n"
                                              "  <module name=\"first\"/>\n"
                                              "  <Include file=\"sub/more.xml\"/>\n"
                                              "  <module name=\"last\"/>\n"
                                              "</resources>\n");
  Write("sub/more.xml", std::string(kProlog) +
                            "<resources>\n"
                            "  <module name=\"middle\"><string name=\"s\">m</string></module>\n"
                            "  <Include file=\"deeper.xml\"/>\n"
                            "</resources>\n");
  Write("sub/deeper.xml", std::string(kProlog) +
                              "<resources>\n"
                              "  <module name=\"deep\"><string name=\"d\">深</string></module>\n"
                              "</resources>\n");
  const RunResult list = Run({"--list", main.string()});
  ASSERT_EQ(list.exitCode, 0) << list.err;
  EXPECT_EQ(list.out, "first\nmiddle\ndeep\nlast\n");
  const RunResult result = Compile(main, "deep");
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(ReadAll(OutCpp()).find("    u\"\\u6DF1\",  // d\n"), std::string::npos);
  EXPECT_NE(ReadAll(OutCpp()).find("// Generated by rescomp from main.xml."), std::string::npos);
}

TEST_F(RescompTest, ModuleDefinedTwiceAcrossAnInclude) {
  const fs::path main = Write("main.xml", std::string(kProlog) +
                                              "<resources>\n"
                                              "  <module name=\"m\"/>\n"
                                              "  <Include file=\"other.xml\"/>\n"
                                              "</resources>\n");
  const fs::path other = Write("other.xml", std::string(kProlog) +
                                                "<resources>\n"
                                                "\n"
                                                "  <module name=\"m\"/>\n"
                                                "</resources>\n");
  const RunResult result = Compile(main);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, other, 4, "error",
                    "the module 'm' is already defined at " + main.string() + "(3)");
}

TEST_F(RescompTest, FaultsInAnIncludedFileNameThatFile) {
  const fs::path main = Write("main.xml", std::string(kProlog) +
                                              "<resources>\n"
                                              "  <Include file=\"sub/bad.xml\"/>\n"
                                              "</resources>\n");
  const fs::path bad = Write("sub/bad.xml", std::string(kProlog) +
                                                "<resources>\n"
                                                "  <module name=\"m\">\n"
                                                "    <string name=\"s\">{open</string>\n"
                                                "  </module>\n"
                                                "</resources>\n");
  const RunResult result = Compile(main);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, bad, 4, "error", "unmatched opening brace");
}

TEST_F(RescompTest, IncludeOfAMissingFile) {
  const fs::path main = Write("main.xml", std::string(kProlog) +
                                              "<resources>\n"
                                              "  <Include file=\"gone.xml\"/>\n"
                                              "</resources>\n");
  const RunResult result = Compile(main);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, main, 3, "error",
                    "cannot open the included file '" + (dir_ / "gone.xml").string() + "'");
}

TEST_F(RescompTest, IncludeCycle) {
  const fs::path a = Write("a.xml", std::string(kProlog) +
                                        "<resources>\n"
                                        "  <module name=\"m\"/>\n"
                                        "  <Include file=\"b.xml\"/>\n"
                                        "</resources>\n");
  const fs::path b = Write("b.xml", std::string(kProlog) +
                                        "<resources>\n"
                                        "  <Include file=\"a.xml\"/>\n"
                                        "</resources>\n");
  const RunResult result = Compile(a);
  EXPECT_FAILED_WITHOUT_OUTPUT(result);
  EXPECT_DIAGNOSTIC(result, b, 3, "error", "forms a cycle");
}

TEST_F(RescompTest, DepfileNamesEverySourceRead) {
  const fs::path main = Write("main.xml", std::string(kProlog) +
                                              "<resources>\n"
                                              "  <module name=\"m\"/>\n"
                                              "  <Include file=\"sub/more.xml\"/>\n"
                                              "</resources>\n");
  Write("sub/more.xml", std::string(kProlog) + "<resources><module name=\"n\"/></resources>\n");
  const fs::path depfile = dir_ / "out.d";
  const RunResult result = Run({"--module", "m", "--out-cpp", OutCpp().string(), "--out-h",
                                OutH().string(), "--depfile", depfile.string(), main.string()});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(ReadAll(depfile), OutCpp().string() + ": " + main.string() + " " +
                                  (dir_ / "sub" / "more.xml").string() + "\n");
}

// Every catalogue of the module compiles; empty rows may give warnings, nothing else.
TEST_F(RescompTest, EveryRealCatalogueCompiles) {
  const std::map<std::string, int> rows = {
      {"core", 31},    {"msg", 10}, {"res", 23},  {"regex", 21},     {"xsdt", 15},
      {"dispatch", 6}, {"gui", 16}, {"icgui", 2}, {"Scintilla", 33}, {"cryptography", 34},
      {"xml", 182},    {"pkg", 82}, {"os", 59},
  };
  std::map<std::string, int> seen;
  for (const auto& entry : fs::directory_iterator(IC_CATALOGUE_DIR)) {
    if (entry.path().extension() != ".xml") continue;
    const std::string module = entry.path().stem().string();
    const RunResult result = Compile(entry.path(), module);
    EXPECT_EQ(result.exitCode, 0) << entry.path() << ":\n" << result.err;
    for (const std::string& line : Lines(result.err)) {
      EXPECT_NE(line.find(": warning: "), std::string::npos) << line;
    }
    const std::string header = ReadAll(OutH());
    const std::string mark = "IC_RESOURCE_CATALOGUE_DECLARATIONS(";
    const std::size_t at = header.find(mark);
    ASSERT_NE(at, std::string::npos) << header;
    seen[module] = std::stoi(header.substr(at + mark.size()));
    EXPECT_NE(ReadAll(OutCpp()).find("IC_RESOURCE_CATALOGUE(u\"" + module + "\", "),
              std::string::npos);
  }
  EXPECT_EQ(seen, rows);
}

TEST_F(RescompTest, KeyHeaderNamesEveryKeyWithItsParameters) {
  const fs::path source = WriteModule(
      "<string name=\"first\">{uri} and {uri}, then {entityRef.name}</string>\n"
      "<string name=\"delete\">\\{literal\\} {x}</string>\n"
      "<string name=\"plain\">no parameter</string>\n");
  const fs::path keys = dir_ / "keys.h";
  const RunResult result = Run({"--module", "m", "--out-keys", keys.string(), source.string()});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(ReadAll(keys),
            "// Generated by rescomp from src.xml. Do not edit.\n"
            "// The keys of catalogue \"m\", for ic::resources::Substitute.\n"
            "#pragma once\n"
            "#include <array>\n"
            "#include <ic/resources/message_key.h>\n"
            "namespace ic::msg::m {\n"
            "inline constexpr ::ic::resources::MessageKey<\"m\", \"first\", \"uri\", "
            "\"entityRef.name\"> first{};\n"
            "inline constexpr ::ic::resources::MessageKey<\"m\", \"delete\", \"x\"> delete_{};\n"
            "inline constexpr ::ic::resources::MessageKey<\"m\", \"plain\"> plain{};\n"
            "}  // namespace ic::msg::m\n"
            "namespace ic::msg_index {\n"
            "// Every key of catalogue \"m\", in row order.\n"
            "inline constexpr std::array<::ic::resources::MessageKeyInfo, 3> m{{\n"
            "    decltype(ic::msg::m::first)::Info,\n"
            "    decltype(ic::msg::m::delete_)::Info,\n"
            "    decltype(ic::msg::m::plain)::Info,\n"
            "}};\n"
            "}  // namespace ic::msg_index\n");
  // Only the key header is written.
  EXPECT_EQ(Entries(), (std::vector<std::string>{"keys.h", "src.xml"}));
}

TEST_F(RescompTest, KeysThatWouldShareAConstantAreRefused) {
  const fs::path source = WriteModule(
      "<string name=\"class\">a</string>\n"
      "<string name=\"class_\">b</string>\n");
  const fs::path keys = dir_ / "keys.h";
  const RunResult result = Run({"--module", "m", "--out-keys", keys.string(), source.string()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_DIAGNOSTIC(result, source, 3, "error",
                    "the keys 'class' and 'class_' would both be named 'class_' in the key header");
  EXPECT_FALSE(fs::exists(keys));
}

TEST_F(RescompTest, PseudoTablesHoldThePseudoLocale) {
  const fs::path source = WriteModule("<string name=\"s\">Ab {uri}\\{</string>\n");
  const RunResult result = Run({"--module", "m", "--out-cpp", OutCpp().string(), "--out-h",
                                OutH().string(), "--pseudo", source.string()});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  // 10 code points (the escaped brace is two), so three pad units.
  EXPECT_NE(ReadAll(OutCpp()).find("u\"\\u27E6\\u00C5\\u0180 {uri}\\\\{~~~\\u27E7\","),
            std::string::npos)
      << ReadAll(OutCpp());
}

TEST_F(RescompTest, PseudoAndKeyOptionsOnTheirOwn) {
  const std::string source = WriteModule("<string name=\"s\">x</string>\n").string();
  const std::vector<std::vector<std::string>> bad = {
      {"--module", "m", "--out-keys", "k.h", "--pseudo", source},
      {"--module", "m", "--out-h", "a.h", source},
      {"--module", "m", "--out-keys", "", source},
      {"--list", "--pseudo", source},
      {"--list", "--out-keys", "k.h", source},
      {"--module", "m", "--out-cpp", "a.cpp", "--out-h", "a.h", "--pseudo=yes", source},
  };
  for (const auto& args : bad) {
    const RunResult result = Run(args);
    EXPECT_EQ(result.exitCode, 2) << ::testing::PrintToString(args);
    EXPECT_NE(result.err.find("usage: rescomp"), std::string::npos) << result.err;
  }
  EXPECT_EQ(Entries(), (std::vector<std::string>{"src.xml"}));
}

}  // namespace
