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
  const char16_t* name;
  int32_t count;
  int32_t rowCount;
  ResourceStringLibrary* (*getLibrary)();
  const char16_t* (*getKeyAt)(int32_t);
  RowAccessor keyAccessor;
  RowAccessor textAccessor;
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
  for (const char16_t* p = group.name; *p; ++p)
    name += static_cast<char>(*p);
  return name;
}

TEST(CatalogueTablesTest, CountsAndRecords) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    EXPECT_EQ(group.rowCount, group.count);
    ResourceStringLibrary* library = group.getLibrary();
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(group.getLibrary(), library);
    EXPECT_EQ(std::u16string(library->Name), group.name);
    EXPECT_EQ(library->Count, group.count);
    EXPECT_EQ(library->GetKey, group.keyAccessor);
    EXPECT_EQ(library->GetText, group.textAccessor);
    EXPECT_EQ(FindLibrary(group.name), library);
  }
}

TEST(CatalogueTablesTest, GetKeyAtEndsInNull) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    for (int32_t row = 0; row < group.count; ++row) {
      ASSERT_NE(group.getKeyAt(row), nullptr) << row;
      EXPECT_EQ(group.getKeyAt(row), group.keyAccessor(nullptr, row));
    }
    EXPECT_EQ(group.getKeyAt(group.count), nullptr);
    EXPECT_EQ(group.getKeyAt(group.count + 1), nullptr);
    EXPECT_EQ(group.getKeyAt(-1), nullptr);
  }
}

TEST(CatalogueTablesTest, AccessorsClamp) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    for (int32_t row : {-1, group.count, group.count + 1, INT32_MIN, INT32_MAX}) {
      EXPECT_EQ(group.textAccessor(nullptr, row), nullptr) << row;
      EXPECT_EQ(group.keyAccessor(nullptr, row), nullptr) << row;
    }
    EXPECT_NE(group.textAccessor(nullptr, 0), nullptr);
    EXPECT_NE(group.textAccessor(nullptr, group.count - 1), nullptr);
  }
}

TEST(CatalogueTablesTest, EveryKeyFindsItsRow) {
  for (const Group& group : kGroups) {
    SCOPED_TRACE(Name(group));
    ResourceStringLibrary* library = group.getLibrary();
    for (int32_t row = 0; row < group.count; ++row) {
      EXPECT_EQ(FindRow(library, group.getKeyAt(row)), row);
      EXPECT_EQ(FindText(library, group.getKeyAt(row)), group.textAccessor(nullptr, row));
    }
    EXPECT_EQ(library->KeyIndex.size(), static_cast<size_t>(group.count));
  }
}

TEST(CatalogueTablesTest, GetMessageUsesTheDefaultHook) {
  MessageResult result{u"stale", 3};
  EXPECT_EQ(catalogues::xml::GetMessage(&result, 10, 20), &result);
  EXPECT_EQ(result.text, ic::EmptyText<char16_t>());
  EXPECT_EQ(result.word, 0u);
}

}  // namespace
