// Members of every string that format numbers into it (AssignNumber, AppendNumber).
// Mixed into BasicICString.
//
// Each member measures the text first, makes room for exactly that in the string's own block
// (AssignNumber without keeping the old text: a shared block that others hold is replaced, a
// view becomes owning; AppendNumber keeping it), formats straight into the block and sets the
// length. No temporary string or buffer is made.
//
// The mixin is specialised on BasicICString<Unit, Storage>, so that width and shape are known
// from the template arguments alone; the members are defined once in number_members.cpp and
// instantiated there for the six strings.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/number/number_format.h>
#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringNumberMembers;

template <class Unit, class Storage>
class ICStringNumberMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringNumberMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringNumberMembers);
  using DecimalOptions = StringNumberFormatOptions<Unit>;
  using HexOptions = StringHexFormatOptions<Unit>;
  static constexpr bool IsSharedOrView = std::is_same_v<Storage, ICStringSharedStorage<Unit>> ||
                                         std::is_same_v<Storage, ICStringViewStorage<Unit>>;

 public:
  /// @name AssignNumber: replaces the text by the value in decimal (DefaultDecimalFormat)
  /// @{
  Str& AssignNumber(signed char value);
  Str& AssignNumber(unsigned char value);
  Str& AssignNumber(short value);
  Str& AssignNumber(unsigned short value);
  Str& AssignNumber(int value);
  Str& AssignNumber(unsigned int value);
  Str& AssignNumber(long value);
  Str& AssignNumber(unsigned long value);
  Str& AssignNumber(long long value);
  Str& AssignNumber(unsigned long long value);
  /// @}

  /// Replaces the text by the pointer's value in hexadecimal (DefaultHexFormat: '0x1A2B'), cut
  /// to the size of a pointer.
  Str& AssignNumber(const void* pointer);

  /// @name AssignNumber with decimal options (shared strings and views)
  /// @{
  Str& AssignNumber(signed char value, const DecimalOptions& options) requires(IsSharedOrView);
  Str& AssignNumber(short value, const DecimalOptions& options) requires(IsSharedOrView);
  Str& AssignNumber(int value, const DecimalOptions& options) requires(IsSharedOrView);
  Str& AssignNumber(long value, const DecimalOptions& options) requires(IsSharedOrView);
  /// @}

  /// Replaces the text by a 32-bit value in hexadecimal (byte size 4) with the options (shared
  /// strings and views).
  Str& AssignNumber(uint32_t value, const HexOptions& options) requires(IsSharedOrView);

  /// Replaces the text by `value` in hexadecimal as FormatHex writes it with `byteSize` and the
  /// options.
  Str& AssignNumber(uint64_t value, int byteSize, const HexOptions& options);

  /// @name AppendNumber: appends the value in decimal (DefaultDecimalFormat)
  /// Only the signed 16, 32 and 64-bit values; an 8-bit value is a character, not a number.
  /// @{
  Str& AppendNumber(short value);
  Str& AppendNumber(int value);
  Str& AppendNumber(long value);
  Str& AppendNumber(long long value);
  /// @}

  /// Appends the pointer's value in hexadecimal (DefaultHexFormat).
  Str& AppendNumber(const void* pointer);

  /// Replaces the text by a 32-bit float as "%10.2f" writes it ('      3.50').
  Str& AssignNumber(float value);
  /// Appends a 32-bit float as "%10.2f" writes it.
  Str& AppendNumber(float value);
};

IC_EXTERN_STRING_MIXIN(ICStringNumberMembers)

}  // namespace ic
