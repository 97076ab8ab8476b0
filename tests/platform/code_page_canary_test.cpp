// The code page converters write nothing behind the count they return: every unit of the
// caller's buffer past the result keeps the canary it was filled with, for exact, short-by-one
// and generous room, on the vector and the portable path.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <ic/platform/code_page.h>
#include <ic/platform/internal/vector_kernels.h>

namespace ic::platform {
namespace {

constexpr char16_t kUnitCanary = 0xCAFE;
constexpr char kByteCanary = static_cast<char>(0xA5);

// UTF-8 biased towards the bytes where decoders go wrong (continuations, overlong and surrogate
// leads, leads beyond U+10FFFF, bytes that cannot lead, zero), with ASCII runs long enough for
// the vector gears, and well-formed sequences of every length.
std::string BiasedUtf8(std::mt19937& random) {
  static const uint8_t kAwkward[] = {0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2,
                                     0xE0, 0xED, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5, 0xFF, 0x00};
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
        text.push_back(static_cast<char>(kAwkward[random() % sizeof kAwkward]));
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

// UTF-16 biased towards surrogates, alone, paired and reversed, with ASCII runs.
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

class ConverterCanaries : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { internal::EnableVectorKernels(true); }
};

INSTANTIATE_TEST_SUITE_P(CodePage, ConverterCanaries, ::testing::Values(true, false),
                         [](const ::testing::TestParamInfo<bool>& info) {
                           return info.param ? std::string("Vector") : std::string("Portable");
                         });

TEST_P(ConverterCanaries, Utf8ToUtf16WritesNothingPastTheResult) {
  std::mt19937 random(GetParam() ? 8 : 16);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = BiasedUtf8(random);
    if (text.empty()) continue;
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CodePageUTF8, 0, text.data(), length, nullptr, 0);
    ASSERT_GT(needed, 0);
    for (const int room : {needed, needed + 1 + static_cast<int>(random() % 64), needed * 2 + 40}) {
      std::vector<char16_t> buffer(static_cast<size_t>(room) + 8, kUnitCanary);
      const int written =
          MultiByteToWideChar(CodePageUTF8, 0, text.data(), length, buffer.data(), room);
      ASSERT_EQ(written, needed);
      for (size_t i = static_cast<size_t>(written); i < buffer.size(); ++i)
        ASSERT_EQ(buffer[i], kUnitCanary)
            << "unit " << i << " of room " << room << ", round " << round;
    }
  }
}

TEST_P(ConverterCanaries, Utf16ToUtf8WritesNothingPastTheResult) {
  std::mt19937 random(GetParam() ? 32 : 64);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = BiasedUtf16(random);
    if (text.empty()) continue;
    const int length = static_cast<int>(text.size());
    const int needed =
        WideCharToMultiByte(CodePageUTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    ASSERT_GT(needed, 0);
    for (const int room : {needed, needed + 1 + static_cast<int>(random() % 64), needed * 2 + 40}) {
      std::vector<char> buffer(static_cast<size_t>(room) + 8, kByteCanary);
      const int written = WideCharToMultiByte(CodePageUTF8, 0, text.data(), length, buffer.data(),
                                              room, nullptr, nullptr);
      ASSERT_EQ(written, needed);
      for (size_t i = static_cast<size_t>(written); i < buffer.size(); ++i)
        ASSERT_EQ(buffer[i], kByteCanary) << "byte " << i << " of room " << room;
    }
  }
}

}  // namespace
}  // namespace ic::platform
