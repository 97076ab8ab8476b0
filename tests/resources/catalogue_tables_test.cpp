// The generated tables of all thirteen catalogues, compiled into this test: the function group
// of each catalogue over its real tables.
#include <string>

#include <gtest/gtest.h>
#include <ic/resources/lookup.h>
#include <ic/resources/manager.h>

#include "catalogues/Scintilla.h"
#include "catalogues/core.h"
#include "catalogues/cryptography.h"
#include "catalogues/dispatch.h"
#include "catalogues/gui.h"
#include "catalogues/icgui.h"
#include "catalogues/msg.h"
#include "catalogues/os.h"
#include "catalogues/pkg.h"
#include "catalogues/regex.h"
#include "catalogues/res.h"
#include "catalogues/xml.h"
#include "catalogues/xsdt.h"

namespace {

using namespace ic::resources;
namespace catalogues = ic::resources::catalogues;

// The function group of one catalogue, gathered so that one check serves all thirteen.
struct Group {
  const char16_t* Name;
  int32_t Count;
  int32_t RowCount;
  ResourceStringLibrary* (*GetLibrary)();
  const char16_t* (*GetKeyAt)(int32_t);
  RowAccessor KeyAccessor;
  RowAccessor TextAccessor;
};

#define IC_GROUP(NAME, COUNT)                                                    \
  Group {                                                                        \
    u## #NAME, COUNT, catalogues::NAME::RowCount, &catalogues::NAME::GetLibrary, \
        &catalogues::NAME::GetKeyAt, &catalogues::NAME::KeyAccessor,             \
        &catalogues::NAME::TextAccessor                                          \
  }

const Group kGroups[] = {IC_GROUP(gui, 16),       IC_GROUP(xsdt, 15),         IC_GROUP(dispatch, 6),
                         IC_GROUP(regex, 21),     IC_GROUP(cryptography, 34), IC_GROUP(xml, 182),
                         IC_GROUP(Scintilla, 33), IC_GROUP(msg, 10),          IC_GROUP(icgui, 2),
                         IC_GROUP(res, 23),       IC_GROUP(core, 31),         IC_GROUP(pkg, 82),
                         IC_GROUP(os, 59)};

#undef IC_GROUP

std::string Name(const Group& group) {
  std::string name;
  for (const char16_t* p = group.Name; *p; ++p)
    name += static_cast<char>(*p);
  return name;
}

TEST(CatalogueTablesTest, CountsAndRecords) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    EXPECT_EQ(group.RowCount, group.Count);
    ResourceStringLibrary* library = group.GetLibrary();
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(group.GetLibrary(), library);
    EXPECT_EQ(std::u16string(library->Name), group.Name);
    EXPECT_EQ(library->Count, group.Count);
    EXPECT_EQ(library->GetKey, group.KeyAccessor);
    EXPECT_EQ(library->GetText, group.TextAccessor);
    EXPECT_EQ(FindLibrary(group.Name), library);
  }
}

TEST(CatalogueTablesTest, GetKeyAtEndsInNull) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    for (int32_t row = 0; row < group.Count; ++row) {
      ASSERT_NE(group.GetKeyAt(row), nullptr) << row;
      EXPECT_EQ(group.GetKeyAt(row), group.KeyAccessor(nullptr, row));
    }
    EXPECT_EQ(group.GetKeyAt(group.Count), nullptr);
    EXPECT_EQ(group.GetKeyAt(group.Count + 1), nullptr);
    EXPECT_EQ(group.GetKeyAt(-1), nullptr);
  }
}

TEST(CatalogueTablesTest, AccessorsClamp) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    for (int32_t row : {-1, group.Count, group.Count + 1, INT32_MIN, INT32_MAX}) {
      EXPECT_EQ(group.TextAccessor(nullptr, row), nullptr) << row;
      EXPECT_EQ(group.KeyAccessor(nullptr, row), nullptr) << row;
    }
    EXPECT_NE(group.TextAccessor(nullptr, 0), nullptr);
    EXPECT_NE(group.TextAccessor(nullptr, group.Count - 1), nullptr);
  }
}

TEST(CatalogueTablesTest, EveryKeyFindsItsRow) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    ResourceStringLibrary* library = group.GetLibrary();
    for (int32_t row = 0; row < group.Count; ++row) {
      EXPECT_EQ(FindRow(library, group.GetKeyAt(row)), row);
      EXPECT_EQ(FindText(library, group.GetKeyAt(row)), group.TextAccessor(nullptr, row));
    }
    EXPECT_EQ(library->KeyIndex.size(), static_cast<size_t>(group.Count));
  }
}

TEST(CatalogueTablesTest, GetMessageUsesTheDefaultHook) {
  MessageResult result{u"stale", 3};
  EXPECT_EQ(catalogues::xml::GetMessage(&result, 10, 20), &result);
  EXPECT_EQ(result.Text, ic::EmptyText<char16_t>());
  EXPECT_EQ(result.Word, 0u);
}

}  // namespace
