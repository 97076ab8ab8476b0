// The four Unicode tables checked against the data files by a reader written here, independent
// of the generator: categories come from a per-code-point array scanned for runs, scripts and
// extensions from the files' lines taken in order, blocks from Blocks.txt and the six older
// names. Also the loading: one allocation per row, and freeing at unload.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <ic/unicode/internal/unicode_table_data.h>
#include <ic/unicode/unicode_tables.h>

#include "counting_allocator.h"
#include "ucd_reader.h"

namespace ic {
namespace {

using Ranges = std::vector<CodePointRange>;
using Rows = std::map<std::string, Ranges>;  // ordered by the bytes of the name

using test::CategoryOfEach;
using test::DataLines;
using test::RangeOf;

// The runs of code points for which `in` is true.
template <class Pred>
Ranges Runs(Pred in) {
  Ranges runs;
  for (uint32_t c = 0; c < 0x110000; ++c) {
    if (!in(c)) continue;
    if (!runs.empty() && runs.back().last + 1 == c)
      runs.back().last = c;
    else
      runs.push_back({c, c});
  }
  return runs;
}

const Rows& ExpectedCategories() {
  static const Rows rows = [] {
    const std::vector<std::string>& cat = CategoryOfEach();
    Rows r;
    std::vector<std::string> names;
    for (const std::string& name : cat)
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    for (const std::string& name : names) {
      r[name] = Runs([&](uint32_t c) { return cat[c] == name; });
      const std::string letter = name.substr(0, 1);
      if (!r.count(letter)) r[letter] = Runs([&](uint32_t c) { return cat[c][0] == letter[0]; });
    }
    r["LC"] = Runs([&](uint32_t c) { return cat[c] == "Lu" || cat[c] == "Ll" || cat[c] == "Lt"; });
    return r;
  }();
  return rows;
}

std::map<std::string, std::string> ScriptCodes() {
  std::map<std::string, std::string> codes;
  for (const auto& f : DataLines("PropertyValueAliases.txt"))
    if (f[0] == "sc") codes[f[2]] = f[1];
  return codes;
}

Rows ExpectedScripts() {
  const std::map<std::string, std::string> codes = ScriptCodes();
  Rows r;
  for (const auto& f : DataLines("Scripts.txt"))
    r[codes.at(f[1])].push_back(RangeOf(f[0]));
  return r;
}

Rows ExpectedExtensions() {
  Rows r;
  for (const auto& f : DataLines("ScriptExtensions.txt")) {
    std::stringstream s(f[1]);
    std::string code;
    while (s >> code)
      r[code].push_back(RangeOf(f[0]));
  }
  return r;
}

Rows ExpectedBlocks() {
  Rows r;
  for (const auto& f : DataLines("Blocks.txt")) {
    std::string name = f[1];
    name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
    r[name] = {RangeOf(f[0])};
  }
  r["CombiningMarksforSymbols"] = {{0x20D0, 0x20FF}};
  r["CyrillicSupplementary"] = {{0x500, 0x52F}};
  r["Greek"] = {{0x370, 0x3FF}};
  r["MiscellaneousSymbolsAndPictographs"] = {{0x1F300, 0x1F5FF}};
  r["TransportAndMapSymbols"] = {{0x1F680, 0x1F6FF}};
  r["PrivateUse"] = {{0xE000, 0xF8FF}, {0xF0000, 0xFFFFD}, {0x100000, 0x10FFFD}};
  return r;
}

template <size_t N>
void ExpectTable(const NamedCodePointSet (&table)[N], const Rows& expected) {
  ASSERT_EQ(N, expected.size());
  size_t i = 0;
  for (const auto& [name, ranges] : expected) {
    const NamedCodePointSet& row = table[i++];
    ASSERT_NE(row.name, nullptr);
    EXPECT_EQ(row.name, name);
    EXPECT_EQ(row.nameLength, name.size());
    EXPECT_EQ(std::strlen(row.name), row.nameLength);
    EXPECT_EQ(Ranges(row.ranges.begin(), row.ranges.end()), ranges) << name;
  }
}

template <size_t N>
const NamedCodePointSet* Find(const NamedCodePointSet (&table)[N], const char* name) {
  const auto it = std::lower_bound(
      table, table + N, name,
      [](const NamedCodePointSet& row, const char* key) { return std::strcmp(row.name, key) < 0; });
  return it != table + N && std::strcmp(it->name, name) == 0 ? it : nullptr;
}

template <size_t N>
Ranges RowOf(const NamedCodePointSet (&table)[N], const char* name) {
  const NamedCodePointSet* row = Find(table, name);
  return row ? Ranges(row->ranges.begin(), row->ranges.end()) : Ranges{};
}

class UnicodeTables : public ::testing::Test {
 protected:
  void SetUp() override { LoadUnicodeTables(); }
};

TEST_F(UnicodeTables, BlocksMatchBlocksTxtAndTheOlderNames) {
  ExpectTable(UnicodeBlockTable, ExpectedBlocks());
}

TEST_F(UnicodeTables, CategoriesMatchUnicodeData) {
  ExpectTable(UnicodeCategoryTable, ExpectedCategories());
}

TEST_F(UnicodeTables, ScriptsMatchScriptsTxtLineByLine) {
  ExpectTable(UnicodeScriptTable, ExpectedScripts());
}

TEST_F(UnicodeTables, ExtensionsMatchScriptExtensionsTxtLineByLine) {
  ExpectTable(UnicodeScriptExtensionTable, ExpectedExtensions());
}

TEST_F(UnicodeTables, RowCountsAndNameOrder) {
  EXPECT_EQ(std::size(UnicodeBlockTable), 279u);
  EXPECT_EQ(std::size(UnicodeCategoryTable), 38u);
  EXPECT_EQ(std::size(UnicodeScriptTable), 137u);
  EXPECT_EQ(std::size(UnicodeScriptExtensionTable), 59u);
  auto strictlyRising = [](const NamedCodePointSet* begin, const NamedCodePointSet* end) {
    for (const NamedCodePointSet* p = begin + 1; p < end; ++p)
      if (std::strcmp(p[-1].name, p->name) >= 0) return false;
    return true;
  };
  EXPECT_TRUE(strictlyRising(std::begin(UnicodeBlockTable), std::end(UnicodeBlockTable)));
  EXPECT_TRUE(strictlyRising(std::begin(UnicodeCategoryTable), std::end(UnicodeCategoryTable)));
  EXPECT_TRUE(strictlyRising(std::begin(UnicodeScriptTable), std::end(UnicodeScriptTable)));
  EXPECT_TRUE(strictlyRising(std::begin(UnicodeScriptExtensionTable),
                             std::end(UnicodeScriptExtensionTable)));
  // By bytes: upper case before lower case.
  EXPECT_LT(Find(UnicodeBlockTable, "CJKCompatibility"), Find(UnicodeBlockTable, "Carian"));
  EXPECT_LT(Find(UnicodeBlockTable, "MiscellaneousSymbolsAndPictographs"),
            Find(UnicodeBlockTable, "MiscellaneousSymbolsandArrows"));
  EXPECT_STREQ(UnicodeBlockTable[0].name, "Adlam");
  EXPECT_STREQ(UnicodeBlockTable[278].name, "YijingHexagramSymbols");
  EXPECT_STREQ(UnicodeCategoryTable[0].name, "C");
  EXPECT_STREQ(UnicodeCategoryTable[37].name, "Zs");
}

TEST_F(UnicodeTables, RangeTotals) {
  auto total = [](const NamedCodePointSet* begin, const NamedCodePointSet* end) {
    size_t sum = 0;
    for (const NamedCodePointSet* p = begin; p < end; ++p)
      sum += p->ranges.size();
    return sum;
  };
  EXPECT_EQ(total(std::begin(UnicodeCategoryTable), std::end(UnicodeCategoryTable)), 5752u);
  EXPECT_EQ(total(std::begin(UnicodeScriptTable), std::end(UnicodeScriptTable)), 1922u);
  EXPECT_EQ(total(std::begin(UnicodeScriptExtensionTable), std::end(UnicodeScriptExtensionTable)),
            455u);
  size_t largest = 0;
  for (const NamedCodePointSet& row : UnicodeScriptTable)
    largest = std::max(largest, row.ranges.size());
  EXPECT_EQ(Find(UnicodeScriptTable, "Zyyy")->ranges.size(), 579u);
  EXPECT_EQ(largest, 579u);
}

TEST_F(UnicodeTables, CategorySumsAndExactCover) {
  const std::pair<const char*, uint64_t> sums[] = {
      {"L", 116766}, {"M", 2097}, {"N", 1492}, {"P", 748}, {"S", 6899}, {"Z", 19}, {"C", 986091}};
  std::vector<int> cover(0x110000, 0);
  for (const auto& [name, expected] : sums) {
    uint64_t sum = 0;
    for (const CodePointRange& r : Find(UnicodeCategoryTable, name)->ranges) {
      sum += r.last - r.first + 1;
      for (uint32_t c = r.first; c <= r.last; ++c)
        ++cover[c];
    }
    EXPECT_EQ(sum, expected) << name;
  }
  EXPECT_EQ(std::count(cover.begin(), cover.end(), 1), 0x110000);
}

TEST_F(UnicodeTables, TellingRows) {
  EXPECT_EQ(RowOf(UnicodeBlockTable, "Adlam"), (Ranges{{0x1E900, 0x1E95F}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "BasicLatin"), (Ranges{{0, 0x7F}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "Latin-1Supplement"), (Ranges{{0x80, 0xFF}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "HighSurrogates"), (Ranges{{0xD800, 0xDB7F}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "HighPrivateUseSurrogates"), (Ranges{{0xDB80, 0xDBFF}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "LowSurrogates"), (Ranges{{0xDC00, 0xDFFF}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "Specials"), (Ranges{{0xFFF0, 0xFFFF}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "Greek"), RowOf(UnicodeBlockTable, "GreekandCoptic"));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "SupplementaryPrivateUseArea-A"),
            (Ranges{{0xF0000, 0xFFFFF}}));
  EXPECT_EQ(RowOf(UnicodeBlockTable, "SupplementaryPrivateUseArea-B"),
            (Ranges{{0x100000, 0x10FFFF}}));
  for (const NamedCodePointSet& row : UnicodeBlockTable) {
    if (std::strcmp(row.name, "PrivateUse") == 0) continue;
    ASSERT_EQ(row.ranges.size(), 1u) << row.name;
    EXPECT_EQ(row.ranges[0].first % 16, 0u) << row.name;
    EXPECT_EQ(row.ranges[0].last % 16, 15u) << row.name;
  }
  EXPECT_EQ(RowOf(UnicodeCategoryTable, "Cs"), (Ranges{{0xD800, 0xDFFF}}));
  EXPECT_EQ(RowOf(UnicodeCategoryTable, "Co"),
            (Ranges{{0xE000, 0xF8FF}, {0xF0000, 0xFFFFD}, {0x100000, 0x10FFFD}}));
  const Ranges cn = RowOf(UnicodeCategoryTable, "Cn");
  ASSERT_GE(cn.size(), 2u);
  EXPECT_EQ(cn[cn.size() - 2], (CodePointRange{0xFFFFE, 0xFFFFF}));
  EXPECT_EQ(cn.back(), (CodePointRange{0x10FFFE, 0x10FFFF}));
  EXPECT_EQ(RowOf(UnicodeCategoryTable, "Zl"), (Ranges{{0x2028, 0x2028}}));
  EXPECT_EQ(RowOf(UnicodeCategoryTable, "Zp"), (Ranges{{0x2029, 0x2029}}));
  EXPECT_EQ(RowOf(UnicodeCategoryTable, "Zs"), (Ranges{{0x20, 0x20},
                                                       {0xA0, 0xA0},
                                                       {0x1680, 0x1680},
                                                       {0x2000, 0x200A},
                                                       {0x202F, 0x202F},
                                                       {0x205F, 0x205F},
                                                       {0x3000, 0x3000}}));
  const Ranges adlm = RowOf(UnicodeScriptTable, "Adlm");
  ASSERT_GE(adlm.size(), 2u);
  EXPECT_EQ(adlm[0], (CodePointRange{0x1E900, 0x1E943}));
  EXPECT_EQ(adlm[1], (CodePointRange{0x1E944, 0x1E94A}));
  EXPECT_EQ(RowOf(UnicodeScriptExtensionTable, "Adlm"), (Ranges{{0x640, 0x640}}));
}

TEST_F(UnicodeTables, NoRowsBeyondTheData) {
  EXPECT_EQ(Find(UnicodeScriptTable, "Gonm"), nullptr);  // Masaram Gondi came in Unicode 10.0
  EXPECT_EQ(Find(UnicodeScriptTable, "Zzzz"), nullptr);  // Unknown
  EXPECT_EQ(Find(UnicodeScriptTable, "Latin"), nullptr);
  EXPECT_EQ(Find(UnicodeScriptTable, "Common"), nullptr);
  EXPECT_NE(Find(UnicodeScriptTable, "Zinh"), nullptr);
  EXPECT_EQ(Find(UnicodeScriptExtensionTable, "Latn")->ranges.size(),
            ExpectedExtensions().at("Latn").size());
  EXPECT_EQ(Find(UnicodeScriptExtensionTable, "Zyyy"), nullptr);
  EXPECT_EQ(Find(UnicodeBlockTable, "Ahom")->ranges.size(), 1u);
  EXPECT_EQ(Find(UnicodeBlockTable, "Syriac Supplement"), nullptr);
  EXPECT_EQ(Find(UnicodeBlockTable, "SyriacSupplement"), nullptr);  // Unicode 10.0
}

TEST_F(UnicodeTables, EachRowIsOneAllocationAndUnloadFreesThem) {
  internal::UnloadUnicodeScriptExtensionTable();
  internal::UnloadUnicodeScriptTable();
  internal::UnloadUnicodeCategoryTable();
  internal::UnloadUnicodeBlockTable();
  EXPECT_FALSE(UnicodeCategoryTableLoaded());
  EXPECT_EQ(UnicodeBlockTable[0].name, nullptr);
  EXPECT_TRUE(UnicodeCategoryTable[0].ranges.empty());
  {
    test::AllocationScope scope;
    LoadUnicodeTables();
    EXPECT_EQ(scope.Allocations(), 279 + 38 + 137 + 59);
  }
  EXPECT_TRUE(UnicodeCategoryTableLoaded());
  {
    test::AllocationScope scope;
    LoadUnicodeTables();  // loaded already: nothing to do
    EXPECT_EQ(scope.Allocations(), 0);
  }
  for (const NamedCodePointSet& row : UnicodeCategoryTable)
    EXPECT_EQ(row.ranges.capacity(), row.ranges.size()) << row.name;
  {
    test::AllocationScope scope;
    internal::UnloadUnicodeScriptExtensionTable();
    internal::UnloadUnicodeScriptTable();
    internal::UnloadUnicodeCategoryTable();
    internal::UnloadUnicodeBlockTable();
    EXPECT_EQ(scope.Frees(), 279 + 38 + 137 + 59);
    internal::UnloadUnicodeBlockTable();  // not loaded: nothing to do
    EXPECT_EQ(scope.Frees(), 279 + 38 + 137 + 59);
  }
  LoadUnicodeTables();
  ExpectTable(UnicodeCategoryTable, ExpectedCategories());
}

}  // namespace
}  // namespace ic
