#include <ic/text/search_needle.h>

#include <ic/platform/wide_runtime.h>
#include <ic/string/internal/positions.h>
#include <ic/text/case_mapping.h>

namespace ic {

template <class Unit>
SearchNeedle<Unit>::SearchNeedle(const Unit* text, bool ignoreCase, bool copy)
    : _codes(_inlineCodes), _singleCode(true), _ignoreCase(ignoreCase) {
  _inlineCodes[0] = 0;
  if (text == nullptr || *text == 0) return;
  if constexpr (sizeof(Unit) == 1) {
    (void)copy;
    uint32_t count = 0;
    for (const char* p = text; *p != 0; p += internal::StepSize(p))
      ++count;
    Code* target = _inlineCodes;
    if (count + 1 >= InlineCodes) {
      _heapCodes = std::make_unique_for_overwrite<Code[]>(count + 1);
      target = _heapCodes.get();
    }
    uint32_t n = 0;
    for (const char* p = text; *p != 0; ++n) {
      const uint32_t code = internal::DecodeCodePoint(p);
      target[n] = ignoreCase ? ToUpperCodePoint(code) : code;
    }
    target[n] = 0;
    _codes = target;
    _singleCode = n <= 1;
  } else {
    size_t length = 0;
    while (text[length] != 0)
      ++length;
    _singleCode = length <= 1;
    if (!ignoreCase && !copy) {
      _codes = text;
      return;
    }
    Code* target = _inlineCodes;
    if (length >= InlineCodes - 1) {
      _heapCodes = std::make_unique_for_overwrite<Code[]>(length + 1);
      target = _heapCodes.get();
    }
    for (size_t i = 0; i < length; ++i)
      target[i] = ignoreCase ? platform::towupper(text[i]) : text[i];
    target[length] = 0;
    _codes = target;
  }
}

template <class Unit>
bool SearchNeedle<Unit>::MatchesFirst(uint32_t code) const noexcept {
  if constexpr (sizeof(Unit) == 1) {
    return (_ignoreCase ? ToUpperCodePoint(code) : code) == _codes[0];
  } else {
    const char16_t unit = static_cast<char16_t>(code);
    return (_ignoreCase ? platform::towupper(unit) : unit) == _codes[0];
  }
}

template <class Unit>
bool SearchNeedle<Unit>::MatchesRest(const Unit*& cursor) const noexcept {
  if (_singleCode) return true;
  const Unit* p = cursor;
  for (const Code* c = _codes + 1; *c != 0; ++c) {
    if (*p == 0) return false;
    if constexpr (sizeof(Unit) == 1) {
      const uint32_t code = internal::DecodeCodePoint(p);
      if ((_ignoreCase ? ToUpperCodePoint(code) : code) != *c) return false;
    } else {
      const char16_t unit = *p++;
      if ((_ignoreCase ? platform::towupper(unit) : unit) != *c) return false;
    }
  }
  cursor = p;
  return true;
}

template class SearchNeedle<char>;
template class SearchNeedle<char16_t>;

}  // namespace ic
