#include <ic/text/search_needle.h>

#include <ic/platform/wide_runtime.h>
#include <ic/text/case_mapping.h>
#include <ic/text/utf8_walk.h>

namespace ic {

template <class Unit>
SearchNeedle<Unit>::SearchNeedle(const Unit* text, bool ignoreCase, bool copy)
    : codes(inlineCodes), ownsCodes(false), singleCode(true), ignoreCase(ignoreCase) {
  inlineCodes[0] = 0;
  if (text == nullptr || *text == 0) return;
  if constexpr (sizeof(Unit) == 1) {
    (void)copy;
    uint32_t count = 0;
    for (const char* p = text; *p != 0; p += textdetail::StepSize(p))
      ++count;
    Code* target = inlineCodes;
    if (count + 1 >= InlineCodes) {
      target = new Code[count + 1];
      ownsCodes = true;
    }
    uint32_t n = 0;
    for (const char* p = text; *p != 0; ++n) {
      const uint32_t code = textdetail::DecodeCodePoint(p);
      target[n] = ignoreCase ? ToUpperCodePoint(code) : code;
    }
    target[n] = 0;
    codes = target;
    singleCode = n <= 1;
  } else {
    size_t length = 0;
    while (text[length] != 0)
      ++length;
    singleCode = length <= 1;
    if (!ignoreCase && !copy) {
      codes = text;
      return;
    }
    Code* target = inlineCodes;
    if (length >= InlineCodes - 1) {
      target = new Code[length + 1];
      ownsCodes = true;
    }
    for (size_t i = 0; i < length; ++i)
      target[i] = ignoreCase ? platform::towupper(text[i]) : text[i];
    target[length] = 0;
    codes = target;
  }
}

template <class Unit>
SearchNeedle<Unit>::~SearchNeedle() {
  if (ownsCodes) delete[] codes;
}

template <class Unit>
bool SearchNeedle<Unit>::MatchesFirst(uint32_t code) const noexcept {
  if constexpr (sizeof(Unit) == 1) {
    return (ignoreCase ? ToUpperCodePoint(code) : code) == codes[0];
  } else {
    const char16_t unit = static_cast<char16_t>(code);
    return (ignoreCase ? platform::towupper(unit) : unit) == codes[0];
  }
}

template <class Unit>
bool SearchNeedle<Unit>::MatchesRest(const Unit*& cursor) const noexcept {
  if (singleCode) return true;
  const Unit* p = cursor;
  for (const Code* c = codes + 1; *c != 0; ++c) {
    if (*p == 0) return false;
    if constexpr (sizeof(Unit) == 1) {
      const uint32_t code = textdetail::DecodeCodePoint(p);
      if ((ignoreCase ? ToUpperCodePoint(code) : code) != *c) return false;
    } else {
      const char16_t unit = *p++;
      if ((ignoreCase ? platform::towupper(unit) : unit) != *c) return false;
    }
  }
  cursor = p;
  return true;
}

template class SearchNeedle<char>;
template class SearchNeedle<char16_t>;

}  // namespace ic
