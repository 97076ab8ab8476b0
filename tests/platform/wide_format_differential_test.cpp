// Windows only: the run-time's wide bounded formatter (the wide BoundedFormat there) against the
// library's own 16-bit formatter (what the wide BoundedFormat is on every other platform), on
// the same random formats and arguments: the answer and the text with ample room, and the
// answer and the cut text with too little.
//
// The formats are drawn from what the two formatters' contracts share: every flag, width and
// precision (given or by "*") on the integer conversions with the lengths "", "h", "l" and "ll",
// on "f", "e", "E", "g" and "G" of a double, on "c", and on wide ("s") and narrow ("S", "hs")
// texts. Left out, as the platforms differ there by contract: the C99 additions that the
// Windows run-time's formatter does not know or writes its own way ("hh", "j", "z", "t", "F",
// "a", "A", "L" of an 80-bit long double, the form of "p").
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>

#include <ic/platform/bounded_format.h>
#include <ic/platform/wide_format.h>

#include "wine_differences.h"

namespace ic::platform {
namespace {

constexpr int kFormats = 20000;
constexpr size_t kRoom = 512;

// A formatter taking a va_list, called with the arguments themselves.
template <int (*FormatV)(char16_t*, size_t, const char16_t*, va_list) noexcept>
int Call(char16_t* buffer, size_t count, const char16_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = FormatV(buffer, count, format, arguments);
  va_end(arguments);
  return result;
}

// The run-time's bounded formatter and the library's own 16-bit one.
constexpr auto RunTime = Call<BoundedFormatV>;
constexpr auto Own = Call<FormatWide16>;

using Formatter = int (*)(char16_t*, size_t, const char16_t*, ...);

// One formatter's answer and text.
struct Result {
  int answer = 0;
  std::u16string text;
  bool operator==(const Result&) const = default;
};

std::string Show(const Result& result) {
  std::ostringstream shown;
  shown << result.answer << " \"";
  for (const char16_t unit : result.text)
    shown << (unit < 0x80 ? static_cast<char>(unit) : '?');
  shown << '"';
  return shown.str();
}

// The decimal digits of a small number, one at a time (GCC 12 misreads std::to_string's copy
// when it is inlined here).
std::string Digits(uint64_t value) {
  std::string digits;
  if (value >= 10) digits.push_back(static_cast<char>('0' + value / 10));
  digits.push_back(static_cast<char>('0' + value % 10));
  return digits;
}

// Flags, width and precision, each of the latter two given, taken from the arguments ("*", its
// value passed first) or absent.
struct Spec {
  enum Kind { kAbsent, kGiven, kStar };
  std::string flags;
  Kind widthKind = kAbsent, precisionKind = kAbsent;
  int width = 0, precision = 0;

  bool Has(char flag) const { return flags.find(flag) != std::string::npos; }

  std::string Text(bool withPrecision) const {
    std::string text = "%";
    text += flags;
    if (widthKind == kGiven) text += Digits(static_cast<uint64_t>(width));
    if (widthKind == kStar) text.push_back('*');
    if (withPrecision && precisionKind != kAbsent) {
      text.push_back('.');
      if (precisionKind == kGiven) text += Digits(static_cast<uint64_t>(precision));
      if (precisionKind == kStar) text.push_back('*');
    }
    return text;
  }
};

// A random spec with the flags that the kind of conversion takes in both contracts: 'u'
// unsigned integers (no "+" or " ", which apply to signed ones only), 'd' signed integers, 'f'
// floats, 's' texts and 'c' units (no "0", which the Windows run-time applies to texts as well,
// and no precision for a unit). A precision by "*" is never negative (the run-time under wine
// then formats as if it were 0; the C contract drops it).
Spec RandomSpec(std::mt19937_64& random, char kind) {
  Spec spec;
  const char* flags = kind == 'u' ? "-#0" : kind == 's' || kind == 'c' ? "-" : "-+ #0";
  for (const char* flag = flags; *flag; ++flag)
    if (random() % 4 == 0) spec.flags.push_back(*flag);
  spec.widthKind = static_cast<Spec::Kind>(random() % 3);
  spec.width = spec.widthKind == Spec::kStar ? static_cast<int>(random() % 41) - 20
                                             : static_cast<int>(random() % 25);
  spec.precisionKind = kind == 'c' ? Spec::kAbsent : static_cast<Spec::Kind>(random() % 3);
  spec.precision = static_cast<int>(random() % 13);
  return spec;
}

// The format "<%...>" of a spec and a conversion, built piece by piece (GCC 12 misreads the
// operator+ chains here).
std::string Bracketed(const Spec& spec, const std::string& conversion, bool withPrecision) {
  std::string format = "<";
  format.append(spec.Text(withPrecision)).append(conversion).push_back('>');
  return format;
}

// Formats `value` by `spec` and `conversion` (length modifier included) into `count` units,
// with or without the precision that `spec` gives.
template <class Value>
Result FormatWith(Formatter formatter, const Spec& spec, const std::string& conversion,
                  size_t count, Value value, bool withPrecision = true) {
  const std::string format = Bracketed(spec, conversion, withPrecision);
  const std::u16string wide(format.begin(), format.end());
  char16_t buffer[kRoom];
  Result result;
  const bool widthStar = spec.widthKind == Spec::kStar;
  const bool precisionStar = withPrecision && spec.precisionKind == Spec::kStar;
  if (widthStar && precisionStar)
    result.answer = formatter(buffer, count, wide.c_str(), spec.width, spec.precision, value);
  else if (widthStar)
    result.answer = formatter(buffer, count, wide.c_str(), spec.width, value);
  else if (precisionStar)
    result.answer = formatter(buffer, count, wide.c_str(), spec.precision, value);
  else
    result.answer = formatter(buffer, count, wide.c_str(), value);
  result.text = buffer;
  return result;
}

// Windows documents that "0" is ignored when an integer has a precision; wine pads with zeros to
// the width all the same, as it does without the precision.
template <class Value>
bool WinePadsWithZerosDespiteAPrecision(const Spec& spec, const std::string& conversion,
                                        const Result& theirs, Value value) {
  if (spec.precisionKind == Spec::kAbsent || !spec.Has('0') || spec.Has('-') ||
      (spec.widthKind == Spec::kStar && spec.width < 0))
    return false;
  return theirs == FormatWith(Own, spec, conversion, kRoom, value, false);
}

// Wine's formatter reads and writes out of bounds on a hexadecimal integer with "#", "0" and a
// precision ("<%#023.6x>" faults); under wine such formats are not called.
bool WineFaultsOn(const Spec& spec, char conversion) {
  return (conversion == 'x' || conversion == 'X') && spec.Has('#') && spec.Has('0') &&
         !spec.Has('-') && spec.precisionKind != Spec::kAbsent;
}

TEST(WideFormatDifferential, AgreesWithTheRunTimesWideFormatter) {
  const bool wine = RunsUnderWine();
  WineDifferences wineDifferences;
  std::mt19937_64 random(1601);
  const std::string conversions = "diuoxXfcsS%";
  const char* const lengths[] = {"", "h", "l", "ll"};
  const char* const words[] = {"", "a", "word", "longer words here", "x y"};
  const char16_t* const wideWords[] = {u"", u"\u00e9", u"\u4e2d\u6587", u"longer words here",
                                       u"x y"};
  int failures = 0;
  for (int trial = 0; trial < kFormats; ++trial) {
    const char conversion = conversions[random() % conversions.size()];
    const bool isSigned = conversion == 'd' || conversion == 'i';
    const bool isUnsigned = std::string("uoxX").find(conversion) != std::string::npos;
    const char kind = isSigned ? 'd' : isUnsigned ? 'u' : conversion == 'S' ? 's' : conversion;
    // "%%" is taken bare: with flags, width or precision it is undefined in C.
    const Spec spec = conversion == '%' ? Spec{} : RandomSpec(random, kind);
    const size_t cut = static_cast<size_t>(random());
    // Both formatters on the same spec and value: with ample room, then with 1 .. length units.
    const auto compare = [&](const std::string& converted, auto value) {
      const Result theirs = FormatWith(RunTime, spec, converted, kRoom, value);
      const Result ours = FormatWith(Own, spec, converted, kRoom, value);
      std::ostringstream shownStream;
      shownStream << Bracketed(spec, converted, true) << " (width " << spec.width << ", precision "
                  << spec.precision << ")";
      const std::string shown = shownStream.str();
      if (theirs != ours) {
        if (wine && (isSigned || isUnsigned) &&
            WinePadsWithZerosDespiteAPrecision(spec, converted, theirs, value)) {
          wineDifferences.Add("\"0\" with a precision pads an integer with zeros", shown);
          return;
        }
        ADD_FAILURE() << shown << ": run-time " << Show(theirs) << ", own " << Show(ours);
        ++failures;
        return;
      }
      if (ours.answer <= 0) return;
      const size_t room = 1 + cut % static_cast<size_t>(ours.answer);
      const Result theirCut = FormatWith(RunTime, spec, converted, room, value);
      const Result ourCut = FormatWith(Own, spec, converted, room, value);
      EXPECT_EQ(ourCut.answer, -1) << shown << " in " << room;
      if (theirCut != ourCut) {
        ADD_FAILURE() << shown << " in " << room << ": run-time " << Show(theirCut) << ", own "
                      << Show(ourCut);
        ++failures;
      }
    };
    if (conversion == '%') {
      compare("%", 0);
    } else if (wine && WineFaultsOn(spec, conversion)) {
      wineDifferences.Add(
          "faults on a hexadecimal integer with \"#\", \"0\" and a precision: "
          "not called",
          Bracketed(spec, std::string(1, conversion), true));
    } else if (isSigned || isUnsigned) {
      const int length = static_cast<int>(random() % 4);
      const long long value =
          static_cast<long long>(random() >> (random() % 64)) * (random() % 2 ? 1 : -1);
      std::string converted = lengths[length];
      converted.push_back(conversion);
      if (length == 3)
        compare(converted, value);
      else if (length == 2)
        compare(converted, static_cast<long>(value));
      else
        compare(converted, static_cast<int>(value));
    } else if (conversion == 'f') {
      // Sevenths: no value lies halfway between two results, where the run-times round apart.
      const double value =
          static_cast<double>(static_cast<int64_t>(random() % 20000001) - 10000000) / 7.0 *
          (random() % 4 == 0 ? 1e12 : 1.0);
      compare("f", value);
    } else if (conversion == 'c') {
      compare("c", static_cast<int>(32 + random() % 95));
    } else if (conversion == 's') {
      compare("s", wideWords[random() % 5]);
    } else {
      compare(random() % 2 ? "S" : "hs", words[random() % 5]);
    }
    if (failures >= 40) break;
  }
  wineDifferences.Print("wide formatter");
}

}  // namespace
}  // namespace ic::platform
