// FindNoCase against a straightforward search written here (every start, both sides mapped to
// upper case code point by code point, unit by unit when wide), on the vector scans and on the
// portable ones: every text length 0 to 130 with the needle at every offset and with one
// differing code at every offset of the occurrence, and random texts that mix ASCII with
// characters whose upper-case form is ASCII (dotless i, long s).
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <ic/platform/internal/vector_kernels.h>
#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>
#include <ic/text/case_mapping.h>

namespace ic {
namespace {

using Codes = std::vector<uint32_t>;

std::string Utf8(const Codes& codes) {
  std::string out;
  for (const uint32_t c : codes) {
    char buffer[4];
    char* end = buffer;
    EncodeCodePoint(end, c);
    out.append(buffer, end);
  }
  return out;
}

std::u16string Utf16(const Codes& codes) {  // BMP code points only
  return std::u16string(codes.begin(), codes.end());
}

// The unit offset of the first match, or -1.
int32_t NarrowReference(const Codes& text, const Codes& needle) {
  if (needle.empty()) return -1;
  size_t offset = 0;
  for (size_t k = 0; k + needle.size() <= text.size(); ++k) {
    bool same = true;
    for (size_t j = 0; j < needle.size() && same; ++j)
      same = ToUpperCodePoint(text[k + j]) == ToUpperCodePoint(needle[j]);
    if (same) return static_cast<int32_t>(offset);
    offset += Utf8({text[k]}).size();
  }
  return -1;
}

int32_t WideReference(const Codes& text, const Codes& needle) {
  if (needle.empty()) return -1;
  for (size_t k = 0; k + needle.size() <= text.size(); ++k) {
    bool same = true;
    for (size_t j = 0; j < needle.size() && same; ++j)
      same = platform::towupper(static_cast<char16_t>(text[k + j])) ==
             platform::towupper(static_cast<char16_t>(needle[j]));
    if (same) return static_cast<int32_t>(k);
  }
  return -1;
}

void Check(const Codes& text, const Codes& needle) {
  const ICStringUnique narrow(Utf8(text).c_str());
  ASSERT_EQ(narrow.FindNoCase(Utf8(needle).c_str(), 0, true), NarrowReference(text, needle))
      << "text " << Utf8(text) << " needle " << Utf8(needle);
  const ICStringUniqueW wide(Utf16(text).c_str());
  ASSERT_EQ(wide.FindNoCase(Utf16(needle).c_str(), 0, true), WideReference(text, needle))
      << "text " << Utf8(text) << " needle " << Utf8(needle);
}

class FindNoCaseScan : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { platform::internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { platform::internal::EnableVectorKernels(true); }
};

TEST_P(FindNoCaseScan, EveryLengthAndOffset) {
  const std::vector<Codes> needles = {
      {'n'}, {'N', 'e'}, {'n', 'E', 'e', 'D', 'l', 'E'}, {'n', 0x3B1, 'x'}, {'s', 'I', 'x'}};
  for (const Codes& needle : needles) {
    for (size_t length = 0; length <= 130; ++length) {
      const Codes filler(length, 'q');
      Check(filler, needle);
      for (size_t at = 0; at + needle.size() <= length; ++at) {
        Codes text = filler;
        for (size_t j = 0; j < needle.size(); ++j)  // the occurrence in the other case
          text[at + j] = needle[j] < 0x80 ? needle[j] ^ 0x20 : needle[j] - 32;
        Check(text, needle);
        for (size_t wrong = 0; wrong < needle.size(); ++wrong) {
          Codes near = text;
          near[at + wrong] = wrong % 2 == 0 ? 'y' : 0xE9;
          Check(near, needle);
        }
      }
    }
  }
}

TEST_P(FindNoCaseScan, RandomTexts) {
  // Letters in both cases, a blank, e acute, dotless i (upper case I), long s (upper case S)
  // and a Greek letter.
  const Codes alphabet = {'a', 'A', 'i', 'I', 's', 'S', ' ', 0xE9, 0xC9, 0x131, 0x17F, 0x3B1};
  std::mt19937 rng(GetParam() ? 31 : 32);
  for (int round = 0; round < 2000; ++round) {
    Codes text(rng() % 200), needle(1 + rng() % 4);
    for (uint32_t& c : text)
      c = alphabet[rng() % alphabet.size()];
    for (uint32_t& c : needle)
      c = alphabet[rng() % alphabet.size()];
    Check(text, needle);
  }
}

INSTANTIATE_TEST_SUITE_P(Paths, FindNoCaseScan, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Vector" : "Portable"; });

}  // namespace
}  // namespace ic
