// gencase: builds the case table of the text library from UnicodeData.txt and CaseFolding.txt.
//
// The table holds every code point that belongs to a case-insensitive equivalence class of two
// or more members. The classes are formed by joining each code point with its simple uppercase
// and lowercase mappings (UnicodeData fields 12 and 13) and with its simple case folding (the C
// and S rows of CaseFolding). Each row carries upper, lower and fold (the code point itself where
// the data has none) and up to two variants: the other code points c of the class, not the code
// point X itself nor upper(X) or lower(X), with fold(c) = fold(X), upper(c) = X or lower(c) = X.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "ucd_text.h"

namespace ic::gencase {

/// One row of the generated table.
struct CaseRow {
  uint32_t code = 0;
  uint32_t upper = 0;
  uint32_t lower = 0;
  uint32_t fold = 0;
  uint32_t variantA = 0;
  uint32_t variantB = 0;

  friend bool operator==(const CaseRow&, const CaseRow&) = default;
};

using ucd::DataError;
using ucd::InputError;

/// The simple mappings read from the files; a code point without an entry maps to itself.
struct CaseMappings {
  std::map<uint32_t, uint32_t> upper;
  std::map<uint32_t, uint32_t> lower;
  std::map<uint32_t, uint32_t> fold;
};

/// Reads the simple uppercase and lowercase fields of UnicodeData.txt. Every line must have 15
/// fields, a code point in hexadecimal in rising order, and empty or hexadecimal mappings.
/// Throws InputError naming `fileName` and the line.
void ParseUnicodeData(std::istream& in, const std::string& fileName, CaseMappings& mappings);

/// Reads the C and S rows of CaseFolding.txt (F and T rows are checked and skipped).
/// Throws InputError naming `fileName` and the line.
void ParseCaseFolding(std::istream& in, const std::string& fileName, CaseMappings& mappings);

/// The rows of the table, sorted by code point. Throws DataError if a code point would have more
/// than two variants.
std::vector<CaseRow> BuildCaseRows(const CaseMappings& mappings);

/// The checks that the table must pass: 2622 rows from U+0041 to U+1E943, strictly rising, and
/// the sample rows that the library's documentation and tests rely on. Returns one message per
/// failed check; empty if all pass.
std::vector<std::string> CheckCaseRows(const std::vector<CaseRow>& rows);

/// The text of the generated C++ source, banner first.
std::string FormatCaseTable(const std::vector<CaseRow>& rows);

/// The whole program: gencase --unicode-data FILE --case-folding FILE --out FILE. Messages go to
/// `err`; returns 0 on success, 1 on bad input or failed checks, 2 on bad usage. The output file
/// is written to a temporary beside it and renamed, so it is never left half written.
int RunGencase(const std::vector<std::string>& args, std::ostream& err);

}  // namespace ic::gencase
