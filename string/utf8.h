// UTF-8 stepping and encoding over plain zero-terminated narrow text.
//
// These routines do not validate: a lead byte gives the size of its sequence by a fixed
// formula, and continuation bytes are taken as they come.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic {

/// Number of bytes of the sequence that starts with `lead`: 1 below 0x80; else by the formula
/// (((~v) >> 1) | v) >> 4 & 3, plus 1, with v the byte sign-extended: 0x80-0x9f give 4,
/// 0xa0-0xaf 3, 0xb0-0xbf 4, 0xc0-0xdf 2, 0xe0-0xef 3, 0xf0-0xff 4.
inline int GetUTF8SequenceSize(unsigned char lead) noexcept {
  if (lead < 0x80) return 1;
  const uint32_t v = static_cast<uint32_t>(static_cast<int32_t>(static_cast<int8_t>(lead)));
  return static_cast<int>(((((~v) >> 1) | v) >> 4) & 3) + 1;
}

/// Bytes that a code point takes: 1 below 0x80, 2 below 0x800, 3 below 0x10000, else 4.
/// Surrogates give 3; values above U+10FFFF are not tested.
inline int GetUTF8CodePointSize(uint32_t codePoint) noexcept {
  return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

/// Number of sequences before the terminator, each stepped over by GetUTF8SequenceSize of its
/// lead byte. A truncated sequence at the end can step over the terminator: the count goes on
/// behind it.
IC_API uint32_t CountCodePoints(const char* text) noexcept;

/// Byte offset of the sequence with index `count`, or of the terminator if the text has fewer
/// sequences. Stops at a zero lead byte only: a truncated sequence can step over the terminator.
IC_API int32_t GetUTF8Offset(const char* text, uint32_t count) noexcept;

/// Writes `codePoint` at the cursor, advances it and returns true; returns false and writes
/// nothing for a surrogate (0xd800-0xdfff) or a value above 0x10ffff.
IC_API bool EncodeCodePoint(char*& cursor, uint32_t codePoint) noexcept;

/// Decodes the sequence at the cursor and moves the cursor behind it. The size comes from the
/// lead byte alone (GetUTF8SequenceSize); the value starts as lead AND (63 >> (size - 1)) and
/// takes 6 bits of each following byte, whatever that byte is, a terminator included. Overlong
/// forms, surrogates and values above U+10FFFF pass undetected.
inline uint32_t DecodeUTF8Sequence(const char*& cursor) noexcept {
  const unsigned char* p = reinterpret_cast<const unsigned char*>(cursor);
  const unsigned lead = *p;
  if (lead < 0x80) {
    cursor += 1;
    return lead;
  }
  const int n = GetUTF8SequenceSize(static_cast<unsigned char>(lead)) - 1;
  uint32_t value = lead & (63u >> n);
  for (int i = 1; i <= n; ++i)
    value = (value << 6) | (p[i] & 63u);
  cursor += n + 1;
  return value;
}

/// The first sequence of the zero-terminated `text` that decodes to `codePoint`, or null. A value
/// below 0x80 is a plain byte search (0 finds the terminator); others walk the sequences as
/// DecodeUTF8Sequence reads them.
IC_API const char* FindCodePoint(const char* text, uint32_t codePoint) noexcept;

}  // namespace ic
