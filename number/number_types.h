// The integer value types and code units that the number routines take.
#pragma once

#include <type_traits>

namespace ic {

/// The ten integer value types of the number routines: signed and unsigned 8, 16 and 64 bits,
/// and the two 32-bit names of the platform, int and long (each behaves by its own width, so on
/// platforms where long has 64 bits, long behaves as a 64-bit type).
template <class T>
concept IntegerValueType = std::is_same_v<T, signed char> || std::is_same_v<T, unsigned char> ||
    std::is_same_v<T, short> || std::is_same_v<T, unsigned short> || std::is_same_v<T, int> ||
    std::is_same_v<T, unsigned int> || std::is_same_v<T, long> ||
    std::is_same_v<T, unsigned long> || std::is_same_v<T, long long> ||
    std::is_same_v<T, unsigned long long>;

/// The one list of the ten integer value types, in signed/unsigned pairs of one width:
/// applies PAIR(A, B, Signed, Unsigned) to each pair. The lists below are made from it.
#define IC_INTEGER_TYPE_PAIRS(PAIR, A, B) \
  PAIR(A, B, signed char, unsigned char)  \
  PAIR(A, B, short, unsigned short)       \
  PAIR(A, B, int, unsigned int)           \
  PAIR(A, B, long, unsigned long)         \
  PAIR(A, B, long long, unsigned long long)

/// Applies MACRO(Unit, T) to each of the ten integer value types.
#define IC_FOR_EACH_INTEGER_TYPE(MACRO, Unit) IC_INTEGER_TYPE_PAIRS(IC_BOTH_OF_PAIR_, MACRO, Unit)
/// Applies MACRO(Unit, T) to each of the five unsigned integer value types.
#define IC_FOR_EACH_UNSIGNED_INTEGER_TYPE(MACRO, Unit) \
  IC_INTEGER_TYPE_PAIRS(IC_UNSIGNED_OF_PAIR_, MACRO, Unit)

#define IC_BOTH_OF_PAIR_(MACRO, Unit, Signed, Unsigned) MACRO(Unit, Signed) MACRO(Unit, Unsigned)
#define IC_UNSIGNED_OF_PAIR_(MACRO, Unit, Signed, Unsigned) MACRO(Unit, Unsigned)

/// The code units of number text: UTF-8 bytes (narrow) and UTF-16 units (wide).
template <class Unit>
concept NumberTextUnit = std::is_same_v<Unit, char> || std::is_same_v<Unit, char16_t>;

}  // namespace ic
