// CharacterClassSets: every member against a direct definition, for all 0x110000 code points,
// over the general categories read from UnicodeData.txt here; the edge cases; and clean-up when
// an allocation fails part way.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <ic/unicode/character_class_sets.h>
#include <ic/unicode/internal/unicode_table_data.h>
#include <ic/unicode/unicode_tables.h>

#include "counting_allocator.h"
#include "ucd_reader.h"

namespace ic {
namespace {

bool In(const CodePointRangeSet& set, uint32_t c) {
  for (const CodePointRange& r : set)
    if (c >= r.first && c <= r.last) return true;
  return false;
}

// The set as one flag per code point; the set must ascend without overlap or touching.
std::vector<bool> Flags(const CodePointRangeSet& set) {
  std::vector<bool> flags(0x110000, false);
  for (size_t i = 0; i < set.size(); ++i) {
    EXPECT_LE(set[i].first, set[i].last);
    EXPECT_LE(set[i].last, 0x10FFFFu);
    if (i > 0) {
      EXPECT_GT(set[i].first, set[i - 1].last + 1);
    }
    for (uint32_t c = set[i].first; c <= set[i].last && c < 0x110000; ++c)
      flags[c] = true;
  }
  return flags;
}

bool InRanges(uint32_t c, std::initializer_list<CodePointRange> ranges) {
  for (const CodePointRange& r : ranges)
    if (c >= r.first && c <= r.last) return true;
  return false;
}

bool IsNameStart(uint32_t c) {
  return InRanges(c, {{':', ':'},
                      {'A', 'Z'},
                      {'_', '_'},
                      {'a', 'z'},
                      {0xC0, 0xD6},
                      {0xD8, 0xF6},
                      {0xF8, 0x2FF},
                      {0x370, 0x37D},
                      {0x37F, 0x1FFF},
                      {0x200C, 0x200D},
                      {0x2070, 0x218F},
                      {0x2C00, 0x2FEF},
                      {0x3001, 0xD7FF},
                      {0xF900, 0xFDCF},
                      {0xFDF0, 0xFFFD},
                      {0x10000, 0xEFFFF}});
}

class CharacterClasses : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { LoadUnicodeTables(); }
};

TEST_F(CharacterClasses, EveryMemberMatchesItsDefinitionForAllCodePoints) {
  const CharacterClassSets sets;
  const std::vector<std::string>& cat = test::CategoryOfEach();
  auto major = [&](uint32_t c) { return cat[c][0]; };
  const struct {
    const char* name;
    const CodePointRangeSet& set;
    std::function<bool(uint32_t)> definition;
  } members[] = {
      {"NotLineEnd", sets.NotLineEnd, [](uint32_t c) { return c != 0x0A && c != 0x0D; }},
      {"XmlSpace", sets.XmlSpace,
       [](uint32_t c) { return c == 0x09 || c == 0x0A || c == 0x0D || c == 0x20; }},
      {"NotXmlSpace", sets.NotXmlSpace,
       [](uint32_t c) { return !(c == 0x09 || c == 0x0A || c == 0x0D || c == 0x20); }},
      {"NameStartChar", sets.NameStartChar, IsNameStart},
      {"NotNameStartChar", sets.NotNameStartChar, [](uint32_t c) { return !IsNameStart(c); }},
      {"NameChar", sets.NameChar,
       [](uint32_t c) {
         return IsNameStart(c) ||
                InRanges(c,
                         {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}});
       }},
      {"NotNameChar", sets.NotNameChar,
       [](uint32_t c) {
         return !(
             IsNameStart(c) ||
             InRanges(c, {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}));
       }},
      {"UnicodeDigit", sets.UnicodeDigit, [&](uint32_t c) { return cat[c] == "Nd"; }},
      {"NotUnicodeDigit", sets.NotUnicodeDigit, [&](uint32_t c) { return cat[c] != "Nd"; }},
      {"XmlWord", sets.XmlWord,
       [&](uint32_t c) { return major(c) != 'P' && major(c) != 'Z' && major(c) != 'C'; }},
      {"NotXmlWord", sets.NotXmlWord,
       [&](uint32_t c) { return major(c) == 'P' || major(c) == 'Z' || major(c) == 'C'; }},
      {"EcmaSpace", sets.EcmaSpace,
       [&](uint32_t c) {
         return cat[c] == "Zs" ||
                InRanges(
                    c,
                    {{0x09, 0x0D}, {0x20, 0x20}, {0xA0, 0xA0}, {0xFEFF, 0xFEFF}, {0x2028, 0x2029}});
       }},
      {"NotEcmaSpace", sets.NotEcmaSpace,
       [&](uint32_t c) {
         return !(
             cat[c] == "Zs" ||
             InRanges(
                 c,
                 {{0x09, 0x0D}, {0x20, 0x20}, {0xA0, 0xA0}, {0xFEFF, 0xFEFF}, {0x2028, 0x2029}}));
       }},
      {"AsciiDigit", sets.AsciiDigit, [](uint32_t c) { return c >= '0' && c <= '9'; }},
      {"NotAsciiDigit", sets.NotAsciiDigit, [](uint32_t c) { return !(c >= '0' && c <= '9'); }},
      {"EcmaWord", sets.EcmaWord,
       [](uint32_t c) {
         return InRanges(c, {{'_', '_'}, {'0', '9'}, {'A', 'Z'}, {'a', 'z'}});
       }},
      {"NotEcmaWord", sets.NotEcmaWord,
       [](uint32_t c) {
         return !InRanges(c, {{'_', '_'}, {'0', '9'}, {'A', 'Z'}, {'a', 'z'}});
       }},
      {"VisibleChar", sets.VisibleChar,
       [&](uint32_t c) { return major(c) != 'M' && major(c) != 'C'; }},
      {"XmlChar", sets.XmlChar,
       [](uint32_t c) {
         return InRanges(
             c,
             {{0x09, 0x0A}, {0x0D, 0x0D}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}});
       }},
  };
  static_assert(sizeof(members) / sizeof(members[0]) == 19);
  for (const auto& member : members) {
    const std::vector<bool> flags = Flags(member.set);
    uint32_t mismatches = 0, first = 0;
    for (uint32_t c = 0; c < 0x110000; ++c) {
      if (flags[c] != member.definition(c) && mismatches++ == 0) first = c;
    }
    EXPECT_EQ(mismatches, 0u) << member.name << ", first at U+" << std::hex << first;
  }
}

TEST_F(CharacterClasses, EdgeCases) {
  const CharacterClassSets s;
  EXPECT_FALSE(In(s.NotLineEnd, 0x0A));
  EXPECT_FALSE(In(s.NotLineEnd, 0x0D));
  EXPECT_TRUE(In(s.NotLineEnd, 0xD800));
  EXPECT_TRUE(In(s.NotLineEnd, 0xFFFF));
  EXPECT_TRUE(In(s.NotLineEnd, 0x10FFFF));
  EXPECT_TRUE(In(s.XmlWord, 0x300));
  EXPECT_TRUE(In(s.XmlWord, '$'));
  EXPECT_FALSE(In(s.XmlWord, '_'));
  EXPECT_TRUE(In(s.EcmaWord, '_'));
  EXPECT_TRUE(In(s.UnicodeDigit, 0x660));
  EXPECT_FALSE(In(s.AsciiDigit, 0x660));
  for (const uint32_t c : {0xA0u, 0xFEFFu}) {
    EXPECT_TRUE(In(s.EcmaSpace, c));
    EXPECT_FALSE(In(s.XmlSpace, c));
  }
  for (const NamedCodePointSet& row : UnicodeCategoryTable)
    if (row.name[0] == 'Z') {
      EXPECT_FALSE(In(row.ranges, 0xFEFF)) << row.name;
    }
  EXPECT_FALSE(In(s.XmlChar, 0xFFFE));
  EXPECT_FALSE(In(s.XmlChar, 0xFFFF));
  EXPECT_FALSE(In(s.XmlChar, 0xD800));
  EXPECT_FALSE(In(s.XmlChar, 0xDFFF));
  EXPECT_FALSE(In(s.VisibleChar, 0x300));
  EXPECT_TRUE(In(s.NameStartChar, ':'));
  for (const uint32_t c : {uint32_t{'-'}, uint32_t{'.'}, 0xB7u, 0x300u}) {
    EXPECT_TRUE(In(s.NameChar, c)) << c;
    EXPECT_FALSE(In(s.NameStartChar, c)) << c;
  }
  for (const uint32_t c : {0xD7u, 0xF7u}) {
    EXPECT_FALSE(In(s.NameChar, c));
    EXPECT_FALSE(In(s.NameStartChar, c));
  }
  EXPECT_FALSE(In(s.NameStartChar, 0xF0000));
  EXPECT_TRUE(In(s.NameStartChar, 0xEFFFF));
  // The ECMAScript digit and word classes are exactly their ASCII ranges.
  EXPECT_EQ(s.AsciiDigit.size(), 1u);
  EXPECT_EQ(s.EcmaWord.size(), 4u);
}

TEST_F(CharacterClasses, SetsAreCopiesNotSharedWithTheTable) {
  const CharacterClassSets s;
  const NamedCodePointSet* nd = nullptr;
  for (const NamedCodePointSet& row : UnicodeCategoryTable)
    if (std::string(row.name) == "Nd") nd = &row;
  ASSERT_NE(nd, nullptr);
  EXPECT_EQ(s.UnicodeDigit, nd->ranges);
  EXPECT_NE(s.UnicodeDigit.data(), nd->ranges.data());
}

TEST_F(CharacterClasses, FailedAllocationFreesWhatWasBuilt) {
  long total;
  {
    test::AllocationScope scope;
    { const CharacterClassSets sets; }
    total = scope.Allocations();
    EXPECT_EQ(scope.Frees(), total);
  }
  ASSERT_GT(total, 19);
  int failures = 0;
  for (long allowed = 0; allowed < total; allowed += 1 + allowed / 8) {
    test::AllocationScope scope;
    {
      test::FailThrowingAllocationsAfter fail(allowed);
      EXPECT_THROW(CharacterClassSets(), std::bad_alloc) << allowed;
    }
    EXPECT_EQ(scope.Allocations(), scope.Frees()) << "after " << allowed << " allocations";
    ++failures;
  }
  EXPECT_GT(failures, 10);
}

TEST(CharacterClassesWithoutTables, ConstructionNeedsTheCategoryTable) {
  internal::UnloadUnicodeCategoryTable();
  EXPECT_THROW(CharacterClassSets(), std::logic_error);
  LoadUnicodeCategoryTable();
  EXPECT_NO_THROW(CharacterClassSets());
}

}  // namespace
}  // namespace ic
