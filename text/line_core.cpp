#include <ic/text/internal/line_core.h>

namespace ic::internal {
namespace {

template <class Unit>
inline bool IsLineEndUnit(Unit unit) noexcept {
  return unit == Unit('\r') || unit == Unit('\n');
}

// Passes the line end at p (which is one) and answers the units it takes: a "\r\n" pair whole.
template <class Unit>
inline int32_t LineEndSize(const Unit* p) noexcept {
  return p[0] == Unit('\r') && p[1] == Unit('\n') ? 2 : 1;
}

}  // namespace

template <class Unit>
const Unit* FindForeignLineEndIn(const Unit* text, const Unit* lineEnd) noexcept {
  if (lineEnd == nullptr || !IsLineEndUnit(lineEnd[0])) return nullptr;
  const bool pair = lineEnd[1] != 0;
  if (pair ? (lineEnd[0] != Unit('\r') || lineEnd[1] != Unit('\n') || lineEnd[2] != 0) : false)
    return nullptr;
  if (text == nullptr) return nullptr;
  for (const Unit* p = text; *p != 0; ++p) {
    if (!IsLineEndUnit(*p)) continue;
    if (*p != lineEnd[0]) {
      // A line feed behind a carriage return belongs to a pair: its carriage return is answered.
      return (*p == Unit('\n') && p > text && p[-1] == Unit('\r')) ? p - 1 : p;
    }
    if (pair) {
      if (p[1] != Unit('\n')) return p;
      ++p;
    }
  }
  return nullptr;
}

template <class Unit>
bool LineColumnOf(const Unit* text, int32_t offset, int32_t& line, int32_t& column) noexcept {
  line = 0;
  int32_t lineStart = 0;
  int32_t i = 0;
  while (i < offset && text[i] != 0) {
    if (IsLineEndUnit(text[i])) {
      i += LineEndSize(text + i);
      ++line;
      lineStart = i;
    } else {
      ++i;
    }
  }
  column = i - lineStart;
  return i == offset;
}

template <class Unit>
bool OffsetOf(const Unit* text, int32_t line, int32_t column, int32_t& offset) noexcept {
  int32_t i = 0;
  for (int32_t passed = 0; passed < line && text[i] != 0;) {
    if (IsLineEndUnit(text[i])) {
      i += LineEndSize(text + i);
      ++passed;
    } else {
      ++i;
    }
  }
  for (int32_t walked = 0; walked < column && text[i] != 0; ++walked, ++i) {
    if (IsLineEndUnit(text[i])) {
      offset = i;
      return false;
    }
  }
  offset = i;
  return true;
}

template IC_API const char* FindForeignLineEndIn(const char*, const char*) noexcept;
template IC_API const char16_t* FindForeignLineEndIn(const char16_t*, const char16_t*) noexcept;
template IC_API bool LineColumnOf(const char*, int32_t, int32_t&, int32_t&) noexcept;
template IC_API bool LineColumnOf(const char16_t*, int32_t, int32_t&, int32_t&) noexcept;
template IC_API bool OffsetOf(const char*, int32_t, int32_t, int32_t&) noexcept;
template IC_API bool OffsetOf(const char16_t*, int32_t, int32_t, int32_t&) noexcept;

}  // namespace ic::internal
