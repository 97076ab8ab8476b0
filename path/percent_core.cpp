#include <ic/path/internal/percent_core.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>

#include <ic/number/number_format.h>
#include <ic/platform/internal/stop_walk.h>
#include <ic/platform/internal/unit_scan.h>

namespace ic::internal {
namespace {

// What a byte needs: copied, escaped in modes 1 and 2, escaped in mode 2 only, or always.
enum ByteClass : uint8_t { kCopy = 0, kReserved = 1, kBackslash = 2, kUnsafe = 3 };

struct EscapeTables {
  uint8_t cls[256];
  char text[256][4];  // "%XY" and a terminator, for each byte
};

EscapeTables MakeEscapeTables() noexcept {
  EscapeTables t{};
  static constexpr StringHexFormatOptions<char> kPercentHex{true, "%", 3, '0'};
  for (int b = 0; b < 256; ++b) {
    t.cls[b] = (b < 0x21 || b > 0x7E) ? kUnsafe : kCopy;
    FormatHex(t.text[b], 4, static_cast<uint64_t>(b), 1, kPercentHex);
  }
  for (unsigned char c : std::string_view("\"%<>^`{|}"))
    t.cls[c] = kUnsafe;
  for (unsigned char c : std::string_view("#;/?:@&=+$,"))
    t.cls[c] = kReserved;
  t.cls[static_cast<unsigned char>('\\')] = kBackslash;
  return t;
}

const EscapeTables& Tables() noexcept {
  static const EscapeTables tables = MakeEscapeTables();
  return tables;
}

constexpr std::array<int8_t, 256> MakeHexTable() {
  std::array<int8_t, 256> t{};
  for (int c = 0; c < 256; ++c)
    t[static_cast<size_t>(c)] = static_cast<int8_t>(c >= '0' && c <= '9'   ? c - '0'
                                                    : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                    : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                                           : -1);
  return t;
}
constexpr std::array<int8_t, 256> kHexValues = MakeHexTable();

// The value of a hexadecimal digit, or -1.
template <class Unit>
int HexValue(Unit u) noexcept {
  const auto v = static_cast<std::make_unsigned_t<Unit>>(u);
  return v < 256 ? kHexValues[v] : -1;
}

}  // namespace

template <class Unit>
int32_t PercentEncodeUnits(const Unit* source, int32_t length, Unit* target, int mode) noexcept {
  const EscapeTables& t = Tables();
  // The lowest class that is escaped in this mode: 3 in mode 0, 1 in mode 1, 1 in mode 2 with
  // the backslash's class 2 included.
  const uint8_t threshold = mode == 1 || mode == 2 ? kReserved : kUnsafe;
  const bool backslash = mode == 2;
  Unit* out = target;
  for (int32_t i = 0; i < length; ++i) {
    const uint8_t byte = static_cast<uint8_t>(source[i]);
    const uint8_t cls = t.cls[byte];
    if (cls >= threshold && (cls != kBackslash || backslash)) {
      const char* e = t.text[byte];
      out[0] = static_cast<Unit>(e[0]);
      out[1] = static_cast<Unit>(e[1]);
      out[2] = static_cast<Unit>(e[2]);
      out += 3;
    } else {
      *out++ = source[i];
    }
  }
  return static_cast<int32_t>(out - target);
}

template <class Unit>
int32_t FindPercent(const Unit* text, int32_t length) noexcept {
  if constexpr (sizeof(Unit) == 1) {
    const void* p = std::memchr(text, '%', static_cast<size_t>(length));
    return p ? static_cast<int32_t>(static_cast<const char*>(p) - text) : -1;
  } else {
    for (int32_t i = 0; i < length; ++i)
      if (text[i] == Unit('%')) return i;
    return -1;
  }
}

// Decodes the escape at `i` (a percent sign) into `target` at `w` and moves both behind it.
// Returns false when the decoding ends there.
template <class In, class Out>
bool DecodeEscape(const In* source, int32_t length, Out* target, int32_t& i, int32_t& w) noexcept {
  if (i + 1 == length) {  // a lone percent sign at the end stays
    target[w++] = Out('%');
    return false;
  }
  const In next = source[i + 1];
  if (next == In('%')) {
    target[w++] = Out('%');
    i += 2;
    return true;
  }
  const int high = HexValue(next);
  if (high < 0) {  // the percent sign and the character behind it are lost
    i += 2;
    return true;
  }
  if (i + 2 == length) return false;  // "%X" at the end: both lost, and the decoding ends
  const int low = HexValue(source[i + 2]);
  if (low >= 0) target[w++] = static_cast<Out>(high * 16 + low);
  i += 3;
  return true;
}

// Byte text in place, from the first percent sign `i` on: the walk goes from percent sign to
// percent sign (see WalkStops), moving the run between them down to the output. Once the output
// trails the input by eight bytes or more, a run of up to eight is moved by one eight-byte store
// (its bytes beyond the run are overwritten later or lie past the end of the result).
int32_t DecodeInPlace(char* text, int32_t length, int32_t i) noexcept {
  static constexpr platform::internal::UnitStopSet kPercent = [] {
    platform::internal::UnitStopSet set;
    set.Add('%');
    return set;
  }();
  int32_t w = i;
  const auto moveDown = [&](int32_t from, int32_t to) {
    const int32_t run = to - from;
    if (run <= 8 && from - w >= 8 && from + 8 <= length)
      std::memcpy(text + w, text + from, 8);
    else
      std::memmove(text + w, text + from, static_cast<size_t>(run));
    w += run;
  };
  const char* const stop = platform::internal::WalkStops(
      static_cast<const char*>(text + i), text + length, kPercent,
      [&](const char* at, const char* mark) {
        moveDown(static_cast<int32_t>(at - text), static_cast<int32_t>(mark - text));
        int32_t r = static_cast<int32_t>(mark - text);
        return DecodeEscape(text, length, text, r, w) ? static_cast<const char*>(text + r)
                                                      : nullptr;
      });
  if (stop != nullptr && stop < text + length) moveDown(static_cast<int32_t>(stop - text), length);
  return w;
}

template <class In, class Out>
int32_t PercentDecodeUnits(const In* source, int32_t length, Out* target) noexcept {
  int32_t i = 0;
  int32_t w = 0;
  if (static_cast<const void*>(source) == static_cast<const void*>(target)) {
    i = FindPercent(source, length);
    if (i < 0) return length;
    if constexpr (sizeof(In) == 1 && sizeof(Out) == 1)
      return DecodeInPlace(reinterpret_cast<char*>(target), length, i);
    w = i;
  }
  while (i < length) {
    const In c = source[i];
    if (c != In('%')) {
      if (sizeof(In) == 1 || static_cast<uint32_t>(c) <= 0xFF) target[w++] = static_cast<Out>(c);
      ++i;
      continue;
    }
    if (!DecodeEscape(source, length, target, i, w)) break;
  }
  return w;
}

template int32_t PercentEncodeUnits(const char*, int32_t, char*, int) noexcept;
template int32_t PercentEncodeUnits(const char16_t*, int32_t, char16_t*, int) noexcept;
template int32_t FindPercent(const char*, int32_t) noexcept;
template int32_t FindPercent(const char16_t*, int32_t) noexcept;
template int32_t PercentDecodeUnits(const char*, int32_t, char*) noexcept;
template int32_t PercentDecodeUnits(const char16_t*, int32_t, char*) noexcept;

}  // namespace ic::internal
