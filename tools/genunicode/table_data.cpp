#include "table_data.h"

#include <algorithm>
#include <fstream>
#include <istream>
#include <ostream>
#include <set>
#include <sstream>
#include <string_view>

namespace ic::genunicode {
namespace {

using ucd::Hex;
using ucd::ParseCodeRange;
using ucd::SplitFields;
using ucd::StripComment;
using ucd::Trim;

constexpr uint32_t LastCodePoint = 0x10FFFF;

// The general categories that UnicodeData.txt assigns; Cn is what it leaves out.
const std::set<std::string> AssignedCategories = {
    "Lu", "Ll", "Lt", "Lm", "Lo", "Mn", "Mc", "Me", "Nd", "Nl", "No", "Pc", "Pd", "Ps", "Pe",
    "Pi", "Pf", "Po", "Sm", "Sc", "Sk", "So", "Zs", "Zl", "Zp", "Cc", "Cf", "Cs", "Co"};

// Expected sizes; the build fails when the data gives anything else.
constexpr size_t BlockRowCount = 279;
constexpr size_t CategoryRowCount = 38;
constexpr size_t ScriptRowCount = 137;
constexpr size_t ExtensionRowCount = 59;
constexpr size_t CategoryRangeCount = 5752;
constexpr size_t ScriptRangeCount = 1922;
constexpr size_t ExtensionRangeCount = 455;
constexpr size_t CommonScriptRangeCount = 579;

struct CategorySum {
  const char* name;
  uint64_t codePoints;
};
constexpr CategorySum CategorySums[] = {{"L", 116766}, {"M", 2097}, {"N", 1492},  {"P", 748},
                                        {"S", 6899},   {"Z", 19},   {"C", 986091}};

struct SampleRow {
  const char* table;
  const char* name;
  std::vector<CodeRange> ranges;  // the whole row, or its leading ranges for scripts
};

// Rows that the library documents and its tests rely on.
const std::vector<SampleRow>& SampleRows() {
  static const std::vector<SampleRow> rows = {
      {"block", "Adlam", {{0x1E900, 0x1E95F}}},
      {"block", "BasicLatin", {{0, 0x7F}}},
      {"block", "Latin-1Supplement", {{0x80, 0xFF}}},
      {"block", "HighSurrogates", {{0xD800, 0xDB7F}}},
      {"block", "HighPrivateUseSurrogates", {{0xDB80, 0xDBFF}}},
      {"block", "LowSurrogates", {{0xDC00, 0xDFFF}}},
      {"block", "Specials", {{0xFFF0, 0xFFFF}}},
      {"block", "GreekandCoptic", {{0x370, 0x3FF}}},
      {"category", "Cs", {{0xD800, 0xDFFF}}},
      {"category", "Co", {{0xE000, 0xF8FF}, {0xF0000, 0xFFFFD}, {0x100000, 0x10FFFD}}},
      {"category", "Zl", {{0x2028, 0x2028}}},
      {"category", "Zp", {{0x2029, 0x2029}}},
      {"category",
       "Zs",
       {{0x20, 0x20},
        {0xA0, 0xA0},
        {0x1680, 0x1680},
        {0x2000, 0x200A},
        {0x202F, 0x202F},
        {0x205F, 0x205F},
        {0x3000, 0x3000}}},
      {"script", "Adlm", {{0x1E900, 0x1E943}, {0x1E944, 0x1E94A}}},
      {"extension", "Adlm", {{0x640, 0x640}}},
  };
  return rows;
}

bool IsNameCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_';
}

// Sorted by first, overlapping and touching ranges merged.
std::vector<CodeRange> Merge(std::vector<CodeRange> ranges) {
  std::sort(ranges.begin(), ranges.end(),
            [](const CodeRange& a, const CodeRange& b) { return a.first < b.first; });
  std::vector<CodeRange> merged;
  for (const CodeRange& r : ranges) {
    if (!merged.empty() && uint64_t{merged.back().last} + 1 >= r.first)
      merged.back().last = std::max(merged.back().last, r.last);
    else
      merged.push_back(r);
  }
  return merged;
}

void SortByName(std::vector<TableRow>& rows) {
  std::sort(rows.begin(), rows.end(),
            [](const TableRow& a, const TableRow& b) { return a.name < b.name; });
}

uint64_t CountCodePoints(const std::vector<CodeRange>& ranges) {
  uint64_t sum = 0;
  for (const CodeRange& r : ranges)
    sum += uint64_t{r.last} - r.first + 1;
  return sum;
}

const TableRow* FindRow(const std::vector<TableRow>& rows, const std::string& name) {
  for (const TableRow& row : rows)
    if (row.name == name) return &row;
  return nullptr;
}

// Calls `line(fields, lineNumber)` for each line with data, comments stripped.
template <class Fn>
void ForEachDataLine(std::istream& in, Fn line) {
  std::string text;
  int lineNumber = 0;
  while (std::getline(in, text)) {
    ++lineNumber;
    const std::string_view content = StripComment(text);
    if (Trim(content).empty()) continue;
    line(SplitFields(content), lineNumber);
  }
}

// "range ; value" lines, the shape of Blocks.txt, Scripts.txt and ScriptExtensions.txt.
CodeRange RangeOfLine(const std::vector<std::string_view>& fields, const std::string& fileName,
                      int lineNumber) {
  if (fields.size() != 2) throw InputError(fileName, lineNumber, "expected '<range>; <value>'");
  CodeRange r;
  if (!ParseCodeRange(fields[0], r.first, r.last))
    throw InputError(fileName, lineNumber,
                     "bad code point range '" + std::string(Trim(fields[0])) + "'");
  return r;
}

}  // namespace

const std::vector<TableRow>& OldBlockNames() {
  static const std::vector<TableRow> rows = {
      {"CombiningMarksforSymbols", {{0x20D0, 0x20FF}}},
      {"CyrillicSupplementary", {{0x500, 0x52F}}},
      {"Greek", {{0x370, 0x3FF}}},
      {"MiscellaneousSymbolsAndPictographs", {{0x1F300, 0x1F5FF}}},
      {"TransportAndMapSymbols", {{0x1F680, 0x1F6FF}}},
      {"PrivateUse", {{0xE000, 0xF8FF}, {0xF0000, 0xFFFFD}, {0x100000, 0x10FFFD}}},
  };
  return rows;
}

std::vector<TableRow> ParseBlocks(std::istream& in, const std::string& fileName) {
  std::vector<TableRow> rows;
  ForEachDataLine(in, [&](const std::vector<std::string_view>& fields, int lineNumber) {
    const CodeRange r = RangeOfLine(fields, fileName, lineNumber);
    std::string name;
    for (const char c : Trim(fields[1])) {
      if (c == ' ') continue;
      if (!IsNameCharacter(c))
        throw InputError(fileName, lineNumber,
                         "bad block name '" + std::string(Trim(fields[1])) + "'");
      name += c;
    }
    if (name.empty()) throw InputError(fileName, lineNumber, "empty block name");
    rows.push_back({name, {r}});
  });
  if (rows.empty()) throw InputError(fileName, 0, "no data");
  return rows;
}

std::map<std::string, std::vector<CodeRange>> ParseCategories(std::istream& in,
                                                              const std::string& fileName) {
  std::map<std::string, std::vector<CodeRange>> categories;
  int lastLine = 0;
  bool openFirst = false;  // the previous line was "<..., First>"
  uint32_t firstCode = 0;
  std::string firstCategory;
  ucd::ForEachUnicodeDataLine(
      in, fileName,
      [&](const std::vector<std::string_view>& fields, uint32_t code, int lineNumber) {
        lastLine = lineNumber;
        const std::string category(Trim(fields[2]));
        if (AssignedCategories.count(category) == 0)
          throw InputError(fileName, lineNumber, "unknown general category '" + category + "'");
        const std::string_view name = Trim(fields[1]);
        const bool isFirst = name.ends_with(", First>");
        const bool isLast = name.ends_with(", Last>");
        if (openFirst != isLast)
          throw InputError(
              fileName, lineNumber,
              openFirst ? "expected the Last line of a range" : "Last line without First");
        if (isFirst) {
          openFirst = true;
          firstCode = code;
          firstCategory = category;
          return;
        }
        CodeRange r{code, code};
        if (isLast) {
          if (category != firstCategory)
            throw InputError(fileName, lineNumber, "range ends in another category than it starts");
          r.first = firstCode;
          openFirst = false;
        }
        std::vector<CodeRange>& ranges = categories[category];
        if (!ranges.empty() && ranges.back().last + 1 == r.first)
          ranges.back().last = r.last;
        else
          ranges.push_back(r);
      });
  if (openFirst) throw InputError(fileName, lastLine, "range without its Last line");
  return categories;
}

std::map<std::string, std::string> ParseScriptAliases(std::istream& in,
                                                      const std::string& fileName) {
  std::map<std::string, std::string> aliases;
  ForEachDataLine(in, [&](const std::vector<std::string_view>& fields, int lineNumber) {
    if (Trim(fields[0]) != "sc") return;
    if (fields.size() < 3) throw InputError(fileName, lineNumber, "expected 'sc ; Code ; Name'");
    const std::string code(Trim(fields[1]));
    if (code.size() != 4 || !std::all_of(code.begin(), code.end(), IsNameCharacter))
      throw InputError(fileName, lineNumber, "bad script code '" + code + "'");
    for (size_t i = 1; i < fields.size(); ++i) {
      const std::string name(Trim(fields[i]));
      const auto [it, inserted] = aliases.emplace(name, code);
      if (!inserted && it->second != code)
        throw InputError(fileName, lineNumber, "'" + name + "' names two scripts");
    }
  });
  if (aliases.empty()) throw InputError(fileName, 0, "no script aliases");
  return aliases;
}

std::vector<NamedRange> ParseScripts(std::istream& in, const std::string& fileName,
                                     const std::map<std::string, std::string>& aliases) {
  std::vector<NamedRange> ranges;
  ForEachDataLine(in, [&](const std::vector<std::string_view>& fields, int lineNumber) {
    const CodeRange r = RangeOfLine(fields, fileName, lineNumber);
    const std::string name(Trim(fields[1]));
    const auto it = aliases.find(name);
    if (it == aliases.end())
      throw InputError(fileName, lineNumber, "unknown script '" + name + "'");
    ranges.emplace_back(it->second, r);
  });
  if (ranges.empty()) throw InputError(fileName, 0, "no data");
  return ranges;
}

std::vector<NamedRange> ParseScriptExtensions(std::istream& in, const std::string& fileName,
                                              const std::map<std::string, std::string>& aliases) {
  std::vector<NamedRange> ranges;
  ForEachDataLine(in, [&](const std::vector<std::string_view>& fields, int lineNumber) {
    const CodeRange r = RangeOfLine(fields, fileName, lineNumber);
    std::istringstream codes{std::string(fields[1])};
    std::string code;
    bool any = false;
    while (codes >> code) {
      const auto it = aliases.find(code);
      if (it == aliases.end() || it->second != code)
        throw InputError(fileName, lineNumber, "unknown script code '" + code + "'");
      ranges.emplace_back(code, r);
      any = true;
    }
    if (!any) throw InputError(fileName, lineNumber, "no script code");
  });
  if (ranges.empty()) throw InputError(fileName, 0, "no data");
  return ranges;
}

std::vector<TableRow> BuildBlockRows(std::vector<TableRow> blocks) {
  for (const TableRow& row : OldBlockNames())
    blocks.push_back(row);
  SortByName(blocks);
  for (size_t i = 1; i < blocks.size(); ++i)
    if (blocks[i].name == blocks[i - 1].name)
      throw DataError("block name '" + blocks[i].name + "' appears twice");
  return blocks;
}

std::vector<TableRow> BuildCategoryRows(
    const std::map<std::string, std::vector<CodeRange>>& categories) {
  std::vector<TableRow> rows;
  std::vector<CodeRange> assigned;
  for (const auto& [name, ranges] : categories) {
    rows.push_back({name, Merge(ranges)});
    assigned.insert(assigned.end(), ranges.begin(), ranges.end());
  }
  // Cn: the gaps between the assigned code points.
  std::vector<CodeRange> unassigned;
  uint64_t next = 0;
  for (const CodeRange& r : Merge(assigned)) {
    if (next < r.first) unassigned.push_back({static_cast<uint32_t>(next), r.first - 1});
    next = uint64_t{r.last} + 1;
  }
  if (next <= LastCodePoint) unassigned.push_back({static_cast<uint32_t>(next), LastCodePoint});
  rows.push_back({"Cn", unassigned});
  // The unions: one row per first letter, and LC.
  std::map<std::string, std::vector<CodeRange>> unions;
  for (const TableRow& row : rows) {
    std::vector<CodeRange>& target = unions[row.name.substr(0, 1)];
    target.insert(target.end(), row.ranges.begin(), row.ranges.end());
    if (row.name == "Ll" || row.name == "Lt" || row.name == "Lu") {
      std::vector<CodeRange>& lc = unions["LC"];
      lc.insert(lc.end(), row.ranges.begin(), row.ranges.end());
    }
  }
  for (const auto& [name, ranges] : unions)
    rows.push_back({name, Merge(ranges)});
  SortByName(rows);
  return rows;
}

std::vector<TableRow> BuildNamedRows(const std::vector<NamedRange>& ranges) {
  std::map<std::string, std::vector<CodeRange>> byName;
  for (const auto& [name, range] : ranges)
    byName[name].push_back(range);
  std::vector<TableRow> rows;
  for (auto& [name, list] : byName)
    rows.push_back({name, std::move(list)});
  return rows;  // a std::map iterates by the bytes of its keys
}

std::vector<std::string> CheckTables(const UnicodeTables& tables) {
  std::vector<std::string> failures;
  auto countRanges = [](const std::vector<TableRow>& rows) {
    size_t sum = 0;
    for (const TableRow& row : rows)
      sum += row.ranges.size();
    return sum;
  };
  const struct {
    const char* name;
    const std::vector<TableRow>* rows;
    size_t expectedRows;
    size_t expectedRanges;  // 0: not checked
  } tableChecks[] = {
      {"block", &tables.blocks, BlockRowCount, 0},
      {"category", &tables.categories, CategoryRowCount, CategoryRangeCount},
      {"script", &tables.scripts, ScriptRowCount, ScriptRangeCount},
      {"extension", &tables.extensions, ExtensionRowCount, ExtensionRangeCount},
  };
  for (const auto& check : tableChecks) {
    const std::string table = check.name;
    if (check.rows->size() != check.expectedRows)
      failures.push_back("expected " + std::to_string(check.expectedRows) + " " + table +
                         " rows, got " + std::to_string(check.rows->size()));
    const size_t ranges = countRanges(*check.rows);
    if (check.expectedRanges != 0 && ranges != check.expectedRanges)
      failures.push_back("expected " + std::to_string(check.expectedRanges) + " " + table +
                         " ranges, got " + std::to_string(ranges));
    for (size_t i = 1; i < check.rows->size(); ++i)
      if (!((*check.rows)[i - 1].name < (*check.rows)[i].name))
        failures.push_back(table + " rows not strictly rising at '" + (*check.rows)[i].name + "'");
  }

  const TableRow* common = FindRow(tables.scripts, "Zyyy");
  if (common == nullptr || common->ranges.size() != CommonScriptRangeCount)
    failures.push_back("expected " + std::to_string(CommonScriptRangeCount) +
                       " ranges in script Zyyy, got " +
                       (common ? std::to_string(common->ranges.size()) : std::string("no row")));

  std::vector<uint8_t> cover(LastCodePoint + 1, 0);
  for (const CategorySum& sum : CategorySums) {
    const TableRow* row = FindRow(tables.categories, sum.name);
    const uint64_t count = row ? CountCodePoints(row->ranges) : 0;
    if (count != sum.codePoints)
      failures.push_back("category " + std::string(sum.name) + " holds " + std::to_string(count) +
                         " code points, expected " + std::to_string(sum.codePoints));
    if (row == nullptr) continue;
    for (const CodeRange& r : row->ranges)
      for (uint64_t c = r.first; c <= r.last && c <= LastCodePoint; ++c)
        ++cover[c];
  }
  for (uint32_t c = 0; c <= LastCodePoint; ++c) {
    if (cover[c] != 1) {
      failures.push_back("the single-letter categories cover " + Hex(c) + " " +
                         std::to_string(cover[c]) + " times");
      break;
    }
  }

  for (const TableRow& row : tables.blocks) {
    if (row.name == "PrivateUse") continue;
    for (const CodeRange& r : row.ranges)
      if (r.first % 16 != 0 || r.last % 16 != 15)
        failures.push_back("block " + row.name + " does not run over whole columns");
  }

  for (const SampleRow& sample : SampleRows()) {
    const std::string table = sample.table;
    const std::vector<TableRow>& rows = table == "block"      ? tables.blocks
                                        : table == "category" ? tables.categories
                                        : table == "script"   ? tables.scripts
                                                              : tables.extensions;
    const TableRow* row = FindRow(rows, sample.name);
    const bool leading = table == "script";
    if (row == nullptr) {
      failures.push_back(table + " " + sample.name + " has no row");
    } else if (leading
                   ? !(row->ranges.size() >= sample.ranges.size() &&
                       std::equal(sample.ranges.begin(), sample.ranges.end(), row->ranges.begin()))
                   : row->ranges != sample.ranges) {
      failures.push_back(table + " " + sample.name + " does not hold the documented ranges");
    }
  }
  for (const TableRow& old : OldBlockNames()) {
    const TableRow* row = FindRow(tables.blocks, old.name);
    if (row == nullptr || row->ranges != old.ranges)
      failures.push_back("block " + old.name + " is missing or altered");
  }
  return failures;
}

namespace {

void FormatTable(std::ostream& out, const std::string& prefix, const std::vector<TableRow>& rows) {
  size_t total = 0;
  for (const TableRow& row : rows)
    total += row.ranges.size();
  out << "static_assert(Unicode" << prefix << "TableSize == " << rows.size() << " && Unicode"
      << prefix << "RangeCount == " << total << ",\n              \"the declared size of the "
      << prefix << " table differs from the data\");\n\n"
      << "const CodePointRange Unicode" << prefix << "Ranges[Unicode" << prefix
      << "RangeCount] = {\n";
  char buffer[64];
  for (const TableRow& row : rows) {
    out << "    // " << row.name << "\n";
    for (const CodeRange& r : row.ranges) {
      std::snprintf(buffer, sizeof buffer, "    {0x%04X, 0x%04X},\n",
                    static_cast<unsigned>(r.first), static_cast<unsigned>(r.last));
      out << buffer;
    }
  }
  out << "};\n\n"
      << "// name, name length, first range, range count\n"
      << "const UnicodeRowSource Unicode" << prefix << "Rows[Unicode" << prefix
      << "TableSize] = {\n";
  size_t offset = 0;
  for (const TableRow& row : rows) {
    out << "    {\"" << row.name << "\", " << row.name.size() << ", " << offset << ", "
        << row.ranges.size() << "},\n";
    offset += row.ranges.size();
  }
  out << "};\n\n";
}

}  // namespace

std::string FormatTables(const UnicodeTables& tables) {
  std::ostringstream out;
  out << "// Generated by genunicode from Blocks.txt, UnicodeData.txt, PropertyValueAliases.txt,\n"
         "// Scripts.txt and ScriptExtensions.txt (Unicode 9.0.0). Do not edit.\n"
         "#include <ic/unicode/internal/unicode_table_data.h>\n\n"
         "namespace ic::internal {\n\n";
  FormatTable(out, "Block", tables.blocks);
  FormatTable(out, "Category", tables.categories);
  FormatTable(out, "Script", tables.scripts);
  FormatTable(out, "ScriptExtension", tables.extensions);
  out << "}  // namespace ic::internal\n";
  return out.str();
}

int RunGenunicode(const std::vector<std::string>& args, std::ostream& err) {
  static const char* const Usage =
      "usage: genunicode --blocks FILE --unicode-data FILE --property-value-aliases FILE "
      "--scripts FILE --script-extensions FILE --out FILE\n";
  std::map<std::string, std::string> paths = {
      {"--blocks", ""},  {"--unicode-data", ""},      {"--property-value-aliases", ""},
      {"--scripts", ""}, {"--script-extensions", ""}, {"--out", ""}};
  for (size_t i = 0; i < args.size(); ++i) {
    const auto it = paths.find(args[i]);
    if (it == paths.end() || i + 1 == args.size()) {
      err << "genunicode: unknown or incomplete argument '" << args[i] << "'\n" << Usage;
      return 2;
    }
    it->second = args[++i];
  }
  for (const auto& [option, path] : paths) {
    if (path.empty()) {
      err << "genunicode: missing " << option << "\n" << Usage;
      return 2;
    }
  }

  try {
    std::ifstream files[5];
    const char* const options[5] = {"--blocks", "--unicode-data", "--property-value-aliases",
                                    "--scripts", "--script-extensions"};
    for (int i = 0; i < 5; ++i) {
      files[i].open(paths[options[i]], std::ios::binary);
      if (!files[i]) {
        err << "genunicode: error: " << paths[options[i]] << ": cannot open\n";
        return 1;
      }
    }
    UnicodeTables tables;
    tables.blocks = BuildBlockRows(ParseBlocks(files[0], paths["--blocks"]));
    tables.categories = BuildCategoryRows(ParseCategories(files[1], paths["--unicode-data"]));
    const std::map<std::string, std::string> aliases =
        ParseScriptAliases(files[2], paths["--property-value-aliases"]);
    tables.scripts = BuildNamedRows(ParseScripts(files[3], paths["--scripts"], aliases));
    tables.extensions =
        BuildNamedRows(ParseScriptExtensions(files[4], paths["--script-extensions"], aliases));
    const std::vector<std::string> failures = CheckTables(tables);
    if (!failures.empty()) {
      for (const std::string& failure : failures)
        err << "genunicode: error: check failed: " << failure << "\n";
      return 1;
    }
    return ucd::ReplaceFile(paths["--out"], FormatTables(tables), "genunicode", err) ? 0 : 1;
  } catch (const InputError& e) {
    err << "genunicode: error: " << e.what() << "\n";
  } catch (const DataError& e) {
    err << "genunicode: error: " << e.what() << "\n";
  }
  return 1;
}

}  // namespace ic::genunicode
