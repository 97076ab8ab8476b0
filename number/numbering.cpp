#include <ic/number/internal/numbering.h>

namespace ic::internal {
namespace {

// The numeral letters in ascending value: for each decimal place, the one, five and ten letters
// stand at three adjacent positions (units 0-2, tens 2-4, hundreds 4-6).
constexpr char kUpperNumerals[] = "IVXLCDM";
constexpr char kLowerNumerals[] = "ivxlcdm";

// The letters of each digit, as positions 0 (one), 1 (five) and 2 (ten) of its place; 3 ends.
constexpr unsigned char kDigitLetters[10][5] = {
    {3},    {0, 3},    {0, 0, 3},    {0, 0, 0, 3}, {0, 1, 3},
    {1, 3}, {1, 0, 3}, {1, 0, 0, 3}, {1, 0, 0, 0}, {0, 2, 3},
};

}  // namespace

template <class Unit>
int32_t WriteAlphabeticNumber(Unit* out, int32_t value, bool upperCase) noexcept {
  if (value < 1) return 0;
  int32_t count = 0;
  for (uint32_t n = static_cast<uint32_t>(value); n != 0; n = (n - 1) / 26)
    ++count;
  const Unit first = upperCase ? Unit('A') : Unit('a');
  uint32_t n = static_cast<uint32_t>(value);
  for (int32_t i = count - 1; i >= 0; --i) {
    const uint32_t m = n - 1;
    out[i] = static_cast<Unit>(first + m % 26);
    n = m / 26;
  }
  return count;
}

template <class Unit>
int32_t WriteRomanNumber(Unit* out, int32_t value, bool upperCase) noexcept {
  if (value < 1 || value > 9999) return 0;
  const char* const letters = upperCase ? kUpperNumerals : kLowerNumerals;
  int32_t length = 0;
  for (int32_t i = value / 1000; i > 0; --i)
    out[length++] = static_cast<Unit>(letters[6]);
  const int32_t places[3] = {value / 100 % 10, value / 10 % 10, value % 10};
  for (int place = 0; place < 3; ++place) {
    const int base = 4 - 2 * place;  // hundreds 4, tens 2, units 0
    const unsigned char* step = kDigitLetters[places[place]];
    for (int k = 0; k < 4 && step[k] != 3; ++k)
      out[length++] = static_cast<Unit>(letters[base + step[k]]);
  }
  return length;
}

template IC_API int32_t WriteAlphabeticNumber(char*, int32_t, bool) noexcept;
template IC_API int32_t WriteAlphabeticNumber(char16_t*, int32_t, bool) noexcept;
template IC_API int32_t WriteRomanNumber(char*, int32_t, bool) noexcept;
template IC_API int32_t WriteRomanNumber(char16_t*, int32_t, bool) noexcept;

}  // namespace ic::internal
