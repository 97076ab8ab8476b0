// icres check, run as a translator runs it: the shipped sources against themselves, a good
// translation and its broken copies against their reference (one finding each), JSON, and bad
// input.
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "json.h"
#include "module_paths.h"
#include "process.h"

namespace {

using ic::test::ProcessResult;

const std::string kData = IC_CHECK_DATA_DIR;

ProcessResult Check(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {"check"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return ic::test::RunProcess(IC_TEST_ICRES_PATH, all);
}

ProcessResult CheckData(const std::string& file, const std::string& reference = "reference.xml") {
  return Check({kData + "/" + file, "--ref", kData + "/" + reference});
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

TEST(IcresCheckTest, ShippedSourcesAgainstThemselvesHaveNoFinding) {
  for (const char* name : {"Scintilla", "core", "cryptography", "dispatch", "gui", "icgui", "msg",
                           "os", "pkg", "regex", "res", "xml", "xsdt"}) {
    const std::string path = std::string(ic::test::CatalogueSourceDir) + "/" + name + ".xml";
    const ProcessResult result = Check({path, "--ref", path});
    EXPECT_EQ(result.status, 0) << name << ": " << result.err;
    EXPECT_EQ(result.out, "") << name;
    EXPECT_EQ(result.err, "") << name;
  }
}

TEST(IcresCheckTest, GoodTranslationHasNoFinding) {
  const ProcessResult result = CheckData("translation.xml");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
  const ProcessResult reference = CheckData("reference.xml");
  EXPECT_EQ(reference.status, 0);
  EXPECT_EQ(reference.out, "");
}

struct BrokenCopy {
  const char* file;
  const char* reference;  // the reference it is checked against
  int line;
  const char* severity;
  const char* message;
};

// Each broken copy of translation.xml has exactly one finding.
TEST(IcresCheckTest, EachBrokenCopyHasItsOneFinding) {
  const BrokenCopy copies[] = {
      {"missing_key.xml", "reference.xml", 3, "error", "the key 'colour' of the reference ("},
      {"extra_key.xml", "reference.xml", 13, "error",
       "the key 'extra_row' is not in the reference"},
      {"parameter_missing.xml", "reference.xml", 4, "error",
       "'greeting': the parameter {user} is missing: the reference uses it once"},
      {"parameter_extra.xml", "reference.xml", 12, "error",
       "'status': the parameter {user} is not in the reference"},
      {"parameter_count.xml", "reference.xml", 7, "error",
       "'duplicate': the parameter {tag} is used once, the reference uses it 2 times"},
      {"unbalanced_brace.xml", "reference.xml", 5, "error", "unmatched opening brace '{'"},
      {"hint_gained.xml", "reference.xml", 8, "error",
       "'sample_hint': the _hint row gained the parameter {user}"},
      {"no_uri_twin.xml", "no_uri_twin.xml", 6, "error",
       "'file_missing_no_uri': the _no_uri row is not its twin 'file_missing' without {uri}: "
       "{uri} once here, never in the twin"},
      {"empty_text.xml", "reference.xml", 10, "error", "'colour': the text is empty"},
      {"identical_text.xml", "reference.xml", 10, "warning",
       "'colour': the text is identical to the reference"},
      {"trailing_blank.xml", "reference.xml", 9, "error",
       "'line_label': trailing blanks differ from the reference: none here, U+0020 there"},
      {"leading_blank.xml", "reference.xml", 12, "error",
       "'status': leading blanks differ from the reference: U+0020 here, none there"},
      {"mixed_punctuation.xml", "reference.xml", 12, "warning",
       "'status': full-width and half-width punctuation mixed"},
      {"bidi_control.xml", "reference.xml", 10, "error",
       "'colour': bidirectional control character U+202E at position 1"},
      {"invisible_character.xml", "reference.xml", 10, "error",
       "'colour': invisible character U+200B at position 1"},
  };
  for (const BrokenCopy& copy : copies) {
    SCOPED_TRACE(copy.file);
    const ProcessResult result = CheckData(copy.file, copy.reference);
    EXPECT_EQ(result.status, std::string(copy.severity) == "error" ? 1 : 0) << result.err;
    EXPECT_EQ(result.err, "");
    const std::vector<std::string> lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 1u) << result.out;
    const std::string prefix =
        kData + "/" + copy.file + "(" + std::to_string(copy.line) + "): " + copy.severity + ": ";
    EXPECT_EQ(lines[0].rfind(prefix, 0), 0u) << lines[0];
    EXPECT_NE(lines[0].find(copy.message), std::string::npos) << lines[0];
  }
}

TEST(IcresCheckTest, EveryFindingInOneRunInLineOrder) {
  // Against another broken copy: {tag} once instead of twice (line 7), and the key extra_row
  // of that copy is missing (reported at the module, line 3).
  const ProcessResult result = CheckData("parameter_count.xml", "extra_key.xml");
  EXPECT_EQ(result.status, 1);
  const std::vector<std::string> lines = Lines(result.out);
  ASSERT_EQ(lines.size(), 2u) << result.out;
  EXPECT_NE(lines[0].find("parameter_count.xml(3): error: the key 'extra_row' of the reference ("),
            std::string::npos)
      << lines[0];
  EXPECT_NE(lines[1].find("parameter_count.xml(7): error: 'duplicate': the parameter {tag}"),
            std::string::npos)
      << lines[1];

  // Against a catalogue of another module: the module is missing (a finding about the whole
  // file, first) and the module demo is not in the reference; its keys are not listed one by one.
  const ProcessResult other = Check({kData + "/translation.xml", "--ref",
                                     std::string(ic::test::CatalogueSourceDir) + "/msg.xml"});
  EXPECT_EQ(other.status, 1);
  const std::vector<std::string> otherLines = Lines(other.out);
  ASSERT_EQ(otherLines.size(), 2u) << other.out;
  EXPECT_EQ(otherLines[0].rfind(
                kData + "/translation.xml: error: the module 'msg' of the reference (", 0),
            0u)
      << otherLines[0];
  EXPECT_EQ(otherLines[1],
            kData + "/translation.xml(3): error: the module 'demo' is not in the reference");
}

TEST(IcresCheckTest, JsonHasTheSameFindings) {
  const ProcessResult result =
      Check({kData + "/mixed_punctuation.xml", "--json", "--ref", kData + "/reference.xml"});
  EXPECT_EQ(result.status, 0) << result.err;
  const ic::test::JsonValue json = ic::test::ParseJson(result.out);
  EXPECT_EQ(json["errors"].number, 0);
  EXPECT_EQ(json["warnings"].number, 1);
  ASSERT_EQ(json["findings"].array.size(), 1u);
  const ic::test::JsonValue& finding = json["findings"].array[0];
  EXPECT_EQ(finding["file"].string, kData + "/mixed_punctuation.xml");
  EXPECT_EQ(finding["line"].number, 12);
  EXPECT_EQ(finding["severity"].string, "warning");
  EXPECT_EQ(finding["module"].string, "demo");
  EXPECT_EQ(finding["key"].string, "status");
  EXPECT_NE(finding["message"].string.find("'，' at position 2, '.' at position 7"),
            std::string::npos);

  const ProcessResult brace = CheckData("unbalanced_brace.xml");
  const ProcessResult braceJson =
      Check({kData + "/unbalanced_brace.xml", "--ref", kData + "/reference.xml", "--json"});
  EXPECT_EQ(braceJson.status, 1);
  const ic::test::JsonValue braceDoc = ic::test::ParseJson(braceJson.out);
  EXPECT_EQ(braceDoc["errors"].number, 1);
  ASSERT_EQ(braceDoc["findings"].array.size(), 1u);
  EXPECT_EQ(braceDoc["findings"].array[0]["key"].type, ic::test::JsonValue::Kind::Null);
  EXPECT_NE(brace.out.find(braceDoc["findings"].array[0]["message"].string), std::string::npos);

  const ProcessResult clean =
      Check({kData + "/translation.xml", "--ref=" + kData + "/reference.xml", "--json"});
  EXPECT_EQ(clean.status, 0);
  EXPECT_EQ(clean.out, "{\"errors\": 0, \"warnings\": 0, \"findings\": []}\n");
}

// A fault: status 2, nothing on standard output, one line naming the file on standard error.
void ExpectBadInput(const std::vector<std::string>& arguments, const std::string& mention) {
  const ProcessResult result = Check(arguments);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err.rfind("icres: ", 0), 0u) << result.err;
  EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
  EXPECT_NE(result.err.find(mention), std::string::npos) << result.err;
}

TEST(IcresCheckTest, BadInput) {
  ExpectBadInput({kData + "/absent.xml", "--ref", kData + "/reference.xml"},
                 kData + "/absent.xml: error: cannot open the file");
  ExpectBadInput({kData + "/translation.xml", "--ref", kData + "/absent.xml"},
                 "cannot read the catalogue " + kData + "/absent.xml");
  ExpectBadInput({kData + "/not_xml.xml", "--ref", kData + "/reference.xml"},
                 kData + "/not_xml.xml(4): error: XML error: mismatched tag");
  ExpectBadInput({kData, "--ref", kData + "/reference.xml"}, "cannot open the file");
  ExpectBadInput({kData + "/translation.xml"}, "check needs --ref REFERENCE");
  ExpectBadInput({"--ref", kData + "/reference.xml"}, "check takes one catalogue source");
  ExpectBadInput({kData + "/translation.xml", "--ref"}, "--ref needs a value");
  ExpectBadInput({kData + "/translation.xml", "--ref", ""}, "--ref needs a path");
}

TEST(IcresCheckTest, RefGoesWithCheckOnly) {
  const ProcessResult result =
      ic::test::RunProcess(IC_TEST_ICRES_PATH, {"list", "--ref", kData + "/reference.xml"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("--ref goes with check only"), std::string::npos) << result.err;
}

// The check of a built module against a reference module: a module per catalogue record, a
// row per key, with the findings of the source form that apply to compiled texts.
struct ModuleFinding {
  const char* catalogue;  // the part of the file name in brackets
  int row;                // 0: about the whole catalogue
  const char* copy;       // the broken source copy with the same fault
  const char* message;    // what the finding says, in both forms
};

std::string FindingMessage(const std::string& line) {
  const size_t at = line.find(": error: ");
  return at == std::string::npos ? std::string() : line.substr(at + 9);
}

TEST(IcresCheckModulesTest, ModulesAgainstThemselvesHaveNoFinding) {
  for (const char* module : {IC_TEST_MODULE_PATH, IC_CHECK_REFERENCE_MODULE}) {
    const ProcessResult result = Check({module, "--ref", module});
    EXPECT_EQ(result.status, 0) << module << ": " << result.err;
    EXPECT_EQ(result.out, "") << module;
    EXPECT_EQ(result.err, "") << module;
  }
  const ProcessResult translation =
      Check({IC_CHECK_TRANSLATION_MODULE, "--ref", IC_CHECK_REFERENCE_MODULE});
  EXPECT_EQ(translation.status, 0) << translation.err;
  EXPECT_EQ(translation.out, "");
}

TEST(IcresCheckModulesTest, BrokenModuleHasTheFindingsOfTheBrokenSources) {
  const ProcessResult result = Check({IC_CHECK_BROKEN_MODULE, "--ref", IC_CHECK_REFERENCE_MODULE});
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(result.err, "");
  const ModuleFinding expected[] = {
      {"demo", 0, "missing_key.xml", "the key 'colour' of the reference ("},
      {"demo", 1, "parameter_missing.xml",
       "'greeting': the parameter {user} is missing: the reference uses it once"},
      {"demo", 2, "unbalanced_brace.xml",
       "resource string 'file_missing': unmatched opening brace '{'"},
      {"demo", 5, "hint_gained.xml", "'sample_hint': the _hint row gained the parameter {user}"},
      {"demo", 8, "leading_blank.xml",
       "'status': leading blanks differ from the reference: U+0020 here, none there"},
      {"demo", 9, "extra_key.xml", "the key 'extra_row' is not in the reference"},
  };
  const std::vector<std::string> lines = Lines(result.out);
  ASSERT_EQ(lines.size(), std::size(expected)) << result.out;
  for (size_t i = 0; i < lines.size(); ++i) {
    SCOPED_TRACE(expected[i].copy);
    std::string where = std::string(IC_CHECK_BROKEN_MODULE) + "[" + expected[i].catalogue + "]";
    if (expected[i].row) where.append("(").append(std::to_string(expected[i].row)).append(")");
    EXPECT_EQ(lines[i].rfind(where + ": error: ", 0), 0u) << lines[i];
    const std::string message = FindingMessage(lines[i]);
    EXPECT_EQ(message.rfind(expected[i].message, 0), 0u) << lines[i];
    // The source form says the same of the broken copy, up to where it names a site.
    const std::vector<std::string> source = Lines(CheckData(expected[i].copy).out);
    ASSERT_EQ(source.size(), 1u);
    const std::string sourceMessage = FindingMessage(source[0]);
    EXPECT_EQ(message.substr(0, message.find(" (")),
              sourceMessage.substr(0, sourceMessage.find(" (")));
  }
  // The key missing from the module names the reference module's catalogue and row.
  EXPECT_NE(lines[0].find(std::string(IC_CHECK_REFERENCE_MODULE) + "[demo](7)) is missing"),
            std::string::npos)
      << lines[0];
}

TEST(IcresCheckModulesTest, JsonOfModules) {
  const ProcessResult result =
      Check({IC_CHECK_BROKEN_MODULE, "--ref", IC_CHECK_REFERENCE_MODULE, "--json"});
  EXPECT_EQ(result.status, 1);
  const ic::test::JsonValue json = ic::test::ParseJson(result.out);
  EXPECT_EQ(json["errors"].number, 6);
  EXPECT_EQ(json["warnings"].number, 0);
  ASSERT_EQ(json["findings"].array.size(), 6u);
  const ic::test::JsonValue& hint = json["findings"].array[3];
  EXPECT_EQ(hint["file"].string, std::string(IC_CHECK_BROKEN_MODULE) + "[demo]");
  EXPECT_EQ(hint["line"].number, 5);
  EXPECT_EQ(hint["module"].string, "demo");
  EXPECT_EQ(hint["key"].string, "sample_hint");
}

TEST(IcresCheckModulesTest, CataloguesMissingOnEitherSide) {
  // The shipped module against the demo reference: its thirteen catalogues are not in the
  // reference, and the reference's demo is missing.
  const ProcessResult result = Check({IC_TEST_MODULE_PATH, "--ref", IC_CHECK_REFERENCE_MODULE});
  EXPECT_EQ(result.status, 1);
  const std::vector<std::string> lines = Lines(result.out);
  ASSERT_EQ(lines.size(), 14u) << result.out;
  EXPECT_EQ(
      lines[0].rfind(
          std::string(IC_TEST_MODULE_PATH) + ": error: the module 'demo' of the reference (", 0),
      0u)
      << lines[0];
  EXPECT_EQ(lines[1], std::string(IC_TEST_MODULE_PATH) +
                          "[gui]: error: the module 'gui' is not in the reference");
}

TEST(IcresCheckModulesTest, ModuleThatDoesNotLoad) {
  ExpectBadInput({"absent.so", "--ref", IC_CHECK_REFERENCE_MODULE}, "cannot load module absent.so");
  ExpectBadInput({IC_CHECK_REFERENCE_MODULE, "--ref", "absent.so"}, "cannot load module absent.so");
}

}  // namespace
