// Every row of every catalogue source reaches icres dump --json unchanged: the sources are read
// here with a reader of their own, the JSON is parsed, and the two are compared row by row.
// The rows whose text the row listing gives are compared with the listing too.
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "catalogue_rows.h"
#include "catalogue_source.h"
#include "json.h"
#include "module_paths.h"
#include "process.h"

namespace {

using ic::test::JsonValue;

// Catalogue names in chain order.
const std::vector<std::string> kChainOrder = {
    "gui", "xsdt",  "dispatch", "regex", "cryptography", "xml", "Scintilla",
    "msg", "icgui", "res",      "core",  "pkg",          "os"};

class IcresDumpRoundTripTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    const ic::test::ProcessResult result =
        ic::test::RunProcess(ic::test::IcresPath, {"dump", "--json"});
    g_status = result.Status;
    g_err = result.Err;
    g_dump = new JsonValue(ic::test::ParseJson(result.Out));
  }
  static void TearDownTestSuite() {
    delete g_dump;
    g_dump = nullptr;
  }

  static const JsonValue& Catalogues() { return (*g_dump)["catalogues"]; }

  static int g_status;
  static std::string g_err;
  static JsonValue* g_dump;
};

int IcresDumpRoundTripTest::g_status = -1;
std::string IcresDumpRoundTripTest::g_err;
JsonValue* IcresDumpRoundTripTest::g_dump = nullptr;

TEST_F(IcresDumpRoundTripTest, DumpSucceeds) {
  EXPECT_EQ(g_status, 0);
  EXPECT_EQ(g_err, "");
  ASSERT_EQ(g_dump->Type, JsonValue::Kind::Object);
  ASSERT_EQ(g_dump->Object.size(), 1u);
  EXPECT_EQ(g_dump->Object[0].first, "catalogues");
}

TEST_F(IcresDumpRoundTripTest, CataloguesInChainOrder) {
  const JsonValue& catalogues = Catalogues();
  ASSERT_EQ(catalogues.Type, JsonValue::Kind::Array);
  std::vector<std::string> names;
  for (const JsonValue& catalogue : catalogues.Array) {
    ASSERT_EQ(catalogue.Object.size(), 3u);
    EXPECT_EQ(catalogue.Object[0].first, "name");
    EXPECT_EQ(catalogue.Object[1].first, "count");
    EXPECT_EQ(catalogue.Object[2].first, "rows");
    names.push_back(catalogue["name"].String);
    EXPECT_EQ(catalogue["count"].Type, JsonValue::Kind::Number);
    EXPECT_EQ(catalogue["count"].Number, static_cast<double>(catalogue["rows"].Array.size()));
  }
  EXPECT_EQ(names, kChainOrder);
}

TEST_F(IcresDumpRoundTripTest, EverySourceRowArrivesUnchanged) {
  std::map<std::string, const JsonValue*> dumped;
  for (const JsonValue& catalogue : Catalogues().Array)
    dumped[catalogue["name"].String] = &catalogue;
  size_t total = 0;
  for (const std::string& name : kChainOrder) {
    SCOPED_TRACE(name);
    const auto modules = ic::test::ReadCatalogueSource(std::string(ic::test::CatalogueSourceDir) +
                                                       "/" + name + ".xml");
    ASSERT_EQ(modules.size(), 1u);
    EXPECT_EQ(modules[0].Name, name);
    ASSERT_EQ(dumped.count(name), 1u);
    const std::vector<JsonValue>& rows = (*dumped[name])["rows"].Array;
    const std::vector<ic::test::SourceString>& strings = modules[0].Strings;
    ASSERT_EQ(rows.size(), strings.size());
    for (size_t i = 0; i < rows.size(); ++i) {
      ASSERT_EQ(rows[i]["key"].Type, JsonValue::Kind::String);
      ASSERT_EQ(rows[i]["text"].Type, JsonValue::Kind::String);
      EXPECT_EQ(rows[i]["key"].String, strings[i].Key) << "row " << i;
      EXPECT_EQ(rows[i]["text"].String, strings[i].Text) << "row " << i << " " << strings[i].Key;
    }
    total += rows.size();
  }
  EXPECT_EQ(total, 514u);
}

TEST_F(IcresDumpRoundTripTest, GivenRowsMatchTheListing) {
  std::map<std::string, const JsonValue*> dumped;
  for (const JsonValue& catalogue : Catalogues().Array)
    dumped[catalogue["name"].String] = &catalogue;
  int given = 0;
  for (const ic::test::CatalogueRow& row :
       ic::test::ReadCatalogueRows(ic::test::CatalogueRowsPath)) {
    ASSERT_EQ(dumped.count(row.Catalogue), 1u) << row.Catalogue;
    const std::vector<JsonValue>& rows = (*dumped[row.Catalogue])["rows"].Array;
    ASSERT_LT(static_cast<size_t>(row.Row), rows.size()) << row.Catalogue;
    EXPECT_EQ(rows[static_cast<size_t>(row.Row)]["key"].String, row.Key);
    if (row.Given) {
      ++given;
      EXPECT_EQ(rows[static_cast<size_t>(row.Row)]["text"].String, row.Text)
          << row.Catalogue << " " << row.Key;
    } else {
      // Still being translated: whatever the source holds now, it arrives as a string.
      EXPECT_EQ(rows[static_cast<size_t>(row.Row)]["text"].Type, JsonValue::Kind::String);
    }
  }
  EXPECT_GT(given, 0);
}

TEST_F(IcresDumpRoundTripTest, ControlCharactersAreEscaped) {
  const ic::test::ProcessResult result =
      ic::test::RunProcess(ic::test::IcresPath, {"dump", "--json"});
  for (const char c : result.Out) {
    const auto byte = static_cast<unsigned char>(c);
    EXPECT_TRUE(byte >= 0x20 || c == '\n') << "raw control character " << int(byte);
    if (HasFailure()) break;
  }
  EXPECT_NE(result.Out.find("\\r\\n"), std::string::npos);  // the Scintilla row
}

}  // namespace
