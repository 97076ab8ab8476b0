// MakeUpper and MakeLower (full mode) on the vector paths and on the portable ones, against the
// whole-text mapping that the library also offers unit by unit: narrow against MapCodePoints with
// ToUpperCodePoint / ToLowerCodePoint from the first code point that changes, wide against
// towupper / towlower unit by unit from the first unit that changes up to a zero unit. Texts of
// every length 0 to 130 with a character that matters at every offset: letters that keep their
// byte length, that shrink, grow or leave ASCII, cut-short and odd sequences, zero units.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <ic/platform/internal/vector_kernels.h>
#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/positions.h>
#include <ic/string/utf8.h>
#include <ic/text/case_mapping.h>

namespace ic {
namespace {

uint32_t Upper(uint32_t code) {
  return ToUpperCodePoint(code);
}
uint32_t Lower(uint32_t code) {
  return ToLowerCodePoint(code);
}

// The narrow mapping: nothing when no code point changes; otherwise the text before the first
// that does, and the rest through MapCodePoints.
std::string NarrowReference(const std::string& text, bool upper) {
  const CodePointMapper map = upper ? Upper : Lower;
  const std::string zeroEnded = text.c_str();  // the text up to a zero byte
  size_t first = std::string::npos;
  for (size_t i = 0; i < zeroEnded.size();) {
    const char* p = zeroEnded.c_str() + i;
    const char* q = p;
    bool whole;
    const uint32_t code = internal::DecodeCodePoint(q, whole);
    if (whole) {
      const uint32_t mapped = map(code);
      const bool encodable = mapped <= 0x10FFFF && (mapped < 0xD800 || mapped > 0xDFFF);
      if (mapped != code || !encodable) {
        first = i;
        break;
      }
    }
    i += static_cast<size_t>(q - p);
  }
  if (first == std::string::npos) return text;
  std::string rest(zeroEnded.substr(first));
  rest.resize(rest.size() * 3 + 1, '\0');
  EXPECT_EQ(MapCodePoints(rest.data(), static_cast<int32_t>(rest.size()), map), 0);
  return zeroEnded.substr(0, first) + rest.c_str();
}

std::u16string WideReference(const std::u16string& text, bool upper) {
  auto map = [upper](char16_t u) { return upper ? platform::towupper(u) : platform::towlower(u); };
  size_t first = 0;
  while (first < text.size() && map(text[first]) == text[first])
    ++first;
  std::u16string out = text;
  for (size_t i = first; i < out.size() && out[i] != 0; ++i)
    out[i] = map(out[i]);
  return out;
}

// MakeUpper or MakeLower (full mode) on a unique string made of `text`, as a standard string.
template <class S, class Text>
Text Mapped(const Text& text, bool upper) {
  S s(text.data(), static_cast<int32_t>(text.size()));
  if (upper)
    s.MakeUpper();
  else
    s.MakeLower();
  return Text(s.GetText(), static_cast<size_t>(s.GetLength()));
}

void Check(const std::string& narrow, const std::u16string& wide) {
  for (const bool upper : {true, false}) {
    ASSERT_EQ(Mapped<ICStringUnique>(narrow, upper), NarrowReference(narrow, upper))
        << (upper ? "upper " : "lower ") << narrow.size() << " bytes";
    ASSERT_EQ(Mapped<ICStringUniqueW>(wide, upper), WideReference(wide, upper))
        << (upper ? "upper " : "lower ") << wide.size() << " units";
  }
}

class CasePaths : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { platform::internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { platform::internal::EnableVectorKernels(true); }
};

TEST_P(CasePaths, NarrowEveryLengthAndOffset) {
  const std::vector<std::string> inserts = {
      "\xC3\xA9",          // é: two bytes either way
      "\xCE\xB1",          // Greek alpha
      "\xD0\x96",          // Cyrillic Zhe
      "\xC4\xB1",          // dotless i: upper case I is one byte
      "\xC5\xBF",          // long s: upper case S
      "\xE1\xBA\x9E",      // capital sharp s: lower case is two bytes
      "\xC8\xBF",          // s with swash tail: upper case is three bytes
      "\xE2\x82\xAC",      // euro sign: no case
      "\xF0\x9F\x98\x80",  // emoji
      "\xC3\x41",          // a lead byte before ASCII: decoded as one sequence
      "\xC1\x81",          // an overlong A
      "\xC3",              // a lead byte cut short by what follows or by the end
      std::string(1, '\0'),
      "Q",
      "q"};
  for (size_t length = 0; length <= 130; ++length) {
    std::string clean;
    for (size_t i = 0; i < length; ++i)
      clean += static_cast<char>((i % 3 == 0 ? 'A' : 'a') + i % 26);
    Check(clean, std::u16string(clean.begin(), clean.end()));
    for (size_t at = 0; at < length; ++at)
      for (const std::string& insert : inserts) {
        std::string text = clean;
        text.replace(at, std::min(insert.size(), length - at), insert);
        text.resize(length);
        std::u16string wide(clean.begin(), clean.end());
        Check(text, wide);
      }
  }
}

TEST_P(CasePaths, WideEveryLengthAndOffset) {
  const std::vector<char16_t> inserts = {0xE9,   0xFF,   0x3B1,  0x416,  0x131,  0x17F, 0x1E9E,
                                         0x23F,  0x20AC, 0xD83D, 0xDE00, 0x0,    0x7F,  0x80,
                                         0xFFFF, u'Q',   u'q',   0x1C5,  0x2C65, 0x10D0};
  for (size_t length = 0; length <= 130; ++length) {
    std::u16string clean;
    for (size_t i = 0; i < length; ++i)
      clean += static_cast<char16_t>((i % 3 == 0 ? 'A' : 'a') + i % 26);
    for (size_t at = 0; at < length; ++at)
      for (const char16_t insert : inserts) {
        std::u16string text = clean;
        text[at] = insert;
        const std::string narrow(clean.begin(), clean.end());
        Check(narrow, text);
      }
  }
}

TEST_P(CasePaths, RandomMixedTexts) {
  const std::vector<uint32_t> alphabet = {'a',   'Z',   ' ',   '.',   0xE9,   0xC9,  0x3B1,   0x391,
                                          0x416, 0x436, 0x131, 0x17F, 0x1E9E, 0x23F, 0x1F600, 0xDF};
  std::mt19937 rng(GetParam() ? 41 : 42);
  for (int round = 0; round < 1500; ++round) {
    std::string narrow;
    std::u16string wide;
    for (int n = static_cast<int>(rng() % 150); n > 0; --n) {
      const uint32_t c = rng() % 3 == 0 ? alphabet[rng() % alphabet.size()] : 'a' + rng() % 26;
      char buffer[4];
      char* end = buffer;
      EncodeCodePoint(end, c);
      narrow.append(buffer, end);
      if (c < 0x10000) wide += static_cast<char16_t>(c);
    }
    Check(narrow, wide);
  }
}

INSTANTIATE_TEST_SUITE_P(Paths, CasePaths, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Vector" : "Portable"; });

}  // namespace
}  // namespace ic
