// Search: Find, FindLast, FindNoCase and the set searches on narrow and wide views of text in
// blocks of its exact size (a read behind the terminator leaves the block), checked against
// plain searches written here. Positions in units; the code-point positions run unchecked.
#include <cstdint>
#include <string>

#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>

#include "fuzz_input.h"
#include "utf_reference.h"

namespace {

using ic::fuzz::ExactText;

template <class Unit>
std::basic_string<Unit> UpToZero(const std::basic_string<Unit>& text) {
  return text.substr(0, text.find(Unit(0)));
}

// First match at or behind `from`, or -1.
template <class Unit>
int32_t ReferenceFind(const std::basic_string<Unit>& text, const std::basic_string<Unit>& needle,
                      int32_t from) {
  for (size_t i = static_cast<size_t>(from < 0 ? 0 : from); i + needle.size() <= text.size(); ++i)
    if (text.compare(i, needle.size(), needle) == 0) return static_cast<int32_t>(i);
  return -1;
}

// Last match that ends at or before `end`, or -1. Narrow text is tried at code point starts
// only: the first candidate moves back over continuation bytes (10xxxxxx), and finds nothing
// when that reaches the start of the text; once a candidate has been tried, the start of the
// text is always tried last.
template <class Unit>
int32_t ReferenceFindLast(const std::basic_string<Unit>& text,
                          const std::basic_string<Unit>& needle, int32_t end) {
  const auto continuation = [&text](size_t i) {
    return sizeof(Unit) == 1 && (static_cast<uint32_t>(text[i]) & 0xc0) == 0x80;
  };
  const size_t limit = std::min(text.size(), static_cast<size_t>(end < 0 ? 0 : end));
  if (end <= 0 || needle.size() > limit) return -1;
  size_t first = limit - needle.size();
  while (continuation(first)) {
    if (first == 0) return -1;
    --first;
  }
  for (size_t i = first + 1; i-- > 0;) {
    if (continuation(i) && i != 0) continue;
    if (text.compare(i, needle.size(), needle) == 0) return static_cast<int32_t>(i);
  }
  return -1;
}

// The first unit at or behind `from` that is (or is not) in `set`, or -1.
int32_t ReferenceFirstOf(const std::u16string& text, const std::u16string& set, int32_t from,
                         bool in) {
  for (size_t i = static_cast<size_t>(from < 0 ? 0 : from); i < text.size(); ++i)
    if ((set.find(text[i]) != std::u16string::npos) == in) return static_cast<int32_t>(i);
  return -1;
}

template <class View, class Unit>
void Unchecked(const View& view, const Unit* needle, int32_t position) {
  // Code-point positions (narrow), pointers and the other searches: no crash, no read beyond.
  (void)view.Find(needle, position, false);
  (void)view.FindLast(needle, position, false);
  (void)view.FindNoCase(needle, position, false);
  (void)view.FindFirstOf(needle, position, false);
  (void)view.FindFirstNotOf(needle, position, false);
  (void)view.FindLastOf(needle, position, false);
  (void)view.FindLastNotOf(needle, position, false);
  (void)view.FindWord(needle, position, false);
  (void)view.Find(needle[0], position, false);
  (void)view.FindLast(needle[0], position, false);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  const int32_t position = input.Int(-4, 300);
  const bool wide = input.Bool();
  const std::string needleBytes = input.Text(64);
  const std::string textBytes = input.Rest();

  if (!wide) {
    const std::string text = UpToZero(textBytes);
    const std::string needle = UpToZero(needleBytes);
    const ExactText<char> exactText(text);
    const ExactText<char> exactNeedle(needle);
    const ic::ICStringView view(exactText.Get());
    Unchecked(view, exactNeedle.Get(), position);
    const int32_t length = static_cast<int32_t>(text.size());
    if (!needle.empty() && position >= 0 && position <= length) {
      IC_FUZZ_CHECK(view.Find(exactNeedle.Get(), position, true) ==
                    ReferenceFind(text, needle, position));
      IC_FUZZ_CHECK(view.FindLast(exactNeedle.Get(), position, true) ==
                    ReferenceFindLast(text, needle, position));
      // On well-formed text a case-blind search finds the exact match or one before it.
      const int32_t exact = view.Find(exactNeedle.Get(), 0, true);
      if (exact >= 0 && ic::fuzz::DecodeWellFormedUtf8(text) &&
          ic::fuzz::DecodeWellFormedUtf8(needle)) {
        const int32_t blind = view.FindNoCase(exactNeedle.Get(), 0, true);
        IC_FUZZ_CHECK(blind >= 0 && blind <= exact);
      }
    }
  } else {
    const std::u16string text = UpToZero(ic::fuzz::FuzzInput::Units(textBytes));
    const std::u16string needle = UpToZero(ic::fuzz::FuzzInput::Units(needleBytes));
    const ExactText<char16_t> exactText(text);
    const ExactText<char16_t> exactNeedle(needle);
    const ic::ICStringViewW view(exactText.Get());
    Unchecked(view, exactNeedle.Get(), position);
    const int32_t length = static_cast<int32_t>(text.size());
    if (!needle.empty() && position >= 0 && position <= length) {
      IC_FUZZ_CHECK(view.Find(exactNeedle.Get(), position) ==
                    ReferenceFind(text, needle, position));
      IC_FUZZ_CHECK(view.FindLast(exactNeedle.Get(), position) ==
                    ReferenceFindLast(text, needle, position));
      std::u16string upperText = text;
      std::u16string upperNeedle = needle;
      for (char16_t& u : upperText)
        u = ic::platform::towupper(u);
      for (char16_t& u : upperNeedle)
        u = ic::platform::towupper(u);
      IC_FUZZ_CHECK(view.FindNoCase(exactNeedle.Get(), position) ==
                    ReferenceFind(upperText, upperNeedle, position));
      IC_FUZZ_CHECK(view.FindFirstOf(exactNeedle.Get(), position) ==
                    ReferenceFirstOf(text, needle, position, true));
      IC_FUZZ_CHECK(view.FindFirstNotOf(exactNeedle.Get(), position) ==
                    ReferenceFirstOf(text, needle, position, false));
    }
  }
  return 0;
}
