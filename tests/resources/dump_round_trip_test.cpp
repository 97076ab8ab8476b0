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
    g_status = result.status;
    g_err = result.err;
    g_dump = new JsonValue(ic::test::ParseJson(result.out));
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
  ASSERT_EQ(g_dump->type, JsonValue::Kind::Object);
  ASSERT_EQ(g_dump->object.size(), 1u);
  EXPECT_EQ(g_dump->object[0].first, "catalogues");
}

TEST_F(IcresDumpRoundTripTest, CataloguesInChainOrder) {
  const JsonValue& catalogues = Catalogues();
  ASSERT_EQ(catalogues.type, JsonValue::Kind::Array);
  std::vector<std::string> names;
  for (const JsonValue& catalogue : catalogues.array) {
    ASSERT_EQ(catalogue.object.size(), 3u);
    EXPECT_EQ(catalogue.object[0].first, "name");
    EXPECT_EQ(catalogue.object[1].first, "count");
    EXPECT_EQ(catalogue.object[2].first, "rows");
    names.push_back(catalogue["name"].string);
    EXPECT_EQ(catalogue["count"].type, JsonValue::Kind::Number);
    EXPECT_EQ(catalogue["count"].number, static_cast<double>(catalogue["rows"].array.size()));
  }
  EXPECT_EQ(names, kChainOrder);
}

TEST_F(IcresDumpRoundTripTest, EverySourceRowArrivesUnchanged) {
  std::map<std::string, const JsonValue*> dumped;
  for (const JsonValue& catalogue : Catalogues().array)
    dumped[catalogue["name"].string] = &catalogue;
  size_t total = 0;
  for (const std::string& name : kChainOrder) {
    SCOPED_TRACE(name);
    const auto modules = ic::test::ReadCatalogueSource(std::string(ic::test::CatalogueSourceDir) +
                                                       "/" + name + ".xml");
    ASSERT_EQ(modules.size(), 1u);
    EXPECT_EQ(modules[0].name, name);
    ASSERT_EQ(dumped.count(name), 1u);
    const std::vector<JsonValue>& rows = (*dumped[name])["rows"].array;
    const std::vector<ic::test::SourceString>& strings = modules[0].strings;
    ASSERT_EQ(rows.size(), strings.size());
    for (size_t i = 0; i < rows.size(); ++i) {
      ASSERT_EQ(rows[i]["key"].type, JsonValue::Kind::String);
      ASSERT_EQ(rows[i]["text"].type, JsonValue::Kind::String);
      EXPECT_EQ(rows[i]["key"].string, strings[i].key) << "row " << i;
      EXPECT_EQ(rows[i]["text"].string, strings[i].text) << "row " << i << " " << strings[i].key;
    }
    total += rows.size();
  }
  EXPECT_EQ(total, 514u);
}

TEST_F(IcresDumpRoundTripTest, GivenRowsMatchTheListing) {
  std::map<std::string, const JsonValue*> dumped;
  for (const JsonValue& catalogue : Catalogues().array)
    dumped[catalogue["name"].string] = &catalogue;
  int given = 0;
  for (const ic::test::CatalogueRow& row :
       ic::test::ReadCatalogueRows(ic::test::CatalogueRowsPath)) {
    ASSERT_EQ(dumped.count(row.catalogue), 1u) << row.catalogue;
    const std::vector<JsonValue>& rows = (*dumped[row.catalogue])["rows"].array;
    ASSERT_LT(static_cast<size_t>(row.row), rows.size()) << row.catalogue;
    EXPECT_EQ(rows[static_cast<size_t>(row.row)]["key"].string, row.key);
    if (row.given) {
      ++given;
      EXPECT_EQ(rows[static_cast<size_t>(row.row)]["text"].string, row.text)
          << row.catalogue << " " << row.key;
    } else {
      // Still being translated: whatever the source holds now, it arrives as a string.
      EXPECT_EQ(rows[static_cast<size_t>(row.row)]["text"].type, JsonValue::Kind::String);
    }
  }
  EXPECT_GT(given, 0);
}

TEST_F(IcresDumpRoundTripTest, ControlCharactersAreEscaped) {
  const ic::test::ProcessResult result =
      ic::test::RunProcess(ic::test::IcresPath, {"dump", "--json"});
  for (const char c : result.out) {
    const auto byte = static_cast<unsigned char>(c);
    EXPECT_TRUE(byte >= 0x20 || c == '\n') << "raw control character " << int(byte);
    if (HasFailure()) break;
  }
  EXPECT_NE(result.out.find("\\r\\n"), std::string::npos);  // the Scintilla row
}

}  // namespace
