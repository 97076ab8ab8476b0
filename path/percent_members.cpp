#include <ic/path/percent_members.h>

#include <memory>
#include <utility>

#include <ic/path/internal/percent_core.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/write_steps.h>

namespace ic {

template <class Unit, class Storage>
auto ICStringPercentMembers<BasicICString<Unit, Storage>>::PercentEncode(int mode) -> Str& {
  Str& self = Self();
  if constexpr (sizeof(Unit) == 2) self.ConvertToUTF8Units();
  const int32_t length = self.GetLength();
  const int64_t room = int64_t{length} * 3;
  ICStringUniqueT<Unit> escaped(static_cast<int32_t>(room > 0x7fffffff ? 0x7fffffff : room), true,
                                false);
  if (length > 0) {
    const int32_t n = internal::PercentEncodeUnits(
        self.GetText(), length, internal::StringAccess::_GetBuffer(escaped), mode);
    internal::StringAccess::_SetStringEnd(escaped, n);
  }
  self = std::move(escaped);
  return self;
}

template <class Unit, class Storage>
auto ICStringPercentMembers<BasicICString<Unit, Storage>>::PercentDecode() -> Str& {
  Str& self = Self();
  const int32_t length = self.GetLength();
  const int32_t first = internal::FindPercent(self.GetText(), length);
  if (first < 0) return self;
  if constexpr (sizeof(Unit) == 1) {
    internal::StringAccess::PrepareInPlace(self);
    const int32_t n = internal::PercentDecodeUnits(self.GetText(), length,
                                                   internal::StringAccess::_GetBuffer(self));
    self.KeepLeft(n);
  } else {
    const std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(length) + 1]);
    const int32_t n = internal::PercentDecodeUnits(self.GetText(), length, bytes.get());
    bytes[static_cast<size_t>(n)] = 0;
    self.ConvertFromUTF8String(bytes.get(), n);
  }
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringPercentMembers)

}  // namespace ic
