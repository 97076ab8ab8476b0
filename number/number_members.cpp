#include <ic/number/number_members.h>

#include <cstdint>

#include <ic/number/internal/fixed_float.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>

namespace ic {
namespace {

template <class Str, class UInt>
Str& AssignDecimal(Str& self, UInt magnitude, bool negative,
                   const StringNumberFormatOptions<typename Str::UnitType>& options) {
  const int32_t needed = DecimalSizeNeeded(magnitude, negative, options.minWidth);
  internal::StringAccess::_PrepareReplace(self, needed - 1);
  _FormatDecimal(internal::StringAccess::_GetBuffer(self), needed, magnitude, options, negative);
  internal::StringAccess::_SetStoredLength(self, needed - 1);
  return self;
}

template <class Str, class UInt>
Str& AppendDecimal(Str& self, UInt magnitude, bool negative) {
  using Unit = typename Str::UnitType;
  const int32_t oldLength = self.GetLength();
  const int32_t needed = DecimalSizeNeeded(magnitude, negative, 0);
  internal::StringAccess::_PrepareGrow(self, oldLength + needed - 1);
  _FormatDecimal(internal::StringAccess::_GetBuffer(self) + oldLength, needed, magnitude,
                 DefaultDecimalFormat<Unit>, negative);
  internal::StringAccess::_SetStoredLength(self, oldLength + needed - 1);
  return self;
}

template <class T>
std::make_unsigned_t<T> Magnitude(T value) noexcept {
  using UInt = std::make_unsigned_t<T>;
  return value < 0 ? static_cast<UInt>(UInt{0} - static_cast<UInt>(value))
                   : static_cast<UInt>(value);
}

template <class Str, class T>
Str& AssignValue(Str& self, T value,
                 const StringNumberFormatOptions<typename Str::UnitType>& options) {
  if constexpr (std::is_signed_v<T>)
    return AssignDecimal(self, Magnitude(value), value < 0, options);
  else
    return AssignDecimal(self, value, false, options);
}

template <class Str>
Str& AssignHex(Str& self, uint64_t value, int byteSize,
               const StringHexFormatOptions<typename Str::UnitType>& options) {
  const int32_t needed =
      FormatHex(static_cast<typename Str::UnitType*>(nullptr), 0, value, byteSize, options);
  internal::StringAccess::_PrepareReplace(self, needed - 1);
  // A text that comes out empty (a value cut to zero, without prefix or width) may have left
  // the string on the empty data, which is never written.
  if (internal::StringAccess::_IsEmptyData(self)) return self;
  FormatHex(internal::StringAccess::_GetBuffer(self), needed, value, byteSize, options);
  internal::StringAccess::_SetStoredLength(self, needed - 1);
  return self;
}

template <class Str>
Str& AppendHex(Str& self, uint64_t value, int byteSize) {
  using Unit = typename Str::UnitType;
  const int32_t oldLength = self.GetLength();
  const int32_t needed =
      FormatHex(static_cast<Unit*>(nullptr), 0, value, byteSize, DefaultHexFormat<Unit>);
  internal::StringAccess::_PrepareGrow(self, oldLength + needed - 1);
  FormatHex(internal::StringAccess::_GetBuffer(self) + oldLength, needed, value, byteSize,
            DefaultHexFormat<Unit>);
  internal::StringAccess::_SetStoredLength(self, oldLength + needed - 1);
  return self;
}

inline uint64_t PointerValue(const void* pointer) noexcept {
  return static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pointer));
}

}  // namespace

#define IC_ASSIGN_NUMBER(T)                                                               \
  template <class Unit, class Storage>                                                    \
  auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AssignNumber(T value)->Str& { \
    return AssignValue(Self(), value, DefaultDecimalFormat<Unit>);                        \
  }

IC_ASSIGN_NUMBER(signed char)
IC_ASSIGN_NUMBER(unsigned char)
IC_ASSIGN_NUMBER(short)
IC_ASSIGN_NUMBER(unsigned short)
IC_ASSIGN_NUMBER(int)
IC_ASSIGN_NUMBER(unsigned int)
IC_ASSIGN_NUMBER(long)
IC_ASSIGN_NUMBER(unsigned long)
IC_ASSIGN_NUMBER(long long)
IC_ASSIGN_NUMBER(unsigned long long)

#undef IC_ASSIGN_NUMBER

#define IC_ASSIGN_NUMBER_WITH_OPTIONS(T)                                  \
  template <class Unit, class Storage>                                    \
  auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AssignNumber( \
      T value, const DecimalOptions& options)                             \
      ->Str& requires(IsSharedOrView) {                                   \
    return AssignValue(Self(), value, options);                           \
  }

IC_ASSIGN_NUMBER_WITH_OPTIONS(signed char)
IC_ASSIGN_NUMBER_WITH_OPTIONS(short)
IC_ASSIGN_NUMBER_WITH_OPTIONS(int)
IC_ASSIGN_NUMBER_WITH_OPTIONS(long)

#undef IC_ASSIGN_NUMBER_WITH_OPTIONS

#define IC_APPEND_NUMBER(T)                                                               \
  template <class Unit, class Storage>                                                    \
  auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AppendNumber(T value)->Str& { \
    return AppendDecimal(Self(), Magnitude(value), value < 0);                            \
  }

IC_APPEND_NUMBER(short)
IC_APPEND_NUMBER(int)
IC_APPEND_NUMBER(long)
IC_APPEND_NUMBER(long long)

#undef IC_APPEND_NUMBER

template <class Unit, class Storage>
auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AssignNumber(const void* pointer)
    -> Str& {
  return AssignHex(Self(), PointerValue(pointer), sizeof(void*), DefaultHexFormat<Unit>);
}

template <class Unit, class Storage>
auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AssignNumber(uint32_t value,
                                                                       const HexOptions& options)
    -> Str& requires(IsSharedOrView) {
  return AssignHex(Self(), value, 4, options);
}

template <class Unit, class Storage>
auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AssignNumber(uint64_t value, int byteSize,
                                                                       const HexOptions& options)
    -> Str& {
  return AssignHex(Self(), value, byteSize, options);
}

template <class Unit, class Storage>
auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AppendNumber(const void* pointer)
    -> Str& {
  return AppendHex(Self(), PointerValue(pointer), sizeof(void*));
}

template <class Unit, class Storage>
auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AssignNumber(float value) -> Str& {
  Unit text[internal::kFixedFloatUnits];
  return Self().Assign(text, internal::FormatFixedFloat(text, value));
}

template <class Unit, class Storage>
auto ICStringNumberMembers<BasicICString<Unit, Storage>>::AppendNumber(float value) -> Str& {
  Unit text[internal::kFixedFloatUnits];
  return Self().Append(text, internal::FormatFixedFloat(text, value));
}

IC_INSTANTIATE_STRING_MIXIN(ICStringNumberMembers)

}  // namespace ic
