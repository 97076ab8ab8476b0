// The wide case functions: the C run-time's on Windows, the C library's Unicode case mapping
// under a fixed UTF-8 locale elsewhere.
#include <ic/platform/wide_runtime.h>

#include <cerrno>
#include <cstdint>

#if defined(_WIN32)
#include <wchar.h>
#include <wctype.h>
#else
#include <locale.h>
#include <wctype.h>

#include <ic/platform/internal/wide_case_rules.h>
#endif

namespace ic::platform {

namespace {

#if !defined(_WIN32)

// The locale object under which units are mapped. It is made on first use, once for the
// process, and freed at exit (so that a module that carries this code and is unloaded leaves
// nothing behind). If the C library has no "C.UTF-8", the mapping falls back to ASCII.
class CaseLocale {
 public:
  CaseLocale() noexcept : _locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(0))) {}
  ~CaseLocale() {
    if (_locale) freelocale(_locale);
  }
  CaseLocale(const CaseLocale&) = delete;
  CaseLocale& operator=(const CaseLocale&) = delete;

  locale_t Get() const noexcept { return _locale; }

 private:
  locale_t _locale;
};

locale_t GetCaseLocale() noexcept {
  static const CaseLocale locale;
  return locale.Get();
}

#endif

bool IsSurrogate(char16_t unit) noexcept {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

// A mapped value that does not fit in one unit, or lands on a surrogate, leaves the unit as it
// was. The value is taken as 32 bits: wint_t is 16 bits wide on Windows and 32 elsewhere.
char16_t KeepIfWide(char16_t unit, uint32_t mapped) noexcept {
  if (mapped > 0xFFFF || IsSurrogate(static_cast<char16_t>(mapped))) return unit;
  return static_cast<char16_t>(mapped);
}

#if !defined(_WIN32)

char16_t MapLower(char16_t unit) noexcept {
  if (unit < 0x80)
    return (unit >= u'A' && unit <= u'Z') ? static_cast<char16_t>(unit + 0x20) : unit;
  if (IsSurrogate(unit)) return unit;
  const locale_t locale = GetCaseLocale();
  if (!locale) return unit;
  return KeepIfWide(unit, towlower_l(static_cast<wint_t>(unit), locale));
}

char16_t MapUpper(char16_t unit) noexcept {
  if (unit < 0x80)
    return (unit >= u'a' && unit <= u'z') ? static_cast<char16_t>(unit - 0x20) : unit;
  if (IsSurrogate(unit)) return unit;
  const locale_t locale = GetCaseLocale();
  if (!locale) return unit;
  return KeepIfWide(unit, towupper_l(static_cast<wint_t>(unit), locale));
}

#endif

}  // namespace

#if defined(_WIN32)

// wchar_t is a 16-bit UTF-16 unit on Windows, so the two pointer types alias the same text.
char16_t towlower(char16_t unit) noexcept {
  if (IsSurrogate(unit)) return unit;
  return KeepIfWide(unit, ::towlower(static_cast<wint_t>(unit)));
}

char16_t towupper(char16_t unit) noexcept {
  if (IsSurrogate(unit)) return unit;
  return KeepIfWide(unit, ::towupper(static_cast<wint_t>(unit)));
}

errno_t _wcslwr_s(char16_t* text, size_t size) noexcept {
  return ::_wcslwr_s(reinterpret_cast<wchar_t*>(text), size);
}

errno_t _wcsupr_s(char16_t* text, size_t size) noexcept {
  return ::_wcsupr_s(reinterpret_cast<wchar_t*>(text), size);
}

int _wcsicmp(const char16_t* left, const char16_t* right) noexcept {
  return ::_wcsicmp(reinterpret_cast<const wchar_t*>(left),
                    reinterpret_cast<const wchar_t*>(right));
}

#else

char16_t towlower(char16_t unit) noexcept {
  return MapLower(unit);
}

char16_t towupper(char16_t unit) noexcept {
  return MapUpper(unit);
}

errno_t _wcslwr_s(char16_t* text, size_t size) noexcept {
  return internal::MapUnitsInPlace(text, size, MapLower);
}

errno_t _wcsupr_s(char16_t* text, size_t size) noexcept {
  return internal::MapUnitsInPlace(text, size, MapUpper);
}

int _wcsicmp(const char16_t* left, const char16_t* right) noexcept {
  return internal::CompareMappedUnits(left, right, MapLower, NlsCompareError);
}

#endif

}  // namespace ic::platform
