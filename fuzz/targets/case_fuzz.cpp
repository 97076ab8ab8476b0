// Case mapping: MakeUpper, MakeLower (full and fast) and Capitalize on narrow and wide strings.
// Checks: fast mapping keeps the length; well-formed UTF-8 stays well formed; on well-formed
// text the full mapping is each code point mapped by the case table (against a plain walk
// written here), and mapping twice gives what mapping once gave wherever the table maps each
// of the text's code points to one that it maps to itself.
#include <cstdint>
#include <string>

#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>
#include <ic/text/case_mapping.h>

#include "fuzz_input.h"
#include "utf_reference.h"

namespace {

using ic::fuzz::DecodeWellFormedUtf8;

template <class S>
std::basic_string<typename S::UnitType> TextOf(const S& s) {
  return std::basic_string<typename S::UnitType>(s.GetText(), static_cast<size_t>(s.GetLength()));
}

void CheckNarrow(const std::string& text, bool upper) {
  const auto map = upper ? ic::ToUpperCodePoint : ic::ToLowerCodePoint;
  ic::ICStringUnique fast(text.c_str(), static_cast<int32_t>(text.size()));
  upper ? fast.MakeUpper(true) : fast.MakeLower(true);
  IC_FUZZ_CHECK(fast.GetLength() == static_cast<int32_t>(text.size()));

  ic::ICStringShared full(text.c_str(), static_cast<int32_t>(text.size()));
  const ic::ICStringShared other = full;  // another owner: must keep the text
  upper ? full.MakeUpper() : full.MakeLower();
  IC_FUZZ_CHECK(TextOf(other) == text);

  ic::ICStringUnique capitalized(text.c_str(), static_cast<int32_t>(text.size()));
  capitalized.Capitalize();

  const auto decoded = DecodeWellFormedUtf8(text);
  if (!decoded) return;
  IC_FUZZ_CHECK(DecodeWellFormedUtf8(TextOf(fast)).has_value());
  IC_FUZZ_CHECK(DecodeWellFormedUtf8(TextOf(capitalized)).has_value());
  std::u32string mapped;
  bool stable = true;
  for (char32_t c : *decoded) {
    mapped.push_back(static_cast<char32_t>(map(c)));
    stable = stable && map(map(c)) == map(c);
  }
  const auto expected = ic::fuzz::EncodeUtf8(mapped);
  if (!expected) return;
  IC_FUZZ_CHECK(TextOf(full) == *expected);
  if (stable) {
    ic::ICStringUnique twice(full.GetText(), full.GetLength());
    upper ? twice.MakeUpper() : twice.MakeLower();
    IC_FUZZ_CHECK(TextOf(twice) == TextOf(full));
  }
}

void CheckWide(const std::u16string& text, bool upper) {
  ic::ICStringUniqueW fast(text.c_str(), static_cast<int32_t>(text.size()));
  upper ? fast.MakeUpper(true) : fast.MakeLower(true);
  ic::ICStringUniqueW full(text.c_str(), static_cast<int32_t>(text.size()));
  upper ? full.MakeUpper() : full.MakeLower();
  ic::ICStringUniqueW capitalized(text.c_str(), static_cast<int32_t>(text.size()));
  capitalized.Capitalize();
  // Wide: fast maps "A"-"Z" (or "a"-"z") only, full maps unit by unit with the run-time.
  std::u16string expectFast = text;
  std::u16string expectFull = text;
  for (char16_t& u : expectFast) {
    if (upper && u >= u'a' && u <= u'z') u = static_cast<char16_t>(u - 32);
    if (!upper && u >= u'A' && u <= u'Z') u = static_cast<char16_t>(u + 32);
  }
  for (char16_t& u : expectFull)
    u = upper ? ic::platform::towupper(u) : ic::platform::towlower(u);
  IC_FUZZ_CHECK(TextOf(fast) == expectFast);
  IC_FUZZ_CHECK(TextOf(full) == expectFull);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  const uint8_t mode = input.Byte();
  // The members map up to the terminator: the texts end at their first zero.
  const std::string bytes = input.Rest();
  if ((mode & 1) == 0) {
    CheckNarrow(bytes.substr(0, bytes.find('\0')), (mode & 2) != 0);
  } else {
    const std::u16string units = ic::fuzz::FuzzInput::Units(bytes);
    CheckWide(units.substr(0, units.find(u'\0')), (mode & 2) != 0);
  }
  return 0;
}
