#include <ic/string/null_data.h>

#include <cstddef>
#include <stdexcept>

namespace ic {

// No initialiser beyond zero: both blocks land in zero-filled storage before any code runs.
template <>
NullBlock<char> ICStringNullData<char>::TNullData{};
template <>
NullBlock<char16_t> ICStringNullData<char16_t>::TNullData{};

static_assert(offsetof(NullBlock<char>, text) == 6 && offsetof(NullBlock<char16_t>, text) == 6);

namespace {
[[noreturn]] void ReportDirtyNullData() {
  // The message text is part of the string core's contract: hosts match it as it stands.
  throw std::logic_error("ICString::TNullData has not been zero initialized!");
}
}  // namespace

template <>
void CheckNullData<char>() {
  const volatile unsigned char* bytes =
      reinterpret_cast<const volatile unsigned char*>(&ICStringNullData<char>::TNullData);
  for (int i = 0; i < 7; ++i)
    if (bytes[i] != 0) ReportDirtyNullData();
}

template <>
void CheckNullData<char16_t>() {
  const volatile NullBlock<char16_t>& block = ICStringNullData<char16_t>::TNullData;
  if (block.LengthWord != 0 || block.CapacityWord != 0 || block.ShareWord != 0 ||
      block.text[0] != 0)
    ReportDirtyNullData();
}

namespace {
// The library's own start-up check of both blocks.
struct NullDataCheck {
  NullDataCheck() {
    CheckNullData<char>();
    CheckNullData<char16_t>();
  }
} const TNullDataCheck;
}  // namespace

}  // namespace ic
