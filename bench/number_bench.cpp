// FormatNumber against std::to_chars and absl's integer formatting (absl::AlphaNum, which
// absl::StrCat builds on, and absl::StrCat itself), ParseNumber against std::from_chars, for 32-
// and 64-bit values. Each iteration formats or parses the same table of 4096 values; the tables are
// checked to give the standard library's results before any timing.
#include <absl/strings/str_cat.h>
#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <ic/number/number_format.h>
#include <ic/number/number_parse.h>

#include "ratio_reporter.h"

namespace {

constexpr size_t kCount = 4096;

// "uniform": bits drawn evenly, so that most values have the full number of digits.
// "mixed": the number of digits itself is drawn evenly, as in text that holds counts, sizes,
// identifiers and so on.
template <class T>
std::vector<T> MakeValues(const std::string& distribution) {
  std::mt19937_64 rng(sizeof(T) * 7 + distribution.size());
  std::vector<T> values(kCount);
  for (T& v : values) {
    uint64_t bits = rng();
    if (distribution == "mixed") bits >>= rng() % (sizeof(T) * 8);
    v = static_cast<T>(bits);
  }
  return values;
}

template <class T>
struct Table {
  std::vector<T> values;
  std::vector<char> text;  // each value zero-terminated, one after the other
  std::vector<uint32_t> starts, lengths;
  int64_t digits = 0;  // bytes of text, terminators not counted
};

template <class T>
Table<T> MakeTable(const std::string& distribution) {
  Table<T> table;
  table.values = MakeValues<T>(distribution);
  for (T v : table.values) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + 32, v).ptr;
    table.starts.push_back(static_cast<uint32_t>(table.text.size()));
    table.lengths.push_back(static_cast<uint32_t>(end - buffer));
    table.text.insert(table.text.end(), buffer, end);
    table.text.push_back(0);
    table.digits += end - buffer;
  }
  return table;
}

void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "result differs from the standard library: %s\n", what);
    std::exit(1);
  }
}

// Values and the bytes of their text: formatting writes, parsing reads those bytes.
template <class T>
void SetProcessed(benchmark::State& state, const Table<T>* table) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kCount));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * table->digits);
}

template <class T>
void FormatOurs(benchmark::State& state, const Table<T>* table) {
  char buffer[32];
  for (auto _ : state) {
    for (T v : table->values) {
      benchmark::DoNotOptimize(ic::FormatNumber(buffer, 32, v));
      benchmark::ClobberMemory();
    }
  }
  SetProcessed(state, table);
}

template <class T>
void FormatStd(benchmark::State& state, const Table<T>* table) {
  char buffer[32];
  for (auto _ : state) {
    for (T v : table->values) {
      // The terminator too, so that both write the same text.
      char* end = std::to_chars(buffer, buffer + 31, v).ptr;
      *end = 0;
      benchmark::DoNotOptimize(end);
      benchmark::ClobberMemory();
    }
  }
  SetProcessed(state, table);
}

// absl's formatting of one integer: AlphaNum writes the digits into its own buffer, which is
// copied out with the terminator so that the same text is written as by the others.
template <class T>
void FormatAbslAlphaNum(benchmark::State& state, const Table<T>* table) {
  char buffer[32];
  for (auto _ : state) {
    for (T v : table->values) {
      const absl::AlphaNum piece(v);
      std::memcpy(buffer, piece.data(), piece.size());
      buffer[piece.size()] = 0;
      benchmark::DoNotOptimize(buffer);
      benchmark::ClobberMemory();
    }
  }
  SetProcessed(state, table);
}

// absl::StrCat of one integer: a std::string (short, so held without allocation).
template <class T>
void FormatAbslStrCat(benchmark::State& state, const Table<T>* table) {
  for (auto _ : state) {
    for (T v : table->values) {
      std::string text = absl::StrCat(v);
      benchmark::DoNotOptimize(text.data());
      benchmark::ClobberMemory();
    }
  }
  SetProcessed(state, table);
}

template <class T>
void ParseOurs(benchmark::State& state, const Table<T>* table) {
  const ic::StringNumberParseOptions options{};
  for (auto _ : state) {
    for (size_t i = 0; i < kCount; ++i) {
      T value = 0;
      ic::ParseNumber(table->text.data() + table->starts[i], value, options);
      benchmark::DoNotOptimize(value);
    }
  }
  SetProcessed(state, table);
}

template <class T>
void ParseStd(benchmark::State& state, const Table<T>* table) {
  for (auto _ : state) {
    for (size_t i = 0; i < kCount; ++i) {
      const char* first = table->text.data() + table->starts[i];
      T value = 0;
      std::from_chars(first, first + table->lengths[i], value);
      benchmark::DoNotOptimize(value);
    }
  }
  SetProcessed(state, table);
}

template <class T>
void Check(const Table<T>& table) {
  for (size_t i = 0; i < kCount; ++i) {
    char buffer[32];
    Require(ic::FormatNumber(buffer, 32, table.values[i]) == 0, "FormatNumber wrote nothing");
    Require(std::strcmp(buffer, table.text.data() + table.starts[i]) == 0, "FormatNumber");
    T value;
    ic::ParseNumber(table.text.data() + table.starts[i], value);
    Require(value == table.values[i], "ParseNumber");
    Require(absl::StrCat(table.values[i]) == table.text.data() + table.starts[i], "absl::StrCat");
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

  static const Table<int32_t> i32u = MakeTable<int32_t>("uniform");
  static const Table<int32_t> i32m = MakeTable<int32_t>("mixed");
  static const Table<uint32_t> u32u = MakeTable<uint32_t>("uniform");
  static const Table<int64_t> i64u = MakeTable<int64_t>("uniform");
  static const Table<int64_t> i64m = MakeTable<int64_t>("mixed");
  static const Table<uint64_t> u64u = MakeTable<uint64_t>("uniform");
  Check(i32u);
  Check(i32m);
  Check(u32u);
  Check(i64u);
  Check(i64m);
  Check(u64u);
  std::printf("results checked: equal to std::to_chars, std::from_chars and absl::StrCat\n");

  ic::bench::RatioReporter reporter;
  auto add = [&](const std::string& name, auto* table) {
    using T = typename std::remove_cvref_t<decltype(table->values)>::value_type;
    const std::string format = "FormatNumber/" + name, parse = "ParseNumber/" + name;
    benchmark::RegisterBenchmark((format + "/ours").c_str(), FormatOurs<T>, table);
    benchmark::RegisterBenchmark((format + "/to_chars").c_str(), FormatStd<T>, table);
    benchmark::RegisterBenchmark((format + "/absl_AlphaNum").c_str(), FormatAbslAlphaNum<T>, table);
    benchmark::RegisterBenchmark((format + "/absl_StrCat").c_str(), FormatAbslStrCat<T>, table);
    benchmark::RegisterBenchmark((parse + "/ours").c_str(), ParseOurs<T>, table);
    benchmark::RegisterBenchmark((parse + "/from_chars").c_str(), ParseStd<T>, table);
    // Formatting at least as fast as absl's (and within 1.3x of to_chars), parsing at least as
    // fast as from_chars.
    reporter.Compare(format + " vs to_chars", format + "/ours", format + "/to_chars", 1 / 1.3);
    reporter.Compare(format + " vs absl AlphaNum", format + "/ours", format + "/absl_AlphaNum",
                     1.0);
    reporter.Compare(format + " vs absl StrCat", format + "/ours", format + "/absl_StrCat", 1.0);
    reporter.Compare(parse + " vs from_chars", parse + "/ours", parse + "/from_chars", 1.0);
  };
  add("int32/uniform", &i32u);
  add("int32/mixed", &i32m);
  add("uint32/uniform", &u32u);
  add("int64/uniform", &i64u);
  add("int64/mixed", &i64m);
  add("uint64/uniform", &u64u);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
