// Rules that every row of the built module's catalogues keeps: no empty text, balanced braces,
// only the catalogue's own parameters, and the family rules of the key suffixes (_hint,
// _no_uri, _collected, _ignored), plus the rows whose texts stand as given: equal twins, ASCII
// points, spaces.
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "loaded_module.h"
#include "module_paths.h"
#include "utf8.h"

namespace {

using ic::resources::ResourceStringLibrary;
using ic::test::Utf8;

// The parameter names that each catalogue may use.
const std::map<std::string, std::set<std::string>>& CatalogueParameters() {
  static const std::map<std::string, std::set<std::string>> parameters = {
      {"core", {"uri", "BOM", "encoding", "from", "to", "data", "limit", "severity"}},
      {"msg", {}},
      {"res",
       {"name", "file", "line", "string", "pos", "module", "param", "missing", "meta", "lang"}},
      {"regex", {}},
      {"xsdt",
       {"prefix", "suffix", "value", "pattern", "format", "field", "component", "length", "day",
        "month", "hour", "minute", "second"}},
      {"dispatch", {"jobid", "detail", "remote", "local", "cmd", "opts"}},
      {"gui", {}},
      {"icgui", {"Width", "Color", "Style"}},
      {"Scintilla", {"index", "count", "percentCompleted"}},
      {"cryptography", {"description"}},
      {"os",
       {"uri", "errno", "msg", "path", "directory", "product", "url", "code", "proxy", "noproxy",
        "api", "methods", "method", "user"}},
      {"xml",
       {"element",
        "attribute",
        "prefix",
        "uri",
        "duplicate_1",
        "duplicate_2",
        "namespace_name",
        "bad_NCName",
        "entityRef.name",
        "entityRef.entity",
        "charRef",
        "value",
        "replacement_text",
        "entityRef",
        "entity",
        "proper_value",
        "etag",
        "stag",
        "markup",
        "production",
        "name",
        "geref",
        "pi",
        "child",
        "fixed_default",
        "duplicate",
        "notation",
        "required_attribute",
        "doctype_name",
        "scheme",
        "catalog",
        "attdef",
        "old_value",
        "elementdecl",
        "L",
        "G",
        "T",
        "component",
        "value_constraint",
        "attributeUse",
        "attributeGroupDefinition",
        "complexType",
        "facet",
        "attributeDeclaration",
        "simpleType",
        "identityConstraint",
        "element_2",
        "resource",
        "arg1",
        "arg2"}},
      {"pkg",
       {"resource", "uri", "pkg", "pkgmgr", "id", "path", "file", "sum", "conflict", "newer",
        "pkgs", "reference", "filter"}},
  };
  return parameters;
}

// The {name} parameters of a text, in order; fails the test on unbalanced or nested braces.
// A backslash before a brace makes it a literal brace.
std::vector<std::string> Parameters(const std::string& text, const std::string& where) {
  std::vector<std::string> names;
  bool open = false;
  std::string name;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\\' && i + 1 < text.size() && (text[i + 1] == '{' || text[i + 1] == '}')) {
      ++i;
      continue;
    }
    if (c == '{') {
      EXPECT_FALSE(open) << where << ": nested opening brace at byte " << i;
      open = true;
      name.clear();
    } else if (c == '}') {
      EXPECT_TRUE(open) << where << ": closing brace without an opening one at byte " << i;
      if (open) names.push_back(name);
      open = false;
    } else if (open) {
      name += c;
    }
  }
  EXPECT_FALSE(open) << where << ": opening brace without a closing one";
  return names;
}

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() &&
         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

struct Row {
  int index;
  std::string key;
  std::string text;
  std::vector<std::string> params;
};

class CatalogueRulesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(_module.IsLoaded()) << _module.Error();
    for (ResourceStringLibrary* record : _module.Chain()) {
      std::vector<Row>& rows = _rows[Utf8(record->Name)];
      for (int32_t i = 0; i < record->Count; ++i) {
        Row row{i, Utf8(record->GetKey(record, i)), Utf8(record->GetText(record, i)), {}};
        row.params = Parameters(row.text, Utf8(record->Name) + "/" + row.key);
        rows.push_back(row);
      }
    }
  }

  const Row* Find(const std::string& catalogue, const std::string& key) {
    for (const Row& row : _rows[catalogue])
      if (row.key == key) return &row;
    return nullptr;
  }

  ic::test::LoadedModule _module{ic::test::ModulePath};
  std::map<std::string, std::vector<Row>> _rows;
};

TEST_F(CatalogueRulesTest, AllThirteenCataloguesWith514Rows) {
  size_t total = 0;
  for (const auto& [name, rows] : _rows)
    total += rows.size();
  EXPECT_EQ(_rows.size(), 13u);
  EXPECT_EQ(total, 514u);
  EXPECT_EQ(_rows["os"].size(), 59u);
  EXPECT_EQ(_rows["cryptography"].size(), 34u);
  EXPECT_EQ(_rows["xml"].size(), 182u);
  EXPECT_EQ(_rows["pkg"].size(), 82u);
}

TEST_F(CatalogueRulesTest, NoTextIsEmptyOrBlank) {
  for (const auto& [name, rows] : _rows) {
    for (const Row& row : rows) {
      EXPECT_NE(row.text.find_first_not_of(" \t\r\n"), std::string::npos) << name << "/" << row.key;
    }
  }
}

TEST_F(CatalogueRulesTest, ParametersAreTheCataloguesOwn) {
  for (const auto& [name, rows] : _rows) {
    const auto known = CatalogueParameters().find(name);
    ASSERT_NE(known, CatalogueParameters().end()) << name;
    for (const Row& row : rows)
      for (const std::string& param : row.params)
        EXPECT_TRUE(known->second.count(param)) << name << "/" << row.key << ": {" << param << "}";
  }
}

TEST_F(CatalogueRulesTest, HintRowsHaveNoParameterAndFollowTheRowTheyExplain) {
  int hints = 0;
  for (const auto& [name, rows] : _rows) {
    for (const Row& row : rows) {
      if (!EndsWith(row.key, "_hint")) continue;
      ++hints;
      EXPECT_TRUE(row.params.empty()) << name << "/" << row.key;
      const std::string twin = row.key.substr(0, row.key.size() - 5);
      ASSERT_GT(row.index, 0);
      EXPECT_EQ(rows[row.index - 1].key, twin) << name << "/" << row.key;
    }
  }
  EXPECT_EQ(hints, 2);  // nsc_uniqAttrs_hint and vc_NoDTD_hint
}

TEST_F(CatalogueRulesTest, NoUriRowsAreTheirTwinWithoutUri) {
  int count = 0;
  for (const auto& [name, rows] : _rows) {
    for (const Row& row : rows) {
      if (!EndsWith(row.key, "_no_uri")) continue;
      ++count;
      const Row* twin = Find(name, row.key.substr(0, row.key.size() - 7));
      ASSERT_NE(twin, nullptr) << row.key;
      std::set<std::string> expected(twin->params.begin(), twin->params.end());
      EXPECT_EQ(expected.erase("uri"), 1u) << twin->key << " has no {uri}";
      EXPECT_EQ(std::set<std::string>(row.params.begin(), row.params.end()), expected) << row.key;
    }
  }
  EXPECT_EQ(count, 2);
}

TEST_F(CatalogueRulesTest, CollectedRowsEndInAFullWidthColonAheadOfAList) {
  int count = 0;
  for (const auto& [name, rows] : _rows) {
    for (const Row& row : rows) {
      if (!EndsWith(row.key, "_collected")) continue;
      ++count;
      EXPECT_TRUE(EndsWith(row.text, "：")) << row.key << ": " << row.text;
      const Row* twin = Find(name, row.key.substr(0, row.key.size() - 10));
      ASSERT_NE(twin, nullptr) << row.key;
      const std::set<std::string> twinParams(twin->params.begin(), twin->params.end());
      for (const std::string& param : row.params)
        EXPECT_TRUE(twinParams.count(param)) << row.key << ": {" << param << "} not in its twin";
    }
  }
  EXPECT_EQ(count, 17);
}

// In the package manager's catalogue (xml's script_ignored is a message of its own).
TEST_F(CatalogueRulesTest, IgnoredRowsAreLogLinesOfAStepPassedOver) {
  int count = 0;
  for (const Row& row : _rows["pkg"]) {
    if (!EndsWith(row.key, "_ignored")) continue;
    ++count;
    EXPECT_TRUE(EndsWith(row.text, "—已忽略。")) << row.key << ": " << row.text;
  }
  EXPECT_EQ(count, 6);
}

TEST_F(CatalogueRulesTest, ArgParametersOnlyInTheCatalogueTimingLine) {
  for (const auto& [name, rows] : _rows) {
    for (const Row& row : rows) {
      const bool timing = name == "xml" && row.key == "verbose_finish_loading_catalog";
      for (const std::string& param : row.params) {
        if (param == "arg1" || param == "arg2") {
          EXPECT_TRUE(timing) << name << "/" << row.key;
        }
      }
      if (timing) {
        EXPECT_EQ(row.params, (std::vector<std::string>{"arg1", "arg2"}));
      }
    }
  }
}

TEST_F(CatalogueRulesTest, RowsThatStandAsGiven) {
  EXPECT_EQ(Find("os", "SocketNotUdp")->text, Find("os", "SocketNotTcp")->text);
  EXPECT_TRUE(EndsWith(Find("os", "NetworkProxyAuthMethodUserOK")->text, "OK."));
  EXPECT_TRUE(EndsWith(Find("os", "NetworkProxyAuthOK")->text, "OK。"));
  EXPECT_EQ(Find("cryptography", "OpenSSLDescription")->text, "{description}");
  EXPECT_EQ(Find("pkg", "label_conflicts")->text, "与   冲突");
  EXPECT_EQ(Find("pkg", "delete_folder")->text, Find("pkg", "log_delete_folder_ignored")->text);
  EXPECT_TRUE(EndsWith(Find("xml", "quickmend_a_props_correct_delete_vc")->text, "."));
  EXPECT_FALSE(EndsWith(Find("xml", "quickmend_a_props_correct_delete_vc")->text, "。"));
  EXPECT_TRUE(EndsWith(Find("xml", "quickmend_element_no_valid_default_value_delete")->text, "。"));
  EXPECT_FALSE(EndsWith(Find("xml", "wfc_NoRecursion_PEDecl")->text, "。"));
  EXPECT_TRUE(EndsWith(Find("xml", "wfc_NoRecursion_GEDecl")->text, "。"));
  // The one row that stands away from its family.
  const Row* space = Find("xml", "wfc_xml_space");
  ASSERT_NE(space, nullptr);
  EXPECT_EQ(_rows["xml"][space->index - 1].key, "vc_AttributeValueType");
  EXPECT_EQ(_rows["xml"][space->index + 1].key, "vc_ElementValid_1");
}

}  // namespace
