// The library's own code page converters write nothing behind the count they return: every unit
// of the caller's buffer past the result keeps the canary it was filled with, for exact and
// generous room, on the vector and the portable path. (On Windows the public converters are the
// system's; the differential test holds them against these.)
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <ic/platform/code_page.h>
#include <ic/platform/internal/portable_code_page.h>
#include <ic/platform/internal/vector_kernels.h>

#include "biased_text.h"

namespace ic::platform {
namespace {

constexpr char16_t kUnitCanary = 0xCAFE;
constexpr char kByteCanary = static_cast<char>(0xA5);

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
    const int needed =
        internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text.data(), length, nullptr, 0);
    ASSERT_GT(needed, 0);
    for (const int room : {needed, needed + 1 + static_cast<int>(random() % 64), needed * 2 + 40}) {
      std::vector<char16_t> buffer(static_cast<size_t>(room) + 8, kUnitCanary);
      const int written = internal::PortableMultiByteToWideChar(CodePageUTF8, 0, text.data(),
                                                                length, buffer.data(), room);
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
    const int needed = internal::PortableWideCharToMultiByte(CodePageUTF8, 0, text.data(), length,
                                                             nullptr, 0, nullptr, nullptr);
    ASSERT_GT(needed, 0);
    for (const int room : {needed, needed + 1 + static_cast<int>(random() % 64), needed * 2 + 40}) {
      std::vector<char> buffer(static_cast<size_t>(room) + 8, kByteCanary);
      const int written = internal::PortableWideCharToMultiByte(
          CodePageUTF8, 0, text.data(), length, buffer.data(), room, nullptr, nullptr);
      ASSERT_EQ(written, needed);
      for (size_t i = static_cast<size_t>(written); i < buffer.size(); ++i)
        ASSERT_EQ(buffer[i], kByteCanary) << "byte " << i << " of room " << room;
    }
  }
}

}  // namespace
}  // namespace ic::platform
