#include <ic/unicode/character_class_sets.h>

#include <cstring>
#include <initializer_list>
#include <stdexcept>
#include <string>

#include <ic/unicode/unicode_tables.h>

namespace ic {
namespace {

CodePointRangeSet SetOf(std::initializer_list<CodePointRange> ranges) {
  CodePointRangeSet set;
  for (const CodePointRange& range : ranges)
    set.Add(range, false);
  return set;
}

CodePointRangeSet ComplementOf(const CodePointRangeSet& positive) {
  CodePointRangeSet set = positive;
  set.Complement();
  return set;
}

CodePointRangeSet WithAdded(const CodePointRangeSet& base,
                            std::initializer_list<CodePointRange> ranges) {
  CodePointRangeSet set = base;
  for (const CodePointRange& range : ranges)
    set.Add(range, false);
  return set;
}

const NamedCodePointSet& CategoryRow(const char* name) {
  for (const NamedCodePointSet& row : UnicodeCategoryTable)
    if (std::strcmp(row.name, name) == 0) return row;
  throw std::logic_error(std::string("UnicodeCategoryTable has no row ") + name);
}

// The ranges of the named category rows, merged through Add.
CodePointRangeSet UnionOfCategories(std::initializer_list<const char*> names) {
  CodePointRangeSet set;
  for (const char* name : names)
    for (const CodePointRange& range : CategoryRow(name).ranges)
      set.Add(range, false);
  return set;
}

CodePointRangeSet CopyOfCategory(const char* name) {
  const CodePointRangeSet& row = CategoryRow(name).ranges;
  CodePointRangeSet set;
  set.AssignRanges(row.data(), row.size());
  return set;
}

// Runs first of all, so that nothing is built from tables that are not there.
void RequireTables() {
  if (!UnicodeCategoryTableLoaded())
    throw std::logic_error("CharacterClassSets: the Unicode tables are not loaded");
}

}  // namespace

// The members are built in their order of declaration, each in its own initialiser, so that a
// failed allocation destroys exactly those built so far, in the reverse order.
CharacterClassSets::CharacterClassSets()
    : NotLineEnd((RequireTables(), ComplementOf(SetOf({{0x0A, 0x0A}, {0x0D, 0x0D}})))),
      XmlSpace(SetOf({{0x09, 0x0A}, {0x0D, 0x0D}, {0x20, 0x20}})),
      NotXmlSpace(ComplementOf(XmlSpace)),
      NameStartChar(SetOf({{':', ':'},
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
                           {0x10000, 0xEFFFF}})),
      NotNameStartChar(ComplementOf(NameStartChar)),
      NameChar(WithAdded(
          NameStartChar,
          {{'-', '-'}, {'.', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}})),
      NotNameChar(ComplementOf(NameChar)),
      UnicodeDigit(CopyOfCategory("Nd")),
      NotUnicodeDigit(ComplementOf(UnicodeDigit)),
      // XmlWord is the complement of NotXmlWord, which is declared after it; the union is
      // complemented here and NotXmlWord below complements XmlWord back, which gives the union
      // again since a set built through Add is in 0 to 0x10FFFF.
      XmlWord(ComplementOf(UnionOfCategories({"P", "Z", "C"}))),
      NotXmlWord(ComplementOf(XmlWord)),
      EcmaSpace(WithAdded(CopyOfCategory("Zs"), {{0x09, 0x09},
                                                 {0x0A, 0x0A},
                                                 {0x0B, 0x0B},
                                                 {0x0C, 0x0C},
                                                 {0x0D, 0x0D},
                                                 {0x20, 0x20},
                                                 {0xA0, 0xA0},
                                                 {0xFEFF, 0xFEFF},
                                                 {0x2028, 0x2028},
                                                 {0x2029, 0x2029}})),
      NotEcmaSpace(ComplementOf(EcmaSpace)),
      AsciiDigit(SetOf({{'0', '9'}})),
      NotAsciiDigit(ComplementOf(AsciiDigit)),
      EcmaWord(SetOf({{'_', '_'}, {'0', '9'}, {'A', 'Z'}, {'a', 'z'}})),
      NotEcmaWord(ComplementOf(EcmaWord)),
      VisibleChar(UnionOfCategories({"L", "N", "P", "Z", "S"})),
      XmlChar(SetOf(
          {{0x09, 0x0A}, {0x0D, 0x0D}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}})) {}

}  // namespace ic
