// Error texts and locale information from the C library's locale objects (POSIX systems).
#include <ic/platform/internal/posix_locale_info.h>

#include <langinfo.h>
#include <locale.h>
#include <string.h>

#include <climits>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <new>
#include <optional>

#include <ic/platform/code_page.h>
#include <ic/platform/system_text.h>

namespace ic::platform::internal {

namespace {

std::u16string Widen(const char* text) {
  const int length = static_cast<int>(strlen(text));
  if (length == 0) return {};
  const int units = MultiByteToWideChar(CodePageUTF8, 0, text, length, nullptr, 0);
  std::u16string wide(static_cast<size_t>(units), u'\0');
  MultiByteToWideChar(CodePageUTF8, 0, text, length, wide.data(), units);
  return wide;
}

// A locale object with the name it was made from; freed with the object.
class LocaleObject {
 public:
  LocaleObject(locale_t handle, std::string name) : _handle(handle), _name(std::move(name)) {}
  ~LocaleObject() {
    if (_handle) freelocale(_handle);
  }
  LocaleObject(const LocaleObject&) = delete;
  LocaleObject& operator=(const LocaleObject&) = delete;

  locale_t Handle() const noexcept { return _handle; }
  const std::string& Name() const noexcept { return _name; }

 private:
  locale_t _handle;
  std::string _name;
};

const char* FirstSet(std::initializer_list<const char*> variables) {
  for (const char* variable : variables) {
    const char* value = std::getenv(variable);
    if (value && *value) return value;
  }
  return nullptr;
}

// The user's locale, made once from the environment; "C" if the environment names a locale
// that is not installed. `category` is the variable that names it after LC_ALL.
LocaleObject* MakeEnvironmentLocale(const char* category) {
  const char* name = FirstSet({"LC_ALL", category, "LANG"});
  locale_t handle = newlocale(LC_ALL_MASK, "", static_cast<locale_t>(0));
  if (!handle) {
    handle = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
    name = "C";
  }
  return new LocaleObject(handle, name ? name : "C");
}

const LocaleObject& MessageLocale() {
  static const LocaleObject* const locale = MakeEnvironmentLocale("LC_MESSAGES");
  return *locale;
}

const LocaleObject& UserLocale() {
  static const LocaleObject* const locale = MakeEnvironmentLocale("LC_CTYPE");
  return *locale;
}

// LANG= of the system's locale settings, if a file has it.
std::string SystemLocaleName() {
  for (const char* path : {"/etc/default/locale", "/etc/locale.conf"}) {
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
      if (line.rfind("LANG=", 0) != 0) continue;
      std::string value = line.substr(5);
      if (value.size() >= 2 && (value.front() == '"' || value.front() == '\''))
        value = value.substr(1, value.size() - 2);
      if (!value.empty()) return value;
    }
  }
  return "C.UTF-8";
}

const LocaleObject* SystemLocale() {
  static const LocaleObject* const locale = [] {
    const std::string name = SystemLocaleName();
    locale_t handle = newlocale(LC_ALL_MASK, name.c_str(), static_cast<locale_t>(0));
    return handle ? new LocaleObject(handle, name) : nullptr;
  }();
  return locale;
}

// A locale of the table, opened for one call: null if its id is not in the table or it is not
// installed.
std::unique_ptr<LocaleObject> OpenKnownLocale(uint32_t id) {
  size_t count = 0;
  const KnownLocaleId* known = KnownLocaleIds(count);
  for (size_t i = 0; i < count; ++i) {
    if (known[i].id != id) continue;
    for (int attempt = 0;; ++attempt) {
      const std::string name = PosixLocaleName(known[i].name, attempt);
      if (name.empty()) return nullptr;
      locale_t handle = newlocale(LC_ALL_MASK, name.c_str(), static_cast<locale_t>(0));
      if (handle) return std::make_unique<LocaleObject>(handle, name);
    }
  }
  return nullptr;
}

// Language and country of a POSIX locale name ("de_DE.UTF-8@euro"); empty for "C" and "POSIX".
void SplitName(const std::string& name, std::string& language, std::string& country) {
  const std::string base = name.substr(0, name.find_first_of(".@"));
  language.clear();
  country.clear();
  if (base == "C" || base == "POSIX" || base.empty()) return;
  const size_t underscore = base.find('_');
  language = base.substr(0, underscore);
  if (underscore != std::string::npos) country = base.substr(underscore + 1);
}

// The numeric and monetary fields of a locale, read through localeconv on this thread.
struct Conventions {
  std::string decimal, thousands, grouping, currency;
};

Conventions ReadConventions(locale_t locale) {
  Conventions result;
  const locale_t previous = uselocale(locale);
  const lconv* conventions = localeconv();
  result.decimal = conventions->decimal_point;
  result.thousands = conventions->thousands_sep;
  result.grouping = conventions->grouping;
  result.currency = conventions->currency_symbol;
  uselocale(previous);
  return result;
}

// The date part of a date-and-time format: its conversions up to the first of the time of day.
std::string DatePart(const std::string& format) {
  size_t end = format.size();
  for (size_t i = 0; i + 1 < format.size(); ++i) {
    if (format[i] != '%') continue;
    if (std::string("HIklMSprRTXzZ").find(format[i + 1]) != std::string::npos) {
      end = i;
      break;
    }
    ++i;
  }
  std::string date = format.substr(0, end);
  while (!date.empty() && (date.back() == ' ' || date.back() == ','))
    date.pop_back();
  return date;
}

// The time picture without its seconds ("HH:mm:ss" -> "HH:mm").
std::string WithoutSeconds(std::string picture) {
  const size_t seconds = picture.find("ss");
  if (seconds == std::string::npos) return picture;
  size_t from = seconds;
  while (from > 0 && picture[from - 1] != 'm' && picture[from - 1] != 'H' &&
         picture[from - 1] != 'h')
    --from;
  picture.erase(from, seconds + 2 - from);
  return picture;
}

std::optional<std::string> LocaleText(const LocaleObject& locale, uint32_t type) {
  const locale_t handle = locale.Handle();
  if (type >= LocaleDayName1 && type < LocaleDayName1 + 7) {
    // Windows counts from Monday, POSIX from Sunday.
    return nl_langinfo_l(DAY_1 + (type - LocaleDayName1 + 1) % 7, handle);
  }
  if (type >= LocaleAbbrevDayName1 && type < LocaleAbbrevDayName1 + 7)
    return nl_langinfo_l(ABDAY_1 + (type - LocaleAbbrevDayName1 + 1) % 7, handle);
  if (type >= LocaleMonthName1 && type < LocaleMonthName1 + 12)
    return nl_langinfo_l(MON_1 + (type - LocaleMonthName1), handle);
  if (type >= LocaleAbbrevMonthName1 && type < LocaleAbbrevMonthName1 + 12)
    return nl_langinfo_l(ABMON_1 + (type - LocaleAbbrevMonthName1), handle);
  std::string language, country;
  SplitName(locale.Name(), language, country);
  switch (type) {
    case LocaleDecimalSeparator:
      return ReadConventions(handle).decimal;
    case LocaleThousandSeparator:
      return ReadConventions(handle).thousands;
    case LocaleGrouping:
      return WindowsGrouping(ReadConventions(handle).grouping);
    case LocaleCurrencySymbol:
      return ReadConventions(handle).currency;
    case LocaleShortDate:
      return DatePicture(nl_langinfo_l(D_FMT, handle));
    case LocaleLongDate:
      return DatePicture(DatePart(nl_langinfo_l(D_T_FMT, handle)));
    case LocaleTimeFormat:
      return DatePicture(nl_langinfo_l(T_FMT, handle));
    case LocaleShortTime:
      return WithoutSeconds(DatePicture(nl_langinfo_l(T_FMT, handle)));
    // The "C" and "POSIX" locales stand for the invariant locale of Windows.
    case LocaleIsoLanguageName:
      return language.empty() ? std::string("iv") : language;
    case LocaleIsoCountryName:
      return language.empty() ? std::string("IV") : country;
    case LocaleName:
      return language.empty()  ? std::string()
             : country.empty() ? language
                               : language + "-" + country;
    default:
      return std::nullopt;
  }
}

}  // namespace

bool IsKnownErrorNumber(uint32_t number) noexcept {
  if (number > INT_MAX) return false;
#if defined(__GLIBC__)
  // glibc names every number it has a message for (and writes "Unknown error N" for others).
  return number == 0 || strerrorname_np(static_cast<int>(number)) != nullptr;
#else
  static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  const char* text = c ? strerror_l(static_cast<int>(number), c) : nullptr;
  return text && strncmp(text, "Unknown error", 13) != 0;
#endif
}

uint32_t AllocateErrorText(uint32_t number, char16_t*& text) noexcept {
  text = nullptr;
  if (!IsKnownErrorNumber(number)) return 0;
  try {
    const std::u16string wide =
        Widen(strerror_l(static_cast<int>(number), MessageLocale().Handle()));
    text = new (std::nothrow) char16_t[wide.size() + 1];
    if (!text) return 0;
    wide.copy(text, wide.size());
    text[wide.size()] = 0;
    return static_cast<uint32_t>(wide.size());
  } catch (...) {
    return 0;
  }
}

void FreeErrorText(char16_t* text) noexcept {
  delete[] text;
}

bool LocaleInfo(uint32_t locale, uint32_t type, std::u16string& text) noexcept {
  try {
    std::unique_ptr<LocaleObject> opened;
    const LocaleObject* object = nullptr;
    if (locale == LocaleUserDefault) {
      object = &UserLocale();
    } else if (locale == LocaleSystemDefault) {
      object = SystemLocale();
    } else {
      opened = OpenKnownLocale(locale);
      object = opened.get();
    }
    if (!object) return false;
    const std::optional<std::string> value = LocaleText(*object, type);
    if (!value) return false;
    text = Widen(value->c_str());
    return true;
  } catch (...) {
    return false;
  }
}

std::string PosixLocaleName(const std::string& windowsName, int attempt) {
  std::string base = windowsName;
  const size_t dash = base.find('-');
  if (dash != std::string::npos) base[dash] = '_';
  switch (attempt) {
    case 0:
      return base + ".UTF-8";
    case 1:
      return base + ".utf8";
    case 2:
      return base;
    default:
      return std::string();
  }
}

std::string DatePicture(const std::string& format) {
  std::string picture;
  std::string literal;
  auto flushLiteral = [&] {
    if (literal.empty()) return;
    // Letters would be taken for fields: quote them.
    bool letters = false;
    for (char c : literal)
      letters = letters || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
    picture += letters ? "'" + literal + "'" : literal;
    literal.clear();
  };
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%' || i + 1 == format.size()) {
      literal += format[i];
      continue;
    }
    char c = format[++i];
    // Flags of glibc: "-" drops the padding ("%-d" is "d"); the others change only its kind.
    bool unpadded = false;
    while ((c == '-' || c == '_' || c == '0' || c == '^' || c == '#') && i + 1 < format.size()) {
      unpadded = unpadded || c == '-';
      c = format[++i];
    }
    const char* field = nullptr;
    switch (c) {
      case 'd':
        field = unpadded ? "d" : "dd";
        break;
      case 'e':
        field = "d";
        break;
      case 'm':
        field = unpadded ? "M" : "MM";
        break;
      case 'y':
        field = "yy";
        break;
      case 'Y':
        field = "yyyy";
        break;
      case 'b':
      case 'h':
        field = "MMM";
        break;
      case 'B':
        field = "MMMM";
        break;
      case 'a':
        field = "ddd";
        break;
      case 'A':
        field = "dddd";
        break;
      case 'H':
        field = unpadded ? "H" : "HH";
        break;
      case 'I':
        field = unpadded ? "h" : "hh";
        break;
      case 'k':
        field = "H";
        break;
      case 'l':
        field = "h";
        break;
      case 'M':
        field = "mm";
        break;
      case 'S':
        field = "ss";
        break;
      case 'p':
      case 'P':
        field = "tt";
        break;
      case 'T':
        field = "HH:mm:ss";
        break;
      case 'R':
        field = "HH:mm";
        break;
      case 'r':
        field = "hh:mm:ss tt";
        break;
      case 'D':
        field = "MM/dd/yy";
        break;
      case 'F':
        field = "yyyy-MM-dd";
        break;
      case 'n':
        literal += '\n';
        break;
      case 't':
        literal += '\t';
        break;
      case '%':
        literal += '%';
        break;
      default:
        break;  // a field without a picture letter (%Z, %j, ...) is left out
    }
    if (field) {
      flushLiteral();
      picture += field;
    }
  }
  flushLiteral();
  return picture;
}

std::string WindowsGrouping(const std::string& grouping) {
  if (grouping.empty()) return "0";
  std::string groups = grouping;
  // CHAR_MAX (or any size that is no positive number) ends the grouping; else the last size
  // repeats, which Windows writes as a final 0.
  bool repeats = true;
  const auto last = static_cast<unsigned char>(groups.back());
  if (last == static_cast<unsigned char>(CHAR_MAX) || last > 127) {
    repeats = false;
    groups.pop_back();
  }
  // The last size repeats in both forms; a size written twice at the end says nothing more.
  while (groups.size() >= 2 && groups.back() == groups[groups.size() - 2])
    groups.pop_back();
  std::string result;
  for (char size : groups) {
    if (!result.empty()) result += ';';
    result += std::to_string(static_cast<int>(static_cast<unsigned char>(size)));
  }
  if (repeats) result += result.empty() ? "0" : ";0";
  return result;
}

}  // namespace ic::platform::internal
