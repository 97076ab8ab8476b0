#include "ucd_reader.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace ic::test {
namespace {

std::string Strip(const std::string& s) {
  const size_t b = s.find_first_not_of(" \t");
  const size_t e = s.find_last_not_of(" \t\r");
  return b == std::string::npos ? "" : s.substr(b, e - b + 1);
}

}  // namespace

std::vector<std::vector<std::string>> DataLines(const char* file) {
  std::ifstream in(std::string(IC_UNICODE_DATA_DIR "/") + file);
  EXPECT_TRUE(in) << file;
  std::vector<std::vector<std::string>> lines;
  std::string line;
  while (std::getline(in, line)) {
    line = Strip(line.substr(0, line.find('#')));
    if (line.empty()) continue;
    std::vector<std::string> fields;
    std::stringstream s(line);
    std::string field;
    while (std::getline(s, field, ';'))
      fields.push_back(Strip(field));
    lines.push_back(fields);
  }
  return lines;
}

CodePointRange RangeOf(const std::string& text) {
  const size_t dots = text.find("..");
  const uint32_t first = static_cast<uint32_t>(std::stoul(text.substr(0, dots), nullptr, 16));
  const uint32_t last = dots == std::string::npos
                            ? first
                            : static_cast<uint32_t>(std::stoul(text.substr(dots + 2), nullptr, 16));
  return {first, last};
}

const std::vector<std::string>& CategoryOfEach() {
  static const std::vector<std::string> categories = [] {
    std::vector<std::string> c(0x110000, "Cn");
    uint32_t rangeStart = 0;
    for (const auto& f : DataLines("UnicodeData.txt")) {
      const uint32_t code = static_cast<uint32_t>(std::stoul(f[0], nullptr, 16));
      if (f[1].find(", First>") != std::string::npos) {
        rangeStart = code;
        continue;
      }
      const uint32_t from = f[1].find(", Last>") != std::string::npos ? rangeStart : code;
      for (uint32_t x = from; x <= code; ++x)
        c[x] = f[2];
    }
    return c;
  }();
  return categories;
}

}  // namespace ic::test
