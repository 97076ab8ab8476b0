// EscapeXml on the vector scan and on the portable scan, against a straightforward escaper
// written here: every length 0 to 130 with a character to escape (or a non-ASCII one) at every
// offset, in both widths, and random texts.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include <ic/platform/internal/vector_kernels.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

// The escape of ASCII text, and of other text with non-ASCII characters kept as they are.
std::u16string Reference(const std::u16string& text, bool quotes) {
  std::u16string out;
  for (const char16_t c : text) {
    if (c == 0) break;
    if (c == u'<')
      out += u"&lt;";
    else if (c == u'>')
      out += u"&gt;";
    else if (c == u'&')
      out += u"&amp;";
    else if (quotes && c == u'"')
      out += u"&quot;";
    else if (quotes && c == u'\'')
      out += u"&apos;";
    else if (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') {
      for (const char c2 : "&#" + std::to_string(static_cast<int>(c)) + ";")
        if (c2 != 0) out += static_cast<char16_t>(c2);
    } else {
      out += c;
    }
  }
  return out;
}

std::u16string Wide(const std::string& ascii) {
  return std::u16string(ascii.begin(), ascii.end());
}

void Check(const std::u16string& wide, bool quotes) {
  ICStringUniqueW w(wide.c_str(), static_cast<int32_t>(wide.size()));
  w.EscapeXml(quotes);
  ASSERT_EQ(std::u16string(w.GetText(), static_cast<size_t>(w.GetLength())),
            Reference(wide, quotes))
      << "length " << wide.size();
  bool ascii = true;
  for (const char16_t c : wide)
    ascii = ascii && c < 0x80;
  if (!ascii) return;
  const std::string narrow(wide.begin(), wide.end());
  ICStringUnique n(narrow.c_str(), static_cast<int32_t>(narrow.size()));
  n.EscapeXml(quotes);
  ASSERT_EQ(Wide(std::string(n.GetText(), static_cast<size_t>(n.GetLength()))),
            Reference(wide, quotes))
      << "length " << narrow.size();
}

class XmlEscapeScan : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { platform::internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { platform::internal::EnableVectorKernels(true); }
};

TEST_P(XmlEscapeScan, EveryLengthAndOffset) {
  for (size_t n = 0; n <= 130; ++n) {
    const std::u16string clean(n, u'x');
    Check(clean, false);
    for (size_t at = 0; at < n; ++at)
      for (const char16_t c : {u'<', u'>', u'&', u'"', u'\'', u'\x01', u'\t', u'\n', u'\x1F',
                               u'\x7F', u'\x80', u'\xFF', u'\x100', u'\xD800'})
        for (const bool quotes : {false, true}) {
          std::u16string text = clean;
          text[at] = c;
          Check(text, quotes);
        }
  }
}

TEST_P(XmlEscapeScan, NarrowNonAsciiAtEveryOffset) {
  // A two-byte character is kept as it stands; a markup character behind it is still found.
  for (size_t n = 2; n <= 130; ++n)
    for (size_t at = 0; at + 1 < n; ++at) {
      std::string text(n, 'x');
      text[at] = '\xC3';
      text[at + 1] = '\xA9';
      text[n - 1] = at + 2 < n ? '<' : text[n - 1];
      ICStringUnique s(text.c_str(), static_cast<int32_t>(n));
      s.EscapeXml();
      std::string expected = text;
      if (at + 2 < n) expected.replace(n - 1, 1, "&lt;");
      ASSERT_EQ(std::string(s.GetText(), static_cast<size_t>(s.GetLength())), expected)
          << "length " << n << " offset " << at;
    }
}

TEST_P(XmlEscapeScan, NarrowCharacterAcrossABlockEdge) {
  // A three-byte character on every offset around the edge of the escaper's first block of 1024
  // units, with markup on both sides: the character stays whole and the marks behind it count.
  for (size_t at = 1016; at <= 1026; ++at) {
    std::string text(2100, 'x');
    text[at - 3] = '<';
    text.replace(at, 3, "\xE4\xB8\xAD");
    text[at + 3] = '&';
    text[at + 5] = '>';
    std::string expected = text;
    expected.replace(at + 5, 1, "&gt;");
    expected.replace(at + 3, 1, "&amp;");
    expected.replace(at - 3, 1, "&lt;");
    ICStringUnique n(text.c_str(), static_cast<int32_t>(text.size()));
    n.EscapeXml();
    ASSERT_EQ(std::string(n.GetText(), static_cast<size_t>(n.GetLength())), expected) << at;
  }
}

TEST_P(XmlEscapeScan, RandomTexts) {
  std::mt19937 rng(GetParam() ? 3 : 4);
  static const char16_t kUnits[] = {u'a',  u'b',  u' ',    u'<',    u'>',     u'&',     u'"',
                                    u'\'', u'\n', u'\x02', u'\x80', u'\x3B1', u'\xFFFF'};
  for (int round = 0; round < 2000; ++round) {
    // Every tenth text spans several of the escaper's blocks of 1024 units.
    std::u16string text(rng() % (round % 10 == 0 ? 5000 : 200), u'a');
    for (char16_t& c : text)
      if (rng() % 10 == 0) c = kUnits[rng() % std::size(kUnits)];
    Check(text, rng() % 2 == 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Paths, XmlEscapeScan, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Vector" : "Portable"; });

}  // namespace
}  // namespace ic
