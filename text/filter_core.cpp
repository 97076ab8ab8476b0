#include <ic/text/internal/filter_core.h>

#include <stdexcept>
#include <type_traits>

#include <ic/platform/internal/unit_scan.h>
#include <ic/string/utf8.h>
#include <ic/string/internal/positions.h>

namespace ic::internal {
namespace {

template <class Unit>
constexpr bool IsNarrow = sizeof(Unit) == 1;

// The writer behind the reader of a lazy rewrite. Until the first difference it only compares;
// then it takes the writable block from the owner, and `source` (where the reader reads) moves
// to it, at the same offsets.
template <class Unit>
class LazyWriter {
 public:
  LazyWriter(const Unit* text, int32_t length, const LazyBlock<Unit>& block)
      : source(text), _length(length), _block(block) {}

  const Unit* source;
  int32_t written = 0;

  void Put(Unit unit) {
    if (_buffer == nullptr) {
      if (written < _length && source[written] == unit) {
        ++written;
        return;
      }
      Take();
    }
    _buffer[written++] = unit;
  }
  void Put(const Unit* units, int32_t count) {
    for (int32_t i = 0; i < count; ++i)
      Put(units[i]);
  }
  // A code re-encoded: UTF-8 in narrow text (nothing for a value UTF-8 cannot hold), one unit
  // in wide text.
  void PutCode(uint32_t code) {
    if constexpr (IsNarrow<Unit>) {
      if (code < 0x80) return Put(static_cast<Unit>(code));
      char encoded[4];
      char* end = encoded;
      if (EncodeCodePoint(end, code)) Put(encoded, static_cast<int32_t>(end - encoded));
    } else {
      Put(static_cast<Unit>(code));
    }
  }
  // The new length, or -1 if the text stayed as it was.
  int32_t Finish() {
    if (_buffer == nullptr) {
      if (written == _length) return -1;
      Take();
    }
    return written;
  }

 private:
  void Take() {
    _buffer = _block.prepare(_block.owner);
    source = _buffer;
  }
  int32_t _length;
  const LazyBlock<Unit>& _block;
  Unit* _buffer = nullptr;
};

// Reads the code at offset r of `text` (bounded by a zero byte and by `length`) and moves r.
template <class Unit>
inline uint32_t ReadAt(const Unit* text, int32_t length, int32_t& r) noexcept {
  if constexpr (IsNarrow<Unit>) {
    const char* p = text + r;
    const uint32_t code = static_cast<unsigned char>(*p) < 0x80 ? static_cast<unsigned char>(*p++)
                                                                : internal::DecodeCodePoint(p);
    r = static_cast<int32_t>(p - text);
    if (r > length) r = length;
    return code;
  } else {
    return text[r++];
  }
}

template <class Unit>
bool SameText(const Unit* a, const Unit* b) noexcept {
  for (; *a != 0 && *a == *b; ++a, ++b) {
  }
  return *a == *b;
}

}  // namespace

template <class Unit>
CodeLookup<Unit>::CodeLookup(const Unit* set) : _needle(set, false) {
  for (const auto* c = _needle.Codes(); *c != 0; ++c)
    if (*c < 128) _ascii[*c >> 6] |= uint64_t{1} << (*c & 63);
}

template <class Unit>
RangeSpec<Unit>::RangeSpec(const Unit* spec) {
  const SearchNeedle<Unit> codes(spec, false, true);
  const auto* c = codes.Codes();
  for (size_t i = 0; c[i] != 0;) {
    if (c[i + 1] == '.' && c[i + 2] == '.' && c[i + 3] != 0) {
      if (_ranges.size() / 2 >= 0xFFFFFFF) throw std::length_error("list too long");
      _ranges.push_back(c[i]);
      _ranges.push_back(c[i + 3]);
      i += 4;
    } else {
      _singles.push_back(c[i]);
      i += 1;
    }
  }
}

template <class Unit>
bool RangeSpec<Unit>::Contains(uint32_t code) const noexcept {
  for (size_t i = 0; i < _ranges.size(); i += 2)
    if (code >= _ranges[i] && code <= _ranges[i + 1]) return true;
  for (uint32_t single : _singles)
    if (single == code) return true;
  return false;
}

template <class Unit>
int32_t SqueezeText(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                    const CodeLookup<Unit>& keepSet, Unit replacement,
                    const CodeLookup<Unit>& collapseSet, bool trimRuns) {
  // The ASCII units that no step changes are passed over first without writing or comparing:
  // characters outside the collapse set, and single replacements inside the text.
  const auto collapses = [&](uint32_t u) {
    return collapseSet.Contains(u) && !keepSet.Contains(u);
  };
  int32_t r = 0;
  // A scan for the first unit that the loop below would stop at: a non-ASCII unit, or a unit
  // of a run to collapse other than a lone replacement. When SqueezeTrim may remove the first
  // unit, the loop looks at it itself.
  platform::internal::UnitStopSet stops;
  stops.high = true;
  for (uint32_t u = 0; u < 128; ++u)
    if (collapses(u)) stops.Add(u);
  const uint32_t replacementUnit = static_cast<std::make_unsigned_t<Unit>>(replacement);
  if (!(trimRuns && length > 0 && stops.Holds(static_cast<std::make_unsigned_t<Unit>>(text[0]))))
    r = static_cast<int32_t>(platform::internal::FindFirstRunInSet(
        text, static_cast<size_t>(length), stops, replacementUnit));
  while (r < length) {
    const uint32_t u = static_cast<std::make_unsigned_t<Unit>>(text[r]);
    if (u >= 0x80) break;
    if (collapses(u)) {
      if (u != static_cast<std::make_unsigned_t<Unit>>(replacement) || (trimRuns && r == 0) ||
          r + 1 >= length)
        break;
      const uint32_t next = static_cast<std::make_unsigned_t<Unit>>(text[r + 1]);
      if (next >= 0x80 || collapses(next)) break;
    }
    ++r;
  }
  LazyWriter<Unit> out(text, length, block);
  out.written = r;
  while (r < length) {
    const Unit unit = out.source[r];
    if (static_cast<std::make_unsigned_t<Unit>>(unit) < 0x80 &&
        !collapseSet.Contains(static_cast<std::make_unsigned_t<Unit>>(unit))) {
      out.Put(unit);
      ++r;
      continue;
    }
    const int32_t start = r;
    const uint32_t code = ReadAt(out.source, length, r);
    if (keepSet.Contains(code) || !collapseSet.Contains(code)) {
      out.PutCode(code);
      continue;
    }
    while (r < length) {
      int32_t next = r;
      const uint32_t c = ReadAt(out.source, length, next);
      if (keepSet.Contains(c) || !collapseSet.Contains(c)) break;
      r = next;
    }
    if (!trimRuns || (start != 0 && r < length)) out.Put(replacement);
  }
  return out.Finish();
}

template <class Unit>
int32_t KeepCodes(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                  const CodeLookup<Unit>& set, bool invert) {
  LazyWriter<Unit> out(text, length, block);
  for (int32_t r = 0; r < length;) {
    const uint32_t code = ReadAt(out.source, length, r);
    if (set.Contains(code) != invert) out.PutCode(code);
  }
  return out.Finish();
}

template <class Unit>
int32_t KeepInSpec(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                   const RangeSpec<Unit>& spec) {
  LazyWriter<Unit> out(text, length, block);
  for (int32_t r = 0; r < length;) {
    const uint32_t code = ReadAt(out.source, length, r);
    if (spec.Contains(code)) out.PutCode(code);
  }
  return out.Finish();
}

template <class Unit>
int32_t RemoveBalancedText(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                           const Unit* open, const Unit* close, uint32_t escape, bool flat) {
  const SearchNeedle<Unit> opening(open, false);
  const SearchNeedle<Unit> closing(close, false);
  if (opening.IsEmpty() || closing.IsEmpty()) return -1;
  const bool same = SameText(open, close);
  LazyWriter<Unit> out(text, length, block);
  int32_t depth = 0;
  for (int32_t r = 0; r < length;) {
    const uint32_t code = ReadAt(out.source, length, r);
    if (escape != 0 && code == escape) {
      if (r >= length) break;  // an escape at the very end ends the walk
      const uint32_t escaped = ReadAt(out.source, length, r);
      if (depth == 0) {
        out.PutCode(code);
        out.PutCode(escaped);
      }
      continue;
    }
    const Unit* p = out.source + r;
    if (opening.MatchesFirst(code) && opening.MatchesRest(p)) {
      r = static_cast<int32_t>(p - out.source);
      if (same)
        depth = depth == 0 ? 1 : 0;
      else if (!flat || depth == 0)
        ++depth;
      continue;
    }
    if (depth == 0) {
      out.PutCode(code);
    } else if (closing.MatchesFirst(code) && closing.MatchesRest(p)) {
      r = static_cast<int32_t>(p - out.source);
      --depth;
    }
  }
  return out.Finish();
}

namespace {

// The place of `code` in the needle's codes (the first entry that matches), or -1.
template <class Unit>
int32_t PlaceIn(const SearchNeedle<Unit>& needle, uint32_t code) noexcept {
  if (needle.IsSingleCode()) return needle.Codes()[0] == code && code != 0 ? 0 : -1;
  for (int32_t i = 0; needle.Codes()[i] != 0; ++i)
    if (needle.Codes()[i] == code) return i;
  return -1;
}

}  // namespace

template <class Unit>
int32_t FirstCodeIn(const Unit* text, int32_t length, const SearchNeedle<Unit>& from) noexcept {
  for (int32_t r = 0; r < length;) {
    const int32_t start = r;
    if (PlaceIn(from, ReadAt(text, length, r)) >= 0) return start;
  }
  return -1;
}

bool TranslationGrows(const SearchNeedle<char>& from, const SearchNeedle<char>& to) noexcept {
  for (int32_t i = 0; from.Codes()[i] != 0 && to.Codes()[i] != 0; ++i)
    if (GetUTF8CodePointSize(to.Codes()[i]) > GetUTF8CodePointSize(from.Codes()[i])) return true;
  return false;
}

template <class Unit>
int32_t TranslateInto(const Unit* source, int32_t length, int32_t start, Unit* out,
                      const SearchNeedle<Unit>& from, const SearchNeedle<Unit>& to) noexcept {
  int32_t toLength = 0;
  while (to.Codes()[toLength] != 0)
    ++toLength;
  Unit* w = out + start;
  for (int32_t r = start; r < length;) {
    uint32_t code = ReadAt(source, length, r);
    const int32_t place = PlaceIn(from, code);
    if (place >= 0) {
      if (place >= toLength) continue;  // to has ended: the character is deleted
      code = to.Codes()[place];
    }
    if constexpr (IsNarrow<Unit>) {
      EncodeCodePoint(w, code);
    } else {
      *w++ = static_cast<Unit>(code);
    }
  }
  return static_cast<int32_t>(w - out);
}

template <class Unit>
int32_t CountDoubleSpaces(const Unit* text, int32_t length) noexcept {
  int32_t count = 0;
  for (int32_t i = 0; i + 1 < length; ++i)
    count += text[i] == Unit(' ') && text[i + 1] == Unit(' ');
  return count;
}

template <class Unit>
int32_t ExpandDoubleSpacesInto(Unit* out, const Unit* text, int32_t length, const Unit* insert,
                               int32_t insertLength) noexcept {
  Unit* w = out;
  for (int32_t i = 0; i < length; ++i) {
    if (text[i] == Unit(' ') && i + 1 < length && text[i + 1] == Unit(' ')) {
      for (int32_t k = 0; k < insertLength; ++k)
        *w++ = insert[k];
    } else {
      *w++ = text[i];
    }
  }
  return static_cast<int32_t>(w - out);
}

template <class Unit>
void ReverseUnits(Unit* text, int32_t first, int32_t last) noexcept {
  for (int32_t a = first, b = last - 1; a < b; ++a, --b) {
    const Unit t = text[a];
    text[a] = text[b];
    text[b] = t;
  }
  if constexpr (IsNarrow<Unit>) {
    // Each multi-byte sequence now stands backwards, continuation bytes first: turn each group
    // up to and including its lead byte round again.
    for (int32_t i = first; i < last; ++i) {
      if (!internal::IsContinuation(text[i])) continue;
      int32_t j = i;
      while (j + 1 < last && internal::IsContinuation(text[j]))
        ++j;
      for (int32_t a = i, b = j; a < b; ++a, --b) {
        const Unit t = text[a];
        text[a] = text[b];
        text[b] = t;
      }
      i = j;
    }
  }
}

template <class Unit>
int32_t CountCodeIn(const Unit* text, int32_t length, int32_t offset, uint32_t code) noexcept {
  if (code == 0) return 0;
  int32_t count = 0;
  if (!IsNarrow<Unit> || code < 0x80) {
    for (int32_t i = offset; i < length; ++i)
      count += static_cast<uint32_t>(static_cast<std::make_unsigned_t<Unit>>(text[i])) == code;
    return count;
  }
  for (int32_t r = offset; r < length;)
    count += ReadAt(text, length, r) == code;
  return count;
}

#define IC_INSTANTIATE_FILTER_CORE(Unit)                                                         \
  template class CodeLookup<Unit>;                                                               \
  template class RangeSpec<Unit>;                                                                \
  template IC_API int32_t SqueezeText(const Unit*, int32_t, const LazyBlock<Unit>&,              \
                                      const CodeLookup<Unit>&, Unit, const CodeLookup<Unit>&,    \
                                      bool);                                                     \
  template IC_API int32_t KeepCodes(const Unit*, int32_t, const LazyBlock<Unit>&,                \
                                    const CodeLookup<Unit>&, bool);                              \
  template IC_API int32_t KeepInSpec(const Unit*, int32_t, const LazyBlock<Unit>&,               \
                                     const RangeSpec<Unit>&);                                    \
  template IC_API int32_t RemoveBalancedText(const Unit*, int32_t, const LazyBlock<Unit>&,       \
                                             const Unit*, const Unit*, uint32_t, bool);          \
  template IC_API int32_t FirstCodeIn(const Unit*, int32_t, const SearchNeedle<Unit>&) noexcept; \
  template IC_API int32_t TranslateInto(const Unit*, int32_t, int32_t, Unit*,                    \
                                        const SearchNeedle<Unit>&,                               \
                                        const SearchNeedle<Unit>&) noexcept;                     \
  template IC_API int32_t CountDoubleSpaces(const Unit*, int32_t) noexcept;                      \
  template IC_API int32_t ExpandDoubleSpacesInto(Unit*, const Unit*, int32_t, const Unit*,       \
                                                 int32_t) noexcept;                              \
  template IC_API void ReverseUnits(Unit*, int32_t, int32_t) noexcept;                           \
  template IC_API int32_t CountCodeIn(const Unit*, int32_t, int32_t, uint32_t) noexcept;

IC_INSTANTIATE_FILTER_CORE(char)
IC_INSTANTIATE_FILTER_CORE(char16_t)

}  // namespace ic::internal
