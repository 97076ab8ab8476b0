// The ASCII case runs and the wide case mapping over whole texts, against loops written here, on
// the AVX2 kernels (where the processor has them) and on the portable path: every length 0 to
// 130 with a unit that ends the run at every offset, both widths, and every 16-bit unit against
// towupper and towlower. Each text lies in a heap block of exactly its length, so that a read or
// write past it shows under AddressSanitizer.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

#include <ic/platform/internal/ascii_case.h>
#include <ic/platform/internal/vector_kernels.h>
#include <ic/platform/internal/wide_case_memo.h>
#include <ic/platform/wide_runtime.h>

namespace ic::platform {
namespace {

class AsciiCase : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { internal::EnableVectorKernels(true); }
};

template <class Unit>
void CheckRun(const std::vector<Unit>& text, bool upper) {
  using U = std::make_unsigned_t<Unit>;
  std::vector<Unit> expected = text;
  size_t run = 0;
  while (run < text.size() && static_cast<U>(text[run]) != 0 && static_cast<U>(text[run]) < 128) {
    const unsigned u = static_cast<U>(text[run]);
    if (upper && u >= 'a' && u <= 'z') expected[run] = static_cast<Unit>(u - 32);
    if (!upper && u >= 'A' && u <= 'Z') expected[run] = static_cast<Unit>(u + 32);
    ++run;
  }
  std::unique_ptr<Unit[]> block(new Unit[text.empty() ? 1 : text.size()]);
  std::copy(text.begin(), text.end(), block.get());
  ASSERT_EQ(internal::MapAsciiCaseRun(block.get(), text.size(), upper), run)
      << "length " << text.size();
  ASSERT_EQ(std::vector<Unit>(block.get(), block.get() + text.size()), expected)
      << "length " << text.size();
}

template <class Unit>
void EveryOffset(const std::vector<uint32_t>& stops) {
  for (const bool upper : {true, false})
    for (size_t n = 0; n <= 130; ++n) {
      std::vector<Unit> clean(n);
      for (size_t i = 0; i < n; ++i)  // letters of both cases, digits, punctuation
        clean[i] = static_cast<Unit>("aZ0m@N[`{z"[i % 10]);
      CheckRun(clean, upper);
      for (size_t at = 0; at < n; ++at)
        for (const uint32_t stop : stops) {
          std::vector<Unit> text = clean;
          text[at] = static_cast<Unit>(stop);
          CheckRun(text, upper);
        }
    }
}

TEST_P(AsciiCase, NarrowEveryLengthAndOffset) {
  EveryOffset<char>({0, 0x80, 0xC3, 0xFF, 'q', 'Q'});
}

TEST_P(AsciiCase, WideEveryLengthAndOffset) {
  EveryOffset<char16_t>({0, 0x80, 0xFF, 0x100, 0x161, 0x8000, 0xD800, 0xFFFF, 'q', 'Q'});
}

// Every unit, in texts of every length up to 40 so that both the blocks of 16 and the rest see
// it: MapWideCase maps as towupper / towlower and stops at a zero unit.
TEST_P(AsciiCase, WideCaseEveryUnit) {
  for (const bool upper : {true, false}) {
    auto map = [upper](char16_t u) { return upper ? towupper(u) : towlower(u); };
    std::vector<char16_t> all(0x10000);
    for (uint32_t u = 0; u < 0x10000; ++u)
      all[u] = static_cast<char16_t>(u == 0 ? 1 : u);
    std::vector<char16_t> mapped = all;
    ASSERT_EQ(internal::MapWideCase(mapped.data(), mapped.size(), upper), mapped.size());
    for (uint32_t u = 0; u < 0x10000; ++u)
      ASSERT_EQ(mapped[u], map(all[u])) << u;
    for (size_t n = 0; n <= 40; ++n)
      for (size_t zeroAt = 0; zeroAt <= n; ++zeroAt) {
        std::vector<char16_t> text(n);
        for (size_t i = 0; i < n; ++i)
          text[i] = static_cast<char16_t>(i % 2 == 0 ? u'a' + i : 0x3B1 + i);
        if (zeroAt < n) text[zeroAt] = 0;
        std::unique_ptr<char16_t[]> block(new char16_t[n == 0 ? 1 : n]);
        std::copy(text.begin(), text.end(), block.get());
        ASSERT_EQ(internal::MapWideCase(block.get(), n, upper), zeroAt);
        for (size_t i = 0; i < n; ++i)
          ASSERT_EQ(block[i], i < zeroAt ? map(text[i]) : text[i]) << n << " " << i;
        ASSERT_EQ(internal::FindFirstWideCaseChange(text.data(), n, upper), [&] {
          size_t k = 0;
          while (k < n && map(text[k]) == text[k])
            ++k;
          return k;
        }());
      }
  }
}

INSTANTIATE_TEST_SUITE_P(Paths, AsciiCase, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Vector" : "Portable"; });

}  // namespace
}  // namespace ic::platform
