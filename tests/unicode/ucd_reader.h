// A plain reader of the Unicode data files for the tests, written apart from the generators so
// that the tests check the generated tables against an independent reading.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <ic/unicode/code_point_range_set.h>

namespace ic::test {

/// The non-comment lines of a file of unicode/data, split at ';' and stripped.
std::vector<std::vector<std::string>> DataLines(const char* file);

/// "XXXX" or "XXXX..YYYY" as a range.
CodePointRange RangeOf(const std::string& text);

/// The general category of every code point 0 to 0x10FFFF, "Cn" where UnicodeData.txt has none.
const std::vector<std::string>& CategoryOfEach();

}  // namespace ic::test
