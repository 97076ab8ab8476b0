#include "ucd_text.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <istream>
#include <ostream>

namespace ic::ucd {

std::string Hex(uint32_t code) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "U+%04X", static_cast<unsigned>(code));
  return buffer;
}

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
    s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
    s.remove_suffix(1);
  return s;
}

std::vector<std::string_view> SplitFields(std::string_view line) {
  std::vector<std::string_view> fields;
  size_t start = 0;
  for (;;) {
    const size_t semicolon = line.find(';', start);
    if (semicolon == std::string_view::npos) {
      fields.push_back(line.substr(start));
      return fields;
    }
    fields.push_back(line.substr(start, semicolon - start));
    start = semicolon + 1;
  }
}

std::string_view StripComment(std::string_view line) {
  const size_t hash = line.find('#');
  return hash == std::string_view::npos ? line : line.substr(0, hash);
}

bool ParseCode(std::string_view text, uint32_t& code) {
  text = Trim(text);
  if (text.size() < 4 || text.size() > 6) return false;
  uint32_t value = 0;
  for (const char c : text) {
    int digit;
    if (c >= '0' && c <= '9')
      digit = c - '0';
    else if (c >= 'A' && c <= 'F')
      digit = c - 'A' + 10;
    else if (c >= 'a' && c <= 'f')
      digit = c - 'a' + 10;
    else
      return false;
    value = value * 16 + static_cast<uint32_t>(digit);
  }
  if (value > 0x10FFFF) return false;
  code = value;
  return true;
}

bool ParseCodeRange(std::string_view text, uint32_t& first, uint32_t& last) {
  text = Trim(text);
  const size_t dots = text.find("..");
  uint32_t a, b;
  if (dots == std::string_view::npos) {
    if (!ParseCode(text, a)) return false;
    b = a;
  } else if (!ParseCode(text.substr(0, dots), a) || !ParseCode(text.substr(dots + 2), b) || b < a) {
    return false;
  }
  first = a;
  last = b;
  return true;
}

void ForEachUnicodeDataLine(
    std::istream& in, const std::string& fileName,
    const std::function<void(const std::vector<std::string_view>&, uint32_t, int)>& line) {
  std::string text;
  int lineNumber = 0;
  bool any = false;
  uint32_t previous = 0;
  while (std::getline(in, text)) {
    ++lineNumber;
    if (Trim(text).empty()) continue;
    const std::vector<std::string_view> fields = SplitFields(text);
    if (fields.size() != 15)
      throw InputError(fileName, lineNumber,
                       "expected 15 fields, found " + std::to_string(fields.size()));
    uint32_t code;
    if (!ParseCode(fields[0], code))
      throw InputError(fileName, lineNumber, "bad code point '" + std::string(fields[0]) + "'");
    if (any && code <= previous)
      throw InputError(fileName, lineNumber, "code point " + Hex(code) + " is out of order");
    any = true;
    previous = code;
    line(fields, code, lineNumber);
  }
  if (!any) throw InputError(fileName, lineNumber, "no data");
}

bool ReplaceFile(const std::string& path, const std::string& text, const std::string& tool,
                 std::ostream& err) {
  const std::filesystem::path target(path);
  std::filesystem::path temporary = target;
  temporary += ".tmp";
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    if (!out) {
      err << tool << ": error: " << temporary.string() << ": cannot write\n";
      std::error_code ignored;
      std::filesystem::remove(temporary, ignored);
      return false;
    }
  }
  std::error_code error;
  std::filesystem::rename(temporary, target, error);
  if (error) {
    err << tool << ": error: " << target.string() << ": cannot replace: " << error.message()
        << "\n";
    std::filesystem::remove(temporary, error);
    return false;
  }
  return true;
}

}  // namespace ic::ucd
