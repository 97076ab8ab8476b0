// The passes behind MapCodePoints and the narrow MakeLower / MakeUpper: find the first change,
// measure, and write in place or through a temporary. Templates over the mapper, so that each
// caller gets a loop with its mapping inlined. Internal to the text subsystem.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

#include <ic/string/internal/positions.h>
#include <ic/string/utf8.h>

namespace ic::internal {

/// True if a mapped value is written by the UTF-8 encoder; surrogates and values above U+10FFFF
/// are dropped.
inline bool IsEncodable(uint32_t code) noexcept {
  return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

/// The first code point from `p` on whose mapping would change the text: a different value, or a
/// value that is dropped. With `sameSize`, only changes that keep the byte length count (the
/// fast in-place mode). Null if there is none.
template <class Map>
const char* FindFirstChange(const char* p, Map map, bool sameSize) noexcept {
  while (*p != 0) {
    const unsigned char lead = static_cast<unsigned char>(*p);
    if (lead < 0x80) {
      const uint32_t mapped = map(lead);
      if (mapped != lead && (!sameSize || mapped < 0x80)) return p;
      ++p;
      continue;
    }
    const char* start = p;
    bool whole;
    const uint32_t code = DecodeCodePoint(p, whole);
    if (!whole) continue;  // a cut-short sequence stays as it is
    const uint32_t mapped = map(code);
    if (mapped == code) {
      if (!sameSize && !IsEncodable(code)) return start;  // the full mode drops it
      continue;
    }
    if (!sameSize) return start;
    if (IsEncodable(mapped) && GetUTF8CodePointSize(mapped) == p - start) return start;
  }
  return nullptr;
}

struct MapMeasure {
  int64_t total = 0;   // bytes of the result, without the terminator
  bool grows = false;  // some code point needs more bytes than it had
};

template <class Map>
MapMeasure MeasureMapped(const char* p, Map map) noexcept {
  MapMeasure m;
  while (*p != 0) {
    if (static_cast<unsigned char>(*p) < 0x80) {
      const int size = GetUTF8CodePointSize(map(static_cast<unsigned char>(*p++)));
      m.total += size;
      if (size > 1) m.grows = true;
      continue;
    }
    const char* start = p;
    bool whole;
    const uint32_t code = DecodeCodePoint(p, whole);
    const int64_t had = p - start;
    if (!whole) {
      m.total += had;
      continue;
    }
    const int size = GetUTF8CodePointSize(map(code));
    m.total += size;
    if (size > had) m.grows = true;
  }
  return m;
}

/// Writes the mapped text read from `in` at `out` and terminates it; returns the end. `out` may
/// equal `in` when no code point grows: the writer then never passes the reader.
template <class Map>
char* WriteMapped(const char* in, char* out, Map map) noexcept {
  for (;;) {
    const unsigned char lead = static_cast<unsigned char>(*in);
    if (lead == 0) break;
    if (lead < 0x80) {
      ++in;
      const uint32_t mapped = map(lead);
      if (mapped < 0x80)
        *out++ = static_cast<char>(mapped);
      else
        EncodeCodePoint(out, mapped);  // only an unusual mapper leaves ASCII
      continue;
    }
    const char* start = in;
    bool whole;
    const uint32_t code = DecodeCodePoint(in, whole);
    if (!whole) {
      while (start != in)
        *out++ = *start++;
      continue;
    }
    EncodeCodePoint(out, map(code));  // a value that cannot be encoded writes nothing
  }
  *out = 0;
  return out;
}

/// Writes the mapped form of the text at `text` over it, through a temporary of total + 1 bytes
/// when a code point grows (the buffer must hold total + 1 bytes); returns the end.
template <class Map>
char* RewriteMapped(char* text, const MapMeasure& m, Map map) {
  if (!m.grows) return WriteMapped(text, text, map);
  const std::unique_ptr<char[]> temporary(new char[static_cast<size_t>(m.total) + 1]);
  const char* end = WriteMapped(text, temporary.get(), map);
  const size_t written = static_cast<size_t>(end - temporary.get());
  std::memcpy(text, temporary.get(), written + 1);
  return text + written;
}

/// Maps the text from `p` on in place as WriteMapped would write it, for as long as each code
/// point's mapping keeps its byte length: returns the first code point whose mapping has another
/// length or is dropped, or the first zero byte. From the returned point on the text is as it
/// was, so that MeasureMapped and RewriteMapped can take it from there. An ASCII unit that
/// starts 16 ASCII units starts a run that goes to `asciiRun(q, n)`, which must map the leading
/// nonzero ASCII units of the `n` at `q` in place as `map` does and return how many it took;
/// `end` is the terminator.
template <class Map, class AsciiRun>
char* MapWhileSameSize(char* p, const char* end, Map map, AsciiRun asciiRun) noexcept {
  for (;;) {
    const unsigned char lead = static_cast<unsigned char>(*p);
    if (lead < 0x80) {
      if (lead == 0) return p;
      if (end - p >= 16) {
        uint64_t halves[2];
        std::memcpy(halves, p, 16);
        if (((halves[0] | halves[1]) & 0x8080808080808080u) == 0) {
          p += asciiRun(p, static_cast<size_t>(end - p));
          continue;
        }
      }
      const uint32_t mapped = map(lead);
      if (mapped >= 0x80) return p;
      *p++ = static_cast<char>(mapped);
      continue;
    }
    const unsigned char next = static_cast<unsigned char>(p[1]);
    if (lead >= 0xC2 && lead < 0xE0 && (next & 0xC0) == 0x80) {
      // Two bytes that map to two bytes, written at once.
      const uint32_t mapped = map(((lead & 0x1Fu) << 6) | (next & 0x3Fu));
      if (mapped - 0x80 < 0x780u) {
        p[0] = static_cast<char>(0xC0 | (mapped >> 6));
        p[1] = static_cast<char>(0x80 | (mapped & 0x3F));
        p += 2;
        continue;
      }
    }
    const char* cursor = p;
    bool whole;
    const uint32_t code = DecodeCodePoint(cursor, whole);
    const auto size = cursor - p;
    if (whole) {
      // Written again even when unchanged, as WriteMapped does.
      const uint32_t mapped = map(code);
      if (!IsEncodable(mapped) || GetUTF8CodePointSize(mapped) != size) return p;
      char* out = p;
      EncodeCodePoint(out, mapped);
    }
    p += size;
  }
}

/// Maps in place only what keeps its byte length.
template <class Map>
void MapSameSize(char* p, Map map) noexcept {
  while (*p != 0) {
    const unsigned char lead = static_cast<unsigned char>(*p);
    if (lead < 0x80) {
      const uint32_t mapped = map(lead);
      if (mapped < 0x80) *p = static_cast<char>(mapped);
      ++p;
      continue;
    }
    char* start = p;
    const char* cursor = p;
    bool whole;
    const uint32_t code = DecodeCodePoint(cursor, whole);
    p += cursor - start;
    if (!whole) continue;
    const uint32_t mapped = map(code);
    if (mapped != code && IsEncodable(mapped) && GetUTF8CodePointSize(mapped) == p - start)
      EncodeCodePoint(start, mapped);
  }
}

}  // namespace ic::internal
