// Reading a fuzzer's bytes as a sequence of choices, and copies of text in blocks of exactly
// the text's size, so that AddressSanitizer sees any read behind the terminator.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace ic::fuzz {

/// Takes choices from the front of the input. When the bytes run out every choice is 0 (the
/// lowest value of its range), so each input is a complete, deterministic run.
class FuzzInput {
 public:
  FuzzInput(const uint8_t* data, size_t size) : _data(data), _size(size) {}

  bool Empty() const { return _at >= _size; }
  size_t Remaining() const { return _size - _at; }

  uint8_t Byte() { return _at < _size ? _data[_at++] : 0; }
  bool Bool() { return (Byte() & 1) != 0; }
  /// A value from `low` to `high`, both included.
  int32_t Int(int32_t low, int32_t high) {
    const uint32_t span = static_cast<uint32_t>(high) - static_cast<uint32_t>(low) + 1;
    uint32_t raw = 0;
    for (uint32_t room = span - 1; room != 0; room >>= 8)
      raw = (raw << 8) | Byte();
    return span == 0 ? static_cast<int32_t>(raw) : static_cast<int32_t>(low + raw % span);
  }
  /// A text of bytes: a length byte, then that many bytes (fewer at the end of the input).
  std::string Text(size_t maxLength = 255) {
    const size_t length = std::min<size_t>(Byte(), maxLength);
    return Take(length);
  }
  /// Everything that is left.
  std::string Rest() { return Take(Remaining()); }
  /// A wide text: units taken two bytes each, little-endian.
  static std::u16string Units(const std::string& bytes) {
    std::u16string units(bytes.size() / 2, u'\0');
    for (size_t i = 0; i < units.size(); ++i)
      units[i] = static_cast<char16_t>(static_cast<uint8_t>(bytes[2 * i]) |
                                       static_cast<uint8_t>(bytes[2 * i + 1]) << 8);
    return units;
  }

 private:
  std::string Take(size_t length) {
    length = std::min(length, Remaining());
    std::string out(reinterpret_cast<const char*>(_data + _at), length);
    _at += length;
    return out;
  }

  const uint8_t* _data;
  size_t _size;
  size_t _at = 0;
};

/// A zero-terminated copy of a text in a heap block of exactly length + 1 units: a read behind
/// the terminator leaves the block. Embedded zeros stay (the text then ends at the first).
template <class Unit>
class ExactText {
 public:
  explicit ExactText(const std::basic_string<Unit>& text)
      : _length(text.size()), _units(new Unit[text.size() + 1]) {
    std::memcpy(_units.get(), text.data(), text.size() * sizeof(Unit));
    _units[text.size()] = 0;
  }
  const Unit* Get() const { return _units.get(); }
  size_t Length() const { return _length; }

 private:
  size_t _length;
  std::unique_ptr<Unit[]> _units;
};

/// Stops the run with a message: a property of the library did not hold.
[[noreturn]] inline void Fail(const char* what) {
  std::fprintf(stderr, "fuzz check failed: %s\n", what);
  std::abort();
}

#define IC_FUZZ_CHECK(condition) \
  ((condition) ? (void)0 : ::ic::fuzz::Fail(#condition " (" __FILE__ ")"))

}  // namespace ic::fuzz
