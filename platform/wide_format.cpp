#include <ic/platform/wide_format.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>

namespace ic::platform {
namespace {

// The output of the walk: units up to count - 1, then only counted.
class Output {
 public:
  Output(char16_t* buffer, size_t count) : _buffer(buffer), room_(count - 1) {}

  void Put(char16_t unit) noexcept {
    if (_written < room_)
      _buffer[_written++] = unit;
    else
      _overflow = true;
  }
  void Repeat(char16_t unit, long n) noexcept {
    for (; n > 0; --n)
      Put(unit);
  }
  // UTF-8 bytes as UTF-16; a stray or cut-off byte stands for itself.
  void PutUtf8(const unsigned char* text, size_t length) noexcept {
    size_t i = 0;
    while (i < length) {
      uint32_t c = text[i];
      int extra = c < 0x80 ? 0 : c < 0xe0 ? 1 : c < 0xf0 ? 2 : 3;
      if (c >= 0x80 && c < 0xc0) extra = 0;
      if (extra && i + static_cast<size_t>(extra) >= length) extra = 0;  // cut off at the end
      if (extra) {
        c &= 0x3fu >> extra;
        for (int k = 1; k <= extra; ++k)
          c = (c << 6) | (text[i + static_cast<size_t>(k)] & 63u);
      }
      i += static_cast<size_t>(extra) + 1;
      if (c >= 0x10000) {
        c -= 0x10000;
        Put(static_cast<char16_t>(0xd800 + (c >> 10)));
        Put(static_cast<char16_t>(0xdc00 + (c & 0x3ff)));
      } else {
        Put(static_cast<char16_t>(c));
      }
    }
  }
  int Finish(bool refused) noexcept {
    if (refused) {
      _buffer[0] = 0;
      return -1;
    }
    _buffer[_written] = 0;
    return _overflow ? -1 : static_cast<int>(_written);
  }

 private:
  char16_t* _buffer;
  size_t room_;
  size_t _written = 0;
  bool _overflow = false;
};

enum class Length { None, hh, h, l, ll, L, j, z, t, w };

// One conversion as the walk has read it.
struct Spec {
  char flags[8] = {};
  int flagCount = 0;
  bool leftAlign = false;
  long width = -1;      // -1: none
  long precision = -1;  // -1: none
  Length length = Length::None;
  char conversion = 0;
};

bool IsFlag(char16_t c) noexcept {
  return c == u'-' || c == u'+' || c == u' ' || c == u'#' || c == u'0' || c == u'\'';
}

// The narrow spec of a numeric conversion, with * already resolved.
void NarrowSpec(const Spec& spec, char* out) noexcept {
  char* p = out;
  *p++ = '%';
  for (int i = 0; i < spec.flagCount; ++i)
    *p++ = spec.flags[i];
  if (spec.width >= 0) p += std::snprintf(p, 24, "%ld", spec.width);
  if (spec.precision >= 0) p += std::snprintf(p, 24, ".%ld", spec.precision);
  static const char* const kLengths[] = {"", "hh", "h", "l", "ll", "L", "j", "z", "t", ""};
  for (const char* l = kLengths[static_cast<int>(spec.length)]; *l; ++l)
    *p++ = *l;
  *p++ = spec.conversion;
  *p = 0;
}

// Formats one value through the narrow formatter and widens it into the output.
template <class T>
bool PutNarrowFormatted(Output& out, const Spec& spec, T value) noexcept {
  char format[96];
  NarrowSpec(spec, format);
  char local[256];
  const int needed = std::snprintf(local, sizeof local, format, value);
  if (needed < 0) return false;
  if (static_cast<size_t>(needed) < sizeof local) {
    out.PutUtf8(reinterpret_cast<const unsigned char*>(local), static_cast<size_t>(needed));
    return true;
  }
  const std::unique_ptr<char[]> large(new (std::nothrow) char[static_cast<size_t>(needed) + 1]);
  if (!large) return false;
  std::snprintf(large.get(), static_cast<size_t>(needed) + 1, format, value);
  out.PutUtf8(reinterpret_cast<const unsigned char*>(large.get()), static_cast<size_t>(needed));
  return true;
}

bool PutSigned(Output& out, const Spec& spec, va_list& arguments) noexcept {
  switch (spec.length) {
    case Length::hh:
    case Length::h:
    case Length::None:
    case Length::w:
      return PutNarrowFormatted(out, spec, va_arg(arguments, int));
    case Length::l:
      return PutNarrowFormatted(out, spec, va_arg(arguments, long));
    case Length::ll:
    case Length::L:
      return PutNarrowFormatted(out, spec, va_arg(arguments, long long));
    case Length::j:
      return PutNarrowFormatted(out, spec, va_arg(arguments, intmax_t));
    case Length::z:
      return PutNarrowFormatted(out, spec, va_arg(arguments, ptrdiff_t));
    case Length::t:
      return PutNarrowFormatted(out, spec, va_arg(arguments, ptrdiff_t));
  }
  return false;
}

bool PutUnsigned(Output& out, const Spec& spec, va_list& arguments) noexcept {
  switch (spec.length) {
    case Length::hh:
    case Length::h:
    case Length::None:
    case Length::w:
      return PutNarrowFormatted(out, spec, va_arg(arguments, unsigned int));
    case Length::l:
      return PutNarrowFormatted(out, spec, va_arg(arguments, unsigned long));
    case Length::ll:
    case Length::L:
      return PutNarrowFormatted(out, spec, va_arg(arguments, unsigned long long));
    case Length::j:
      return PutNarrowFormatted(out, spec, va_arg(arguments, uintmax_t));
    case Length::z:
      return PutNarrowFormatted(out, spec, va_arg(arguments, size_t));
    case Length::t:
      return PutNarrowFormatted(out, spec, va_arg(arguments, size_t));
  }
  return false;
}

// A text with its width and precision: `units` units (16-bit) or bytes (narrow, then widened).
void PutPadded(Output& out, const Spec& spec, const char16_t* wide, const char* narrow,
               size_t units) noexcept {
  if (spec.precision >= 0 && units > static_cast<size_t>(spec.precision))
    units = static_cast<size_t>(spec.precision);
  const long pad =
      spec.width > static_cast<long>(units) ? spec.width - static_cast<long>(units) : 0;
  if (!spec.leftAlign) out.Repeat(u' ', pad);
  if (wide != nullptr) {
    for (size_t i = 0; i < units; ++i)
      out.Put(wide[i]);
  } else {
    out.PutUtf8(reinterpret_cast<const unsigned char*>(narrow), units);
  }
  if (spec.leftAlign) out.Repeat(u' ', pad);
}

void PutWideText(Output& out, const Spec& spec, const char16_t* text) noexcept {
  if (text == nullptr) text = u"(null)";
  size_t units = 0;
  // With a precision, no unit beyond it is read.
  while ((spec.precision < 0 || units < static_cast<size_t>(spec.precision)) && text[units])
    ++units;
  PutPadded(out, spec, text, nullptr, units);
}

void PutNarrowText(Output& out, const Spec& spec, const char* text) noexcept {
  if (text == nullptr) text = "(null)";
  size_t units = 0;
  while ((spec.precision < 0 || units < static_cast<size_t>(spec.precision)) && text[units])
    ++units;
  PutPadded(out, spec, nullptr, text, units);
}

void PutUnit(Output& out, const Spec& spec, char16_t unit) noexcept {
  Spec plain = spec;
  plain.precision = -1;
  PutPadded(out, plain, &unit, nullptr, 1);
}

}  // namespace

int FormatWide16(char16_t* buffer, size_t count, const char16_t* format,
                 va_list arguments) noexcept {
  if (buffer == nullptr || count == 0) return -1;
  Output out(buffer, count);
  if (format == nullptr) return out.Finish(true);
  va_list args;
  va_copy(args, arguments);
  bool refused = false;
  for (const char16_t* f = format; *f != 0 && !refused;) {
    if (*f != u'%') {
      out.Put(*f++);
      continue;
    }
    ++f;
    Spec spec;
    while (IsFlag(*f)) {
      if (*f == u'-') spec.leftAlign = true;
      if (spec.flagCount < 7) spec.flags[spec.flagCount++] = static_cast<char>(*f);
      ++f;
    }
    if (*f == u'*') {
      spec.width = va_arg(args, int);
      if (spec.width < 0) {  // a negative width from the arguments means left alignment
        spec.leftAlign = true;
        if (spec.flagCount < 7) spec.flags[spec.flagCount++] = '-';
        spec.width = -spec.width;
      }
      ++f;
    } else {
      for (; *f >= u'0' && *f <= u'9'; ++f)
        spec.width = (spec.width < 0 ? 0 : spec.width) * 10 + (*f - u'0');
    }
    if (*f == u'.') {
      ++f;
      spec.precision = 0;
      if (*f == u'*') {
        spec.precision = va_arg(args, int);
        if (spec.precision < 0) spec.precision = -1;  // as if none were given
        ++f;
      } else {
        for (; *f >= u'0' && *f <= u'9'; ++f)
          spec.precision = spec.precision * 10 + (*f - u'0');
      }
    }
    switch (*f) {
      case u'h':
        ++f;
        spec.length = *f == u'h' ? (++f, Length::hh) : Length::h;
        break;
      case u'l':
        ++f;
        spec.length = *f == u'l' ? (++f, Length::ll) : Length::l;
        break;
      case u'L':
        ++f;
        spec.length = Length::L;
        break;
      case u'j':
        ++f;
        spec.length = Length::j;
        break;
      case u'z':
        ++f;
        spec.length = Length::z;
        break;
      case u't':
        ++f;
        spec.length = Length::t;
        break;
      case u'w':
        ++f;
        spec.length = Length::w;
        break;
      default:
        break;
    }
    const char16_t conversion = *f;
    if (conversion == 0) {
      refused = true;
      break;
    }
    ++f;
    spec.conversion = static_cast<char>(conversion);
    switch (conversion) {
      case u'%':
        out.Put(u'%');
        break;
      case u'd':
      case u'i':
        refused = !PutSigned(out, spec, args);
        break;
      case u'u':
      case u'o':
      case u'x':
      case u'X':
        refused = !PutUnsigned(out, spec, args);
        break;
      case u'f':
      case u'F':
      case u'e':
      case u'E':
      case u'g':
      case u'G':
      case u'a':
      case u'A':
        if (spec.length == Length::L)
          refused = !PutNarrowFormatted(out, spec, va_arg(args, long double));
        else
          refused = !PutNarrowFormatted(out, spec, va_arg(args, double));
        break;
      case u'p': {
        Spec pointer = spec;
        pointer.length = Length::None;
        refused = !PutNarrowFormatted(out, pointer, va_arg(args, void*));
        break;
      }
      case u'c':
      case u'C': {
        const int value = va_arg(args, int);
        const bool narrow =
            spec.length == Length::h ||
            (conversion == u'C' && spec.length != Length::l && spec.length != Length::w);
        PutUnit(out, spec,
                narrow ? static_cast<char16_t>(static_cast<unsigned char>(value))
                       : static_cast<char16_t>(value));
        break;
      }
      case u's':
      case u'S': {
        const bool narrow =
            spec.length == Length::h ||
            (conversion == u'S' && spec.length != Length::l && spec.length != Length::w);
        if (narrow)
          PutNarrowText(out, spec, va_arg(args, const char*));
        else
          PutWideText(out, spec, va_arg(args, const char16_t*));
        break;
      }
      default:  // "%n" and anything unknown
        refused = true;
        break;
    }
  }
  va_end(args);
  return out.Finish(refused);
}

}  // namespace ic::platform
