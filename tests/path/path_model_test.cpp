// Model tests on random inputs: NormalizePath against a reference that builds its output in a
// separate string, and PercentEncode/PercentDecode round trips in every mode.
#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <string>

#include <ic/string/ic_string.h>

#include "path_test_util.h"

namespace ic {
namespace {

using namespace pathtest;

bool IsSep(char c) {
  return c == '/' || c == '\\';
}

// NormalizePath written plainly: the head is copied, the rest is read from `in` and written to
// a separate `out`.
std::string ReferenceNormalize(const std::string& in, bool removeDots, bool removeDotDots) {
  const size_t colon = in.find(':');
  size_t pos = colon == std::string::npos ? 0 : colon + 1;
  auto at = [&in](size_t i) { return i < in.size() ? in[i] : '\0'; };
  const bool rooted = IsSep(at(pos));
  const bool doubled = rooted && IsSep(at(pos + 1));
  if (doubled) pos += 2;
  std::string out;
  size_t read;
  if (colon == std::string::npos && !doubled && at(0) == '.' && IsSep(at(1))) {
    read = 0;
    while (at(read) == '.' && IsSep(at(read + 1)))
      read += 2;
  } else {
    read = pos;
    while (read < in.size() && !IsSep(in[read]))
      ++read;
    if (read == in.size()) return in;
    out = in.substr(0, read);
  }
  const size_t floor = out.size();
  // The character at the floor: the source's own one until the output writes over it.
  char floorChar = in[floor];
  auto segmentEnd = [&](size_t i) { return i >= in.size() || IsSep(in[i]); };
  while (read < in.size()) {
    if (out.size() > floor) floorChar = out[floor];
    const char c = in[read];
    if (!IsSep(c)) {
      out += c;
      ++read;
    } else if (IsSep(at(read + 1))) {
      ++read;
    } else if (at(read + 1) == '.' && segmentEnd(read + 2)) {
      if (removeDots) {
        read += 2;
      } else {
        out += c;
        ++read;
      }
    } else if (removeDotDots && at(read + 1) == '.' && at(read + 2) == '.' &&
               segmentEnd(read + 3)) {
      const size_t n = out.size();
      const bool keptDots =
          n > floor && n >= 2 && out[n - 1] == '.' &&
          (IsSep(out[n - 2]) || (n >= 3 && out[n - 2] == '.' && IsSep(out[n - 3])));
      if (n == floor) {
        if (rooted) {
          read += 3;
        } else {
          out += c;
          ++read;
        }
      } else if (keptDots) {
        out += c;
        ++read;
      } else {
        read += 3;
        size_t back = n - 1;
        while (back > floor && !IsSep(out[back]))
          --back;
        out.resize(back > floor ? back : floor);
      }
    } else {
      out += c;
      ++read;
    }
  }
  if (out.size() > floor) floorChar = out[floor];
  // At the floor the character standing there survives: a root separator stays.
  if (out.size() == floor) out += floorChar;
  return out;
}

std::string RandomPath(std::mt19937& rng) {
  static const char* const kHeads[] = {"",   "C:", "c:\\",   "D:/",      "\\\\", "//",  "/",
                                       "\\", "./", ".\\.\\", "proto://", "x:",   "../", "a:b:"};
  static const char* const kParts[] = {".", "..", "a", "bc", "...", ".x", "d.", "\xC3\xA4", ""};
  std::string s = kHeads[rng() % std::size(kHeads)];
  const int n = static_cast<int>(rng() % 7);
  for (int i = 0; i < n; ++i) {
    s += kParts[rng() % std::size(kParts)];
    const int seps = static_cast<int>(rng() % 4) - 1;  // mostly one, sometimes none or a run
    for (int k = 0; k < seps; ++k)
      s += (rng() & 1) ? '/' : '\\';
  }
  return s;
}

TEST(PathModel, NormalizePathAgainstReference) {
  std::mt19937 rng(20261123);
  for (int i = 0; i < 20000; ++i) {
    const std::string path = RandomPath(rng);
    const bool dots = rng() & 1;
    const bool dotDots = rng() & 1;
    const std::string expected = ReferenceNormalize(path, dots, dotDots);
    std::string narrow = path;
    const int32_t n = ICStringUnique::NormalizePath(narrow.data(), dots, dotDots);
    ASSERT_EQ(std::string(narrow.c_str(), static_cast<size_t>(n)), expected)
        << "'" << path << "' " << dots << dotDots;
    // The wide form agrees unit for unit where a unit is a byte (at the floor one unit stays,
    // which in the narrow form may be the first byte of a longer character).
    if (path.find('\xC3') == std::string::npos) {
      std::u16string wide = Wide(path.c_str());
      const int32_t w = ICStringUniqueW::NormalizePath(wide.data(), dots, dotDots);
      ASSERT_EQ(Utf8(ICStringUniqueW(wide.c_str(), w)), expected) << "'" << path << "'";
    }
    // The member stores the length; a second pass changes nothing more when both flags are set.
    ICStringShared s(path.c_str());
    s.Normalize(dots, dotDots);
    ASSERT_EQ(Str(s), expected);
  }
}

TEST(PathModel, PercentRoundTripsInEveryMode) {
  std::mt19937 rng(7);
  for (int i = 0; i < 3000; ++i) {
    std::string bytes(rng() % 40, '\0');
    for (char& c : bytes)
      c = static_cast<char>(1 + rng() % 255);
    for (int mode = 0; mode <= 2; ++mode) {
      ICStringUnique s(bytes.c_str(), static_cast<int32_t>(bytes.size()));
      s.PercentEncode(mode);
      // Every byte is either copied or written as '%' and two upper-case hex digits.
      const std::string encoded = Str(s);
      for (size_t k = 0; k < encoded.size(); ++k) {
        const unsigned char c = static_cast<unsigned char>(encoded[k]);
        ASSERT_TRUE(c > 0x20 && c < 0x7F) << encoded;
        if (c == '%') {
          ASSERT_LT(k + 2, encoded.size());
          ASSERT_TRUE(std::isxdigit(static_cast<unsigned char>(encoded[k + 1])) &&
                      !std::islower(static_cast<unsigned char>(encoded[k + 1])));
          k += 2;
        } else {
          ASSERT_EQ(std::string("\"%<>^`{|}").find(static_cast<char>(c)), std::string::npos);
          if (mode >= 1) {
            ASSERT_EQ(std::string("#;/?:@&=+$,").find(static_cast<char>(c)), std::string::npos);
          }
          if (mode == 2) {
            ASSERT_NE(c, '\\');
          }
        }
      }
      s.PercentDecode();
      ASSERT_EQ(Str(s), bytes) << "mode " << mode;
    }
  }
}

TEST(PathModel, WidePercentRoundTripOnValidText) {
  std::mt19937 rng(11);
  for (int i = 0; i < 2000; ++i) {
    std::u16string text;
    const int n = static_cast<int>(rng() % 20);
    for (int k = 0; k < n; ++k) {
      uint32_t cp;
      do {
        cp = 1 + rng() % (rng() & 1 ? 0x80 : 0x10FFFF);
      } while (cp >= 0xD800 && cp < 0xE000);
      if (cp >= 0x10000) {
        text += static_cast<char16_t>(0xD800 + ((cp - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + ((cp - 0x10000) & 0x3FF));
      } else {
        text += static_cast<char16_t>(cp);
      }
    }
    for (int mode = 0; mode <= 2; ++mode) {
      ICStringUniqueW s(text.c_str(), static_cast<int32_t>(text.size()));
      s.PercentEncode(mode);
      for (char16_t u : Str(s))
        ASSERT_LT(u, 0x7F);
      s.PercentDecode();
      ASSERT_EQ(Str(s), text);
    }
  }
}

}  // namespace
}  // namespace ic
