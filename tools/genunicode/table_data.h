// genunicode: builds the constant data of the four Unicode tables of the text library (blocks,
// general categories, scripts, script extensions) from the Unicode 9.0.0 data files.
//
// - Blocks: one row per line of Blocks.txt, named with all blanks removed (hyphens kept), plus
//   six rows kept for older pattern names (OldBlockNames below).
// - Categories: one row per two-letter general category of UnicodeData.txt, sorted and merged;
//   Cn holds every code point that UnicodeData.txt does not assign; the single-letter rows and
//   LC are the merged unions of their two-letter rows.
// - Scripts: one range per line of Scripts.txt, in file order, under the four-letter code that
//   PropertyValueAliases.txt gives the script's long name.
// - Script extensions: one range per script named on each line of ScriptExtensions.txt, in file
//   order.
// Every table's rows are sorted by the bytes of their names.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ucd_text.h"

namespace ic::genunicode {

using ucd::DataError;
using ucd::InputError;

/// An inclusive range of code points.
struct CodeRange {
  uint32_t first = 0;
  uint32_t last = 0;
  friend bool operator==(const CodeRange&, const CodeRange&) = default;
};

/// A named row of a table.
struct TableRow {
  std::string name;
  std::vector<CodeRange> ranges;
  friend bool operator==(const TableRow&, const TableRow&) = default;
};

/// The four tables, each sorted by name.
struct UnicodeTables {
  std::vector<TableRow> blocks;
  std::vector<TableRow> categories;
  std::vector<TableRow> scripts;
  std::vector<TableRow> extensions;
};

/// A code point range tagged with a name, as read from a file line.
using NamedRange = std::pair<std::string, CodeRange>;

/// The block rows added to those of Blocks.txt, under names that older patterns use.
const std::vector<TableRow>& OldBlockNames();

/// Reads "XXXX..YYYY; Block Name" lines; returns one row per line, in file order, with the
/// blanks removed from the name. Throws InputError naming `fileName` and the line.
std::vector<TableRow> ParseBlocks(std::istream& in, const std::string& fileName);

/// Reads the general category (field 2) of every line of UnicodeData.txt, expanding
/// "<..., First>"/"<..., Last>" pairs. Returns each two-letter category's ranges, merged.
/// Throws InputError on a malformed line, an unknown category, code points out of order or an
/// unpaired First/Last line.
std::map<std::string, std::vector<CodeRange>> ParseCategories(std::istream& in,
                                                              const std::string& fileName);

/// Reads the "sc ; Code ; Long_Name [; Alias]" lines of PropertyValueAliases.txt; returns every
/// name and the code itself mapped to the four-letter code.
std::map<std::string, std::string> ParseScriptAliases(std::istream& in,
                                                      const std::string& fileName);

/// Reads "range ; Long_Name" lines of Scripts.txt; returns (code, range) in file order. A name
/// missing from `aliases` is an InputError.
std::vector<NamedRange> ParseScripts(std::istream& in, const std::string& fileName,
                                     const std::map<std::string, std::string>& aliases);

/// Reads "range ; Code Code ..." lines of ScriptExtensions.txt; returns one (code, range) per
/// code on each line, in file order. A code that is no script code of `aliases` is an
/// InputError.
std::vector<NamedRange> ParseScriptExtensions(std::istream& in, const std::string& fileName,
                                              const std::map<std::string, std::string>& aliases);

/// The block table: the rows of Blocks.txt and OldBlockNames, sorted by name. Throws DataError on
/// a repeated name.
std::vector<TableRow> BuildBlockRows(std::vector<TableRow> blocks);

/// The category table: the two-letter rows, Cn, the single-letter unions and LC, sorted.
std::vector<TableRow> BuildCategoryRows(const std::map<std::string, std::vector<CodeRange>>& cats);

/// One row per name, its ranges in the order given, rows sorted by name.
std::vector<TableRow> BuildNamedRows(const std::vector<NamedRange>& ranges);

/// The checks the tables must pass before they are written: row and range counts, the largest
/// script row, the code point sums of the single-letter categories, their exact cover of 0 to
/// 0x10FFFF, strictly rising names, and the rows that the library documents. Returns one message
/// per failed check; empty if all pass.
std::vector<std::string> CheckTables(const UnicodeTables& tables);

/// The text of the generated C++ source, banner first.
std::string FormatTables(const UnicodeTables& tables);

/// The whole program: genunicode --blocks FILE --unicode-data FILE --property-value-aliases FILE
/// --scripts FILE --script-extensions FILE --out FILE. Messages go to `err`; returns 0 on
/// success, 1 on bad input or failed checks (the output is then left as it was), 2 on bad usage.
int RunGenunicode(const std::vector<std::string>& args, std::ostream& err);

}  // namespace ic::genunicode
