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

/// Applies MACRO(Unit, T) to each of the ten integer value types.
#define IC_FOR_EACH_INTEGER_TYPE(MACRO, Unit) \
  MACRO(Unit, signed char)                    \
  MACRO(Unit, unsigned char)                  \
  MACRO(Unit, short)                          \
  MACRO(Unit, unsigned short)                 \
  MACRO(Unit, int)                            \
  MACRO(Unit, unsigned int)                   \
  MACRO(Unit, long)                           \
  MACRO(Unit, unsigned long)                  \
  MACRO(Unit, long long)                      \
  MACRO(Unit, unsigned long long)

/// The code units of number text: UTF-8 bytes (narrow) and UTF-16 units (wide).
template <class Unit>
concept NumberTextUnit = std::is_same_v<Unit, char> || std::is_same_v<Unit, char16_t>;

}  // namespace ic
