// Trim, TrimRight and Squeeze on 1 MiB of text that needs nothing and that needs a lot, against
// absl::StripAsciiWhitespace, straightforward std::string loops, and memchr over the same bytes
// (the speed of reading the text once). Every result of ours is checked against the
// alternative before any timing.
#include <benchmark/benchmark.h>

#include <absl/strings/ascii.h>

#include <string.h>  // memmem, a GNU extension
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include <ic/string/ic_string.h>

#include "ratio_reporter.h"

namespace {

using ic::ICStringUnique;

constexpr size_t TextSize = 1 << 20;

void Require(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "result check failed: %s\n", what);
    std::exit(1);
  }
}

// Words separated by single spaces: nothing to trim, nothing to squeeze.
std::string CleanText() {
  static const char* const kWords[] = {"alpha", "beta", "gamma", "delta", "text", "value"};
  std::mt19937 rng(5);
  std::string out;
  while (out.size() < TextSize - 16) {
    if (!out.empty()) out += ' ';
    out += kWords[rng() % 6];
  }
  return out;
}

// A quarter of blanks at each end and runs of blanks inside.
std::string BlankyText() {
  std::mt19937 rng(6);
  std::string out(TextSize / 4, ' ');
  while (out.size() < TextSize * 3 / 4) {
    out += "word";
    out.append(1 + rng() % 6, rng() % 2 ? ' ' : '\t');
  }
  out += "end";
  out.append(TextSize - out.size(), '\t');
  return out;
}

const std::string& Clean() {
  static const std::string text = CleanText();
  return text;
}
const std::string& Blanky() {
  static const std::string text = BlankyText();
  return text;
}

// The straightforward loops.
std::string TrimStd(std::string s) {
  const size_t first = s.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  const size_t last = s.find_last_not_of(" \t\r\n");
  return s.substr(first, last - first + 1);
}
std::string SqueezeStd(const std::string& s) {
  std::string out;
  out.reserve(s.size());
  bool inRun = false;
  for (char c : s) {
    if (c == ' ' || c == '\t') {
      if (!inRun) out += ' ';
      inRun = true;
    } else {
      out += c;
      inRun = false;
    }
  }
  return out;
}

void MemchrScan(benchmark::State& state, const std::string& text) {
  for (auto _ : state)
    benchmark::DoNotOptimize(std::memchr(text.data(), '\x01', text.size()));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// What Squeeze(" \t" to ' ') looks for, found with the C library's fastest scans over the same
// bytes: a tab anywhere, or two blanks in a row (memmem for "  ", then " \t" is covered by the
// tab search). A yardstick for the pair test that Squeeze makes at every blank.
void SqueezeCleanLibc(benchmark::State& state) {
  const std::string& text = Clean();
  for (auto _ : state) {
    const char* data = text.data();
    benchmark::DoNotOptimize(data);
    benchmark::DoNotOptimize(std::memchr(data, '\t', text.size()));
    benchmark::DoNotOptimize(memmem(data, text.size(), "  ", 2));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// Nothing to do: the same string every iteration, never changed.
void TrimCleanOurs(benchmark::State& state) {
  ICStringUnique s(Clean().c_str());
  for (auto _ : state) {
    s.Trim();
    s.TrimRight();
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}
void TrimCleanAbsl(benchmark::State& state) {
  const absl::string_view text(Clean().data(), Clean().size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(absl::StripAsciiWhitespace(text).data());
    benchmark::DoNotOptimize(absl::StripTrailingAsciiWhitespace(text).data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}
void SqueezeCleanOurs(benchmark::State& state) {
  ICStringUnique s(Clean().c_str());
  for (auto _ : state) {
    s.Squeeze(nullptr, ' ', " \t");
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}
void SqueezeCleanStd(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(SqueezeStd(Clean()).size());
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}

// A lot to do: each iteration starts from a fresh copy of the text, on both sides.
void TrimBlankyOurs(benchmark::State& state) {
  for (auto _ : state) {
    ICStringUnique s(Blanky().c_str(), static_cast<int32_t>(Blanky().size()));
    s.Trim();
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}
void TrimBlankyAbsl(benchmark::State& state) {
  for (auto _ : state) {
    std::string s = Blanky();
    const absl::string_view kept =
        absl::StripAsciiWhitespace(absl::string_view(s.data(), s.size()));
    s = std::string(kept.data(), kept.size());
    benchmark::DoNotOptimize(s.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}
void TrimBlankyStd(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(TrimStd(Blanky()).data());
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}
void SqueezeBlankyOurs(benchmark::State& state) {
  for (auto _ : state) {
    ICStringUnique s(Blanky().c_str(), static_cast<int32_t>(Blanky().size()));
    s.Squeeze(nullptr, ' ', " \t");
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}
void SqueezeBlankyStd(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(SqueezeStd(Blanky()).size());
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(TextSize));
}

void CheckResults() {
  for (const std::string* text : {&Clean(), &Blanky()}) {
    ICStringUnique s(text->c_str());
    s.Trim();
    Require(std::string(s.GetText()) == TrimStd(*text), "Trim");
    const absl::string_view kept =
        absl::StripAsciiWhitespace(absl::string_view(text->data(), text->size()));
    Require(std::string(s.GetText()) == std::string(kept.data(), kept.size()), "Trim against absl");
    ICStringUnique q(text->c_str());
    q.Squeeze(nullptr, ' ', " \t");
    Require(std::string(q.GetText()) == SqueezeStd(*text), "Squeeze");
  }
  ICStringUnique clean(Clean().c_str());
  const char* block = clean.GetText();
  clean.Trim();
  clean.Squeeze(nullptr, ' ', " \t");
  Require(clean.GetText() == block, "nothing to do leaves the block");
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  CheckResults();
  ic::bench::RatioReporter reporter;
  const auto us = benchmark::kMicrosecond;
  benchmark::RegisterBenchmark("Clean/memchr", [](benchmark::State& s) {
    MemchrScan(s, Clean());
  })->Unit(us);
  benchmark::RegisterBenchmark("Clean/Trim+TrimRight/ours", TrimCleanOurs)->Unit(us);
  benchmark::RegisterBenchmark("Clean/Trim+TrimRight/absl", TrimCleanAbsl)->Unit(us);
  benchmark::RegisterBenchmark("Clean/Squeeze/ours", SqueezeCleanOurs)->Unit(us);
  benchmark::RegisterBenchmark("Clean/Squeeze/std", SqueezeCleanStd)->Unit(us);
  benchmark::RegisterBenchmark("Clean/Squeeze/memchr+memmem", SqueezeCleanLibc)->Unit(us);
  benchmark::RegisterBenchmark("Blanky/Trim/ours", TrimBlankyOurs)->Unit(us);
  benchmark::RegisterBenchmark("Blanky/Trim/absl", TrimBlankyAbsl)->Unit(us);
  benchmark::RegisterBenchmark("Blanky/Trim/std", TrimBlankyStd)->Unit(us);
  benchmark::RegisterBenchmark("Blanky/Squeeze/ours", SqueezeBlankyOurs)->Unit(us);
  benchmark::RegisterBenchmark("Blanky/Squeeze/std", SqueezeBlankyStd)->Unit(us);

  // "Within 1.5x of memchr" for the nothing-to-do cases: a speed of at least 1 / 1.5.
  reporter.Compare("Trim+TrimRight, nothing to do, vs memchr", "Clean/Trim+TrimRight/ours",
                   "Clean/memchr", 1 / 1.5);
  reporter.Compare("Squeeze, nothing to do, vs memchr", "Clean/Squeeze/ours", "Clean/memchr",
                   1 / 1.5);
  // The C library's best scans for the same stops, as a yardstick for the row above.
  reporter.Compare("Squeeze, nothing to do, vs memchr+memmem", "Clean/Squeeze/ours",
                   "Clean/Squeeze/memchr+memmem", 1.0);
  reporter.Compare("Trim+TrimRight, nothing to do, vs absl", "Clean/Trim+TrimRight/ours",
                   "Clean/Trim+TrimRight/absl", 1.0);
  reporter.Compare("Squeeze, nothing to do, vs std loop", "Clean/Squeeze/ours", "Clean/Squeeze/std",
                   1.0);
  reporter.Compare("Trim, a lot to do, vs absl", "Blanky/Trim/ours", "Blanky/Trim/absl", 1.0);
  reporter.Compare("Trim, a lot to do, vs std loop", "Blanky/Trim/ours", "Blanky/Trim/std", 1.0);
  reporter.Compare("Squeeze, a lot to do, vs std loop", "Blanky/Squeeze/ours", "Blanky/Squeeze/std",
                   1.0);

  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
