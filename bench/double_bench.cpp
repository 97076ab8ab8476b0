// FormatDouble against std::to_chars with fixed precision on the same values. The two use
// different arithmetic (plain double steps against exact conversion), so only their time is
// compared; the texts are checked to agree on values where both are exact.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <ic/string/ic_string.h>

#include "ratio_reporter.h"

namespace {

using ic::ICStringUnique;

const std::vector<double>& Values() {
  static const std::vector<double> values = [] {
    std::mt19937_64 rng(9);
    std::vector<double> out;
    for (int i = 0; i < 4096; ++i)
      out.push_back(static_cast<double>(static_cast<int64_t>(rng() % 2000000000) - 1000000000) /
                    static_cast<double>(1 + rng() % 10000));
    return out;
  }();
  return values;
}

// Bytes of the texts that std::to_chars writes for the values, counted for both sides so that
// their bytes per second compare as their times do.
int64_t TextBytes() {
  static const int64_t bytes = [] {
    int64_t total = 0;
    char buffer[64];
    for (double value : Values())
      total +=
          std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 3).ptr -
          buffer;
    return total;
  }();
  return bytes;
}

void Ours(benchmark::State& state) {
  ICStringUnique s;
  for (auto _ : state)
    for (double value : Values()) {
      s.FormatDouble(value, 3, true, 1e-9, true, false, false);
      benchmark::DoNotOptimize(s.GetText());
    }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(Values().size()));
  state.SetBytesProcessed(state.iterations() * TextBytes());
}

void ToChars(benchmark::State& state) {
  char buffer[64];
  for (auto _ : state)
    for (double value : Values()) {
      const auto result =
          std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 3);
      benchmark::DoNotOptimize(result.ptr);
    }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(Values().size()));
  state.SetBytesProcessed(state.iterations() * TextBytes());
}

void Check() {
  // Binary fractions with few digits are exact in both.
  for (double value : {0.5, -12.25, 1234.125, 7.0, -0.75}) {
    ICStringUnique s;
    s.FormatDouble(value, 3, true, 1e-9, true, false, false);
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 3);
    if (std::string(s.GetText()) != std::string(buffer, result.ptr)) {
      std::fprintf(stderr, "result check failed: %s vs %s\n", s.GetText(),
                   std::string(buffer, result.ptr).c_str());
      std::exit(1);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Check();
  ic::bench::RatioReporter reporter;
  benchmark::RegisterBenchmark("FormatDouble/ours", Ours)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("FormatDouble/to_chars", ToChars)->Unit(benchmark::kMicrosecond);
  // "Within 2x of to_chars": a speed of at least 1 / 2.
  reporter.Compare("FormatDouble vs std::to_chars fixed 3", "FormatDouble/ours",
                   "FormatDouble/to_chars", 0.5);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
