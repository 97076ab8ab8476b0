#include <ic/text/internal/trim_core.h>

#include <ic/string/utf8.h>
#include <ic/text/utf8_walk.h>

namespace ic::internal {
namespace {

template <class Unit>
constexpr bool IsNarrow = sizeof(Unit) == 1;

template <class Unit>
inline bool IsDefaultBlank(Unit unit) noexcept {
  return unit == Unit(' ') || unit == Unit('\t') || unit == Unit('\r') || unit == Unit('\n');
}

// Reads the character at p (a code point in narrow text, cut at a zero byte and at `end`) and
// moves p behind it.
template <class Unit>
inline uint32_t ReadCode(const Unit*& p, const Unit* end) noexcept {
  if constexpr (IsNarrow<Unit>) {
    const uint32_t code = textdetail::DecodeCodePoint(p);
    if (p > end) p = end;
    return code;
  } else {
    return *p++;
  }
}

template <class Unit>
bool Contains(const TrimSet<Unit>& set, uint32_t code) noexcept {
  if (code == 0) return false;
  if (set.kind == TrimSet<Unit>::One) return code == set.one;
  if constexpr (IsNarrow<Unit>) {
    return FindCodePoint(set.set, code) != nullptr;
  } else {
    for (const Unit* s = set.set; *s != 0; ++s)
      if (*s == code) return true;
    return false;
  }
}

template <class Unit>
bool InNeedle(const SearchNeedle<Unit>& needle, uint32_t code) noexcept {
  for (const auto* c = needle.codes; *c != 0; ++c)
    if (*c == code) return true;
  return false;
}

template <class Unit>
void CopyUnitsTo(Unit*& out, const Unit* from, int32_t count) noexcept {
  for (int32_t i = 0; i < count; ++i)
    *out++ = from[i];
}

}  // namespace

template <class Unit>
const Unit* SkipInSet(const Unit* begin, const Unit* end, const TrimSet<Unit>& set) noexcept {
  const Unit* p = begin;
  if (set.kind == TrimSet<Unit>::Blanks) {
    while (p < end && IsDefaultBlank(*p))
      ++p;
    return p;
  }
  if (set.IsEmpty()) return begin;
  while (p < end) {
    const Unit* next = p;
    if (!Contains(set, ReadCode(next, end))) break;
    p = next;
  }
  return p;
}

template <class Unit>
const Unit* TrimEndInSet(const Unit* begin, const Unit* end, const TrimSet<Unit>& set) noexcept {
  if (set.kind == TrimSet<Unit>::Blanks) {
    while (end > begin && IsDefaultBlank(end[-1]))
      --end;
    return end;
  }
  if (set.IsEmpty()) return end;
  while (end > begin) {
    if constexpr (IsNarrow<Unit>) {
      const char* start = end;
      const uint32_t code = textdetail::DecodeBackward(begin, start);
      if (!Contains(set, code)) break;
      end = start;
    } else {
      if (!Contains(set, end[-1])) break;
      --end;
    }
  }
  return end;
}

template <class Unit>
bool IsBlankText(const Unit* text, bool noBreak) noexcept {
  if (text == nullptr) return true;
  for (; *text != 0; ++text) {
    if (IsDefaultBlank(*text)) continue;
    if (noBreak && static_cast<uint32_t>(static_cast<std::make_unsigned_t<Unit>>(*text)) == 0xA0)
      continue;
    return false;
  }
  return true;
}

template <class Unit>
void FillRepeated(Unit* out, int32_t count, const Unit* code, int32_t size) noexcept {
  if (size == 1) {
    for (int32_t i = 0; i < count; ++i)
      out[i] = code[0];
    return;
  }
  for (int32_t i = 0; i < count; ++i)
    CopyUnitsTo(out, code, size);
}

template <class Unit>
bool NextToken(const TokenSource<Unit>& source, int32_t& position, const TokenRules<Unit>& rules,
               const Unit*& begin, int32_t& length) noexcept {
  if (position < 0 || position >= source.limit) return false;
  if (rules.atEnd != nullptr) *rules.atEnd = false;
  int32_t skip = rules.skipCount < 0 ? 0 : rules.skipCount;
  const Unit* const text = source.text;
  const Unit* const end = text + source.end;
  const Unit* start = text + position;
  const Unit* p = start;
  const SearchNeedle<Unit>& delimiter = *rules.delimiter;
  const bool quoted = rules.quotes != nullptr && !rules.quotes->IsEmpty();
  while (p < end) {
    const Unit* const here = p;
    const uint32_t code = ReadCode(p, end);
    if (quoted && InNeedle(*rules.quotes, code)) {
      // A quoted stretch runs to the next same quote, which it includes, or to the end.
      while (p < end && ReadCode(p, end) != code) {
      }
      continue;
    }
    bool hit;
    if (rules.wholeText)
      hit = !delimiter.IsEmpty() && delimiter.MatchesFirst(code) && delimiter.MatchesRest(p);
    else
      hit = InNeedle(delimiter, code);
    if (!hit) continue;
    if (p > end) p = end;
    const int32_t tokenLength = static_cast<int32_t>(here - start);
    if (rules.mergeDelimiters && tokenLength == 0) {
      start = p;  // merged: this delimiter counts for nothing
      continue;
    }
    if (skip > 0) {
      --skip;
      start = p;
      continue;
    }
    begin = start;
    length = tokenLength;
    position = static_cast<int32_t>(p - text);
    return true;
  }
  if (rules.atEnd != nullptr) *rules.atEnd = true;
  if (start > end) start = end;
  position = source.end;
  begin = start;
  length = static_cast<int32_t>(end - start);
  return true;
}

template <class Unit>
void FirstLinesOf(GrowableText<Unit>& out, const Unit* text, const Unit* end, int32_t maxLines,
                  bool skipEmptyLines, bool trimLines, const Unit* moreMarker) {
  out.growthExtra = 64;
  const Unit* cursor = text;
  const Unit* pending = nullptr;  // the line end that goes ahead of the next line taken
  int32_t pendingLength = 0;
  int32_t taken = 0;
  for (;;) {
    const Unit* const lineStart = cursor;
    const Unit* lineEnd = lineStart;
    while (lineEnd < end && *lineEnd != Unit('\r') && *lineEnd != Unit('\n'))
      ++lineEnd;
    int32_t endLength = 0;
    if (lineEnd < end)
      endLength = (*lineEnd == Unit('\r') && lineEnd + 1 < end && lineEnd[1] == Unit('\n')) ? 2 : 1;
    cursor = lineEnd + endLength;
    const Unit* first = lineStart;
    const Unit* last = lineEnd;
    if (trimLines) {
      const TrimSet<Unit> blanks = TrimSet<Unit>::DefaultBlanks();
      first = SkipInSet(first, last, blanks);
      last = TrimEndInSet(first, last, blanks);
    }
    if (skipEmptyLines && first == last) {
      if (cursor >= end) break;
      continue;
    }
    if (taken >= maxLines) {
      cursor = lineStart;
      break;
    }
    if (pending != nullptr) {
      out.Put(pending, pendingLength);
      pending = nullptr;
    }
    out.Put(first, static_cast<int32_t>(last - first));
    ++taken;
    if (endLength == 0) break;
    pending = lineEnd;
    pendingLength = endLength;
    if (cursor >= end) break;
  }
  if (moreMarker != nullptr && moreMarker[0] != 0 &&
      SkipInSet(cursor, end, TrimSet<Unit>::DefaultBlanks()) < end) {
    int32_t markerLength = 0;
    while (moreMarker[markerLength] != 0)
      ++markerLength;
    out.Put(moreMarker, markerLength);
  }
}

template <class Unit>
int32_t InsertEveryInto(Unit* out, const Unit* text, const Unit* end, int32_t count,
                        const Unit* insert, int32_t insertLength, bool atEnd) noexcept {
  Unit* o = out;
  int32_t inGroup = 0;
  for (const Unit* p = text; p < end;) {
    int32_t size = 1;
    if constexpr (IsNarrow<Unit>) {
      size = GetUTF8SequenceSize(static_cast<unsigned char>(*p));
      if (size > end - p) size = static_cast<int32_t>(end - p);
    }
    CopyUnitsTo(o, p, size);
    p += size;
    if (++inGroup == count && p < end) {
      CopyUnitsTo(o, insert, insertLength);
      inGroup = 0;
    }
  }
  if (atEnd && inGroup > 0) CopyUnitsTo(o, insert, insertLength);
  return static_cast<int32_t>(o - out);
}

#define IC_INSTANTIATE_TRIM_CORE(Unit)                                                            \
  template IC_API const Unit* SkipInSet(const Unit*, const Unit*, const TrimSet<Unit>&) noexcept; \
  template IC_API const Unit* TrimEndInSet(const Unit*, const Unit*,                              \
                                           const TrimSet<Unit>&) noexcept;                        \
  template IC_API bool IsBlankText(const Unit*, bool) noexcept;                                   \
  template IC_API void FillRepeated(Unit*, int32_t, const Unit*, int32_t) noexcept;               \
  template IC_API bool NextToken(const TokenSource<Unit>&, int32_t&, const TokenRules<Unit>&,     \
                                 const Unit*&, int32_t&) noexcept;                                \
  template IC_API void FirstLinesOf(GrowableText<Unit>&, const Unit*, const Unit*, int32_t, bool, \
                                    bool, const Unit*);                                           \
  template IC_API int32_t InsertEveryInto(Unit*, const Unit*, const Unit*, int32_t, const Unit*,  \
                                          int32_t, bool) noexcept;

IC_INSTANTIATE_TRIM_CORE(char)
IC_INSTANTIATE_TRIM_CORE(char16_t)

}  // namespace ic::internal
