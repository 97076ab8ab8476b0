// Stepping over UTF-8 for the text operations, bounded by the terminator.
//
// The size of a sequence comes from its lead byte alone (GetUTF8SequenceSize), and continuation
// bytes are not checked. The one difference from the unbounded stepping of the string core is
// at a zero byte: a sequence that the terminator cuts short ends there, so that no walk in this
// subsystem ever reads behind the terminator of the text it was given.
#pragma once

#include <cstdint>

#include <ic/string/utf8.h>

namespace ic::textdetail {

/// Decodes the sequence at `p` and moves `p` behind it. A sequence cut short by a zero byte
/// takes the bytes before the zero, leaves `p` at the zero and clears `whole`.
inline uint32_t DecodeCodePoint(const char*& p, bool& whole) noexcept {
  const unsigned char* u = reinterpret_cast<const unsigned char*>(p);
  const unsigned lead = u[0];
  whole = true;
  if (lead < 0x80) {
    p += 1;
    return lead;
  }
  const int n = GetUTF8SequenceSize(static_cast<unsigned char>(lead)) - 1;
  uint32_t value = lead & (63u >> n);
  int i = 1;
  for (; i <= n; ++i) {
    if (u[i] == 0) {
      whole = false;
      break;
    }
    value = (value << 6) | (u[i] & 63u);
  }
  p += i;
  return value;
}

inline uint32_t DecodeCodePoint(const char*& p) noexcept {
  bool whole;
  return DecodeCodePoint(p, whole);
}

/// Number of bytes of the sequence at `p`, stopping at a zero byte.
inline int StepSize(const char* p) noexcept {
  const unsigned char* u = reinterpret_cast<const unsigned char*>(p);
  if (u[0] < 0x80) return 1;
  const int n = GetUTF8SequenceSize(u[0]);
  for (int i = 1; i < n; ++i)
    if (u[i] == 0) return i;
  return n;
}

inline bool IsContinuation(char c) noexcept {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// The start of the code point that ends at `end`, stepping back over continuation bytes but not
/// before `begin`.
inline const char* StepBack(const char* begin, const char* end) noexcept {
  const char* p = end - 1;
  while (p > begin && IsContinuation(*p))
    --p;
  return p;
}

/// Decodes the code point that ends at `end` (which is above `begin`) and moves `end` to its
/// start.
inline uint32_t DecodeBackward(const char* begin, const char*& end) noexcept {
  const char* start = StepBack(begin, end);
  const char* p = start;
  const uint32_t code = DecodeCodePoint(p);
  end = start;
  return code;
}

}  // namespace ic::textdetail
