#include <ic/text/plain_text.h>

#include <cstring>

#include <ic/platform/wide_runtime.h>
#include <ic/string/internal/positions.h>
#include <ic/text/case_mapping.h>

namespace ic {

using internal::DecodeCodePoint;

namespace {

bool HasNonAscii(const char* set) noexcept {
  for (; *set != 0; ++set)
    if (static_cast<unsigned char>(*set) >= 0x80) return true;
  return false;
}

// True if the code point is in the set; 0 never is.
bool InSet(const char* set, uint32_t code) noexcept {
  if (code == 0) return false;
  if (code < 0x80) return std::strchr(set, static_cast<int>(code)) != nullptr;
  for (const char* p = set; *p != 0;)
    if (DecodeCodePoint(p) == code) return true;
  return false;
}

// Compares up to `count` code points, lower-cased with `noCase`.
int CompareCodePoints(const char* a, const char* b, int32_t count, bool noCase) noexcept {
  if (a == nullptr) a = "";
  if (b == nullptr) b = "";
  for (int32_t i = 0; i < count; ++i) {
    uint32_t ca = DecodeCodePoint(a);
    uint32_t cb = DecodeCodePoint(b);
    if (noCase) {
      ca = ToLowerCodePoint(ca);
      cb = ToLowerCodePoint(cb);
    }
    if (ca != cb) return ca < cb ? -1 : 1;
    if (ca == 0) return 0;
  }
  return 0;
}

}  // namespace

const char* FindLastCodePoint(const char* text, uint32_t code) noexcept {
  if (text == nullptr) return nullptr;
  if (code < 0x80) return std::strrchr(text, static_cast<int>(code));
  const char* end = text + std::strlen(text);
  while (end > text) {
    const uint32_t found = internal::DecodeBackward(text, end);
    if (found == code) return end;
  }
  return nullptr;
}

int32_t CodePointsBetween(const char* begin, const char* end) noexcept {
  int32_t count = 0;
  for (const char* p = begin; p < end; ++count)
    p += GetUTF8SequenceSize(static_cast<unsigned char>(*p));
  return count;
}

int32_t SpanOf(const char* text, const char* set) noexcept {
  if (text == nullptr || set == nullptr) return 0;
  int32_t count = 0;
  while (*text != 0 && InSet(set, DecodeCodePoint(text)))
    ++count;
  return count;
}

int32_t SpanNotOf(const char* text, const char* set) noexcept {
  if (text == nullptr) return 0;
  if (set == nullptr) set = "";
  int32_t count = 0;
  while (*text != 0 && !InSet(set, DecodeCodePoint(text)))
    ++count;
  return count;
}

size_t AsciiSpanOf(const char* text, const char* set) noexcept {
  if (text == nullptr || set == nullptr || HasNonAscii(set)) return 0;
  return std::strspn(text, set);
}

size_t AsciiSpanNotOf(const char* text, const char* set) noexcept {
  if (text == nullptr || set == nullptr || HasNonAscii(set)) return 0;
  return std::strcspn(text, set);
}

char* CopyCodePoints(char* target, const char* source, int32_t count) noexcept {
  if (target == nullptr || count <= 0) return target;
  if (source == nullptr) source = "";
  char* out = target;
  for (int32_t i = 0; i < count; ++i) {
    if (*source == 0) {
      // The source has ended: pad as strncpy does.
      do
        *out++ = 0;
      while (out - target < count);
      return target;
    }
    const int size = internal::StepSize(source);
    for (int k = 0; k < size; ++k)
      *out++ = *source++;
  }
  return target;
}

int CompareNoCase(const char* a, const char* b) noexcept {
  return CompareCodePoints(a, b, INT32_MAX, true);
}

int CompareCount(const char* a, const char* b, int32_t count) noexcept {
  return CompareCodePoints(a, b, count, false);
}

int CompareCountNoCase(const char* a, const char* b, int32_t count) noexcept {
  return CompareCodePoints(a, b, count, true);
}

bool Equals(const char* a, const char* b, bool exact) noexcept {
  if (a == nullptr) a = "";
  if (b == nullptr) b = "";
  return exact ? std::strcmp(a, b) == 0 : CompareNoCase(a, b) == 0;
}

bool Equals(const char16_t* a, const char16_t* b, bool exact) noexcept {
  if (a == nullptr) a = u"";
  if (b == nullptr) b = u"";
  if (!exact) return platform::_wcsicmp(a, b) == 0;
  for (;; ++a, ++b) {
    if (*a != *b) return false;
    if (*a == 0) return true;
  }
}

bool StartsWith(const char* text, const char* prefix, bool ignoreCase) noexcept {
  if (prefix == nullptr || *prefix == 0) return false;
  if (text == nullptr) text = "";
  if (!ignoreCase) {
    for (; *prefix != 0; ++text, ++prefix)
      if (*text != *prefix) return false;
    return true;
  }
  while (*prefix != 0) {
    if (*text == 0) return false;
    if (ToLowerCodePoint(DecodeCodePoint(text)) != ToLowerCodePoint(DecodeCodePoint(prefix)))
      return false;
  }
  return true;
}

bool StartsWith(const char16_t* text, const char16_t* prefix, bool ignoreCase) noexcept {
  if (prefix == nullptr || *prefix == 0) return false;
  if (text == nullptr) text = u"";
  for (; *prefix != 0; ++text, ++prefix) {
    if (*text == 0) return false;
    if (*text != *prefix &&
        (!ignoreCase || platform::towlower(*text) != platform::towlower(*prefix)))
      return false;
  }
  return true;
}

}  // namespace ic
