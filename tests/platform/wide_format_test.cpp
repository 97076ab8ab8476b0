// The 16-bit formatter: against the narrow formatter on random specs with ASCII arguments, and
// its own rules for texts, units, "%n" and truncation.
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>

#include <ic/platform/bounded_format.h>
#include <ic/platform/wide_format.h>

namespace ic {
namespace {

int Wide(char16_t* buffer, size_t count, const char16_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = platform::FormatWide16(buffer, count, format, arguments);
  va_end(arguments);
  return result;
}

// Joins pieces with one allocation (and without the operator+ chains that GCC 12 misreads).
std::string Cat(std::initializer_list<std::string_view> pieces) {
  size_t size = 0;
  for (std::string_view piece : pieces)
    size += piece.size();
  std::string out;
  out.reserve(size);
  for (std::string_view piece : pieces)
    out.append(piece);
  return out;
}

std::u16string Widen(const std::string& ascii) {
  return std::u16string(ascii.begin(), ascii.end());
}

// Formats with both formatters, the stars first, and compares the results.
template <class N, class W>
void Compare(const std::string& format, int stars, int star1, int star2, N narrowArg, W wideArg) {
  char narrow[512];
  char16_t wide[512];
  const std::u16string wideFormat = Widen(format);
  int n, w;
  switch (stars) {
    case 0:
      n = std::snprintf(narrow, sizeof narrow, format.c_str(), narrowArg);
      w = Wide(wide, 512, wideFormat.c_str(), wideArg);
      break;
    case 1:
      n = std::snprintf(narrow, sizeof narrow, format.c_str(), star1, narrowArg);
      w = Wide(wide, 512, wideFormat.c_str(), star1, wideArg);
      break;
    default:
      n = std::snprintf(narrow, sizeof narrow, format.c_str(), star1, star2, narrowArg);
      w = Wide(wide, 512, wideFormat.c_str(), star1, star2, wideArg);
      break;
  }
  ASSERT_GE(n, 0) << format;
  ASSERT_LT(n, 512) << format;
  ASSERT_EQ(w, n) << format;
  ASSERT_EQ(std::u16string(wide), Widen(narrow)) << format;
}

TEST(WideFormat, MatchesTheNarrowFormatterOnRandomSpecs) {
  std::mt19937_64 random(77);
  const std::string conversions = "diuoxXfFeEgGaAcsp%";
  const char* const intLengths[] = {"hh", "h", "", "l", "ll", "j", "z", "t"};
  const char* const words[] = {"", "a", "word", "longer words here", "x y"};
  for (int trial = 0; trial < 20000; ++trial) {
    std::string spec = "%";
    for (char flag : std::string("-+ #0"))
      if (random() % 4 == 0) spec.push_back(flag);
    int stars = 0, star1 = 0, star2 = 0;
    switch (random() % 3) {
      case 0:
        break;
      case 1:
        spec.append(std::to_string(random() % 25));
        break;
      default:
        spec.append("*");
        star1 = static_cast<int>(random() % 41) - 20;
        ++stars;
        break;
    }
    switch (random() % 3) {
      case 0:
        break;
      case 1:
        spec = Cat({spec, ".", std::to_string(random() % 12)});
        break;
      default: {
        spec.append(".*");
        const int value = static_cast<int>(random() % 16) - 3;
        if (stars == 0)
          star1 = value;
        else
          star2 = value;
        ++stars;
        break;
      }
    }
    const char conversion = conversions[random() % conversions.size()];
    const std::string prefix = "<", suffix = ">";
    SCOPED_TRACE(Cat({spec, std::string(1, conversion)}));
    if (conversion == '%') {
      // A lone "%%" takes no flags in either formatter's output rules we rely on.
      Compare(Cat({prefix, "%%", suffix}), 0, 0, 0, 0, 0);
      continue;
    }
    if (std::string("di").find(conversion) != std::string::npos ||
        std::string("uoxX").find(conversion) != std::string::npos) {
      const int which = static_cast<int>(random() % 8);
      const std::string format =
          Cat({prefix, spec, intLengths[which], std::string(1, conversion), suffix});
      const uint64_t bits = random();
      const int shift = static_cast<int>(random() % 64);
      const long long value = static_cast<long long>(bits >> shift) * (random() % 2 ? 1 : -1);
      switch (which) {
        case 0:
        case 1:
        case 2:
          Compare(format, stars, star1, star2, static_cast<int>(value), static_cast<int>(value));
          break;
        case 3:
          Compare(format, stars, star1, star2, static_cast<long>(value), static_cast<long>(value));
          break;
        case 4:
          Compare(format, stars, star1, star2, value, value);
          break;
        case 5:
          Compare(format, stars, star1, star2, static_cast<intmax_t>(value),
                  static_cast<intmax_t>(value));
          break;
        default:
          Compare(format, stars, star1, star2, static_cast<ptrdiff_t>(value),
                  static_cast<ptrdiff_t>(value));
          break;
      }
    } else if (std::string("fFeEgGaA").find(conversion) != std::string::npos) {
      const double values[] = {0.0,  -0.0,    1.5,    -2.25,     3.14159265358979,
                               1e-7, 6.02e23, -1e300, 1.0 / 3.0, 12345.678};
      double value = values[random() % 10];
      if (random() % 2)
        value = static_cast<double>(static_cast<int64_t>(random() % 2000000) - 1000000) / 128;
      if (random() % 5 == 0) {
        const std::string format = Cat({prefix, spec, "L", std::string(1, conversion), suffix});
        Compare(format, stars, star1, star2, static_cast<long double>(value),
                static_cast<long double>(value));
      } else {
        const std::string format = Cat({prefix, spec, std::string(1, conversion), suffix});
        Compare(format, stars, star1, star2, value, value);
      }
    } else if (conversion == 'c') {
      const int unit = 32 + static_cast<int>(random() % 95);
      Compare(Cat({prefix, spec, "c", suffix}), stars, star1, star2, unit, unit);
    } else if (conversion == 's') {
      const char* word = words[random() % 5];
      const std::u16string wideWord = Widen(word);
      Compare(Cat({prefix, spec, "s", suffix}), stars, star1, star2, word, wideWord.c_str());
      // A narrow text through %S and %hs: the narrow formatter's %s on the same bytes.
      std::string narrowSpec = Cat({prefix, spec, "s", suffix});
      std::string wideSpec = Cat({prefix, spec, random() % 2 ? "S" : "hs", suffix});
      char narrow[512];
      char16_t wide[512];
      const std::u16string wideFormat = Widen(wideSpec);
      int n, w;
      if (stars == 0) {
        n = std::snprintf(narrow, sizeof narrow, narrowSpec.c_str(), word);
        w = Wide(wide, 512, wideFormat.c_str(), word);
      } else if (stars == 1) {
        n = std::snprintf(narrow, sizeof narrow, narrowSpec.c_str(), star1, word);
        w = Wide(wide, 512, wideFormat.c_str(), star1, word);
      } else {
        n = std::snprintf(narrow, sizeof narrow, narrowSpec.c_str(), star1, star2, word);
        w = Wide(wide, 512, wideFormat.c_str(), star1, star2, word);
      }
      ASSERT_EQ(w, n) << wideSpec;
      ASSERT_EQ(std::u16string(wide), Widen(narrow)) << wideSpec;
    } else {  // p
      void* pointer = reinterpret_cast<void*>(static_cast<uintptr_t>(random() >> (random() % 64)));
      Compare(Cat({prefix, spec, "p", suffix}), stars, star1, star2, pointer, pointer);
    }
  }
}

TEST(WideFormat, TextsAndUnitsTakeTheWindowsArguments) {
  char16_t buffer[64];
  EXPECT_EQ(Wide(buffer, 64, u"[%s|%ls|%S|%hs]", u"\u4e2d\u6587", u"w", "\xe4\xb8\xad", "n"), 10);
  EXPECT_EQ(std::u16string(buffer), u"[\u4e2d\u6587|w|\u4e2d|n]");
  EXPECT_EQ(Wide(buffer, 64, u"%c%lc%C%hc", u'\u00e9', u'\u4e2d', 'a', 'b'), 4);
  EXPECT_EQ(std::u16string(buffer), u"\u00e9\u4e2dab");
  EXPECT_EQ(Wide(buffer, 64, u"%-4s|%4s|%.1s", u"ab", u"cd", u"ef"), 11);
  EXPECT_EQ(std::u16string(buffer), u"ab  |  cd|e");
  EXPECT_EQ(Wide(buffer, 64, u"%s", static_cast<const char16_t*>(nullptr)), 6);
  EXPECT_EQ(std::u16string(buffer), u"(null)");
  EXPECT_EQ(Wide(buffer, 64, u"%d%%\U0001F600", 5), 4);
  EXPECT_EQ(std::u16string(buffer), u"5%\U0001F600");
}

TEST(WideFormat, PercentNIsRefusedAndWritesNothing) {
  char16_t buffer[16];
  int stored = 1234;
  EXPECT_EQ(Wide(buffer, 16, u"ab%n", &stored), -1);
  EXPECT_EQ(stored, 1234);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(Wide(buffer, 16, u"ab%"), -1);  // a conversion cut off by the end
  EXPECT_EQ(Wide(buffer, 16, u"%k", 1), -1);
}

TEST(WideFormat, TruncatesAndTerminates) {
  char16_t buffer[6];
  EXPECT_EQ(Wide(buffer, 6, u"%d", 12345), 5);
  EXPECT_EQ(std::u16string(buffer), u"12345");
  EXPECT_EQ(Wide(buffer, 6, u"%d", 123456), -1);
  EXPECT_EQ(std::u16string(buffer), u"12345");
  EXPECT_EQ(Wide(buffer, 1, u"x"), -1);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(Wide(nullptr, 6, u"x"), -1);
  EXPECT_EQ(Wide(buffer, 6, nullptr), -1);
  EXPECT_EQ(buffer[0], 0);
  // The platform's wide bounded formatter goes here off Windows, narrow goes to vsnprintf.
  EXPECT_EQ(platform::BoundedFormat(buffer, 6, u"%s!", u"ab"), 3);
  EXPECT_EQ(std::u16string(buffer), u"ab!");
}

TEST(WideFormat, LongNumbersAreNotCut) {
  char16_t buffer[600];
  char narrow[600];
  const int n = std::snprintf(narrow, sizeof narrow, "%.300f", 1e10);
  EXPECT_EQ(Wide(buffer, 600, u"%.300f", 1e10), n);
  EXPECT_EQ(std::u16string(buffer), Widen(narrow));
}

}  // namespace
}  // namespace ic
