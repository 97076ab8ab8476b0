#include <ic/number/internal/fixed_float.h>

#include <ic/number/number_format.h>
#include <ic/platform/bounded_format.h>

namespace ic::internal {

int32_t FormatFixedFloat(char* buffer, float value) noexcept {
  const int n =
      platform::BoundedFormat(buffer, kFixedFloatUnits, "%10.2f", static_cast<double>(value));
  return n < 0 ? 0 : n;
}

int32_t FormatFixedFloat(char16_t* buffer, float value) noexcept {
  const int n =
      platform::BoundedFormat(buffer, kFixedFloatUnits, u"%10.2f", static_cast<double>(value));
  return n < 0 ? 0 : n;
}

}  // namespace ic::internal

namespace ic {
namespace {

template <class Unit>
int32_t FormatFloatNumber(Unit* buffer, int32_t bufferLength, float value) noexcept {
  Unit text[internal::kFixedFloatUnits];
  const int32_t length = internal::FormatFixedFloat(text, value);
  if (buffer == nullptr || bufferLength < length + 1) return length + 1;
  for (int32_t i = 0; i <= length; ++i)
    buffer[i] = text[i];
  return 0;
}

}  // namespace

int32_t FormatNumber(char* buffer, int32_t bufferLength, float value) noexcept {
  return FormatFloatNumber(buffer, bufferLength, value);
}
int32_t FormatNumber(char16_t* buffer, int32_t bufferLength, float value) noexcept {
  return FormatFloatNumber(buffer, bufferLength, value);
}

}  // namespace ic
