#include <ic/string/utf8.h>

#include <cstring>

namespace ic {

uint32_t CountCodePoints(const char* text) noexcept {
  const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
  uint32_t count = 0;
  for (; *p != 0; ++count)
    p += GetUTF8SequenceSize(*p);
  return count;
}

int32_t GetUTF8Offset(const char* text, uint32_t count) noexcept {
  const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
  const unsigned char* const start = p;
  for (; count != 0 && *p != 0; --count)
    p += GetUTF8SequenceSize(*p);
  return static_cast<int32_t>(p - start);
}

bool EncodeCodePoint(char*& cursor, uint32_t codePoint) noexcept {
  unsigned char* p = reinterpret_cast<unsigned char*>(cursor);
  if (codePoint < 0x80) {
    *p++ = static_cast<unsigned char>(codePoint);
  } else if (codePoint < 0x800) {
    *p++ = static_cast<unsigned char>(0xc0 | (codePoint >> 6));
    *p++ = static_cast<unsigned char>(0x80 | (codePoint & 63));
  } else if (codePoint < 0x10000) {
    if (codePoint >= 0xd800 && codePoint <= 0xdfff) return false;
    *p++ = static_cast<unsigned char>(0xe0 | (codePoint >> 12));
    *p++ = static_cast<unsigned char>(0x80 | ((codePoint >> 6) & 63));
    *p++ = static_cast<unsigned char>(0x80 | (codePoint & 63));
  } else {
    if (codePoint > 0x10ffff) return false;
    *p++ = static_cast<unsigned char>(0xf0 | (codePoint >> 18));
    *p++ = static_cast<unsigned char>(0x80 | ((codePoint >> 12) & 63));
    *p++ = static_cast<unsigned char>(0x80 | ((codePoint >> 6) & 63));
    *p++ = static_cast<unsigned char>(0x80 | (codePoint & 63));
  }
  cursor = reinterpret_cast<char*>(p);
  return true;
}

const char* FindCodePoint(const char* text, uint32_t codePoint) noexcept {
  if (codePoint < 0x80) return std::strchr(text, static_cast<int>(codePoint));
  const char* p = text;
  while (*p != 0) {
    const char* start = p;
    if (DecodeUTF8Sequence(p) == codePoint) return start;
  }
  return nullptr;
}

}  // namespace ic
