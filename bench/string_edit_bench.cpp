// Building and editing strings against the usual alternatives:
//   - concatenation of 2, 4 and 8 pieces (strings and literals) into a string, against
//     std::string's operator+ and absl::StrCat;
//   - assembling 1 MiB from many small pieces with ICStringBuilder, against std::string::append;
//   - ReplaceAll over 1 MiB of text with 10,000 matches, for a longer, a shorter and an
//     equally long replacement, against absl::StrReplaceAll.
// Every pairing is checked to give the same text before any timing.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <absl/strings/str_cat.h>
#include <absl/strings/str_replace.h>

#include <ic/string/builder.h>
#include <ic/string/chain.h>
#include <ic/string/ic_string.h>

#include "ratio_reporter.h"

namespace {

using ic::ICStringUnique;

// --- Concatenation ---------------------------------------------------------------------------

struct Words {
  std::string std[4];
  ICStringUnique ours[4];
  Words() {
    const char* texts[] = {"first-string-000", "second-string-11", "third-string-222",
                           "fourth-string-33"};
    for (int i = 0; i < 4; ++i) {
      std[i] = texts[i];
      ours[i] = texts[i];
    }
  }
};
Words& TheWords() {
  static Words words;
  return words;
}

// Strings alternate with literals: s0 + " | " + s1 + " / " ...
std::string Std2(const Words& w) {
  return w.std[0] + " | ";
}
std::string Std4(const Words& w) {
  return w.std[0] + " | " + w.std[1] + " / ";
}
std::string Std8(const Words& w) {
  return w.std[0] + " | " + w.std[1] + " / " + w.std[2] + " - " + w.std[3] + " + ";
}
std::string Absl2(const Words& w) {
  return absl::StrCat(w.std[0], " | ");
}
std::string Absl4(const Words& w) {
  return absl::StrCat(w.std[0], " | ", w.std[1], " / ");
}
std::string Absl8(const Words& w) {
  return absl::StrCat(w.std[0], " | ", w.std[1], " / ", w.std[2], " - ", w.std[3], " + ");
}
// Bytes of the concatenated text, the same for every alternative.
template <int N>
int64_t ResultBytes(const Words& w) {
  return static_cast<int64_t>((N == 2 ? Std2(w) : N == 4 ? Std4(w) : Std8(w)).size());
}

void Ours2(ICStringUnique& r, const Words& w) {
  r.Assign(w.ours[0] + " | ");
}
void Ours4(ICStringUnique& r, const Words& w) {
  r.Assign(w.ours[0] + " | " + w.ours[1] + " / ");
}
void Ours8(ICStringUnique& r, const Words& w) {
  r.Assign(w.ours[0] + " | " + w.ours[1] + " / " + w.ours[2] + " - " + w.ours[3] + " + ");
}

template <int N>
void ConcatStd(benchmark::State& state) {
  const Words& w = TheWords();
  for (auto _ : state) {
    std::string r = N == 2 ? Std2(w) : N == 4 ? Std4(w) : Std8(w);
    benchmark::DoNotOptimize(r.data());
  }
  state.SetBytesProcessed(state.iterations() * ResultBytes<N>(w));
}
template <int N>
void ConcatAbsl(benchmark::State& state) {
  const Words& w = TheWords();
  for (auto _ : state) {
    std::string r = N == 2 ? Absl2(w) : N == 4 ? Absl4(w) : Absl8(w);
    benchmark::DoNotOptimize(r.data());
  }
  state.SetBytesProcessed(state.iterations() * ResultBytes<N>(w));
}
// Each iteration makes a new string, as the alternatives do.
template <int N>
void ConcatOurs(benchmark::State& state) {
  const Words& w = TheWords();
  for (auto _ : state) {
    ICStringUnique r;
    if (N == 2)
      Ours2(r, w);
    else if (N == 4)
      Ours4(r, w);
    else
      Ours8(r, w);
    benchmark::DoNotOptimize(r.GetText());
  }
  state.SetBytesProcessed(state.iterations() * ResultBytes<N>(w));
}

// --- Builder ---------------------------------------------------------------------------------

constexpr size_t kMiB = 1 << 20;

struct Pieces {
  std::vector<std::string> texts;
  int64_t bytes = 0;
  Pieces() {
    std::mt19937 rng(7);
    size_t total = 0;
    while (total < kMiB) {
      const size_t length = 4 + rng() % 29;  // 4 to 32 bytes
      std::string t;
      for (size_t i = 0; i < length; ++i)
        t += static_cast<char>('a' + rng() % 26);
      total += length;
      bytes += static_cast<int64_t>(length);
      texts.push_back(std::move(t));
    }
  }
};
Pieces& ThePieces() {
  static Pieces pieces;
  return pieces;
}

void BuildStd(benchmark::State& state) {
  const Pieces& p = ThePieces();
  for (auto _ : state) {
    std::string r;
    for (const std::string& t : p.texts)
      r.append(t.data(), t.size());
    benchmark::DoNotOptimize(r.data());
  }
  state.SetBytesProcessed(state.iterations() * p.bytes);
}
void BuildOurs(benchmark::State& state) {
  const Pieces& p = ThePieces();
  for (auto _ : state) {
    ICStringUnique r;
    ic::ICStringBuilder<ICStringUnique> b{&r, 0, 0, true};
    for (const std::string& t : p.texts)
      b.Add(t.data(), static_cast<int32_t>(t.size()));
    benchmark::DoNotOptimize(r.GetText());
  }
  state.SetBytesProcessed(state.iterations() * p.bytes);
}

// --- ReplaceAll ------------------------------------------------------------------------------

constexpr int kMatches = 10000;
const char* const kNeedle = "<<needle>>";

std::string MakeHaystack() {
  std::mt19937 rng(11);
  const size_t gap = (kMiB - kMatches * std::strlen(kNeedle)) / kMatches;
  std::string s;
  for (int i = 0; i < kMatches; ++i) {
    for (size_t k = 0; k < gap; ++k)
      s += static_cast<char>('a' + rng() % 26);
    s += kNeedle;
  }
  s.resize(kMiB, 'z');
  return s;
}
const std::string& Haystack() {
  static const std::string text = MakeHaystack();
  return text;
}

const char* ReplacementFor(int kind) {
  return kind == 0 ? "<<a much longer replacement>>" : kind == 1 ? "--" : "[replaced]";
}

void ReplaceAbsl(benchmark::State& state) {
  const char* replacement = ReplacementFor(static_cast<int>(state.range(0)));
  const std::string& source = Haystack();
  for (auto _ : state) {
    std::string r = absl::StrReplaceAll(source, {{kNeedle, replacement}});
    benchmark::DoNotOptimize(r.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(source.size()));
}
// Each iteration copies the source into a string and replaces in place: a fresh string, as the
// alternative makes one.
void ReplaceOurs(benchmark::State& state) {
  const char* replacement = ReplacementFor(static_cast<int>(state.range(0)));
  const std::string& source = Haystack();
  for (auto _ : state) {
    ICStringUnique r(source.data(), static_cast<int32_t>(source.size()));
    r.ReplaceAll(kNeedle, -1, replacement, -1);
    benchmark::DoNotOptimize(r.GetText());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(source.size()));
}

// --- Checks ----------------------------------------------------------------------------------

void Require(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "result differs: %s\n", what);
    std::exit(1);
  }
}

void CheckResults() {
  const Words& w = TheWords();
  ICStringUnique r;
  Ours2(r, w);
  Require(Std2(w) == r.GetText() && Absl2(w) == r.GetText(), "concat 2");
  Ours4(r, w);
  Require(Std4(w) == r.GetText() && Absl4(w) == r.GetText(), "concat 4");
  Ours8(r, w);
  Require(Std8(w) == r.GetText() && Absl8(w) == r.GetText(), "concat 8");

  std::string expected;
  ICStringUnique built;
  ic::ICStringBuilder<ICStringUnique> b{&built, 0, 0, true};
  for (const std::string& t : ThePieces().texts) {
    expected += t;
    b.Add(t.data(), static_cast<int32_t>(t.size()));
  }
  Require(expected.size() >= kMiB && expected == built.GetText(), "builder");

  for (int kind = 0; kind < 3; ++kind) {
    const std::string theirs = absl::StrReplaceAll(Haystack(), {{kNeedle, ReplacementFor(kind)}});
    ICStringUnique ours(Haystack().data(), static_cast<int32_t>(Haystack().size()));
    Require(ours.ReplaceAll(kNeedle, -1, ReplacementFor(kind), -1) == kMatches, "match count");
    Require(theirs == std::string(ours.GetText(), static_cast<size_t>(ours.GetLength())),
            "ReplaceAll");
  }
  std::printf("results checked: equal to std::string and absl\n");
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  CheckResults();
  ic::bench::RatioReporter reporter;

  benchmark::RegisterBenchmark("Concat/2/ours", ConcatOurs<2>);
  benchmark::RegisterBenchmark("Concat/2/std", ConcatStd<2>);
  benchmark::RegisterBenchmark("Concat/2/absl", ConcatAbsl<2>);
  benchmark::RegisterBenchmark("Concat/4/ours", ConcatOurs<4>);
  benchmark::RegisterBenchmark("Concat/4/std", ConcatStd<4>);
  benchmark::RegisterBenchmark("Concat/4/absl", ConcatAbsl<4>);
  benchmark::RegisterBenchmark("Concat/8/ours", ConcatOurs<8>);
  benchmark::RegisterBenchmark("Concat/8/std", ConcatStd<8>);
  benchmark::RegisterBenchmark("Concat/8/absl", ConcatAbsl<8>);
  for (const char* n : {"2", "4", "8"}) {
    const std::string base = std::string("Concat/") + n;
    reporter.Compare(base + " vs std::string +", base + "/ours", base + "/std", 1.0);
    reporter.Compare(base + " vs absl::StrCat", base + "/ours", base + "/absl", 1.0);
  }

  benchmark::RegisterBenchmark("Build1MiB/ours", BuildOurs)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("Build1MiB/std", BuildStd)->Unit(benchmark::kMicrosecond);
  reporter.Compare("Build 1 MiB vs std::string::append", "Build1MiB/ours", "Build1MiB/std", 1.0);

  const char* kinds[] = {"growing", "shrinking", "equal"};
  for (int kind = 0; kind < 3; ++kind) {
    const std::string base = std::string("ReplaceAll/") + kinds[kind];
    benchmark::RegisterBenchmark((base + "/ours").c_str(), ReplaceOurs)
        ->Arg(kind)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((base + "/absl").c_str(), ReplaceAbsl)
        ->Arg(kind)
        ->Unit(benchmark::kMicrosecond);
    reporter.Compare(base + " vs absl::StrReplaceAll", base + "/ours/" + std::to_string(kind),
                     base + "/absl/" + std::to_string(kind), 1.0);
  }

  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
