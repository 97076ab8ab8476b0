// The searches of the search members: first and last occurrence, sets, words and nesting.
#include <cstring>

#include <ic/platform/internal/unit_scan.h>
#include <ic/text/case_mapping.h>
#include <ic/text/internal/search_core.h>
#include <ic/text/plain_text.h>
#include <ic/text/search_needle.h>

namespace ic::internal {

template <class Unit>
int32_t IndexOf(const Unit* text, const Unit* found, bool lengthInUnits) noexcept {
  if (found == nullptr) return -1;
  if constexpr (sizeof(Unit) == 1) {
    if (!lengthInUnits) return CodePointsBetween(text, found);
  }
  (void)lengthInUnits;
  return static_cast<int32_t>(found - text);
}

template <class Unit>
bool InSet(const Unit* set, uint32_t code) noexcept {
  if (code == 0) return false;
  if constexpr (sizeof(Unit) == 1) {
    if (code < 0x80) return std::strchr(set, static_cast<int>(code)) != nullptr;
    for (const char* p = set; *p != 0;)
      if (DecodeCodePoint(p) == code) return true;
    return false;
  } else {
    return platform::wcschr(set, static_cast<char16_t>(code)) != nullptr;
  }
}

template <class Unit>
const Unit* FindText(const Unit* text, int32_t length, int32_t offset,
                     const Unit* needle) noexcept {
  if constexpr (sizeof(Unit) == 1) {
    (void)length;
    return std::strstr(text + offset, needle);
  } else {
    const size_t found = platform::FindUnits(text + offset, static_cast<size_t>(length - offset),
                                             needle, platform::wcslen(needle));
    return found == static_cast<size_t>(-1) ? nullptr : text + offset + found;
  }
}

template <class Unit>
const Unit* FindCode(const Unit* text, int32_t length, int32_t offset, uint32_t code) noexcept {
  if constexpr (sizeof(Unit) == 1) {
    (void)length;
    if (code < 0x80) return std::strchr(text + offset, static_cast<int>(code));
    for (const char* p = text + offset; *p != 0;) {
      const char* start = p;
      if (DecodeCodePoint(p) == code) return start;
    }
    return nullptr;
  } else {
    return platform::wcschr(text + offset, static_cast<char16_t>(code));
  }
}

template <class Unit>
const Unit* FindTextNoCase(const Unit* text, int32_t length, int32_t offset,
                           const Unit* needle) noexcept {
  const SearchNeedle<Unit> search(needle, true);
  if (search.IsEmpty()) return nullptr;
  const Unit* const end = text + length;
  const uint32_t first = search.Codes()[0];
  // With an ASCII first code, positions where no match can begin are passed over by a vector
  // scan: an ASCII unit begins a match only if its upper-case form is the first code, and, for
  // a needle of more codes, the unit behind it is not ASCII or has the second code as its
  // upper-case form. Units from 128 up are always looked at.
  const bool single = search.IsSingleCode();
  const uint32_t second = single ? 0 : search.Codes()[1];
  platform::internal::UnitStopSet firsts;
  firsts.Add(first);
  if (first - 'A' < 26u) firsts.Add(first + 32);
  firsts.high = true;
  for (const Unit* p = text + offset; p < end;) {
    if (first < 0x80) {
      const auto left = static_cast<size_t>(end - p);
      p += single ? platform::internal::FindFirstInSet(p, left, firsts)
                  : platform::internal::FindFoldedPair(p, left, first, second);
      if (p == end) break;
    }
    const Unit* start = p;
    if (search.MatchesFirst(Next(p))) {
      const Unit* cursor = p;
      if (search.MatchesRest(cursor)) return start;
    }
  }
  return nullptr;
}

template <class Unit>
const Unit* FindLastText(const Unit* text, int32_t length, int32_t limit, int32_t position,
                         const Unit* needle) noexcept {
  const int64_t needleLength = static_cast<int64_t>(TextLength(needle));
  if (needleLength == 0 || needleLength > length || needleLength > position) return nullptr;
  int64_t start = limit - needleLength;
  if (start < 0) return nullptr;
  if constexpr (sizeof(Unit) == 1) {
    while (IsContinuation(text[start])) {
      if (start == 0) return nullptr;
      --start;
    }
  }
  for (;;) {
    if (text[start] == needle[0]) {
      bool same;
      if constexpr (sizeof(Unit) == 1)
        same = std::strncmp(text + start, needle, static_cast<size_t>(needleLength)) == 0;
      else
        same = platform::wcsncmp(text + start, needle, static_cast<size_t>(needleLength)) == 0;
      if (same) return text + start;
    }
    if (start == 0) return nullptr;
    --start;
    if constexpr (sizeof(Unit) == 1) {
      while (start > 0 && IsContinuation(text[start]))
        --start;
    }
  }
}

template <class Unit>
const Unit* FindLastCode(const Unit* text, int32_t limit, uint32_t code) noexcept {
  for (const Unit* p = text + limit; p > text;)
    if (Previous(text, p) == code) return p;
  return nullptr;
}

template <class Unit>
const Unit* FindFirstInSet(const Unit* text, int32_t length, int32_t offset, const Unit* set,
                           bool member) noexcept {
  const Unit* const end = text + length;
  for (const Unit* p = text + offset; p < end;) {
    const Unit* start = p;
    if (InSet(set, Next(p)) == member) return start;
  }
  return nullptr;
}

template <class Unit>
const Unit* FindLastInSet(const Unit* text, int32_t limit, const Unit* set, bool member) noexcept {
  for (const Unit* p = text + limit; p > text;)
    if (InSet(set, Previous(text, p)) == member) return p;
  return nullptr;
}

template <class Unit>
int32_t FindWordOffset(const Unit* text, int32_t length, const Unit* needle, const Unit* breakSet,
                       int32_t position, bool lengthInUnits, bool reverse) noexcept {
  if (needle == nullptr || *needle == 0 || breakSet == nullptr || *breakSet == 0) return -1;
  int32_t offset;
  if (reverse) {
    if (position < 0) return -1;
    offset = UnitOffsetWithin(text, length, position, lengthInUnits);
    if (offset > length) offset = length;
  } else {
    if (position < 0) position = 0;
    offset = UnitOffsetWithin(text, length, position, lengthInUnits);
    if (offset > length) return -1;
  }
  const int32_t needleLength = static_cast<int32_t>(TextLength(needle));
  for (;;) {
    const Unit* candidate = reverse ? FindLastText(text, length, offset, offset, needle)
                                    : FindText(text, length, offset, needle);
    if (candidate == nullptr) return -1;
    bool passes = true;
    if (candidate != text) {
      const Unit* before = candidate;
      passes = InSet(breakSet, Previous(text, before));
    }
    if (passes && candidate + needleLength < text + length) {
      const Unit* after = candidate + needleLength;
      passes = InSet(breakSet, Next(after));
    }
    if (passes) return static_cast<int32_t>(candidate - text);
    if (reverse) {
      if (candidate == text) return -1;
      const Unit* before = candidate;
      Previous(text, before);
      offset = static_cast<int32_t>(before - text);
      if (offset == 0) return -1;
    } else {
      const Unit* next = candidate;
      Next(next);
      offset = static_cast<int32_t>(next - text);
      if (offset >= length) return -1;
    }
  }
}

template <class Unit>
const Unit* FindBalancedIn(const Unit* text, int32_t length, int32_t offset, const Unit* open,
                           const Unit* close, uint32_t escape, bool flat, int32_t depth) {
  const SearchNeedle<Unit> opening(open, false);
  const SearchNeedle<Unit> closing(close, false);
  if (opening.IsEmpty() || closing.IsEmpty()) return nullptr;
  if (depth < 0) depth = 0;
  if (flat && depth > 1) depth = 1;
  bool same = true;
  {
    size_t i = 0;
    for (; open[i] != 0 && open[i] == close[i]; ++i) {
    }
    same = open[i] == close[i];
  }
  const Unit* const end = text + length;
  for (const Unit* p = text + offset; p < end;) {
    const int32_t before = depth;
    const Unit* start = p;
    const uint32_t code = Next(p);
    if (escape != 0 && code == escape) {
      if (p < end) Next(p);
      continue;
    }
    if (opening.MatchesFirst(code) && opening.MatchesRest(p)) {
      if (same)
        depth = depth == 0 ? 1 : 0;
      else if (!flat || depth == 0)
        ++depth;
    } else if (depth >= 1 && closing.MatchesFirst(code) && closing.MatchesRest(p)) {
      --depth;
    }
    if (before >= 1 && depth == 0) return start;
  }
  return nullptr;
}

template <class Unit>
bool EndsWithText(const Unit* text, int32_t length, const Unit* suffix, bool ignoreCase) noexcept {
  if (suffix == nullptr) return false;
  const int64_t suffixLength = static_cast<int64_t>(TextLength(suffix));
  if (suffixLength == 0 || length < suffixLength) return false;
  if (!ignoreCase)
    return std::memcmp(text + length - suffixLength, suffix,
                       static_cast<size_t>(suffixLength) * sizeof(Unit)) == 0;
  const Unit* t = text + length;
  const Unit* s = suffix + suffixLength;
  while (s > suffix) {
    if (t == text) return false;
    if constexpr (sizeof(Unit) == 1) {
      if (ToLowerCodePoint(Previous(text, t)) != ToLowerCodePoint(Previous(suffix, s)))
        return false;
    } else {
      const char16_t a = *--t;
      const char16_t b = *--s;
      if (a != b && platform::towlower(a) != platform::towlower(b)) return false;
    }
  }
  return true;
}

#define IC_INSTANTIATE_SEARCH(Unit)                                                               \
  template int32_t IndexOf<Unit>(const Unit*, const Unit*, bool) noexcept;                        \
  template bool InSet<Unit>(const Unit*, uint32_t) noexcept;                                      \
  template const Unit* FindText<Unit>(const Unit*, int32_t, int32_t, const Unit*) noexcept;       \
  template const Unit* FindCode<Unit>(const Unit*, int32_t, int32_t, uint32_t) noexcept;          \
  template const Unit* FindTextNoCase<Unit>(const Unit*, int32_t, int32_t, const Unit*) noexcept; \
  template const Unit* FindLastText<Unit>(const Unit*, int32_t, int32_t, int32_t,                 \
                                          const Unit*) noexcept;                                  \
  template const Unit* FindLastCode<Unit>(const Unit*, int32_t, uint32_t) noexcept;               \
  template const Unit* FindFirstInSet<Unit>(const Unit*, int32_t, int32_t, const Unit*,           \
                                            bool) noexcept;                                       \
  template const Unit* FindLastInSet<Unit>(const Unit*, int32_t, const Unit*, bool) noexcept;     \
  template int32_t FindWordOffset<Unit>(const Unit*, int32_t, const Unit*, const Unit*, int32_t,  \
                                        bool, bool) noexcept;                                     \
  template const Unit* FindBalancedIn<Unit>(const Unit*, int32_t, int32_t, const Unit*,           \
                                            const Unit*, uint32_t, bool, int32_t);                \
  template bool EndsWithText<Unit>(const Unit*, int32_t, const Unit*, bool) noexcept;

IC_INSTANTIATE_SEARCH(char)
IC_INSTANTIATE_SEARCH(char16_t)

}  // namespace ic::internal
