#include <ic/platform/internal/wide_case_memo.h>

#include <atomic>
#include <cstdint>
#include <mutex>

#include <ic/platform/internal/ascii_case.h>
#include <ic/platform/wide_runtime.h>

namespace ic::platform::internal {
namespace {

#if !defined(_WIN32)

// One direction of the mapping, filled a block of 256 units at a time. A block is written once,
// under the lock, before its pointer is published with release; readers that see the pointer
// with acquire read the block without the lock.
struct Memo {
  std::atomic<const char16_t*> ready[256];
  char16_t units[256][256];
  bool asciiRule;  // block 0 maps "a"-"z" / "A"-"Z" by the case bit and nothing else below 128
};

Memo g_upper;
Memo g_lower;
std::mutex g_filling;

const char16_t* FillBlock(Memo& memo, unsigned block, bool upper) noexcept {
  const std::lock_guard<std::mutex> lock(g_filling);
  if (memo.ready[block].load(std::memory_order_relaxed) == nullptr) {
    char16_t* units = memo.units[block];
    for (unsigned k = 0; k < 256; ++k) {
      const auto unit = static_cast<char16_t>(block * 256 + k);
      units[k] = upper ? towupper(unit) : towlower(unit);
    }
    if (block == 0) {
      bool rule = true;
      for (unsigned u = 1; u < 128; ++u) {
        const bool letter = upper ? u - 'a' < 26u : u - 'A' < 26u;
        rule = rule && units[u] == (letter ? (u ^ 0x20) : u);
      }
      memo.asciiRule = rule && units[0] == 0;
    }
    memo.ready[block].store(memo.units[block], std::memory_order_release);
  }
  return memo.units[block];
}

inline const char16_t* Block(Memo& memo, unsigned block, bool upper) noexcept {
  const char16_t* units = memo.ready[block].load(std::memory_order_acquire);
  return units != nullptr ? units : FillBlock(memo, block, upper);
}

// The mapping of one unit after another: two loads, the block and the unit in it.
class Mapper {
 public:
  explicit Mapper(bool upper) noexcept : _memo(upper ? g_upper : g_lower), _upper(upper) {
    Block(_memo, 0, upper);  // block 0 holds the ASCII rule
  }

  bool AsciiRule() const noexcept { return _memo.asciiRule; }

  char16_t operator()(char16_t unit) noexcept {
    return Block(_memo, unit >> 8, _upper)[unit & 0xFF];
  }

 private:
  Memo& _memo;
  bool _upper;
};

#else

// The run-time's mapping unit by unit: it follows the thread's locale.
class Mapper {
 public:
  explicit Mapper(bool upper) noexcept : _upper(upper) {}
  bool AsciiRule() const noexcept { return false; }
  char16_t operator()(char16_t unit) const noexcept {
    return _upper ? towupper(unit) : towlower(unit);
  }

 private:
  bool _upper;
};

#endif

}  // namespace

size_t MapWideCase(char16_t* p, size_t n, bool upper) noexcept {
  Mapper map(upper);
  const bool asciiRuns = map.AsciiRule();
  size_t i = 0;
  // Blocks of 16 units: one that is all ASCII starts a run that the run mapping takes in one
  // go; any other is mapped unit by unit.
  while (n - i >= 16) {
    if (asciiRuns) {
      unsigned bits = 0;
      for (size_t k = 0; k < 16; ++k)
        bits |= p[i + k];
      if (bits < 0x80) {
        const size_t run = MapAsciiCaseRun(p + i, n - i, upper);
        i += run;
        if (run != 0) continue;
      }
    }
    for (const size_t stop = i + 16; i < stop; ++i) {
      if (p[i] == 0) return i;
      p[i] = map(p[i]);
    }
  }
  for (; i < n; ++i) {
    if (p[i] == 0) return i;
    p[i] = map(p[i]);
  }
  return n;
}

size_t FindFirstWideCaseChange(const char16_t* p, size_t n, bool upper) noexcept {
  Mapper map(upper);
  for (size_t i = 0; i < n; ++i)
    if (map(p[i]) != p[i]) return i;
  return n;
}

}  // namespace ic::platform::internal
