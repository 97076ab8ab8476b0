// The language module as a host sees it: loaded at run time, the chain of its thirteen records
// in start-up order, rows found by key, the language set through its manager, and unloading.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <ic/resources/lookup.h>

#include "heap_usage.h"
#include "loaded_module.h"
#include "module_cycle.h"
#include "module_paths.h"
#include "utf8.h"

namespace {

using ic::resources::ResourceStringLibrary;
using ic::test::BytesInUse;
using ic::test::ExpectBytesInUseBelow;
using ic::test::IsModuleMapped;
using ic::test::LoadedModule;
using ic::test::ModulePath;
using ic::test::UseModuleOnce;
using ic::test::Utf8;

struct Expected {
  const char16_t* name;
  int32_t count;
};

// Chain order: the last record built at start-up comes first.
const Expected kChain[] = {
    {u"gui", 16},  {u"xsdt", 15},      {u"dispatch", 6}, {u"regex", 21}, {u"cryptography", 34},
    {u"xml", 182}, {u"Scintilla", 33}, {u"msg", 10},     {u"icgui", 2},  {u"res", 23},
    {u"core", 31}, {u"pkg", 82},       {u"os", 59}};

class LanguageModuleTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(_module.IsLoaded()) << _module.Error();
    ASSERT_TRUE(_module.Error().empty()) << _module.Error();
  }
  LoadedModule _module{ModulePath};
};

TEST_F(LanguageModuleTest, ChainRunsFromGuiToOs) {
  ResourceStringLibrary* record = _module.getFirst();
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(std::u16string(record->Name), u"gui");
  for (const Expected& expected : kChain) {
    ASSERT_NE(record, nullptr) << Utf8(expected.name);
    EXPECT_EQ(std::u16string(record->Name), expected.name);
    EXPECT_EQ(record->Count, expected.count) << Utf8(expected.name);
    record = record->Next;
  }
  EXPECT_EQ(record, nullptr);  // the thirteenth hop, after os
  EXPECT_EQ(_module.Chain().size(), 13u);
}

TEST_F(LanguageModuleTest, RecordsAreAsBuilt) {
  for (ResourceStringLibrary* record : _module.Chain()) {
    SCOPED_TRACE(Utf8(record->Name));
    EXPECT_EQ(record->RecordMark, 2u);
    EXPECT_EQ(record->GetNumericEntry, nullptr);
    EXPECT_EQ(record->GetAlternateKey, nullptr);
    EXPECT_EQ(record->AlternateCount, 0);
    EXPECT_NE(record->GetText, nullptr);
    EXPECT_NE(record->GetKey, nullptr);
    EXPECT_EQ(record->KeyIndexBuilt.load(), 0);  // nothing is indexed before a host asks
    EXPECT_EQ(record->IdIndicesBuilt.load(), 0);
    EXPECT_TRUE(record->KeyIndex.empty());
    for (const auto& row : record->LanguageSlots) {
      for (const auto& word : row)
        EXPECT_EQ(word.load(), 0u);
    }
  }
}

TEST_F(LanguageModuleTest, EveryTableEndsInNull) {
  for (ResourceStringLibrary* record : _module.Chain()) {
    SCOPED_TRACE(Utf8(record->Name));
    for (int32_t row = 0; row < record->Count; ++row) {
      EXPECT_NE(record->GetKey(record, row), nullptr) << row;
      EXPECT_NE(record->GetText(record, row), nullptr) << row;
    }
    for (int32_t row : {-1, record->Count, record->Count + 1}) {
      EXPECT_EQ(record->GetKey(record, row), nullptr) << row;
      EXPECT_EQ(record->GetText(record, row), nullptr) << row;
    }
  }
}

TEST_F(LanguageModuleTest, NoKeyOccursTwiceInACatalogue) {
  for (ResourceStringLibrary* record : _module.Chain()) {
    std::set<std::u16string> keys;
    for (int32_t row = 0; row < record->Count; ++row) {
      EXPECT_TRUE(keys.insert(record->GetKey(record, row)).second)
          << Utf8(record->Name) << ": " << Utf8(record->GetKey(record, row));
    }
    // So the key index has one entry per row.
    _module.buildKeyIndex(record);
    EXPECT_EQ(record->KeyIndex.size(), static_cast<size_t>(record->Count)) << Utf8(record->Name);
  }
}

TEST_F(LanguageModuleTest, RoadOfAMessage) {
  ResourceStringLibrary* xml = _module.Find(u"xml");
  ASSERT_NE(xml, nullptr);
  _module.buildKeyIndex(xml);
  ASSERT_EQ(xml->KeyIndexBuilt.load(), 1);
  const int32_t row = ic::resources::FindRowInKeyIndex(xml, u"wfc_GIMatch");
  ASSERT_GE(row, 0);
  EXPECT_EQ(std::u16string(xml->GetKey(xml, row)), u"wfc_GIMatch");
  EXPECT_EQ(Utf8(xml->GetText(xml, row)),
            "\xE7\xBB\x93\xE6\x9D\x9F\xE6\xA0\x87\xE8\xAE\xB0\xE5\x90\x8D\xE7\xA7\xB0{etag}\xE4\xB8"
            "\x8E\xE5\xBC\x80\xE5\xA7\x8B\xE6\xA0\x87\xE8\xAE\xB0\xE5\x90\x8D\xE7\xA7\xB0{stag}"
            "\xE4\xB8\x8D\xE5\x8C\xB9\xE9\x85\x8D\xE3\x80\x82");  // 结束标记名称{etag}与开始...
  EXPECT_EQ(_module.findRow(xml, u"wfc_GIMatch"), row);
}

TEST_F(LanguageModuleTest, FindsRowsByKey) {
  struct Probe {
    const char16_t* catalogue;
    const char16_t* key;
    int32_t row;
  };
  const Probe probes[] = {{u"gui", u"GuiColorAqua", 0},
                          {u"gui", u"GuiColorWhite", 15},
                          {u"gui", u"GuiColorYellow", 14},
                          {u"core", u"ErrorSeverity_unknown", 30},
                          {u"msg", u"Line", 9},
                          {u"Scintilla", u"MessageNoMoreOccurrencesSearchAgain", 32},
                          {u"dispatch", u"job_canceled", 0},
                          {u"res", u"CannotLoadResourceDll", 22}};
  for (const Probe& probe : probes) {
    ResourceStringLibrary* record = _module.Find(probe.catalogue);
    ASSERT_NE(record, nullptr) << Utf8(probe.catalogue);
    EXPECT_EQ(_module.findRow(record, probe.key), probe.row) << Utf8(probe.key);
  }
  ResourceStringLibrary* gui = _module.Find(u"gui");
  EXPECT_EQ(_module.findRow(gui, u"GuiColorOrange"), -1);
  EXPECT_EQ(_module.findRow(gui, u"guicoloraqua"), -1);
  EXPECT_EQ(_module.findRow(gui, nullptr), -1);
  EXPECT_EQ(_module.findRow(nullptr, u"GuiColorAqua"), -1);
  EXPECT_EQ(_module.Find(u"Gui"), nullptr);
}

TEST_F(LanguageModuleTest, SameTextInSeparateRows) {
  const std::pair<const char16_t*, const char16_t*> pairs[] = {
      {u"Error", u"ErrorSeverity_error"},
      {u"Warning", u"ErrorSeverity_warning"},
      {u"FatalError", u"ErrorSeverity_fatal"}};
  ResourceStringLibrary* msg = _module.Find(u"msg");
  ResourceStringLibrary* core = _module.Find(u"core");
  for (const auto& [inMsg, inCore] : pairs) {
    const int32_t msgRow = _module.findRow(msg, inMsg);
    const int32_t coreRow = _module.findRow(core, inCore);
    ASSERT_GE(msgRow, 0);
    ASSERT_GE(coreRow, 0);
    const char16_t* msgText = msg->GetText(msg, msgRow);
    const char16_t* coreText = core->GetText(core, coreRow);
    EXPECT_EQ(std::u16string(msgText), std::u16string(coreText)) << Utf8(inMsg);
  }
}

TEST_F(LanguageModuleTest, LanguageThroughTheModulesManager) {
  EXPECT_EQ(_module.Language(false), u"en");  // a fresh load: never set
  _module.setLanguage(u"ZH");
  EXPECT_EQ(_module.Language(false), u"ZH");
  EXPECT_EQ(_module.Language(true), u"zh");
  _module.setLanguage(nullptr);
  _module.setLanguage(u"");
  EXPECT_EQ(_module.Language(false), u"ZH");
  _module.setLanguage(u"ko");
  EXPECT_EQ(_module.Language(false), u"ko");
}

TEST_F(LanguageModuleTest, GetLanguageMeasuresOrWrites) {
  _module.setLanguage(u"FR");
  EXPECT_EQ(_module.getLanguage(false, nullptr, 0), 3);
  char16_t buffer[3] = {u'x', u'x', u'x'};
  EXPECT_EQ(_module.getLanguage(false, buffer, 2), 3);  // too short: nothing written
  EXPECT_EQ(buffer[0], u'x');
  EXPECT_EQ(_module.getLanguage(true, buffer, 3), 0);
  EXPECT_EQ(std::u16string(buffer), u"fr");
}

TEST(LanguageModuleLifetimeTest, UnloadsWithoutAnyCall) {
  {
    LoadedModule module(ModulePath);
    ASSERT_TRUE(module.IsLoaded()) << module.Error();
    EXPECT_TRUE(IsModuleMapped(ModulePath));
    EXPECT_TRUE(module.Unload());
  }
  EXPECT_FALSE(IsModuleMapped(ModulePath));
}

// Load and unload cycles: IC_MODULE_CYCLES in the environment, 1000 if unset (the valgrind
// run of the reliability checks asks for fewer). Prints the heap that one load holds and the
// time of one cycle.
TEST(LanguageModuleLifetimeTest, LoadAndUnloadAThousandTimes) {
  const char* setting = std::getenv("IC_MODULE_CYCLES");
  const int cycles = setting != nullptr ? std::atoi(setting) : 1000;
  ASSERT_GT(cycles, 0);
  UseModuleOnce();  // the loader's own first-use allocations happen here
  const size_t before = BytesInUse();
  size_t heapPerLoad = 0;
  {
    LoadedModule module(ModulePath);
    ASSERT_TRUE(module.IsLoaded()) << module.Error();
    heapPerLoad = BytesInUse() - before;
  }
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < cycles; ++i) {
    UseModuleOnce();
    if (HasFatalFailure()) return;
  }
  const std::chrono::duration<double, std::micro> elapsed =
      std::chrono::steady_clock::now() - start;
  std::printf("%d cycles: %zu heap bytes held by one load, %.0f us per load, use and unload\n",
              cycles, heapPerLoad, elapsed.count() / cycles);
  // One cycle builds thirteen key indices (514 tree nodes) and more; a leak of any of them, or
  // of more than 16 bytes a cycle over 1000 cycles, would add more than this margin.
  ExpectBytesInUseBelow(before + 16 * 1024);
}

TEST(LanguageModuleLifetimeTest, IndicesAreFreedWithTheModule) {
  UseModuleOnce();
  const size_t before = BytesInUse();
  {
    LoadedModule module(ModulePath);
    ASSERT_TRUE(module.IsLoaded());
    for (ResourceStringLibrary* record : module.Chain())
      module.buildKeyIndex(record);
    // The host makes no further call: the module frees the indices at exit.
  }
  EXPECT_FALSE(IsModuleMapped(ModulePath));
  ExpectBytesInUseBelow(before + 4 * 1024);
}

}  // namespace
