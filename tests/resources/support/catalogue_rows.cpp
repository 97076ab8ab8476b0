// Reader of the catalogue row listing.
#include "catalogue_rows.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ic::test {

std::string UnescapeRowText(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      const char next = text[i + 1];
      const char* mapped = next == '\\'  ? "\\"
                           : next == 'n' ? "\n"
                           : next == 'r' ? "\r"
                           : next == 't' ? "\t"
                                         : nullptr;
      if (mapped) {
        out += mapped;
        ++i;
        continue;
      }
    }
    out += text[i];
  }
  return out;
}

std::vector<CatalogueRow> ReadCatalogueRows(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  std::vector<CatalogueRow> rows;
  std::string line;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> fields;
    size_t start = 0;
    for (int i = 0; i < 4; ++i) {
      const size_t tab = line.find('\t', start);
      if (tab == std::string::npos) {
        throw std::runtime_error(path + ":" + std::to_string(number) + ": too few fields");
      }
      fields.push_back(line.substr(start, tab - start));
      start = tab + 1;
    }
    fields.push_back(line.substr(start));
    CatalogueRow row;
    row.catalogue = fields[0];
    row.row = std::stoi(fields[1]);
    row.key = fields[2];
    row.given = fields[3] == "1";
    row.text = UnescapeRowText(fields[4]);
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace ic::test
