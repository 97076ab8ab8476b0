// Wording choices that hold across the translated rows of the built module's catalogues:
// "the ID attribute" and its kind are written with the type name straight before 特性, an
// "external markup declaration" is always 外部标记声明, and the package manager's log lines of
// a step under way begin with 正在.
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "catalogue_rows.h"
#include "loaded_module.h"
#include "module_paths.h"
#include "utf8.h"

namespace {

using ic::resources::ResourceStringLibrary;
using ic::test::Utf8;

struct Row {
  std::string key;
  std::string text;
};

bool StartsWith(const std::string& text, const std::string& head) {
  return text.compare(0, head.size(), head) == 0;
}

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() &&
         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

class CatalogueTermsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(_module.IsLoaded()) << _module.Error();
    for (ResourceStringLibrary* record : _module.Chain()) {
      std::vector<Row>& rows = _rows[Utf8(record->Name)];
      for (int32_t i = 0; i < record->Count; ++i)
        rows.push_back({Utf8(record->GetKey(record, i)), Utf8(record->GetText(record, i))});
    }
    for (const ic::test::CatalogueRow& row :
         ic::test::ReadCatalogueRows(ic::test::CatalogueRowsPath)) {
      if (row.given) _given.insert(row.catalogue + "/" + row.key);
    }
  }

  // The text of a row; fails the test and gives "" for a key the catalogue lacks.
  std::string Text(const std::string& catalogue, const std::string& key) {
    for (const Row& row : _rows[catalogue])
      if (row.key == key) return row.text;
    ADD_FAILURE() << catalogue << "/" << key << " is missing";
    return {};
  }

  bool IsGiven(const std::string& catalogue, const std::string& key) const {
    return _given.count(catalogue + "/" + key) != 0;
  }

  ic::test::LoadedModule _module{ic::test::ModulePath};
  std::map<std::string, std::vector<Row>> _rows;
  std::set<std::string> _given;
};

// The attribute types of a DTD. "the ENTITY attribute" is ENTITY特性, as ID特性 is; an
// attribute "of type NOTATION" is NOTATION类型的特性. The form X类型特性 is neither.
TEST_F(CatalogueTermsTest, NoTypeWordBetweenADtdTypeNameAndAttribute) {
  const char* const types[] = {"CDATA",    "ID",      "IDREF",    "IDREFS",  "ENTITY",
                               "ENTITIES", "NMTOKEN", "NMTOKENS", "NOTATION"};
  for (const auto& [name, rows] : _rows) {
    for (const Row& row : rows) {
      for (const char* type : types) {
        EXPECT_EQ(row.text.find(std::string(type) + "类型特性"), std::string::npos)
            << name << "/" << row.key << ": " << row.text;
      }
    }
  }
  // Each row that speaks of "the X attribute {attribute}" names it so.
  const std::pair<const char*, const char*> typed[] = {
      {"vc_EntityName_semantic", "ENTITY特性{attribute}"},
      {"vc_EntityName_syntactic", "ENTITY特性{attribute}"},
      {"vc_ID_syntactic", "ID特性{attribute}"},
      {"vc_ID_semantic", "ID特性{attribute}"},
      {"vc_OneIDperElementType", "ID特性{attribute}"},
      {"vc_IDREF_syntactic", "IDREF特性{attribute}"},
      {"vc_IDREF_semantic", "IDREF特性{attribute}"},
      {"vc_NameToken_syntactic", "NMTOKEN特性{attribute}"},
      {"vc_NotationAttributes_syntactic", "NOTATION特性{attribute}"},
      {"vc_NotationAttributes_semantic", "NOTATION特性{attribute}"},
      {"vc_OneNotationPerElementType", "NOTATION特性{attribute}"},
  };
  for (const auto& [key, wording] : typed) {
    const std::string text = Text("xml", key);
    EXPECT_NE(text.find(wording), std::string::npos) << key << ": " << text;
  }
}

TEST_F(CatalogueTermsTest, ExternalMarkupIsAlwaysAnExternalMarkupDeclaration) {
  const std::string term = "外部标记";
  const std::string declaration = "声明";
  for (const auto& [name, rows] : _rows) {
    for (const Row& row : rows) {
      for (size_t at = row.text.find(term); at != std::string::npos;
           at = row.text.find(term, at + term.size())) {
        EXPECT_EQ(row.text.compare(at + term.size(), declaration.size(), declaration), 0)
            << name << "/" << row.key << ": " << row.text;
      }
    }
  }
  for (const char* key :
       {"wfc_EntityDeclared_extmarkup_standalone", "vc_StandaloneDocumentDeclaration_1",
        "vc_StandaloneDocumentDeclaration_2", "vc_StandaloneDocumentDeclaration_3",
        "vc_StandaloneDocumentDeclaration_4"}) {
    const std::string text = Text("xml", key);
    EXPECT_NE(text.find(term + declaration), std::string::npos) << key << ": " << text;
  }
}

// The package manager logs a step as it starts it ("Deleting the folder ..."): such a line
// reads 正在删除文件夹..., not 删除文件夹..., which reads as a command. The log lines of a
// step that failed and was passed over end in _ignored and report an outcome instead.
TEST_F(CatalogueTermsTest, PackageLogLinesOfAStepUnderWayBeginWithZhengZai) {
  const char* const steps[] = {"log_create_", "log_delete_", "log_download_", "log_fetch_",
                               "log_update_"};
  int lines = 0;
  for (const Row& row : _rows["pkg"]) {
    bool underWay = false;
    for (const char* step : steps)
      underWay = underWay || StartsWith(row.key, step);
    if (!underWay || EndsWith(row.key, "_ignored") || IsGiven("pkg", row.key)) continue;
    ++lines;
    EXPECT_TRUE(StartsWith(row.text, "正在")) << row.key << ": " << row.text;
  }
  // log_create_folder, log_delete_folder, log_download_file, log_delete_file,
  // log_fetch_pkg_available and the three log_update_ rows.
  EXPECT_EQ(lines, 8);
}

}  // namespace
