#include <ic/number/number_format.h>

namespace ic {
namespace {

template <class Unit>
int32_t FormatHexText(Unit* buffer, int32_t bufferLength, uint64_t value, int byteSize,
                      const StringHexFormatOptions<Unit>& options) noexcept {
  int32_t prefixLength = 0;
  if (options.prefix != nullptr)
    while (options.prefix[prefixLength] != 0)
      ++prefixLength;

  // The zero test stands before the cut to byteSize: zero has one digit, while a value whose
  // remaining bytes are zero has none.
  uint64_t reduced = value;
  int32_t digits = 1;
  if (value != 0) {
    switch (byteSize) {
      case 1:
        reduced = value & 0xff;
        break;
      case 2:
        reduced = value & 0xffff;
        break;
      case 4:
        reduced = value & 0xffffffff;
        break;
      default:
        break;
    }
    digits = (64 - std::countl_zero(reduced) + 3) / 4;
  }
  const int32_t width = prefixLength + digits;
  const int32_t needed = (width > options.minWidth ? width : options.minWidth) + 1;
  if (buffer == nullptr || needed > bufferLength) return needed;

  Unit* const end = buffer + needed - 1;
  *end = 0;
  Unit* p = end;
  const char* const alphabet = options.upperCase ? "0123456789ABCDEF" : "0123456789abcdef";
  if (reduced == 0) {
    // Zero, or a value cut to zero: one "0" at the last place, which a prefix may cover. With
    // no room before the terminator the text stays empty.
    if (p > buffer) *--p = Unit('0');
  } else {
    for (; reduced != 0; reduced >>= 4)
      *--p = static_cast<Unit>(alphabet[reduced & 15]);
  }

  Unit* prefixAt = buffer;
  if (buffer + prefixLength < p) {
    if (options.fill == Unit(' ')) {
      prefixAt = p - prefixLength;  // blanks ahead of the prefix
      for (Unit* q = buffer; q < prefixAt; ++q)
        *q = options.fill;
    } else {
      for (Unit* q = buffer + prefixLength; q < p; ++q)
        *q = options.fill;
    }
  }
  for (int32_t i = 0; i < prefixLength; ++i)
    prefixAt[i] = options.prefix[i];
  return 0;
}

}  // namespace

#define IC_FORMAT_DECIMAL(Unit, UInt)                                                              \
  int32_t _FormatDecimal(Unit* buffer, int32_t bufferLength, UInt magnitude,                       \
                         const StringNumberFormatOptions<Unit>& options, bool negative) noexcept { \
    return internal::FormatDecimal(buffer, bufferLength, magnitude, options, negative);            \
  }

IC_FOR_EACH_UNSIGNED_INTEGER_TYPE(IC_FORMAT_DECIMAL, char)
IC_FOR_EACH_UNSIGNED_INTEGER_TYPE(IC_FORMAT_DECIMAL, char16_t)

#undef IC_FORMAT_DECIMAL

int32_t FormatHex(char* buffer, int32_t bufferLength, uint64_t value, int byteSize,
                  const StringHexFormatOptions<char>& options) noexcept {
  return FormatHexText(buffer, bufferLength, value, byteSize, options);
}

int32_t FormatHex(char16_t* buffer, int32_t bufferLength, uint64_t value, int byteSize,
                  const StringHexFormatOptions<char16_t>& options) noexcept {
  return FormatHexText(buffer, bufferLength, value, byteSize, options);
}

}  // namespace ic
