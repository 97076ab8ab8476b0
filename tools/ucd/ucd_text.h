// Line handling shared by the generators that read the Unicode Character Database: trimming,
// splitting on semicolons, hexadecimal code points, errors that name the file and line, and
// replacing an output file without ever leaving it half written.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ic::ucd {

/// A defect in an input file; the message starts with "file:line: ".
class InputError : public std::runtime_error {
 public:
  InputError(const std::string& file, int line, const std::string& what)
      : std::runtime_error(file + ":" + std::to_string(line) + ": " + what) {}
};

/// A defect of the data as a whole (a failed check, a contradiction between files).
class DataError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// "U+0041": the code point in at least four upper-case hexadecimal digits.
std::string Hex(uint32_t code);

/// The text without leading and trailing blanks, tabs and (at the end) carriage returns.
std::string_view Trim(std::string_view s);

/// The fields between semicolons, untrimmed; a line without a semicolon is one field.
std::vector<std::string_view> SplitFields(std::string_view line);

/// The part of a line before '#'.
std::string_view StripComment(std::string_view line);

/// Reads a code point of 4 to 6 hexadecimal digits (blanks around it allowed), at most
/// U+10FFFF. Returns false and leaves `code` alone for anything else.
bool ParseCode(std::string_view text, uint32_t& code);

/// Reads "XXXX" or "XXXX..YYYY" (first not above last) into [first, last]. Returns false for
/// anything else.
bool ParseCodeRange(std::string_view text, uint32_t& first, uint32_t& last);

/// Calls `line(fields, code, lineNumber)` for each non-blank line of UnicodeData.txt. Every line
/// must have 15 fields and a code point in hexadecimal, in strictly rising order; the file must
/// have at least one line. Throws InputError naming `fileName` and the line.
void ForEachUnicodeDataLine(
    std::istream& in, const std::string& fileName,
    const std::function<void(const std::vector<std::string_view>&, uint32_t, int)>& line);

/// Writes `text` to a temporary beside `path` and renames it over `path`. On failure writes
/// "<tool>: error: <file>: ..." to `err`, removes the temporary and returns false; `path` is then
/// left as it was.
bool ReplaceFile(const std::string& path, const std::string& text, const std::string& tool,
                 std::ostream& err);

}  // namespace ic::ucd
