// The generated CaseTable checked against the Unicode data files, independently of the
// generator: this test reads UnicodeData.txt and CaseFolding.txt itself, forms the case classes
// by a breadth-first walk over the mappings, and compares the library's table with the result.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <ic/text/case_table.h>

namespace ic {
namespace {

struct UnicodeCase {
  std::map<uint32_t, uint32_t> upper, lower, fold;
};

uint32_t Hex(const std::string& s) {
  return static_cast<uint32_t>(std::stoul(s, nullptr, 16));
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> fields;
  std::stringstream in(line);
  std::string field;
  while (std::getline(in, field, ';')) {
    const size_t b = field.find_first_not_of(' ');
    const size_t e = field.find_last_not_of(' ');
    fields.push_back(b == std::string::npos ? "" : field.substr(b, e - b + 1));
  }
  return fields;
}

const UnicodeCase& Data() {
  static const UnicodeCase data = [] {
    UnicodeCase d;
    std::ifstream unicodeData(IC_UNICODE_DATA_DIR "/UnicodeData.txt");
    std::string line;
    while (std::getline(unicodeData, line)) {
      const std::vector<std::string> f = Split(line);
      if (f.size() < 14) continue;
      const uint32_t code = Hex(f[0]);
      if (!f[12].empty()) d.upper[code] = Hex(f[12]);
      if (!f[13].empty()) d.lower[code] = Hex(f[13]);
    }
    std::ifstream caseFolding(IC_UNICODE_DATA_DIR "/CaseFolding.txt");
    while (std::getline(caseFolding, line)) {
      if (line.empty() || line[0] == '#') continue;
      const std::vector<std::string> f = Split(line);
      if (f[1] == "C" || f[1] == "S") d.fold[Hex(f[0])] = Hex(f[2]);
    }
    return d;
  }();
  return data;
}

uint32_t Get(const std::map<uint32_t, uint32_t>& m, uint32_t code) {
  const auto it = m.find(code);
  return it == m.end() ? code : it->second;
}

// The case classes of two or more members, by a breadth-first walk over the mappings taken as
// undirected edges: code point -> the members of its class.
std::map<uint32_t, std::set<uint32_t>> CaseClasses() {
  const UnicodeCase& d = Data();
  std::map<uint32_t, std::set<uint32_t>> edges;
  for (const auto* m : {&d.upper, &d.lower, &d.fold})
    for (const auto& [a, b] : *m)
      if (a != b) {
        edges[a].insert(b);
        edges[b].insert(a);
      }
  std::map<uint32_t, std::set<uint32_t>> classes;
  for (const auto& [start, unused] : edges) {
    if (classes.count(start)) continue;
    std::vector<uint32_t> work{start};
    std::set<uint32_t> seen{start};
    while (!work.empty()) {
      const uint32_t c = work.back();
      work.pop_back();
      for (const uint32_t n : edges[c])
        if (seen.insert(n).second) work.push_back(n);
    }
    if (seen.size() >= 2)
      for (const uint32_t c : seen)
        classes[c] = seen;
  }
  return classes;
}

TEST(CaseTableAgainstData, DataFilesWereRead) {
  EXPECT_GT(Data().upper.size(), 1000u);
  EXPECT_GT(Data().fold.size(), 1000u);
}

TEST(CaseTableAgainstData, ExactlyTheCodePointsWithCasePartners) {
  std::set<uint32_t> expected;
  for (const auto& [code, unused] : CaseClasses())
    expected.insert(code);
  ASSERT_EQ(expected.size(), 2622u);
  ASSERT_EQ(CaseTableSize, 2622);
  EXPECT_EQ(*expected.begin(), 0x41u);
  EXPECT_EQ(*expected.rbegin(), 0x1E943u);
  EXPECT_EQ(CaseTable[0].code, 0x41u);
  EXPECT_EQ(CaseTable[CaseTableSize - 1].code, 0x1E943u);
  auto it = expected.begin();
  for (int32_t i = 0; i < CaseTableSize; ++i, ++it)
    ASSERT_EQ(CaseTable[i].code, *it) << i;
}

TEST(CaseTableAgainstData, UpperLowerAndFoldOfEveryRecord) {
  const UnicodeCase& d = Data();
  for (int32_t i = 0; i < CaseTableSize; ++i) {
    const CaseRecord& r = CaseTable[i];
    EXPECT_EQ(r.upper, Get(d.upper, r.code)) << std::hex << r.code;
    EXPECT_EQ(r.lower, Get(d.lower, r.code)) << std::hex << r.code;
    EXPECT_EQ(r.fold, Get(d.fold, r.code)) << std::hex << r.code;
  }
}

TEST(CaseTableAgainstData, VariantsAreTheOtherRelatedMembersOfTheClass) {
  const UnicodeCase& d = Data();
  const std::map<uint32_t, std::set<uint32_t>> classes = CaseClasses();
  for (int32_t i = 0; i < CaseTableSize; ++i) {
    const CaseRecord& r = CaseTable[i];
    const uint32_t x = r.code;
    std::vector<uint32_t> expected;  // ascending, as the set is
    for (const uint32_t c : classes.at(x)) {
      if (c == x || c == Get(d.upper, x) || c == Get(d.lower, x)) continue;
      if (Get(d.fold, c) == Get(d.fold, x) || Get(d.upper, c) == x || Get(d.lower, c) == x)
        expected.push_back(c);
    }
    ASSERT_LE(expected.size(), 2u) << std::hex << x;
    expected.resize(2, 0);
    EXPECT_EQ(r.variantA, expected[0]) << std::hex << x;
    EXPECT_EQ(r.variantB, expected[1]) << std::hex << x;
  }
}

struct Sample {
  uint32_t code, upper, lower, fold, variantA, variantB;
};

TEST(CaseTableAgainstData, SampleRows) {
  const Sample samples[] = {
      {0x0041, 0x0041, 0x0061, 0x0061, 0, 0},      {0x0049, 0x0049, 0x0069, 0x0069, 0x0131, 0},
      {0x0069, 0x0049, 0x0069, 0x0069, 0x0130, 0}, {0x004B, 0x004B, 0x006B, 0x006B, 0x212A, 0},
      {0x00B5, 0x039C, 0x00B5, 0x03BC, 0x03BC, 0}, {0x00DF, 0x00DF, 0x00DF, 0x00DF, 0x1E9E, 0},
      {0x0130, 0x0130, 0x0069, 0x0130, 0, 0},      {0x0345, 0x0399, 0x0345, 0x03B9, 0x03B9, 0x1FBE},
      {0x03C2, 0x03A3, 0x03C2, 0x03C3, 0x03C3, 0}, {0x13A0, 0x13A0, 0xAB70, 0x13A0, 0, 0},
  };
  for (const Sample& s : samples) {
    const CaseRecord* r = nullptr;
    for (int32_t i = 0; i < CaseTableSize; ++i)
      if (CaseTable[i].code == s.code) r = &CaseTable[i];
    ASSERT_NE(r, nullptr) << std::hex << s.code;
    EXPECT_EQ(r->upper, s.upper) << std::hex << s.code;
    EXPECT_EQ(r->lower, s.lower) << std::hex << s.code;
    EXPECT_EQ(r->fold, s.fold) << std::hex << s.code;
    EXPECT_EQ(r->variantA, s.variantA) << std::hex << s.code;
    EXPECT_EQ(r->variantB, s.variantB) << std::hex << s.code;
  }
}

}  // namespace
}  // namespace ic
