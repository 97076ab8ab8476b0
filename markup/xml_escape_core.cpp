#include <ic/markup/internal/xml_escape_core.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include <ic/number/number_format.h>
#include <ic/path/internal/code_set.h>
#include <ic/platform/internal/unit_scan.h>

namespace ic::internal {
namespace {

// The replaced characters apart from those of alsoEscape.
constexpr bool IsXmlSpecial(uint32_t c, bool escapeQuotes) noexcept {
  if (c < 0x20) return c != '\t' && c != '\n' && c != '\r';
  if (c == '<' || c == '>' || c == '&') return true;
  return escapeQuotes && (c == '"' || c == '\'');
}

inline bool IsQuote(uint32_t c) noexcept {
  return c == '"' || c == '\'';
}

template <class Unit>
bool IsReplaced(uint32_t c, bool escapeQuotes, const Unit* alsoEscape) noexcept {
  if (IsXmlSpecial(c, escapeQuotes)) return true;
  if (!escapeQuotes && IsQuote(c)) return false;
  return CodeSetHolds(alsoEscape, c);
}

// The units a scan without alsoEscape must look at: the replaced characters, the zero unit
// and, in narrow text, every non-ASCII byte.
constexpr platform::internal::UnitStopSet MakeQuietStops(bool escapeQuotes, bool narrow) {
  platform::internal::UnitStopSet set;
  for (uint32_t c = 0; c < 128; ++c)
    if (c == 0 || IsXmlSpecial(c, escapeQuotes)) set.Add(c);
  set.high = narrow;
  return set;
}
template <class Unit>
constexpr platform::internal::UnitStopSet kQuietStops[2] = {
    MakeQuietStops(false, sizeof(Unit) == 1), MakeQuietStops(true, sizeof(Unit) == 1)};

// Units of the first `n` at `p` before the first that a scan without alsoEscape must look at.
template <class Unit>
int32_t QuietSpan(const Unit* p, int32_t n, bool escapeQuotes) noexcept {
  if (n <= 0) return 0;
  return static_cast<int32_t>(platform::internal::FindFirstInSet(
      p, static_cast<size_t>(n), kQuietStops<Unit>[escapeQuotes ? 1 : 0]));
}

}  // namespace

template <class Unit>
const platform::internal::UnitStopSet& XmlQuietStops(bool escapeQuotes) noexcept {
  return kQuietStops<Unit>[escapeQuotes ? 1 : 0];
}

template <class Unit>
int XmlReplacement(uint32_t code, bool escapeQuotes, const Unit* alsoEscape, Unit* out) noexcept {
  const char* name = nullptr;
  switch (code) {
    case '<':
      name = "&lt;";
      break;
    case '>':
      name = "&gt;";
      break;
    case '&':
      name = "&amp;";
      break;
    case '"':
      name = escapeQuotes ? "&quot;" : nullptr;
      break;
    case '\'':
      name = escapeQuotes ? "&apos;" : nullptr;
      break;
    default:
      break;
  }
  if (name != nullptr) {
    int n = 0;
    for (; name[n]; ++n)
      out[n] = static_cast<Unit>(name[n]);
    return n;
  }
  if (!IsReplaced(code, escapeQuotes, alsoEscape)) return 0;
  out[0] = Unit('&');
  out[1] = Unit('#');
  FormatNumber(out + 2, 12, code);
  int n = 2;
  while (out[n] != 0)
    ++n;
  out[n++] = Unit(';');
  return n;
}

template <class Unit>
int32_t XmlPlainSpan(const Unit* p, int32_t n, bool escapeQuotes, const Unit* alsoEscape) noexcept {
  if (alsoEscape == nullptr || *alsoEscape == 0) {
    return QuietSpan(p, n, escapeQuotes);
  }
  int32_t i = 0;
  for (; i < n; ++i) {
    const uint32_t c = static_cast<std::make_unsigned_t<Unit>>(p[i]);
    if (c == 0) return i;
    if (sizeof(Unit) == 1 && c >= 0x80) return i;
    if (IsReplaced(c, escapeQuotes, alsoEscape)) return i;
  }
  return n;
}

template <class Unit>
const Unit* FindXmlEscape(const Unit* source, int32_t length, bool escapeQuotes,
                          const Unit* alsoEscape) noexcept {
  const bool plainSet = alsoEscape == nullptr || *alsoEscape == 0;
  const Unit* p = source;
  const Unit* const end = source + length;
  for (;;) {
    if (plainSet) p += QuietSpan(p, static_cast<int32_t>(end - p), escapeQuotes);
    if (p >= end) return nullptr;
    const uint32_t c = static_cast<std::make_unsigned_t<Unit>>(*p);
    if (sizeof(Unit) == 1 && c >= 0x80) {
      if (plainSet) {  // non-ASCII text is never replaced without alsoEscape
        p += internal::StepSize(reinterpret_cast<const char*>(p));
        continue;
      }
      const char* start = reinterpret_cast<const char*>(p);
      const char* next = start;
      const uint32_t code = internal::DecodeCodePoint(next);
      if (CodeSetHolds(alsoEscape, code)) return p;
      p += next - start;
      continue;
    }
    if (c == 0) return nullptr;  // a zero unit inside the length ends the text
    if (IsReplaced(c, escapeQuotes, alsoEscape)) return p;
    ++p;
  }
}

template <class Unit>
int32_t UnescapeXmlUnits(Unit* text, int32_t length, bool decodeCharRefs,
                         bool decodeEntities) noexcept {
  using Value = std::conditional_t<sizeof(Unit) == 1, uint32_t, uint16_t>;
  int32_t r = 0;
  while (r < length && text[r] != Unit('&'))
    ++r;
  int32_t w = r;
  while (r < length) {
    if (text[r] != Unit('&')) {
      text[w++] = text[r++];
      continue;
    }
    bool matched = false;
    uint32_t value = 0;
    int32_t after = r + 1;
    if (decodeCharRefs && r + 1 < length && text[r + 1] == Unit('#')) {
      int32_t i = r + 2;
      const bool hex = i < length && text[i] == Unit('x');
      if (hex) ++i;
      Value v = 0;
      int digits = 0;
      for (; i < length; ++i) {
        const Unit c = text[i];
        int d;
        if (c >= Unit('0') && c <= Unit('9'))
          d = static_cast<int>(c - Unit('0'));
        else if (hex && c >= Unit('a') && c <= Unit('f'))
          d = static_cast<int>(c - Unit('a')) + 10;
        else if (hex && c >= Unit('A') && c <= Unit('F'))
          d = static_cast<int>(c - Unit('A')) + 10;
        else
          break;
        v = static_cast<Value>(v * (hex ? 16u : 10u) + static_cast<unsigned>(d));
        ++digits;
      }
      if (i < length && text[i] == Unit(';') && digits > 0) {
        matched = true;
        value = v == 0 ? uint32_t{'?'} : uint32_t{v};
        after = i + 1;
      }
    }
    if (!matched && decodeEntities) {
      static constexpr struct {
        const char* name;
        char value;
      } kEntities[] = {{"lt;", '<'}, {"gt;", '>'}, {"amp;", '&'}, {"apos;", '\''}, {"quot;", '"'}};
      for (const auto& e : kEntities) {
        const int32_t n = static_cast<int32_t>(std::strlen(e.name));
        if (length - (r + 1) < n) continue;
        int32_t k = 0;
        while (k < n && text[r + 1 + k] == static_cast<Unit>(e.name[k]))
          ++k;
        if (k == n) {
          matched = true;
          value = static_cast<unsigned char>(e.value);
          after = r + 1 + n;
          break;
        }
      }
    }
    if (!matched) {
      text[w++] = text[r++];
      continue;
    }
    if constexpr (sizeof(Unit) == 1) {
      char* out = text + w;
      EncodeCodePoint(out, value);  // nothing for a surrogate or a value above U+10FFFF
      w = static_cast<int32_t>(out - text);
    } else {
      text[w++] = static_cast<Unit>(value);
    }
    r = after;
  }
  return w;
}

template const char* FindXmlEscape(const char*, int32_t, bool, const char*) noexcept;
template const char16_t* FindXmlEscape(const char16_t*, int32_t, bool, const char16_t*) noexcept;
template int XmlReplacement(uint32_t, bool, const char*, char*) noexcept;
template int XmlReplacement(uint32_t, bool, const char16_t*, char16_t*) noexcept;
template const platform::internal::UnitStopSet& XmlQuietStops<char>(bool) noexcept;
template const platform::internal::UnitStopSet& XmlQuietStops<char16_t>(bool) noexcept;
template int32_t XmlPlainSpan(const char*, int32_t, bool, const char*) noexcept;
template int32_t XmlPlainSpan(const char16_t*, int32_t, bool, const char16_t*) noexcept;
template int32_t UnescapeXmlUnits(char*, int32_t, bool, bool) noexcept;
template int32_t UnescapeXmlUnits(char16_t*, int32_t, bool, bool) noexcept;

}  // namespace ic::internal
