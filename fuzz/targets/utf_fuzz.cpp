// UTF conversion both ways: the string members, the free conversions and the platform
// converters. Checks that measuring gives what writing writes, that the AVX2 kernels and the
// portable code give the same result, that ConvertToUTF8 follows its pairing rule (against a
// plain walk written here), and that well-formed UTF-8 survives the round trip.
#include <algorithm>
#include <cstdint>
#include <string>

#include <ic/platform/code_page.h>
#include <ic/platform/internal/vector_kernels.h>
#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>
#include <ic/string/utf_convert.h>

#include "fuzz_input.h"
#include "input_contract.h"
#include "runs_under_wine.h"

namespace {

using ic::fuzz::ExactText;
using ic::platform::CodePageUTF8;

// ConvertToUTF8 over `length` units: a unit in 0xd800-0xdfff pairs with the next unit, unchecked.
std::string ReferenceToUtf8(const char16_t* units, size_t length) {
  std::string out;
  for (size_t i = 0; i < length;) {
    uint32_t cp = units[i];
    if (cp >= 0xd800 && cp <= 0xdfff) {
      cp = (((cp & 0x3ff) << 10) | (units[i + 1] & 0x3ff)) + 0x10000;
      i += 2;
    } else {
      i += 1;
    }
    char bytes[4];
    char* cursor = bytes;
    IC_FUZZ_CHECK(ic::EncodeCodePoint(cursor, cp));
    out.append(bytes, cursor);
  }
  return out;
}

std::string Text(const ic::ICStringUnique& s) {
  return std::string(s.GetText(), static_cast<size_t>(s.GetLength()));
}

// Wine's converter, one unit short of a conversion that ends in a surrogate pair, writes the high
// surrogate and answers success where Windows answers 0: the one departure accepted, and only
// under wine.
bool WineSplitsTheLastPair(const char16_t* shortOut, const char16_t* full, int needed) {
  const char16_t high = full[needed - 2];
  return ic::platform::RunsUnderWine() && high >= 0xD800 && high <= 0xDBFF &&
         std::equal(shortOut, shortOut + needed - 1, full);
}

// Both platform directions: the measure equals what is written, and a destination one unit
// short fails without writing past its size.
std::u16string PlatformToWide(const std::string& bytes, int length) {
  const int needed =
      ic::platform::MultiByteToWideChar(CodePageUTF8, 0, bytes.c_str(), length, nullptr, 0);
  if (needed == 0) return std::u16string();
  ExactText<char16_t> out(std::u16string(static_cast<size_t>(needed), u'\0'));
  char16_t* dst = const_cast<char16_t*>(out.Get());
  IC_FUZZ_CHECK(ic::platform::MultiByteToWideChar(CodePageUTF8, 0, bytes.c_str(), length, dst,
                                                  needed) == needed);
  if (needed > 1) {
    ExactText<char16_t> shortOut(std::u16string(static_cast<size_t>(needed - 1), u'\0'));
    const int shortResult = ic::platform::MultiByteToWideChar(
        CodePageUTF8, 0, bytes.c_str(), length, const_cast<char16_t*>(shortOut.Get()), needed - 1);
    if (shortResult != 0) {
      IC_FUZZ_CHECK(shortResult == needed - 1 &&
                    WineSplitsTheLastPair(shortOut.Get(), dst, needed));
    }
  }
  return std::u16string(dst, static_cast<size_t>(needed));
}

std::string PlatformToNarrow(const std::u16string& units, int length) {
  const int needed =
      ic::platform::WideCharToMultiByte(CodePageUTF8, 0, units.c_str(), length, nullptr, 0);
  if (needed == 0) return std::string();
  ExactText<char> out(std::string(static_cast<size_t>(needed), '\0'));
  char* dst = const_cast<char*>(out.Get());
  IC_FUZZ_CHECK(ic::platform::WideCharToMultiByte(CodePageUTF8, 0, units.c_str(), length, dst,
                                                  needed) == needed);
  if (needed > 1) {
    ExactText<char> shortOut(std::string(static_cast<size_t>(needed - 1), '\0'));
    IC_FUZZ_CHECK(ic::platform::WideCharToMultiByte(CodePageUTF8, 0, units.c_str(), length,
                                                    const_cast<char*>(shortOut.Get()),
                                                    needed - 1) == 0);
  }
  return std::string(dst, static_cast<size_t>(needed));
}

struct Results {
  std::string toNarrowText;   // ConvertToUTF8(const char16_t*), when allowed
  std::string toNarrowRange;  // ConvertToUTF8(range)
  std::string member;         // the wide string's ConvertToUTF8()
  std::u16string fromNarrow;  // ConvertFromUTF8String
  std::u16string platformWide;
  std::string platformNarrow;
  std::u16string units;  // ConvertToUTF8Units
  bool operator==(const Results&) const = default;
};

// `textWalk`: the zero-terminated walk over the whole input stays inside it; `stringWalk`: the
// same for the input up to its first zero unit, which is what a string made from it holds.
Results Run(const std::string& bytes, const std::u16string& wide, bool textWalk, bool stringWalk) {
  Results r;
  const ExactText<char16_t> exact(wide);
  if (textWalk) r.toNarrowText = Text(ic::ConvertToUTF8(exact.Get()));
  if (stringWalk) r.member = Text(ic::ICStringUniqueW(exact.Get()).ConvertToUTF8());
  // The range walk reads the unit behind a surrogate in the last place: the terminator of the
  // exact copy, which is inside the block.
  r.toNarrowRange =
      Text(ic::ConvertToUTF8(ic::ICStringRangeW{exact.Get(), static_cast<int32_t>(wide.size())}));
  if (!wide.empty()) {
    IC_FUZZ_CHECK(r.toNarrowRange == ReferenceToUtf8(exact.Get(), wide.size()));
  }

  const ExactText<char> narrow(bytes);
  ic::ICStringUniqueW fromNarrow;
  fromNarrow.ConvertFromUTF8String(narrow.Get(), static_cast<int32_t>(bytes.size()));
  r.fromNarrow.assign(fromNarrow.GetText(), static_cast<size_t>(fromNarrow.GetLength()));
  r.platformWide = PlatformToWide(bytes, static_cast<int>(bytes.size()));
  IC_FUZZ_CHECK(r.fromNarrow == r.platformWide);
  r.platformNarrow = PlatformToNarrow(wide, static_cast<int>(wide.size()));

  ic::ICStringSharedW units(exact.Get(), static_cast<int32_t>(wide.size()));
  units.ConvertToUTF8Units();
  r.units.assign(units.GetText(), static_cast<size_t>(units.GetLength()));
  return r;
}

// The narrow walks by lead byte: CountCodePoints, GetUTF8Offset and FindCodePoint agree with
// a walk written here.
void NarrowWalks(const std::string& bytes) {
  const ExactText<char> exact(bytes);
  uint32_t count = 0;
  size_t at = 0;
  while (at < bytes.size() && bytes[at] != '\0') {
    at += static_cast<size_t>(ic::GetUTF8SequenceSize(static_cast<unsigned char>(bytes[at])));
    ++count;
  }
  IC_FUZZ_CHECK(ic::CountCodePoints(exact.Get()) == count);
  IC_FUZZ_CHECK(ic::GetUTF8Offset(exact.Get(), count) == static_cast<int32_t>(at));
  IC_FUZZ_CHECK(ic::GetUTF8Offset(exact.Get(), count + 5) == static_cast<int32_t>(at));
  if (count > 0) {
    const char* first = exact.Get();
    const uint32_t code = ic::DecodeUTF8Sequence(first);
    // A value below 0x80 is looked for as a byte, so an overlong form of it is not found.
    if (code >= 0x80) IC_FUZZ_CHECK(ic::FindCodePoint(exact.Get(), code) == exact.Get());
  }
  (void)ic::FindCodePoint(exact.Get(), 0x20ac);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  const std::string bytes = input.Rest();
  const std::u16string wide = ic::fuzz::FuzzInput::Units(bytes);
  const bool textWalk = !ic::fuzz::Utf16WalkStepsOverTerminator(wide);
  const bool stringWalk = !ic::fuzz::Utf16WalkStepsOverTerminator(wide.substr(0, wide.find(u'\0')));
  if (!ic::fuzz::Utf8WalkStepsOverTerminator(bytes)) NarrowWalks(bytes);

  ic::platform::internal::EnableVectorKernels(true);
  const Results vector = Run(bytes, wide, textWalk, stringWalk);
  ic::platform::internal::EnableVectorKernels(false);
  const Results portable = Run(bytes, wide, textWalk, stringWalk);
  ic::platform::internal::EnableVectorKernels(true);
  IC_FUZZ_CHECK(vector == portable);

  // The platform's UTF-8 of any wide text is well formed: back to wide and to UTF-8 again it
  // stays the same, and so does ConvertToUTF8 of the wide form when it has no surrogate pair
  // that the two would treat differently (well-formed input: both give the same bytes).
  const std::u16string back =
      PlatformToWide(vector.platformNarrow, static_cast<int>(vector.platformNarrow.size()));
  IC_FUZZ_CHECK(PlatformToNarrow(back, static_cast<int>(back.size())) == vector.platformNarrow);
  if (!back.empty()) {
    const ExactText<char16_t> exactBack(back);
    IC_FUZZ_CHECK(Text(ic::ConvertToUTF8(
                      ic::ICStringRangeW{exactBack.Get(), static_cast<int32_t>(back.size())})) ==
                  vector.platformNarrow);
  }
  // ConvertToUTF8Units leaves the platform's bytes of the text up to its first zero, one unit
  // per byte.
  const std::u16string head = wide.substr(0, wide.find(u'\0'));
  const std::string headBytes = PlatformToNarrow(head, static_cast<int>(head.size()));
  IC_FUZZ_CHECK(std::equal(headBytes.begin(), headBytes.end(), vector.units.begin(),
                           vector.units.end(),
                           [](char b, char16_t u) { return static_cast<unsigned char>(b) == u; }));
  return 0;
}
