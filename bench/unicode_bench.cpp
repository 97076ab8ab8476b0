// Unicode data: membership of random code points in large rows of the tables (the category L
// and the script Zyyy) against ICU's UnicodeSet::contains on sets made from the same properties;
// and the language module's load: dlopen, GetFirstResourceStringLibrary and dlclose of icres_zh in
// a loop, which builds and frees the catalogues and the four Unicode tables each time, with the
// heap that a load holds.
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

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
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
  // A code point counted as the 4 bytes of its UTF-32 form.
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * c->codes.size() * 4));
}

void MembershipIcu(benchmark::State& state, const MembershipCase* c) {
  for (auto _ : state) {
    size_t hits = 0;
    for (const uint32_t code : c->codes)
      hits += c->theirs.contains(static_cast<UChar32>(code));
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * c->codes.size()));
  // A code point counted as the 4 bytes of its UTF-32 form.
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * c->codes.size() * 4));
}

size_t HeapInUse() {
  return mallinfo2().uordblks;
}

using GetFirstFn = void* (*)();

// One cycle as a host makes it: dlopen, look up and call GetFirstResourceStringLibrary, dlclose.
// Returns the heap that the loaded module held before dlclose (its start-up, the catalogues, the
// tables and the loader's own records), or -1 if the module did not load.
int64_t LoadCallUnload() {
  const size_t before = HeapInUse();
  void* module = dlopen(IC_BENCH_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return -1;
  const auto getFirst =
      reinterpret_cast<GetFirstFn>(dlsym(module, "GetFirstResourceStringLibrary"));
  if (getFirst == nullptr || getFirst() == nullptr) {
    dlclose(module);
    return -1;
  }
  const auto heap = static_cast<int64_t>(HeapInUse() - before);
  dlclose(module);
  return heap;
}

int64_t ModuleFileBytes() {
  std::error_code error;
  const auto size = std::filesystem::file_size(IC_BENCH_MODULE_PATH, error);
  return error ? 0 : static_cast<int64_t>(size);
}

// One cycle per iteration; the counter is the heap that a load holds until it is unloaded. The
// bytes are those of the module's file, loaded once per cycle.
void ModuleLoadUnload(benchmark::State& state) {
  int64_t heapPerLoad = 0;
  for (auto _ : state) {
    heapPerLoad = LoadCallUnload();
    if (heapPerLoad < 0) {
      state.SkipWithError("the module did not load or has no GetFirstResourceStringLibrary");
      return;
    }
  }
  state.counters["heap_bytes_per_load"] = static_cast<double>(heapPerLoad);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * ModuleFileBytes());
}

// The four tables alone, loaded and freed in this process; the bytes are those the tables hold.
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
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * heap));
}

double ProcessCpuSeconds() {
  timespec t{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// Wall and CPU time of whole cycles and the largest heap of one load, measured directly over
// many cycles for the goal lines. The goal is judged on CPU time, which other programs on a
// shared machine do not inflate; the wall time is printed beside it.
void PrintModuleGoals() {
  constexpr int Cycles = 200;
  int64_t heap = 0;
  const double cpu0 = ProcessCpuSeconds();
  const auto t0 = std::chrono::steady_clock::now();
  for (int i = 0; i < Cycles; ++i) {
    const int64_t held = LoadCallUnload();
    Require(held >= 0, "dlopen of the module and its GetFirstResourceStringLibrary");
    heap = std::max(heap, held);
  }
  const auto t1 = std::chrono::steady_clock::now();
  const double cpuMs = (ProcessCpuSeconds() - cpu0) / Cycles * 1e3;
  const double wallMs = std::chrono::duration<double>(t1 - t0).count() / Cycles * 1e3;
  std::printf(
      "module cycle (dlopen + GetFirstResourceStringLibrary + dlclose, %d cycles): %.3f ms CPU "
      "(%.3f ms wall) per cycle, goal < 2 ms: %s\n",
      Cycles, cpuMs, wallMs, cpuMs < 2 ? "met" : "NOT MET");
  std::printf("module load heap: %lld bytes (%.1f KiB) per load, goal < 128 KiB: %s\n",
              static_cast<long long>(heap), static_cast<double>(heap) / 1024.0,
              heap < 128 * 1024 ? "met" : "NOT MET");
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
