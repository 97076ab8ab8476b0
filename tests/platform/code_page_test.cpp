// The library's own UTF-8 / UTF-16 code page converters (the public MultiByteToWideChar and
// WideCharToMultiByte off Windows; on Windows those are the system's, compared with these by
// code_page_differential_test): fixed examples, argument handling, and agreement with a plain
// byte-at-a-time reference model on many thousands of random inputs.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <ic/platform/code_page.h>
#include <ic/platform/internal/portable_code_page.h>
#include <ic/platform/internal/vector_kernels.h>

namespace ic::platform {
namespace {

using Bytes = std::vector<uint8_t>;
using Units = std::vector<char16_t>;

constexpr char16_t R = 0xfffd;

// ---------------------------------------------------------------------------------------------
// Reference models: the rules written down as directly as possible, one byte or unit at a time.

void PushCodePoint(Units& out, uint32_t cp) {
  if (cp < 0x10000) {
    out.push_back(static_cast<char16_t>(cp));
  } else {
    cp -= 0x10000;
    out.push_back(static_cast<char16_t>(0xd800 + (cp >> 10)));
    out.push_back(static_cast<char16_t>(0xdc00 + (cp & 0x3ff)));
  }
}

Units ModelUtf8ToUtf16(const Bytes& in) {
  Units out;
  size_t i = 0;
  while (i < in.size()) {
    const uint8_t lead = in[i];
    if (lead <= 0x7f) {
      out.push_back(lead);
      i += 1;
      continue;
    }
    int need = 0;
    if (lead >= 0xc2 && lead <= 0xdf) need = 1;
    if (lead >= 0xe0 && lead <= 0xef) need = 2;
    if (lead >= 0xf0 && lead <= 0xf4) need = 3;
    if (need == 0) {  // 80-C1, F5-FF
      out.push_back(R);
      i += 1;
      continue;
    }
    if (in.size() - (i + 1) < static_cast<size_t>(need)) {  // truncated: all the rest
      out.push_back(R);
      break;
    }
    // The range that the first continuation byte must lie in for a well-formed sequence.
    uint8_t low = 0x80, high = 0xbf;
    if (lead == 0xe0) low = 0xa0;
    if (lead == 0xed) high = 0x9f;
    if (lead == 0xf0) low = 0x90;
    if (lead == 0xf4) high = 0x8f;
    uint32_t cp = lead & (need == 1 ? 0x1f : need == 2 ? 0x0f : 0x07);
    size_t next = i + 1;
    bool broken = false;
    for (int k = 0; k < need; ++k) {
      const uint8_t c = in[next];
      if (c < 0x80 || c > 0xbf) {  // not a continuation: decoded afresh
        out.push_back(R);
        i = next;
        broken = true;
        break;
      }
      if (k == 0 && (c < low || c > high)) {  // lead and this byte: one replacement
        out.push_back(R);
        i = next + 1;
        broken = true;
        break;
      }
      cp = (cp << 6) | (c & 0x3f);
      ++next;
    }
    if (broken) continue;
    PushCodePoint(out, cp);
    i = next;
  }
  return out;
}

Bytes ModelUtf16ToUtf8(const Units& in) {
  Bytes out;
  auto put = [&](uint32_t cp) {
    if (cp < 0x80) {
      out.push_back(static_cast<uint8_t>(cp));
    } else if (cp < 0x800) {
      out.push_back(static_cast<uint8_t>(0xc0 | (cp >> 6)));
      out.push_back(static_cast<uint8_t>(0x80 | (cp & 0x3f)));
    } else if (cp < 0x10000) {
      out.push_back(static_cast<uint8_t>(0xe0 | (cp >> 12)));
      out.push_back(static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3f)));
      out.push_back(static_cast<uint8_t>(0x80 | (cp & 0x3f)));
    } else {
      out.push_back(static_cast<uint8_t>(0xf0 | (cp >> 18)));
      out.push_back(static_cast<uint8_t>(0x80 | ((cp >> 12) & 0x3f)));
      out.push_back(static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3f)));
      out.push_back(static_cast<uint8_t>(0x80 | (cp & 0x3f)));
    }
  };
  for (size_t i = 0; i < in.size(); ++i) {
    const uint32_t u = in[i];
    const bool high = u >= 0xd800 && u <= 0xdbff;
    const bool low = u >= 0xdc00 && u <= 0xdfff;
    if (high && i + 1 < in.size() && in[i + 1] >= 0xdc00 && in[i + 1] <= 0xdfff) {
      put(0x10000 + ((u - 0xd800) << 10) + (in[i + 1] - 0xdc00));
      ++i;
    } else if (high || low) {
      put(0xfffd);
    } else {
      put(u);
    }
  }
  return out;
}

// ---------------------------------------------------------------------------------------------
// Calls through the converters.

int ToWide(const Bytes& in, char16_t* dst, int size) {
  return internal::PortableMultiByteToWideChar(CodePageUTF8, 0,
                                               reinterpret_cast<const char*>(in.data()),
                                               static_cast<int>(in.size()), dst, size);
}

Units ToWide(const Bytes& in) {
  const int n = ToWide(in, nullptr, 0);
  Units out(static_cast<size_t>(n));
  EXPECT_EQ(ToWide(in, out.data(), n), n);
  return out;
}

int ToNarrow(const Units& in, char* dst, int size) {
  return internal::PortableWideCharToMultiByte(CodePageUTF8, 0, in.data(),
                                               static_cast<int>(in.size()), dst, size);
}

Bytes ToNarrow(const Units& in) {
  const int n = ToNarrow(in, nullptr, 0);
  std::string out(static_cast<size_t>(n), '\0');
  EXPECT_EQ(ToNarrow(in, out.data(), n), n);
  return Bytes(out.begin(), out.end());
}

// ---------------------------------------------------------------------------------------------
// UTF-8 to UTF-16: the examples.

TEST(MultiByteToWideChar, AsciiAndZeroBytesGiveThemselves) {
  EXPECT_EQ(ToWide(Bytes{'a', 0, 'b', 0x7f}), (Units{'a', 0, 'b', 0x7f}));
}

TEST(MultiByteToWideChar, WellFormedSequences) {
  EXPECT_EQ(ToWide(Bytes{0xc3, 0xa9}), Units{0xe9});
  EXPECT_EQ(ToWide(Bytes{0xe2, 0x82, 0xac}), Units{0x20ac});
  EXPECT_EQ(ToWide(Bytes{0xf0, 0x9f, 0x98, 0x80}), (Units{0xd83d, 0xde00}));
  EXPECT_EQ(ToWide(Bytes{0xf4, 0x8f, 0xbf, 0xbf}), (Units{0xdbff, 0xdfff}));
  EXPECT_EQ(ToWide(Bytes{0xef, 0xbf, 0xbf}), Units{0xffff});
}

TEST(MultiByteToWideChar, BytesThatCannotLead) {
  for (int b = 0x80; b <= 0xc1; ++b)
    EXPECT_EQ(ToWide(Bytes{static_cast<uint8_t>(b), 'x'}), (Units{R, 'x'})) << b;
  for (int b = 0xf5; b <= 0xff; ++b)
    EXPECT_EQ(ToWide(Bytes{static_cast<uint8_t>(b), 0x80, 0x80, 0x80}), (Units{R, R, R, R})) << b;
}

TEST(MultiByteToWideChar, ExamplesOfIllFormedInput) {
  EXPECT_EQ(ToWide(Bytes{0xc0, 0x80}), (Units{R, R}));
  EXPECT_EQ(ToWide(Bytes{0xed, 0xa0, 0x80}), (Units{R, R}));
  EXPECT_EQ(ToWide(Bytes{0xf4, 0x90, 0x80, 0x80}), (Units{R, R, R}));
  EXPECT_EQ(ToWide(Bytes{0xe0, 0x80, 0xaf}), (Units{R, R}));
  EXPECT_EQ(ToWide(Bytes{0xe4, 0xb8}), (Units{R}));
  EXPECT_EQ(ToWide(Bytes{0xe1, 0x00}), (Units{R}));
  EXPECT_EQ(ToWide(Bytes{0xf0, 0x9f, 0x98, 0x41}), (Units{R, 'A'}));
  EXPECT_EQ(ToWide(Bytes{0xe1, 0x80, 0xe2, 0x82, 0xac}), (Units{R, 0x20ac}));
  // The first continuation byte out of range goes with the lead; the rest is decoded afresh.
  EXPECT_EQ(ToWide(Bytes{0xf0, 0x8f, 0xbf, 0xbf}), (Units{R, R, R}));
  EXPECT_EQ(ToWide(Bytes{0xe0, 0x9f, 'a'}), (Units{R, 'a'}));
  // A truncated lead swallows everything after it, whatever it is.
  EXPECT_EQ(ToWide(Bytes{'a', 0xf0, 'b', 'c'}), (Units{'a', R}));
}

TEST(MultiByteToWideChar, TheTerminatorIsConvertedWithLengthMinusOne) {
  const char text[] = "a\xc3\xa9";
  char16_t out[8] = {1, 1, 1, 1, 1, 1, 1, 1};
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, -1, nullptr, 0), 3);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, -1, out, 8), 3);
  EXPECT_EQ(out[0], u'a');
  EXPECT_EQ(out[1], 0xe9);
  EXPECT_EQ(out[2], 0);
  EXPECT_EQ(out[3], 1);
  // A sequence cut by the terminator: the terminator ends it early and is decoded afresh.
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, "\xe4\xb8", -1, out, 8), 2);
  EXPECT_EQ(out[0], R);
  EXPECT_EQ(out[1], 0);
}

TEST(MultiByteToWideChar, InvalidArgumentsGiveZero) {
  char16_t out[4];
  const char* text = "abc";
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, nullptr, 3, out, 4), 0);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, 0, out, 4), 0);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, -2, out, 4), 0);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, 3, out, -1), 0);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, 3, nullptr, 4), 0);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(1252, 0, text, 3, out, 4), 0);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 8, text, 3, out, 4), 0);
  EXPECT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, 3, out, 4), 3);
}

TEST(MultiByteToWideChar, ShortDestinationFailsWithinItsSize) {
  const Bytes in = {'a', 'b', 0xf0, 0x9f, 0x98, 0x80, 'c'};  // 5 units
  char16_t out[8];
  for (int size = 1; size <= 4; ++size) {
    for (auto& u : out)
      u = 0x5555;
    EXPECT_EQ(ToWide(in, out, size), 0) << size;
    for (int i = size; i < 8; ++i)
      EXPECT_EQ(out[i], 0x5555) << size;
  }
  EXPECT_EQ(ToWide(in, out, 5), 5);
}

// ---------------------------------------------------------------------------------------------
// UTF-16 to UTF-8: the examples.

TEST(WideCharToMultiByte, PairsAndLoneSurrogates) {
  EXPECT_EQ(ToNarrow(Units{'a', 0xe9, 0x20ac}), (Bytes{'a', 0xc3, 0xa9, 0xe2, 0x82, 0xac}));
  EXPECT_EQ(ToNarrow(Units{0xd83d, 0xde00}), (Bytes{0xf0, 0x9f, 0x98, 0x80}));
  EXPECT_EQ(ToNarrow(Units{0xde00, 0xd83d}), (Bytes{0xef, 0xbf, 0xbd, 0xef, 0xbf, 0xbd}));
  EXPECT_EQ(ToNarrow(Units{0xd800, 'x'}), (Bytes{0xef, 0xbf, 0xbd, 'x'}));
  EXPECT_EQ(ToNarrow(Units{'x', 0xdbff}), (Bytes{'x', 0xef, 0xbf, 0xbd}));
  EXPECT_EQ(ToNarrow(Units{0}), (Bytes{0}));
}

TEST(WideCharToMultiByte, LengthMinusOneCountsTheTerminator) {
  const char16_t text[] = u"a\u00e9";
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, -1, nullptr, 0), 4);
  char out[6] = {1, 1, 1, 1, 1, 1};
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, -1, out, 6), 4);
  EXPECT_EQ(std::string(out, 4), std::string("a\xc3\xa9", 4));
  EXPECT_EQ(out[4], 1);
  const char16_t empty[] = u"";
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, empty, -1, nullptr, 0), 1);
  // A high surrogate right before the terminator does not pair with it.
  const char16_t lone[] = {0xd83d, 0};
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, lone, -1, out, 6), 4);
  EXPECT_EQ(std::string(out, 4), std::string("\xef\xbf\xbd\0", 4));
}

TEST(WideCharToMultiByte, InvalidArgumentsGiveZero) {
  const char16_t text[] = u"abc";
  char out[8];
  int used = 0;
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, nullptr, 3, out, 8), 0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, 0, out, 8), 0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, 3, nullptr, 8), 0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, 3, out, -4), 0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(437, 0, text, 3, out, 8), 0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0x400, text, 3, out, 8), 0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, 3, out, 8, "?"), 0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, 3, out, 8, nullptr, &used),
            0);
  EXPECT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text, 3, out, 8), 3);
}

TEST(WideCharToMultiByte, ShortDestinationFailsWithinItsSize) {
  const Units in = {'a', 0x20ac, 0xd83d, 0xde00};  // 1 + 3 + 4 bytes
  char out[12];
  for (int size = 1; size <= 7; ++size) {
    for (auto& b : out)
      b = 0x55;
    EXPECT_EQ(ToNarrow(in, out, size), 0) << size;
    for (int i = size; i < 12; ++i)
      EXPECT_EQ(out[i], 0x55) << size;
  }
  EXPECT_EQ(ToNarrow(in, out, 8), 8);
}

// ---------------------------------------------------------------------------------------------
// Random inputs against the models.

// Pieces of UTF-8: well-formed sequences of every length, runs of ASCII long enough for the
// bulk paths, truncated and broken sequences, bytes that cannot lead, and plain noise.
Bytes RandomUtf8(std::mt19937& rng, size_t pieces) {
  Bytes out;
  auto pick = [&](uint32_t lo, uint32_t hi) {
    return std::uniform_int_distribution<uint32_t>(lo, hi)(rng);
  };
  auto encode = [&](uint32_t cp) {
    if (cp < 0x80) {
      out.push_back(static_cast<uint8_t>(cp));
    } else if (cp < 0x800) {
      out.push_back(static_cast<uint8_t>(0xc0 | (cp >> 6)));
      out.push_back(static_cast<uint8_t>(0x80 | (cp & 0x3f)));
    } else if (cp < 0x10000) {
      out.push_back(static_cast<uint8_t>(0xe0 | (cp >> 12)));
      out.push_back(static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3f)));
      out.push_back(static_cast<uint8_t>(0x80 | (cp & 0x3f)));
    } else {
      out.push_back(static_cast<uint8_t>(0xf0 | (cp >> 18)));
      out.push_back(static_cast<uint8_t>(0x80 | ((cp >> 12) & 0x3f)));
      out.push_back(static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3f)));
      out.push_back(static_cast<uint8_t>(0x80 | (cp & 0x3f)));
    }
  };
  for (size_t i = 0; i < pieces; ++i) {
    switch (pick(0, 13)) {
      case 0:
      case 1: {  // an ASCII run
        const uint32_t n = pick(1, 40);
        for (uint32_t k = 0; k < n; ++k)
          out.push_back(static_cast<uint8_t>(pick(1, 0x7f)));
        break;
      }
      case 2:
        encode(pick(0x80, 0x7ff));
        break;
      case 3:
        encode(pick(0x800, 0xffff));
        break;  // surrogates included: ill-formed
      case 4:
        encode(pick(0x1000, 0xd7ff));
        break;
      case 5:
        encode(pick(0x10000, 0x10ffff));
        break;
      case 6:
        encode(pick(0x110000, 0x1fffff));
        break;   // beyond Unicode
      case 7: {  // overlong forms
        const uint32_t cp = pick(0, 0x7ff);
        if (pick(0, 1)) {
          out.push_back(static_cast<uint8_t>(0xe0));
          out.push_back(static_cast<uint8_t>(0x80 | (cp >> 6)));
        } else {
          out.push_back(static_cast<uint8_t>(0xc0 | (cp >> 6 & 1)));
        }
        out.push_back(static_cast<uint8_t>(0x80 | (cp & 0x3f)));
        break;
      }
      case 8: {  // a sequence cut short
        const size_t at = out.size();
        encode(pick(0x80, 0x10ffff));  // two bytes or more
        out.resize(at + pick(1, static_cast<uint32_t>(out.size() - at - 1)));
        break;
      }
      case 9:
        out.push_back(static_cast<uint8_t>(pick(0x80, 0xbf)));
        break;
      case 10:
        out.push_back(static_cast<uint8_t>(pick(0xc0, 0xff)));
        break;
      case 11:
        out.push_back(0);
        break;
      case 12: {  // a lead with random followers
        out.push_back(static_cast<uint8_t>(pick(0xc0, 0xf7)));
        const uint32_t n = pick(0, 3);
        for (uint32_t k = 0; k < n; ++k)
          out.push_back(static_cast<uint8_t>(pick(0, 255)));
        break;
      }
      default: {  // noise
        const uint32_t n = pick(1, 8);
        for (uint32_t k = 0; k < n; ++k)
          out.push_back(static_cast<uint8_t>(pick(0, 255)));
        break;
      }
    }
  }
  return out;
}

Units RandomUtf16(std::mt19937& rng, size_t pieces) {
  Units out;
  auto pick = [&](uint32_t lo, uint32_t hi) {
    return std::uniform_int_distribution<uint32_t>(lo, hi)(rng);
  };
  for (size_t i = 0; i < pieces; ++i) {
    switch (pick(0, 7)) {
      case 0:
      case 1: {
        const uint32_t n = pick(1, 24);
        for (uint32_t k = 0; k < n; ++k)
          out.push_back(static_cast<char16_t>(pick(0, 0x7f)));
        break;
      }
      case 2:
        out.push_back(static_cast<char16_t>(pick(0x80, 0x7ff)));
        break;
      case 3:
        out.push_back(static_cast<char16_t>(pick(0x800, 0xffff)));
        break;
      case 4:  // a proper pair
        out.push_back(static_cast<char16_t>(pick(0xd800, 0xdbff)));
        out.push_back(static_cast<char16_t>(pick(0xdc00, 0xdfff)));
        break;
      case 5:
        out.push_back(static_cast<char16_t>(pick(0xd800, 0xdfff)));
        break;  // lone
      case 6:
        out.push_back(static_cast<char16_t>(pick(0xdc00, 0xdfff)));
        break;
      default:
        out.push_back(static_cast<char16_t>(pick(0, 0xffff)));
        break;
    }
  }
  return out;
}

// Checks one input in every mode: measuring, exact size, one unit short, generous room.
void CheckUtf8Input(const Bytes& in) {
  if (in.empty()) return;
  const Units expected = ModelUtf8ToUtf16(in);
  const int n = static_cast<int>(expected.size());
  ASSERT_EQ(ToWide(in, nullptr, 0), n);

  constexpr char16_t kCanary = 0xa5a5;
  Units out(expected.size() + 40, kCanary);
  ASSERT_EQ(ToWide(in, out.data(), n), n);
  ASSERT_TRUE(std::equal(expected.begin(), expected.end(), out.begin()));
  for (size_t i = expected.size(); i < out.size(); ++i)
    ASSERT_EQ(out[i], kCanary);

  std::fill(out.begin(), out.end(), kCanary);
  if (n > 1) {
    ASSERT_EQ(ToWide(in, out.data(), n - 1), 0);
    for (size_t i = expected.size() - 1; i < out.size(); ++i)
      ASSERT_EQ(out[i], kCanary);
  }
  ASSERT_EQ(ToWide(in, out.data(), static_cast<int>(out.size())), n);
  ASSERT_TRUE(std::equal(expected.begin(), expected.end(), out.begin()));
}

void CheckUtf16Input(const Units& in) {
  if (in.empty()) return;
  const Bytes expected = ModelUtf16ToUtf8(in);
  const int n = static_cast<int>(expected.size());
  ASSERT_EQ(ToNarrow(in, nullptr, 0), n);

  constexpr char kCanary = 0x5a;
  std::string out(expected.size() + 64, kCanary);
  ASSERT_EQ(ToNarrow(in, out.data(), n), n);
  ASSERT_TRUE(
      std::equal(expected.begin(), expected.end(), reinterpret_cast<const uint8_t*>(out.data())));
  for (size_t i = expected.size(); i < out.size(); ++i)
    ASSERT_EQ(out[i], kCanary);
  if (n > 1) {
    std::fill(out.begin(), out.end(), kCanary);
    ASSERT_EQ(ToNarrow(in, out.data(), n - 1), 0);
    for (size_t i = expected.size() - 1; i < out.size(); ++i)
      ASSERT_EQ(out[i], kCanary);
  }
  ASSERT_EQ(ToNarrow(in, out.data(), static_cast<int>(out.size())), n);
  ASSERT_TRUE(
      std::equal(expected.begin(), expected.end(), reinterpret_cast<const uint8_t*>(out.data())));
}

// Runs a check with the vector kernels switched on (where the processor has them) and off.
class BothPaths : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { internal::EnableVectorKernels(true); }
};

INSTANTIATE_TEST_SUITE_P(CodePage, BothPaths, ::testing::Values(true, false),
                         [](const ::testing::TestParamInfo<bool>& info) {
                           return info.param ? "VectorKernels" : "Portable";
                         });

TEST_P(BothPaths, Utf8AgreesWithTheModelOnRandomInput) {
  std::mt19937 rng(20240501);
  for (int round = 0; round < 20000; ++round) {
    const size_t pieces = round % 10 == 0 ? 200 : 1 + round % 23;
    const Bytes in = RandomUtf8(rng, pieces);
    CheckUtf8Input(in);
    if (::testing::Test::HasFatalFailure()) {
      ADD_FAILURE() << "round " << round << ", " << in.size() << " bytes";
      return;
    }
  }
}

// Long stretches of well-formed one- to three-byte text with a rare flaw, the input that the
// vector kernel takes in whole windows: every flaw lands at a different place in a window.
TEST_P(BothPaths, Utf8AgreesWithTheModelOnMostlyWellFormedText) {
  std::mt19937 rng(606);
  auto pick = [&](uint32_t lo, uint32_t hi) {
    return std::uniform_int_distribution<uint32_t>(lo, hi)(rng);
  };
  for (int round = 0; round < 3000; ++round) {
    Bytes in;
    const uint32_t mix = pick(0, 4);  // ASCII-heavy, Latin, CJK, everything, emoji-heavy
    const uint32_t flawRate = pick(0, 1) ? 50 : 400;
    const size_t length = pick(20, 300);
    while (in.size() < length) {
      const uint32_t r = pick(0, 99);
      uint32_t cp;
      if (mix == 0)
        cp = r < 90 ? pick(0x20, 0x7e) : pick(0x80, 0x7ff);
      else if (mix == 1)
        cp = r < 70 ? pick(0x61, 0x7a) : pick(0xc0, 0x17f);
      else if (mix == 2)
        cp = r < 10 ? pick(0x30, 0x39) : pick(0x4e00, 0x9fff);
      else if (mix == 4)
        cp = r < 40 ? pick(0x20, 0x7e) : pick(0x1f300, 0x1faff);
      else
        cp = r < 30   ? pick(0, 0x7f)
             : r < 60 ? pick(0x80, 0x7ff)
             : r < 95 ? pick(0x800, 0xffff)
                      : pick(0x10000, 0x10ffff);
      if (cp >= 0xd800 && cp <= 0xdfff) cp = 0xfffd;
      Bytes encoded;
      if (cp < 0x80) {
        encoded = {static_cast<uint8_t>(cp)};
      } else if (cp < 0x800) {
        encoded = {static_cast<uint8_t>(0xc0 | (cp >> 6)),
                   static_cast<uint8_t>(0x80 | (cp & 0x3f))};
      } else if (cp < 0x10000) {
        encoded = {static_cast<uint8_t>(0xe0 | (cp >> 12)),
                   static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3f)),
                   static_cast<uint8_t>(0x80 | (cp & 0x3f))};
      } else {
        encoded = {static_cast<uint8_t>(0xf0 | (cp >> 18)),
                   static_cast<uint8_t>(0x80 | ((cp >> 12) & 0x3f)),
                   static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3f)),
                   static_cast<uint8_t>(0x80 | (cp & 0x3f))};
      }
      if (pick(0, flawRate) == 0) {
        switch (pick(0, 4)) {
          case 0:
            encoded.pop_back();
            break;  // cut short
          case 1:
            encoded[0] = static_cast<uint8_t>(pick(0x80, 0xff));
            break;  // bad lead
          case 2:
            encoded.back() = static_cast<uint8_t>(pick(0, 0xff));
            break;  // bad last byte
          case 3:
            encoded = {0xed, static_cast<uint8_t>(pick(0xa0, 0xbf)), 0x80};
            break;
          default:
            encoded = {0xe0, static_cast<uint8_t>(pick(0x80, 0x9f)), 0x80};
            break;
        }
        if (encoded.empty()) encoded = {0xc3};
      }
      in.insert(in.end(), encoded.begin(), encoded.end());
    }
    CheckUtf8Input(in);
    if (::testing::Test::HasFatalFailure()) {
      ADD_FAILURE() << "round " << round << ", " << in.size() << " bytes";
      return;
    }
  }
}

TEST_P(BothPaths, Utf8AgreesWithTheModelOnEveryShortByteString) {
  // All strings of up to two bytes, and three-byte strings over the interesting bytes.
  CheckUtf8Input(Bytes{});
  for (int a = 0; a < 256; ++a) {
    CheckUtf8Input(Bytes{static_cast<uint8_t>(a)});
    for (int b = 0; b < 256; ++b)
      CheckUtf8Input(Bytes{static_cast<uint8_t>(a), static_cast<uint8_t>(b)});
  }
  const uint8_t interesting[] = {0x00, 0x41, 0x7f, 0x80, 0x8f, 0x90, 0x9f, 0xa0, 0xbf,
                                 0xc0, 0xc1, 0xc2, 0xdf, 0xe0, 0xe1, 0xec, 0xed, 0xee,
                                 0xef, 0xf0, 0xf1, 0xf3, 0xf4, 0xf5, 0xf7, 0xf8, 0xff};
  for (uint8_t a : interesting)
    for (uint8_t b : interesting)
      for (uint8_t c : interesting)
        for (uint8_t d : interesting) {
          // Surrounded by ASCII, so that the bulk path reads the sequence, and bare.
          Bytes in(44, 'x');
          in[20] = a;
          in[21] = b;
          in[22] = c;
          in[23] = d;
          CheckUtf8Input(in);
          CheckUtf8Input(Bytes{a, b, c, d});
          if (::testing::Test::HasFatalFailure()) return;
        }
}

TEST_P(BothPaths, Utf8LengthMinusOneAgreesWithTheModel) {
  std::mt19937 rng(77);
  for (int round = 0; round < 3000; ++round) {
    Bytes in = RandomUtf8(rng, 1 + round % 40);
    std::erase(in, 0);
    in.push_back(0);  // the terminator is converted like any byte
    const Units expected = ModelUtf8ToUtf16(in);
    const char* text = reinterpret_cast<const char*>(in.data());
    ASSERT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, -1, nullptr, 0),
              static_cast<int>(expected.size()));
    Units out(expected.size());
    ASSERT_EQ(internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text, -1, out.data(),
                                                    static_cast<int>(out.size())),
              static_cast<int>(expected.size()));
    ASSERT_EQ(out, expected);
  }
}

TEST_P(BothPaths, Utf16AgreesWithTheModelOnRandomInput) {
  std::mt19937 rng(9001);
  for (int round = 0; round < 20000; ++round) {
    const size_t pieces = round % 10 == 0 ? 300 : 1 + round % 29;
    const Units in = RandomUtf16(rng, pieces);
    CheckUtf16Input(in);
    if (::testing::Test::HasFatalFailure()) {
      ADD_FAILURE() << "round " << round << ", " << in.size() << " units";
      return;
    }
  }
}

TEST_P(BothPaths, Utf16LengthMinusOneAgreesWithTheModel) {
  std::mt19937 rng(4242);
  for (int round = 0; round < 3000; ++round) {
    Units in = RandomUtf16(rng, 1 + round % 40);
    std::erase(in, 0);
    in.push_back(0);
    const Bytes expected = ModelUtf16ToUtf8(in);
    ASSERT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, in.data(), -1, nullptr, 0),
              static_cast<int>(expected.size()));
    std::string out(expected.size(), '\0');
    ASSERT_EQ(internal::PortableWideCharToMultiByte(CodePageUTF8, 0, in.data(), -1, out.data(),
                                                    static_cast<int>(out.size())),
              static_cast<int>(expected.size()));
    ASSERT_EQ(Bytes(out.begin(), out.end()), expected);
  }
}

TEST_P(BothPaths, RoundTripOfWellFormedText) {
  std::mt19937 rng(5);
  for (int round = 0; round < 2000; ++round) {
    Units in;
    const int n = 1 + round % 100;
    for (int i = 0; i < n; ++i) {
      uint32_t cp = std::uniform_int_distribution<uint32_t>(0, 0x10ffff)(rng) >>
                    std::uniform_int_distribution<int>(0, 16)(rng);
      if (cp >= 0xd800 && cp <= 0xdfff) cp = 'S';
      PushCodePoint(in, cp);
    }
    ASSERT_EQ(ToWide(ToNarrow(in)), in);
  }
}

}  // namespace
}  // namespace ic::platform
