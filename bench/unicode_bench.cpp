// Unicode data: membership of random code points in large rows of the tables (the category L
// and the script Zyyy) against ICU's UnicodeSet::contains on sets made from the same properties;
// and the language module's load: dlopen and dlclose of icres_zh in a loop, which builds and
// frees the catalogues and the four Unicode tables each time, with the heap that a load holds.
//
// A row is searched as a consumer of the tables does: a binary search by `first` over its
// sorted ranges. ICU's sets come from its own (newer) Unicode data,
// so the two answer slightly differently for characters added after 9.0.0; the agreement is
// printed, not required.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <malloc.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include <ic/unicode/internal/unicode_table_data.h>
#include <ic/unicode/unicode_tables.h>

#include "ratio_reporter.h"

namespace ic::bench {
namespace {

constexpr size_t BatchSize = 4096;

void Require(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "check failed: %s\n", what);
    std::exit(1);
  }
}

// True if `code` lies in one of the sorted ranges: a binary search for the first range that
// starts above it, then one comparison with the last of the range before.
inline bool Contains(const CodePointRangeSet& set, uint32_t code) noexcept {
  const CodePointRange* it =
      std::upper_bound(set.begin(), set.end(), code,
                       [](uint32_t c, const CodePointRange& r) { return c < r.first; });
  return it != set.begin() && code <= it[-1].last;
}

const CodePointRangeSet& Row(const NamedCodePointSet* begin, const NamedCodePointSet* end,
                             const char* name) {
  const NamedCodePointSet* row = std::find_if(
      begin, end, [&](const NamedCodePointSet& r) { return !std::strcmp(r.name, name); });
  Require(row != end, name);
  return row->ranges;
}

struct MembershipCase {
  const CodePointRangeSet* ours;
  icu::UnicodeSet theirs;
  std::vector<uint32_t> codes;
};

// Code points spread over the planes that hold characters, most in the BMP.
std::vector<uint32_t> RandomCodes(uint32_t seed) {
  std::mt19937 rng(seed);
  std::vector<uint32_t> codes(BatchSize);
  for (uint32_t& c : codes)
    c = rng() % 4 == 0 ? std::uniform_int_distribution<uint32_t>(0x10000, 0x2FFFF)(rng)
                       : std::uniform_int_distribution<uint32_t>(0, 0xFFFF)(rng);
  return codes;
}

MembershipCase* MakeCase(const CodePointRangeSet& ours, const char* icuPattern, uint32_t seed) {
  auto* c = new MembershipCase{&ours, icu::UnicodeSet(), RandomCodes(seed)};
  UErrorCode error = U_ZERO_ERROR;
  c->theirs.applyPattern(icu::UnicodeString(icuPattern), error);
  Require(U_SUCCESS(error), icuPattern);
  c->theirs.freeze();
  size_t agree = 0, hits = 0;
  for (const uint32_t code : c->codes) {
    const bool a = Contains(ours, code);
    agree += a == static_cast<bool>(c->theirs.contains(static_cast<UChar32>(code)));
    hits += a;
  }
  std::printf("%s: %zu of %zu random code points inside; ICU agrees on %.2f%%\n", icuPattern, hits,
              c->codes.size(), 100.0 * agree / c->codes.size());
  Require(agree * 100 >= c->codes.size() * 95, "agreement with ICU");
  return c;
}

void MembershipOurs(benchmark::State& state, const MembershipCase* c) {
  for (auto _ : state) {
    size_t hits = 0;
    for (const uint32_t code : c->codes)
      hits += Contains(*c->ours, code);
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * c->codes.size()));
}

void MembershipIcu(benchmark::State& state, const MembershipCase* c) {
  for (auto _ : state) {
    size_t hits = 0;
    for (const uint32_t code : c->codes)
      hits += c->theirs.contains(static_cast<UChar32>(code));
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * c->codes.size()));
}

size_t HeapInUse() {
  return mallinfo2().uordblks;
}

// One load and unload of the module per iteration; the counter is the heap that a load holds
// until it is unloaded (the module's start-up and the loader's own records).
void ModuleLoadUnload(benchmark::State& state) {
  size_t heapPerLoad = 0;
  for (auto _ : state) {
    const size_t before = HeapInUse();
    void* module = dlopen(IC_BENCH_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
      state.SkipWithError(dlerror());
      return;
    }
    heapPerLoad = HeapInUse() - before;
    dlclose(module);
  }
  state.counters["heap_bytes_per_load"] = static_cast<double>(heapPerLoad);
}

// The four tables alone, loaded and freed in this process.
void TablesLoadUnload(benchmark::State& state) {
  size_t heap = 0;
  for (auto _ : state) {
    const size_t before = HeapInUse();
    LoadUnicodeTables();
    heap = HeapInUse() - before;
    internal::UnloadUnicodeScriptExtensionTable();
    internal::UnloadUnicodeScriptTable();
    internal::UnloadUnicodeCategoryTable();
    internal::UnloadUnicodeBlockTable();
  }
  state.counters["heap_bytes_per_load"] = static_cast<double>(heap);
}

// Wall time and heap of one load, measured directly over many loads for the goal lines.
void PrintModuleGoals() {
  constexpr int Loads = 200;
  double seconds = 0;
  size_t heap = 0;
  for (int i = 0; i < Loads; ++i) {
    const size_t before = HeapInUse();
    const auto t0 = std::chrono::steady_clock::now();
    void* module = dlopen(IC_BENCH_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    const auto t1 = std::chrono::steady_clock::now();
    Require(module != nullptr, "dlopen of the module");
    heap = std::max(heap, HeapInUse() - before);
    dlclose(module);
    seconds += std::chrono::duration<double>(t1 - t0).count();
  }
  const double ms = seconds / Loads * 1e3;
  std::printf("module load (dlopen, %d loads): %.3f ms per load, goal < 2 ms: %s\n", Loads, ms,
              ms < 2 ? "met" : "NOT MET");
  std::printf("module load heap: %zu bytes (%.1f KiB) per load, goal < 128 KiB: %s\n", heap,
              heap / 1024.0, heap < 128 * 1024 ? "met" : "NOT MET");
}

}  // namespace
}  // namespace ic::bench

int main(int argc, char** argv) {
  using namespace ic;
  using namespace ic::bench;
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;

  LoadUnicodeTables();
  const auto* categories = std::begin(UnicodeCategoryTable);
  const auto* scripts = std::begin(UnicodeScriptTable);
  // The rows are copied so that the table benchmark below can free and rebuild the tables.
  static const CodePointRangeSet letters = Row(categories, std::end(UnicodeCategoryTable), "L");
  // A script row keeps one range per line of Scripts.txt, touching ones included; a consumer
  // that searches it as a set first merges it by adding its ranges to a fresh set.
  static const CodePointRangeSet common = [&] {
    CodePointRangeSet merged;
    for (const CodePointRange& r : Row(scripts, std::end(UnicodeScriptTable), "Zyyy"))
      merged.Add(r, false);
    std::printf("Zyyy: %zu ranges in the table row, %zu once merged\n",
                Row(scripts, std::end(UnicodeScriptTable), "Zyyy").size(), merged.size());
    return merged;
  }();
  const MembershipCase* l = MakeCase(letters, "[:L:]", 1);
  const MembershipCase* zyyy = MakeCase(common, "[:sc=Zyyy:]", 2);

  for (const auto& [name, c] : {std::pair{"L", l}, std::pair{"Zyyy", zyyy}}) {
    const std::string base = std::string("Contains/") + name;
    benchmark::RegisterBenchmark((base + "/ours").c_str(), MembershipOurs, c);
    benchmark::RegisterBenchmark((base + "/icu_UnicodeSet").c_str(), MembershipIcu, c);
    reporter.Compare(base + " vs ICU UnicodeSet::contains", base + "/ours",
                     base + "/icu_UnicodeSet", 1.0);
  }
  benchmark::RegisterBenchmark("ModuleLoad/dlopen_dlclose", ModuleLoadUnload);
  benchmark::RegisterBenchmark("UnicodeTables/load_free", TablesLoadUnload);

  benchmark::RunSpecifiedBenchmarks(&reporter);
  PrintModuleGoals();
  benchmark::Shutdown();
  return 0;
}
