// Squeeze and ExtractToken on the vector scans and on the portable ones, against
// straightforward loops written here: every length 0 to 130 with the unit that matters at every
// offset, both widths, and random texts.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <ic/platform/internal/vector_kernels.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

// Squeeze(nullptr, ' ', " \t") on text without non-ASCII characters and zero units.
std::u16string SqueezeReference(const std::u16string& text) {
  std::u16string out;
  bool inRun = false;
  for (const char16_t c : text) {
    const bool blank = c == u' ' || c == u'\t';
    if (blank && !inRun) out += u' ';
    if (!blank) out += c;
    inRun = blank;
  }
  return out;
}

// ExtractToken(",;") walked to the end.
std::vector<std::u16string> SplitReference(const std::u16string& text) {
  std::vector<std::u16string> out(1);
  for (const char16_t c : text) {
    if (c == u',' || c == u';')
      out.emplace_back();
    else
      out.back() += c;
  }
  return out;
}

template <class S>
std::vector<std::u16string> Split(const S& s) {
  std::vector<std::u16string> out;
  int32_t position = 0;
  bool atEnd = false;
  while (!atEnd) {
    using Unit = typename S::UnitType;
    static constexpr Unit kDelimiters[] = {Unit(','), Unit(';'), Unit(0)};
    const S token = s.ExtractToken(kDelimiters, position, nullptr, false, 0, &atEnd);
    out.emplace_back(token.GetText(), token.GetText() + token.GetLength());
  }
  return out;
}

void Check(const std::u16string& wide) {
  const std::string narrow(wide.begin(), wide.end());  // ASCII texts only
  ICStringUniqueW w(wide.c_str(), static_cast<int32_t>(wide.size()));
  ICStringUnique n(narrow.c_str(), static_cast<int32_t>(narrow.size()));
  ASSERT_EQ(Split(w), SplitReference(wide)) << "length " << wide.size();
  ASSERT_EQ(Split(n), SplitReference(wide)) << "length " << wide.size();
  w.Squeeze(nullptr, u' ', u" \t");
  n.Squeeze(nullptr, ' ', " \t");
  const std::u16string expected = SqueezeReference(wide);
  ASSERT_EQ(std::u16string(w.GetText(), static_cast<size_t>(w.GetLength())), expected)
      << "length " << wide.size();
  ASSERT_EQ(std::u16string(n.GetText(), n.GetText() + n.GetLength()), expected)
      << "length " << wide.size();
}

class ScanPaths : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { platform::internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { platform::internal::EnableVectorKernels(true); }
};

TEST_P(ScanPaths, EveryLengthAndOffset) {
  for (size_t n = 0; n <= 130; ++n) {
    // Words with single spaces: a lone space every fourth unit.
    std::u16string clean(n, u'x');
    for (size_t i = 3; i < n; i += 4)
      clean[i] = u' ';
    Check(clean);
    for (size_t at = 0; at < n; ++at)
      for (const char16_t c : {u' ', u'\t', u',', u';', u'y'}) {
        std::u16string text = clean;
        text[at] = c;
        Check(text);
        if (at + 1 < n) {
          text[at + 1] = u' ';
          Check(text);
        }
      }
  }
}

TEST_P(ScanPaths, NonAsciiAtEveryOffset) {
  // Wide only: a unit from 128 up stops the scan and is kept.
  for (size_t n = 0; n <= 130; ++n)
    for (size_t at = 0; at < n; ++at)
      for (const char16_t c : {u'\x80', u'\xFF', u'\x100', u'\xD800'}) {
        std::u16string text(n, u'x');
        text[at] = c;
        if (at + 2 < n) text[at + 1] = text[at + 2] = u' ';
        ICStringUniqueW w(text.c_str(), static_cast<int32_t>(n));
        ASSERT_EQ(Split(w), SplitReference(text));
        w.Squeeze(nullptr, u' ', u" \t");
        ASSERT_EQ(std::u16string(w.GetText(), static_cast<size_t>(w.GetLength())),
                  SqueezeReference(text))
            << "length " << n << " offset " << at;
      }
}

TEST_P(ScanPaths, RandomTexts) {
  std::mt19937 rng(GetParam() ? 8 : 9);
  static const char16_t kUnits[] = {u'a', u' ', u' ', u'\t', u',', u';', u'b'};
  for (int round = 0; round < 3000; ++round) {
    std::u16string text(rng() % 200, u'a');
    for (char16_t& c : text)
      c = kUnits[rng() % std::size(kUnits)];
    Check(text);
  }
}

INSTANTIATE_TEST_SUITE_P(Paths, ScanPaths, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Vector" : "Portable"; });

}  // namespace
}  // namespace ic
