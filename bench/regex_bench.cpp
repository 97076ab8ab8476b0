// RegexFind with one pattern on many short subjects, with the per-thread cache of compiled
// patterns against compiling on every call (the cache turned off), in the same run. Both give
// the same index for every subject, checked before timing.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <ic/regex/internal/pattern_cache.h>
#include <ic/string/ic_string.h>

#include "ratio_reporter.h"

namespace ic::bench {
namespace {

constexpr int Subjects = 10000;
const char* const Pattern = "[A-Z][a-z]+ [0-9]{2,4}";

struct RegexCase {
  std::vector<ICStringUnique> narrow;
  std::vector<ICStringUniqueW> wide;
  std::u16string widePattern;
  int64_t bytes = 0;  // of the narrow subjects; the wide ones hold twice as many
};

const RegexCase& Case() {
  static const RegexCase c = [] {
    RegexCase r;
    std::mt19937 rng(3);
    const char* const words[] = {"see ", "Page ", "item ", "Row ", "x", "12 ", "Vol 7 ", "-"};
    for (int i = 0; i < Subjects; ++i) {
      std::string s;
      const int count = std::uniform_int_distribution<int>(1, 5)(rng);
      for (int w = 0; w < count; ++w)
        s += words[rng() % 8];
      s += std::to_string(rng() % 3000);
      r.bytes += static_cast<int64_t>(s.size());
      r.narrow.emplace_back(s.c_str());
      r.wide.emplace_back(std::u16string(s.begin(), s.end()).c_str());
    }
    r.widePattern.assign(Pattern, Pattern + std::char_traits<char>::length(Pattern));
    return r;
  }();
  return c;
}

template <bool Wide>
void FindAll(benchmark::State& state, size_t capacity) {
  const RegexCase& c = Case();
  internal::SetRegexCacheCapacity(capacity);
  for (auto _ : state) {
    int64_t sum = 0;
    for (int i = 0; i < Subjects; ++i) {
      if constexpr (Wide)
        sum += c.wide[i].RegexFind(c.widePattern.c_str());
      else
        sum += c.narrow[i].RegexFind(Pattern, 0, true);
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * Subjects);
  state.SetBytesProcessed(state.iterations() * c.bytes * (Wide ? 2 : 1));
  internal::SetRegexCacheCapacity(16);
}

void Require(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "check failed: %s\n", what);
    std::exit(1);
  }
}

}  // namespace
}  // namespace ic::bench

int main(int argc, char** argv) {
  using namespace ic::bench;
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;

  const RegexCase& c = Case();
  int found = 0;
  for (int i = 0; i < Subjects; ++i) {
    ic::internal::SetRegexCacheCapacity(16);
    const int32_t cached = c.narrow[i].RegexFind(Pattern, 0, true);
    Require(cached == c.wide[i].RegexFind(c.widePattern.c_str()), "narrow and wide agree");
    ic::internal::SetRegexCacheCapacity(0);
    Require(cached == c.narrow[i].RegexFind(Pattern, 0, true), "cache changes no result");
    found += cached >= 0;
  }
  ic::internal::SetRegexCacheCapacity(16);
  std::printf("outputs checked: %d of %d subjects match, equal with and without the cache\n", found,
              Subjects);

  benchmark::RegisterBenchmark("RegexFind/10000_subjects/narrow/cached", FindAll<false>, 16);
  benchmark::RegisterBenchmark("RegexFind/10000_subjects/narrow/compile_each", FindAll<false>, 0);
  benchmark::RegisterBenchmark("RegexFind/10000_subjects/wide/cached", FindAll<true>, 16);
  benchmark::RegisterBenchmark("RegexFind/10000_subjects/wide/compile_each", FindAll<true>, 0);
  reporter.Compare("RegexFind narrow, cache vs compile each call",
                   "RegexFind/10000_subjects/narrow/cached",
                   "RegexFind/10000_subjects/narrow/compile_each", 5.0);
  reporter.Compare("RegexFind wide, cache vs compile each call",
                   "RegexFind/10000_subjects/wide/cached",
                   "RegexFind/10000_subjects/wide/compile_each", 5.0);

  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
