#include "case_data.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <istream>
#include <numeric>
#include <ostream>
#include <set>
#include <sstream>
#include <string_view>

namespace ic::gencase {
namespace {

constexpr size_t ExpectedRowCount = 2622;
constexpr uint32_t ExpectedFirstCode = 0x41;
constexpr uint32_t ExpectedLastCode = 0x1E943;

// Rows that the library documents and tests against; the table must reproduce them exactly.
constexpr CaseRow SampleRows[] = {
    {0x0041, 0x0041, 0x0061, 0x0061, 0, 0},      {0x0049, 0x0049, 0x0069, 0x0069, 0x0131, 0},
    {0x0069, 0x0049, 0x0069, 0x0069, 0x0130, 0}, {0x004B, 0x004B, 0x006B, 0x006B, 0x212A, 0},
    {0x00B5, 0x039C, 0x00B5, 0x03BC, 0x03BC, 0}, {0x00DF, 0x00DF, 0x00DF, 0x00DF, 0x1E9E, 0},
    {0x0130, 0x0130, 0x0069, 0x0130, 0, 0},      {0x0345, 0x0399, 0x0345, 0x03B9, 0x03B9, 0x1FBE},
    {0x03C2, 0x03A3, 0x03C2, 0x03C3, 0x03C3, 0}, {0x13A0, 0x13A0, 0xAB70, 0x13A0, 0, 0},
};

using ucd::Hex;
using ucd::ParseCode;
using ucd::SplitFields;
using ucd::Trim;

uint32_t MapOrSelf(const std::map<uint32_t, uint32_t>& map, uint32_t code) {
  const auto it = map.find(code);
  return it == map.end() ? code : it->second;
}

// Union-find over the code points that appear in a mapping.
class Classes {
 public:
  uint32_t Find(uint32_t code) {
    auto it = _parent.try_emplace(code, code).first;
    if (it->second == code) return code;
    const uint32_t root = Find(it->second);
    _parent[code] = root;
    return root;
  }
  void Join(uint32_t a, uint32_t b) {
    const uint32_t ra = Find(a);
    const uint32_t rb = Find(b);
    if (ra != rb) _parent[std::max(ra, rb)] = std::min(ra, rb);
  }
  std::vector<uint32_t> Codes() const {
    std::vector<uint32_t> codes;
    for (const auto& entry : _parent)
      codes.push_back(entry.first);
    return codes;
  }

 private:
  std::map<uint32_t, uint32_t> _parent;
};

}  // namespace

void ParseUnicodeData(std::istream& in, const std::string& fileName, CaseMappings& mappings) {
  ucd::ForEachUnicodeDataLine(
      in, fileName,
      [&](const std::vector<std::string_view>& fields, uint32_t code, int lineNumber) {
        const struct {
          size_t index;
          std::map<uint32_t, uint32_t>* target;
          const char* name;
        } columns[] = {{12, &mappings.upper, "uppercase"}, {13, &mappings.lower, "lowercase"}};
        for (const auto& column : columns) {
          const std::string_view field = Trim(fields[column.index]);
          if (field.empty()) continue;
          uint32_t mapped;
          if (!ParseCode(field, mapped))
            throw InputError(
                fileName, lineNumber,
                std::string("bad simple ") + column.name + " mapping '" + std::string(field) + "'");
          if (mapped != code) (*column.target)[code] = mapped;
        }
      });
}

void ParseCaseFolding(std::istream& in, const std::string& fileName, CaseMappings& mappings) {
  std::string line;
  int lineNumber = 0;
  bool any = false;
  while (std::getline(in, line)) {
    ++lineNumber;
    std::string_view content = line;
    const size_t hash = content.find('#');
    if (hash != std::string_view::npos) content = content.substr(0, hash);
    if (Trim(content).empty()) continue;
    const std::vector<std::string_view> fields = SplitFields(content);
    // "<code>; <status>; <mapping>;" leaves an empty fourth field before the comment.
    if (fields.size() != 4 || !Trim(fields[3]).empty())
      throw InputError(fileName, lineNumber, "expected '<code>; <status>; <mapping>;'");
    uint32_t code;
    if (!ParseCode(fields[0], code))
      throw InputError(fileName, lineNumber,
                       "bad code point '" + std::string(Trim(fields[0])) + "'");
    const std::string_view status = Trim(fields[1]);
    if (status != "C" && status != "S" && status != "F" && status != "T")
      throw InputError(fileName, lineNumber, "bad status '" + std::string(status) + "'");
    any = true;
    if (status == "F" || status == "T") continue;  // full and Turkic foldings are not simple
    uint32_t folded;
    if (!ParseCode(fields[2], folded))
      throw InputError(fileName, lineNumber,
                       "bad simple folding '" + std::string(Trim(fields[2])) + "'");
    if (!mappings.fold.emplace(code, folded).second)
      throw InputError(fileName, lineNumber, "second simple folding for " + Hex(code));
  }
  if (!any) throw InputError(fileName, lineNumber, "no data");
}

std::vector<CaseRow> BuildCaseRows(const CaseMappings& mappings) {
  Classes classes;
  for (const auto* map : {&mappings.upper, &mappings.lower, &mappings.fold})
    for (const auto& [code, mapped] : *map)
      classes.Join(code, mapped);

  std::map<uint32_t, std::vector<uint32_t>> members;  // root -> codes, ascending
  for (const uint32_t code : classes.Codes())
    members[classes.Find(code)].push_back(code);

  std::vector<CaseRow> rows;
  for (const auto& [root, codes] : members) {
    if (codes.size() < 2) continue;
    for (const uint32_t x : codes) {
      CaseRow row;
      row.code = x;
      row.upper = MapOrSelf(mappings.upper, x);
      row.lower = MapOrSelf(mappings.lower, x);
      row.fold = MapOrSelf(mappings.fold, x);
      std::vector<uint32_t> variants;
      for (const uint32_t c : codes) {
        if (c == x || c == row.upper || c == row.lower) continue;
        if (MapOrSelf(mappings.fold, c) == row.fold || MapOrSelf(mappings.upper, c) == x ||
            MapOrSelf(mappings.lower, c) == x)
          variants.push_back(c);
      }
      if (variants.size() > 2)
        throw DataError(Hex(x) + " has " + std::to_string(variants.size()) +
                        " variants; the table has room for two");
      if (!variants.empty()) row.variantA = variants[0];
      if (variants.size() > 1) row.variantB = variants[1];
      rows.push_back(row);
    }
  }
  std::sort(rows.begin(), rows.end(),
            [](const CaseRow& a, const CaseRow& b) { return a.code < b.code; });
  return rows;
}

std::vector<std::string> CheckCaseRows(const std::vector<CaseRow>& rows) {
  std::vector<std::string> failures;
  if (rows.size() != ExpectedRowCount)
    failures.push_back("expected " + std::to_string(ExpectedRowCount) + " records, got " +
                       std::to_string(rows.size()));
  if (!rows.empty() && rows.front().code != ExpectedFirstCode)
    failures.push_back("first record is " + Hex(rows.front().code) + ", expected " +
                       Hex(ExpectedFirstCode));
  if (!rows.empty() && rows.back().code != ExpectedLastCode)
    failures.push_back("last record is " + Hex(rows.back().code) + ", expected " +
                       Hex(ExpectedLastCode));
  for (size_t i = 1; i < rows.size(); ++i)
    if (rows[i].code <= rows[i - 1].code)
      failures.push_back("records not strictly rising at " + Hex(rows[i].code));
  for (const CaseRow& sample : SampleRows) {
    const auto it =
        std::lower_bound(rows.begin(), rows.end(), sample.code,
                         [](const CaseRow& row, uint32_t code) { return row.code < code; });
    if (it == rows.end() || it->code != sample.code) {
      failures.push_back("sample " + Hex(sample.code) + " has no record");
    } else if (!(*it == sample)) {
      failures.push_back("sample " + Hex(sample.code) + ": got upper " + Hex(it->upper) +
                         " lower " + Hex(it->lower) + " fold " + Hex(it->fold) + " variants " +
                         Hex(it->variantA) + " " + Hex(it->variantB));
    }
  }
  return failures;
}

std::string FormatCaseTable(const std::vector<CaseRow>& rows) {
  std::ostringstream out;
  out << "// Generated by gencase from UnicodeData.txt and CaseFolding.txt (Unicode 9.0.0). Do not "
         "edit.\n"
         "#include <ic/text/internal/case_index.h>\n"
         "#include <ic/text/case_table.h>\n\n"
         "namespace ic {\n\n"
         "static_assert(CaseTableSize == "
      << rows.size()
      << ", \"the declared size of the case table differs from the data\");\n\n"
         "// code, upper, lower, fold, variantA, variantB\n"
         "alignas(64) const CaseRecord CaseTable[CaseTableSize] = {\n";
  char buffer[128];
  for (const CaseRow& row : rows) {
    std::snprintf(buffer, sizeof buffer, "    {0x%04X, 0x%04X, 0x%04X, 0x%04X, 0x%04X, 0x%04X},\n",
                  static_cast<unsigned>(row.code), static_cast<unsigned>(row.upper),
                  static_cast<unsigned>(row.lower), static_cast<unsigned>(row.fold),
                  static_cast<unsigned>(row.variantA), static_cast<unsigned>(row.variantB));
    out << buffer;
  }
  out << "};\n\n";

  // The two-stage index: the code point's block of CaseIndexBlockSize selects a row of stage 2
  // (row 0 is all zero), whose entry is the record's index plus one, or 0 for no record.
  constexpr uint32_t BlockSize = 64;
  const uint32_t blocks = rows.empty() ? 1 : rows.back().code / BlockSize + 1;
  std::vector<uint32_t> stage1(blocks, 0);
  std::vector<std::vector<uint32_t>> stage2(1, std::vector<uint32_t>(BlockSize, 0));
  for (size_t i = 0; i < rows.size(); ++i) {
    const uint32_t block = rows[i].code / BlockSize;
    if (stage1[block] == 0) {
      stage1[block] = static_cast<uint32_t>(stage2.size());
      stage2.emplace_back(BlockSize, 0);
    }
    stage2[stage1[block]][rows[i].code % BlockSize] = static_cast<uint32_t>(i + 1);
  }
  out << "static_assert(CaseIndexBlockSize == " << BlockSize << " && CaseIndexBlocks == " << blocks
      << " && CaseIndexRows == " << stage2.size()
      << ", \"the declared size of the case index differs from the data\");\n\n"
         "// Stage 1: one row number of CaseIndexStage2 for each block of code points.\n"
         "const uint8_t CaseIndexStage1[CaseIndexBlocks] = {";
  for (size_t i = 0; i < stage1.size(); ++i)
    out << (i % 24 == 0 ? "\n    " : " ") << stage1[i] << ",";
  out << "\n};\n\n"
         "// Stage 2: the record index plus one for each code point of a block, 0 for none.\n"
         "const uint16_t CaseIndexStage2[CaseIndexRows][CaseIndexBlockSize] = {\n";
  for (const std::vector<uint32_t>& row : stage2) {
    out << "    {";
    for (size_t i = 0; i < row.size(); ++i)
      out << (i ? (i % 16 == 0 ? ",\n     " : ", ") : "") << row[i];
    out << "},\n";
  }
  out << "};\n\n}  // namespace ic\n";
  return out.str();
}

int RunGencase(const std::vector<std::string>& args, std::ostream& err) {
  std::string unicodeData, caseFolding, output;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string* target = nullptr;
    if (args[i] == "--unicode-data")
      target = &unicodeData;
    else if (args[i] == "--case-folding")
      target = &caseFolding;
    else if (args[i] == "--out")
      target = &output;
    if (target == nullptr || i + 1 == args.size()) {
      err << "gencase: unknown or incomplete argument '" << args[i] << "'\n"
          << "usage: gencase --unicode-data FILE --case-folding FILE --out FILE\n";
      return 2;
    }
    *target = args[++i];
  }
  if (unicodeData.empty() || caseFolding.empty() || output.empty()) {
    err << "usage: gencase --unicode-data FILE --case-folding FILE --out FILE\n";
    return 2;
  }

  try {
    CaseMappings mappings;
    for (const auto& [path, parse] :
         {std::pair{unicodeData, &ParseUnicodeData}, std::pair{caseFolding, &ParseCaseFolding}}) {
      std::ifstream in(path, std::ios::binary);
      if (!in) {
        err << "gencase: error: " << path << ": cannot open\n";
        return 1;
      }
      parse(in, path, mappings);
    }
    const std::vector<CaseRow> rows = BuildCaseRows(mappings);
    const std::vector<std::string> failures = CheckCaseRows(rows);
    if (!failures.empty()) {
      for (const std::string& failure : failures)
        err << "gencase: error: check failed: " << failure << "\n";
      return 1;
    }

    return ucd::ReplaceFile(output, FormatCaseTable(rows), "gencase", err) ? 0 : 1;
  } catch (const InputError& e) {
    err << "gencase: error: " << e.what() << "\n";
  } catch (const DataError& e) {
    err << "gencase: error: " << e.what() << "\n";
  }
  return 1;
}

}  // namespace ic::gencase
