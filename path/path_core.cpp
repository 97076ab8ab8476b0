#include <ic/path/internal/path_core.h>

#include <string>
#include <type_traits>

#include <ic/path/internal/code_set.h>
#include <ic/path/path_constants.h>
#include <ic/string/internal/positions.h>
#include <ic/string/utf8.h>

namespace ic::internal {
namespace {

// Start of the code point that ends at `end` (narrow: back over continuation bytes, not before
// `begin`; wide: one unit).
template <class Unit>
const Unit* StepBackOne(const Unit* begin, const Unit* end) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return internal::StepBack(begin, end);
  else
    return end - 1;
}

// The code point at `p` (narrow: decoded, bounded by the terminator; wide: the unit), and `p`
// moved behind it.
template <class Unit>
uint32_t NextCode(const Unit*& p) noexcept {
  if constexpr (sizeof(Unit) == 1)
    return internal::DecodeCodePoint(p);
  else
    return *p++;
}

// True if the zero-terminated set holds the code point (narrow: a set of UTF-8 code points).
template <class Unit>
bool EqualsAsciiNoCase(const Unit* text, const char* word, int count) noexcept {
  for (int i = 0; i < count; ++i) {
    uint32_t c = static_cast<std::make_unsigned_t<Unit>>(text[i]);
    if (c - 'a' < 26u) c -= 32;
    if (c != static_cast<unsigned char>(word[i])) return false;
  }
  return true;
}

// Carriage return, line feed and InvalidFileNameChars, joined once at first use.
template <class Unit>
const std::basic_string<Unit>& ForbiddenFileNameChars() {
  static const std::basic_string<Unit> set =
      std::basic_string<Unit>(ICStringTextConstants<Unit>::CrLf) +
      ICStringTextConstants<Unit>::InvalidFileNameChars;
  return set;
}

}  // namespace

template <class Unit>
int32_t FindLastSeparatorIndex(const Unit* text, int32_t length) noexcept {
  for (const Unit* p = text + length; p > text;) {
    p = StepBackOne(text, p);
    if (IsPathSeparator(*p)) return static_cast<int32_t>(p - text);
  }
  return -1;
}

template <class Unit>
int32_t FindAncestorSeparator(const Unit* text, int32_t length, int32_t levels) noexcept {
  if (length <= 0) return -1;
  // The very last code point is never looked at: a trailing separator is no level.
  const Unit* p = StepBackOne(text, text + length);
  while (p > text) {
    p = StepBackOne(text, p);
    if (IsPathSeparator(*p) && --levels < 1) return static_cast<int32_t>(p - text);
  }
  return -1;
}

template <class Unit>
int32_t FindExtensionDotIndex(const Unit* text, int32_t length) noexcept {
  // Every character that stops an extension is ASCII, and so is the dot, so a unit scan finds
  // the same places as a scan by code point.
  const Unit* dot = nullptr;
  for (const Unit* p = text + length; p > text;) {
    p = StepBackOne(text, p);
    if (*p == Unit('.')) {
      dot = p;
      break;
    }
  }
  if (dot == nullptr) return -1;
  for (const Unit* p = dot + 1; p < text + length; ++p) {
    for (const Unit* stop = ICStringTextConstants<Unit>::ExtensionStopChars; *stop; ++stop)
      if (*p == *stop) return -1;
  }
  return static_cast<int32_t>(dot - text);
}

template <class Unit>
int32_t RootPrefixLength(const Unit* text, int32_t length) noexcept {
  int32_t i = 0;
  while (i < length && text[i] != Unit(':'))
    ++i;
  if (i == length) return 0;
  ++i;
  while (i < length && IsPathSeparator(text[i]))
    ++i;
  return i;
}

template <class Unit>
bool IsRelativePathText(const Unit* text, bool rootedIsAbsolute) noexcept {
  if (text == nullptr || *text == 0) return false;
  for (const Unit* p = text; *p; ++p)
    if (*p == Unit(':')) return false;
  if (!IsPathSeparator(text[0])) return true;
  if (rootedIsAbsolute) return false;
  // A separator is one unit in both widths, so the second character starts at index 1.
  return !IsPathSeparator(text[1]);
}

template <class Unit>
bool IsValidFileNameText(const Unit* text) {
  if (text == nullptr || *text == 0) return false;
  const std::basic_string<Unit>& forbidden = ForbiddenFileNameChars<Unit>();
  int32_t count = 0;
  int32_t firstDot = -1;
  bool real = false;
  for (const Unit* p = text; *p; ++count) {
    if (count >= 260) return false;
    const uint32_t code = NextCode(p);
    if (code == '.') {
      if (firstDot < 0) firstDot = count;
      continue;
    }
    real = true;
    if (code < 0x80 && forbidden.find(static_cast<Unit>(code)) != std::basic_string<Unit>::npos)
      return false;
  }
  if (!real) return false;
  const int32_t stem = firstDot >= 1 ? firstDot : count;
  // The reserved names are ASCII; the comparisons read units (bytes in the narrow form).
  switch (stem) {
    case 3:
      return !(EqualsAsciiNoCase(text, "CON", 3) || EqualsAsciiNoCase(text, "PRN", 3) ||
               EqualsAsciiNoCase(text, "NUL", 3) || EqualsAsciiNoCase(text, "AUX", 3));
    case 4:
      if (text[3] >= Unit('1') && text[3] <= Unit('9'))
        return !(EqualsAsciiNoCase(text, "COM", 3) || EqualsAsciiNoCase(text, "LPT", 3));
      return true;
    case 6:
      return !EqualsAsciiNoCase(text, "CLOCK$", 6);
    default:
      return true;
  }
}

template <class Unit>
int32_t NormalizePathText(Unit* text, bool removeDots, bool removeDotDots) noexcept {
  if (text == nullptr) return 0;
  int32_t length = 0;
  int32_t colon = -1;
  for (; text[length]; ++length)
    if (colon < 0 && text[length] == Unit(':')) colon = length;

  // The head: everything through the first colon stays; two leading separators stay as well.
  int32_t read = colon + 1;
  bool rooted = false;
  bool doubled = false;
  if (IsPathSeparator(text[read])) {
    rooted = true;
    if (IsPathSeparator(text[read + 1])) {
      doubled = true;
      read += 2;
    }
  }
  int32_t write;
  if (colon < 0 && !doubled && text[0] == Unit('.') && IsPathSeparator(text[1])) {
    // Leading "./" groups go, whatever removeDots says.
    read = 0;
    while (text[read] == Unit('.') && IsPathSeparator(text[read + 1]))
      read += 2;
    write = 0;
  } else {
    // The first component (a host, a first directory, or nothing on a rooted path) stays in
    // front of the floor.
    while (read < length && !IsPathSeparator(text[read]))
      ++read;
    if (read == length) return length;
    write = read;
  }
  const int32_t floor = write;
  auto endsSegment = [text](int32_t i) { return text[i] == 0 || IsPathSeparator(text[i]); };

  while (text[read] != 0) {
    const Unit c = text[read];
    if (!IsPathSeparator(c)) {
      text[write++] = text[read++];
      continue;
    }
    const Unit next = text[read + 1];
    if (IsPathSeparator(next)) {
      ++read;  // runs of separators collapse to their last one
      continue;
    }
    if (next == Unit('.') && endsSegment(read + 2)) {
      if (removeDots) {
        read += 2;
        continue;
      }
      text[write++] = text[read++];
      continue;
    }
    if (removeDotDots && next == Unit('.') && text[read + 2] == Unit('.') &&
        endsSegment(read + 3)) {
      if (write == floor) {
        if (rooted)
          read += 3;  // ".." at the root disappears
        else
          text[write++] = text[read++];  // ".." against the first component stays
        continue;
      }
      // An output that ends in a kept "." or ".." segment keeps this one too.
      const bool keptDots =
          write >= 2 && text[write - 1] == Unit('.') &&
          (IsPathSeparator(text[write - 2]) ||
           (text[write - 2] == Unit('.') && write - 3 >= 0 && IsPathSeparator(text[write - 3])));
      if (keptDots) {
        text[write++] = text[read++];
        continue;
      }
      read += 3;
      int32_t back = write - 1;
      while (back > floor && !IsPathSeparator(text[back]))
        --back;
      write = back > floor ? back : floor;
      continue;
    }
    text[write++] = text[read++];
  }
  // A root separator survives: at the floor, the one character there stays.
  if (write == floor) ++write;
  text[write] = 0;
  return write;
}

template <class Unit>
bool EqualIgnoringCharsText(const Unit* first, const Unit* second, const Unit* ignored) noexcept {
  static constexpr Unit kEmpty[] = {Unit(0)};
  const Unit* a = first ? first : kEmpty;
  const Unit* b = second ? second : kEmpty;
  for (;;) {
    uint32_t ca = 0;
    while (*a) {
      ca = NextCode(a);
      if (!CodeSetHolds(ignored, ca)) break;
      ca = 0;
    }
    uint32_t cb = 0;
    while (*b) {
      cb = NextCode(b);
      if (!CodeSetHolds(ignored, cb)) break;
      cb = 0;
    }
    if (ca != cb) return false;
    if (ca == 0) return true;
  }
}

template <class Unit>
bool ContainsUnit(const Unit* text, int32_t length, Unit unit) noexcept {
  return std::char_traits<Unit>::find(text, static_cast<size_t>(length), unit) != nullptr;
}

template <class Unit>
int32_t FindUnits(const Unit* text, int32_t length, const Unit* needle) noexcept {
  const size_t n = std::char_traits<Unit>::length(needle);
  if (n == 0) return 0;
  for (int64_t i = 0; i + static_cast<int64_t>(n) <= length; ++i)
    if (text[i] == needle[0] && std::char_traits<Unit>::compare(text + i, needle, n) == 0)
      return static_cast<int32_t>(i);
  return -1;
}

#define IC_PATH_CORE(Unit)                                                              \
  template int32_t FindLastSeparatorIndex(const Unit*, int32_t) noexcept;               \
  template int32_t FindAncestorSeparator(const Unit*, int32_t, int32_t) noexcept;       \
  template int32_t FindExtensionDotIndex(const Unit*, int32_t) noexcept;                \
  template int32_t RootPrefixLength(const Unit*, int32_t) noexcept;                     \
  template bool IsRelativePathText(const Unit*, bool) noexcept;                         \
  template bool IsValidFileNameText(const Unit*);                                       \
  template int32_t NormalizePathText(Unit*, bool, bool) noexcept;                       \
  template bool EqualIgnoringCharsText(const Unit*, const Unit*, const Unit*) noexcept; \
  template bool ContainsUnit(const Unit*, int32_t, Unit) noexcept;                      \
  template int32_t FindUnits(const Unit*, int32_t, const Unit*) noexcept;

IC_PATH_CORE(char)
IC_PATH_CORE(char16_t)
#undef IC_PATH_CORE

}  // namespace ic::internal
