// ExtractToken walking a 1 MiB CSV-like text against absl::StrSplit: into strings of their own
// (the same work as ours, which answers a new string per token) and as plain views. The token
// counts and lengths are checked to agree before any timing.
#include <benchmark/benchmark.h>

#include <absl/strings/str_split.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <ic/string/ic_string.h>

#include "ratio_reporter.h"

namespace {

using ic::ICStringUnique;

constexpr size_t TextSize = 1 << 20;

const std::string& Csv() {
  static const std::string text = [] {
    std::mt19937 rng(7);
    std::string out;
    while (out.size() < TextSize) {
      for (int field = 0; field < 8; ++field) {
        if (field) out += ',';
        out.append(rng() % 12, static_cast<char>('a' + rng() % 26));
      }
      out += ';';
    }
    return out;
  }();
  return text;
}

struct Tally {
  size_t tokens = 0, units = 0;
};

Tally WalkOurs(const ICStringUnique& text) {
  Tally tally;
  int32_t position = 0;
  bool atEnd = false;
  while (!atEnd) {
    const ICStringUnique token = text.ExtractToken(",;", position, nullptr, false, 0, &atEnd);
    ++tally.tokens;
    tally.units += static_cast<size_t>(token.GetLength());
  }
  return tally;
}

Tally WalkAbslStrings(const std::string& text) {
  Tally tally;
  for (absl::string_view piece : absl::StrSplit(text, absl::ByAnyChar(",;"))) {
    const std::string token(piece.data(), piece.size());
    ++tally.tokens;
    tally.units += token.size();
    benchmark::DoNotOptimize(token.data());
  }
  return tally;
}

Tally WalkAbslViews(const std::string& text) {
  Tally tally;
  for (absl::string_view token : absl::StrSplit(text, absl::ByAnyChar(",;"))) {
    ++tally.tokens;
    tally.units += token.size();
  }
  return tally;
}

void Ours(benchmark::State& state) {
  const ICStringUnique text(Csv().c_str());
  for (auto _ : state)
    benchmark::DoNotOptimize(WalkOurs(text).units);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Csv().size()));
}
void AbslStrings(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(WalkAbslStrings(Csv()).units);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Csv().size()));
}
void AbslViews(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(WalkAbslViews(Csv()).units);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Csv().size()));
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const Tally ours = WalkOurs(ICStringUnique(Csv().c_str()));
  const Tally theirs = WalkAbslViews(Csv());
  if (ours.tokens != theirs.tokens || ours.units != theirs.units) {
    std::fprintf(stderr, "result check failed: %zu/%zu tokens, %zu/%zu units\n", ours.tokens,
                 theirs.tokens, ours.units, theirs.units);
    return 1;
  }
  ic::bench::RatioReporter reporter;
  benchmark::RegisterBenchmark("Tokens/ExtractToken/ours", Ours)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("Tokens/StrSplit/strings", AbslStrings)
      ->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("Tokens/StrSplit/views", AbslViews)->Unit(benchmark::kMicrosecond);
  // "Within 1.3x of StrSplit": a speed of at least 1 / 1.3.
  reporter.Compare("ExtractToken vs StrSplit into strings", "Tokens/ExtractToken/ours",
                   "Tokens/StrSplit/strings", 1 / 1.3);
  reporter.Compare("ExtractToken vs StrSplit views", "Tokens/ExtractToken/ours",
                   "Tokens/StrSplit/views", 1 / 1.3);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
