#include "biased_text.h"

#include <cstdint>

namespace ic::platform {

std::string BiasedUtf8(std::mt19937& random) {
  // The awkward bytes: 80-BF, C0-C2, E0, ED, EF-F5, FF and zero.
  static const uint8_t kAwkward[] = {0xC0, 0xC1, 0xC2, 0xE0, 0xED, 0xEF, 0xF0,
                                     0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xFF, 0x00};
  const auto awkward = [&random] {
    const uint32_t pick = random() % (64 + sizeof kAwkward);
    return static_cast<char>(pick < 64 ? 0x80 + pick : kAwkward[pick - 64]);
  };
  static const char* const kSequences[] = {"\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80",
                                           "\xED\x9F\xBF", "\xEF\xBF\xBD"};
  std::string text;
  const int pieces = static_cast<int>(random() % 24);
  for (int i = 0; i < pieces; ++i) {
    switch (random() % 4) {
      case 0:
        text.append(random() % 48, static_cast<char>('a' + random() % 26));
        break;
      case 1:
        for (int k = 1 + static_cast<int>(random() % 4); k > 0; --k)
          text.push_back(awkward());
        break;
      case 2:
        text += kSequences[random() % 5];
        break;
      default:
        for (int k = static_cast<int>(random() % 20); k > 0; --k)
          text += kSequences[random() % 5];
    }
  }
  return text;
}

std::u16string BiasedUtf16(std::mt19937& random) {
  std::u16string text;
  const int pieces = static_cast<int>(random() % 24);
  for (int i = 0; i < pieces; ++i) {
    switch (random() % 5) {
      case 0:
        text.append(random() % 40, static_cast<char16_t>('A' + random() % 26));
        break;
      case 1:
        text.push_back(static_cast<char16_t>(0xD800 + random() % 0x800));
        break;
      case 2:
        text.push_back(static_cast<char16_t>(0xD800 + random() % 0x400));
        text.push_back(static_cast<char16_t>(0xDC00 + random() % 0x400));
        break;
      case 3:
        text.push_back(static_cast<char16_t>(0x80 + random() % 0x780));
        break;
      default:
        text.push_back(static_cast<char16_t>(0x800 + random() % 0xF000));
    }
  }
  return text;
}

}  // namespace ic::platform
