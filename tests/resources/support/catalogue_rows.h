// The listing of every catalogue row that the tests check the module against: one line per
// row, tab-separated: catalogue, row index, key, given flag, text with \\ \n \r \t escapes.
// Rows whose given flag is 1 carry their final text; the others are still being translated.
#pragma once

#include <string>
#include <vector>

namespace ic::test {

struct CatalogueRow {
  std::string catalogue;
  int row = 0;
  std::string key;
  bool given = false;
  std::string text;  ///< UTF-8, escapes resolved
};

/// Reads the listing; lines starting with '#' are comments. Throws std::runtime_error for a
/// file that cannot be read or a malformed line.
std::vector<CatalogueRow> ReadCatalogueRows(const std::string& path);

/// Resolves the escapes \\ \n \r \t; a backslash before anything else stays as it is.
std::string UnescapeRowText(const std::string& text);

}  // namespace ic::test
