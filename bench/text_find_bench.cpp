// Find (narrow and wide) on a 1 MiB text against std::string_view::find,
// std::u16string_view::find and memmem, including the worst case of a needle of many 'a' and one
// 'b' in a text of 'a'; FindNoCase against lowering both texts and then finding. The case
// mapping benchmarks (text_case_bench.cpp) run in the same program. Every result of ours is
// checked against the alternative before any timing.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include <ic/string/ic_string.h>

#include "ratio_reporter.h"

namespace ic::bench {
void RegisterCaseBenchmarks(RatioReporter& reporter);
}

namespace {

using ic::ICStringUnique;
using ic::ICStringUniqueW;

constexpr size_t TextSize = 1 << 20;

void Require(bool ok, const std::string& what) {
  if (!ok) {
    std::fprintf(stderr, "result check failed: %s\n", what.c_str());
    std::exit(1);
  }
}

// Words of English flavour, 1 MiB, with the needle once near the end.
std::string MakeWordText(const std::string& needle) {
  static const char* const kWords[] = {"the",    "of",     "and",   "text",  "string", "library",
                                       "value",  "which",  "their", "would", "about",  "there",
                                       "search", "needle", "find",  "Find",  "THE",    "Text"};
  std::mt19937 rng(99);
  std::string out;
  while (out.size() < TextSize - needle.size() - 64) {
    out += kWords[rng() % (sizeof kWords / sizeof kWords[0])];
    out += ' ';
  }
  out += needle;
  out += " the end";
  return out;
}

struct Case {
  std::string text, needle;
  std::u16string wtext, wneedle;
  ICStringUnique ours;
  ICStringUniqueW oursWide;
  size_t expected = 0;
};

std::u16string Widen(const std::string& ascii) {
  return std::u16string(ascii.begin(), ascii.end());
}

Case* MakeCase(std::string text, std::string needle) {
  auto* c = new Case;
  c->text = std::move(text);
  c->needle = std::move(needle);
  c->wtext = Widen(c->text);
  c->wneedle = Widen(c->needle);
  c->ours = ICStringUnique(c->text.c_str());
  c->oursWide = ICStringUniqueW(c->wtext.c_str());
  c->expected = std::string_view(c->text).find(c->needle);
  return c;
}

void FindOurs(benchmark::State& state, const Case* c) {
  for (auto _ : state)
    benchmark::DoNotOptimize(c->ours.Find(c->needle.c_str(), 0, true));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->text.size()));
}
void FindStringView(benchmark::State& state, const Case* c) {
  const std::string_view text(c->text), needle(c->needle);
  for (auto _ : state)
    benchmark::DoNotOptimize(text.find(needle));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->text.size()));
}
void FindMemmem(benchmark::State& state, const Case* c) {
  for (auto _ : state)
    benchmark::DoNotOptimize(
        memmem(c->text.data(), c->text.size(), c->needle.data(), c->needle.size()));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->text.size()));
}
void FindOursWide(benchmark::State& state, const Case* c) {
  for (auto _ : state)
    benchmark::DoNotOptimize(c->oursWide.Find(c->wneedle.c_str()));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->wtext.size() * 2));
}
void FindU16StringView(benchmark::State& state, const Case* c) {
  const std::u16string_view text(c->wtext), needle(c->wneedle);
  for (auto _ : state)
    benchmark::DoNotOptimize(text.find(needle));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->wtext.size() * 2));
}

void FindNoCaseOurs(benchmark::State& state, const Case* c) {
  for (auto _ : state)
    benchmark::DoNotOptimize(c->ours.FindNoCase(c->needle.c_str(), 0, true));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->text.size()));
}
// The std way: lower both (ASCII tolower), then find.
void FindNoCaseStd(benchmark::State& state, const Case* c) {
  for (auto _ : state) {
    std::string text = c->text, needle = c->needle;
    auto lower = [](char ch) {
      return static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    };
    std::transform(text.begin(), text.end(), text.begin(), lower);
    std::transform(needle.begin(), needle.end(), needle.begin(), lower);
    benchmark::DoNotOptimize(std::string_view(text).find(needle));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->text.size()));
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  ic::bench::RatioReporter reporter;

  const Case* words = MakeCase(MakeWordText("needle in the haystack"), "needle in the haystack");
  std::string worstNeedle(255, 'a');
  worstNeedle += 'b';
  const Case* worst = MakeCase(std::string(TextSize, 'a'), worstNeedle);
  const Case* noCase = MakeCase(MakeWordText("NeEdLe In ThE hAyStAcK"), "needle IN the HAYSTACK");

  for (const Case* c : {words, worst}) {
    const int32_t expected =
        c->expected == std::string::npos ? -1 : static_cast<int32_t>(c->expected);
    Require(c->ours.Find(c->needle.c_str(), 0, true) == expected, "narrow Find");
    Require(c->oursWide.Find(c->wneedle.c_str()) == expected, "wide Find");
    const void* mm = memmem(c->text.data(), c->text.size(), c->needle.data(), c->needle.size());
    Require((mm == nullptr ? -1 : static_cast<const char*>(mm) - c->text.data()) == expected,
            "memmem");
  }
  {
    std::string lowered = noCase->text;
    for (char& ch : lowered)
      ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    const size_t at = lowered.find("needle in the haystack");
    Require(noCase->ours.FindNoCase(noCase->needle.c_str(), 0, true) == static_cast<int32_t>(at),
            "FindNoCase");
  }
  std::printf("outputs checked: Find, FindNoCase agree with the alternatives\n");

  struct Named {
    const char* name;
    const Case* c;
  };
  for (const Named& n : {Named{"words", words}, Named{"worst_a255b", worst}}) {
    const std::string base = std::string("Find/") + n.name;
    benchmark::RegisterBenchmark((base + "/narrow/ours").c_str(), FindOurs, n.c);
    benchmark::RegisterBenchmark((base + "/narrow/string_view").c_str(), FindStringView, n.c);
    benchmark::RegisterBenchmark((base + "/narrow/memmem").c_str(), FindMemmem, n.c);
    benchmark::RegisterBenchmark((base + "/wide/ours").c_str(), FindOursWide, n.c);
    benchmark::RegisterBenchmark((base + "/wide/u16string_view").c_str(), FindU16StringView, n.c);
    // Goal: within 1.1x of the best baseline, i.e. a speed ratio of at least 1/1.1.
    reporter.Compare(base + " narrow vs string_view", base + "/narrow/ours",
                     base + "/narrow/string_view", 1 / 1.1);
    reporter.Compare(base + " narrow vs memmem", base + "/narrow/ours", base + "/narrow/memmem",
                     1 / 1.1);
    reporter.Compare(base + " wide vs u16string_view", base + "/wide/ours",
                     base + "/wide/u16string_view", 1 / 1.1);
    // The same text in UTF-16 is twice the bytes: the wide search should pass at least half as
    // many bytes per second as the narrow one.
    reporter.CompareRates(base + " wide vs narrow (B/s)", base + "/wide/ours",
                          base + "/narrow/ours", 0.5);
  }
  benchmark::RegisterBenchmark("FindNoCase/words/ours", FindNoCaseOurs, noCase);
  benchmark::RegisterBenchmark("FindNoCase/words/lower_then_find", FindNoCaseStd, noCase);
  reporter.Compare("FindNoCase vs lower+find", "FindNoCase/words/ours",
                   "FindNoCase/words/lower_then_find", 3.0);

  ic::bench::RegisterCaseBenchmarks(reporter);

  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
