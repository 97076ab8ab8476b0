// The catalogues of the built module, row by row, against the row listing: counts, key order
// and texts byte for byte (line breaks and backslashes are real characters in the tables).
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
using ic::test::CatalogueRow;
using ic::test::Utf8;

class CatalogueRowsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    g_rows =
        new std::vector<CatalogueRow>(ic::test::ReadCatalogueRows(ic::test::CatalogueRowsPath));
  }
  static void TearDownTestSuite() {
    delete g_rows;
    g_rows = nullptr;
  }

  void SetUp() override { ASSERT_TRUE(_module.IsLoaded()) << _module.Error(); }

  static std::vector<CatalogueRow> RowsOf(const std::string& catalogue) {
    std::vector<CatalogueRow> rows;
    for (const CatalogueRow& row : *g_rows) {
      if (row.catalogue == catalogue) rows.push_back(row);
    }
    return rows;
  }

  ResourceStringLibrary* Record(const std::string& name) {
    for (ResourceStringLibrary* record : _module.Chain()) {
      if (Utf8(record->Name) == name) return record;
    }
    return nullptr;
  }

  // Compares the keys of every row, and the texts of the rows whose text the listing gives.
  void CheckCatalogue(const std::string& name, bool allGiven) {
    SCOPED_TRACE(name);
    const std::vector<CatalogueRow> rows = RowsOf(name);
    ASSERT_FALSE(rows.empty());
    ResourceStringLibrary* record = Record(name);
    ASSERT_NE(record, nullptr);
    ASSERT_EQ(record->Count, static_cast<int32_t>(rows.size()));
    for (const CatalogueRow& row : rows) {
      ASSERT_LT(row.row, record->Count);
      EXPECT_EQ(Utf8(record->GetKey(record, row.row)), row.key) << "row " << row.row;
      if (allGiven) {
        EXPECT_TRUE(row.given) << "row " << row.row << " " << row.key;
      }
      if (row.given) {
        EXPECT_EQ(Utf8(record->GetText(record, row.row)), row.text)
            << "row " << row.row << " " << row.key;
      }
    }
    EXPECT_EQ(record->GetKey(record, record->Count), nullptr);
    EXPECT_EQ(record->GetText(record, record->Count), nullptr);
  }

  static std::vector<CatalogueRow>* g_rows;
  ic::test::LoadedModule _module{ic::test::ModulePath};
};

std::vector<CatalogueRow>* CatalogueRowsTest::g_rows = nullptr;

TEST_F(CatalogueRowsTest, ListingIsInRowOrder) {
  std::map<std::string, int> next;
  for (const CatalogueRow& row : *g_rows) {
    EXPECT_EQ(row.row, next[row.catalogue]++) << row.catalogue << " " << row.key;
  }
  EXPECT_EQ(g_rows->size(), 514u);
}

TEST_F(CatalogueRowsTest, Core) {
  CheckCatalogue("core", true);
}
TEST_F(CatalogueRowsTest, Msg) {
  CheckCatalogue("msg", true);
}
TEST_F(CatalogueRowsTest, Res) {
  CheckCatalogue("res", true);
}
TEST_F(CatalogueRowsTest, Regex) {
  CheckCatalogue("regex", true);
}
TEST_F(CatalogueRowsTest, Xsdt) {
  CheckCatalogue("xsdt", true);
}
TEST_F(CatalogueRowsTest, Dispatch) {
  CheckCatalogue("dispatch", true);
}
TEST_F(CatalogueRowsTest, Gui) {
  CheckCatalogue("gui", true);
}
TEST_F(CatalogueRowsTest, Icgui) {
  CheckCatalogue("icgui", true);
}
TEST_F(CatalogueRowsTest, Scintilla) {
  CheckCatalogue("Scintilla", true);
}

// The other four are still being translated: every key in its place, and the given texts.
TEST_F(CatalogueRowsTest, Cryptography) {
  CheckCatalogue("cryptography", false);
}
TEST_F(CatalogueRowsTest, Xml) {
  CheckCatalogue("xml", false);
}
TEST_F(CatalogueRowsTest, Pkg) {
  CheckCatalogue("pkg", false);
}
TEST_F(CatalogueRowsTest, Os) {
  CheckCatalogue("os", false);
}

TEST_F(CatalogueRowsTest, ListingCoversEveryCatalogue) {
  std::set<std::string> listed;
  for (const CatalogueRow& row : *g_rows)
    listed.insert(row.catalogue);
  std::set<std::string> loaded;
  for (ResourceStringLibrary* record : _module.Chain())
    loaded.insert(Utf8(record->Name));
  EXPECT_EQ(listed, loaded);
}

// A few rows whose characters are easy to get wrong, spelt out here as the tables must hold
// them in UTF-16.
TEST_F(CatalogueRowsTest, SpecialCharactersAreReal) {
  ResourceStringLibrary* scintilla = Record("Scintilla");
  ASSERT_NE(scintilla, nullptr);
  EXPECT_EQ(std::u16string(scintilla->GetText(scintilla, 32)),
            u"\u6CA1\u6709\u66F4\u591A\u5339\u914D\u9879\uFF01\r\n\u518D\u6B21\u641C\u7D22"
            u"\uFF1F");
  ResourceStringLibrary* icgui = Record("icgui");
  ASSERT_NE(icgui, nullptr);
  EXPECT_EQ(std::u16string(icgui->GetText(icgui, 1)),
            u"\u5BBD\u5EA6\uFF1A{Width}\n\u989C\u8272\uFF1A{Color}\n\u6837\u5F0F\uFF1A{Style}");
  ResourceStringLibrary* msg = Record("msg");
  ASSERT_NE(msg, nullptr);
  EXPECT_EQ(std::u16string(msg->GetText(msg, 9)), u"\u884C ");  // "Line" keeps its blank
  ResourceStringLibrary* regex = Record("regex");
  ASSERT_NE(regex, nullptr);
  EXPECT_EQ(std::u16string(regex->GetText(regex, 4)),
            u"\u5728\u6B64\u4F4D\u7F6E\u9700\u8981\u4E00\u4E2A\u5DE6\u5927\u62EC\u53F7\u201C\\{"
            u"\u201D\u3002");
  const std::u16string metaChars = regex->GetText(regex, 2);
  EXPECT_NE(metaChars.find(u"\"\\\", \"?\""), std::u16string::npos);  // "\", "?"
  EXPECT_NE(metaChars.find(u"\"\\{\", \"\\}\""), std::u16string::npos);
  ResourceStringLibrary* dispatch = Record("dispatch");
  ASSERT_NE(dispatch, nullptr);
  EXPECT_EQ(std::u16string(dispatch->GetText(dispatch, 0)),
            u"\u7528\u6237\u53D6\u6D88\u4E86\u4F5C\u4E1A.");  // an ASCII full stop
}

}  // namespace
