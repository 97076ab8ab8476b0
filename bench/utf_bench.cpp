// UTF-16 to UTF-8 (ConvertToUTF8) and UTF-8 to UTF-16 (ConvertFromUTF8String) against ICU's
// u_strToUTF8 and u_strFromUTF8WithSub, on ASCII, Latin-heavy, CJK and emoji-heavy texts of
// 1 KiB and 1 MiB. The texts are generated from fixed seeds; before any timing, each conversion
// of ours is checked to give exactly ICU's output.
#include <benchmark/benchmark.h>
#include <unicode/ustring.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>
#include <ic/string/utf_convert.h>

#include "ratio_reporter.h"

namespace {

using ic::ICStringUnique;
using ic::ICStringUniqueW;

void AppendUtf8(std::string& out, uint32_t cp) {
  char buffer[4];
  char* end = buffer;
  ic::EncodeCodePoint(end, cp);
  out.append(buffer, end);
}

// A text of about `bytes` bytes of UTF-8, cut at a character boundary.
std::string MakeCorpus(const std::string& kind, size_t bytes) {
  std::mt19937 rng(1234);
  auto pick = [&](uint32_t lo, uint32_t hi) {
    return std::uniform_int_distribution<uint32_t>(lo, hi)(rng);
  };
  static const char* const kWords[] = {"the",   "of",    "and",   "text",  "string", "library",
                                       "value", "which", "their", "would", "about",  "there"};
  static const uint32_t kAccented[] = {0xe9, 0xe8, 0xea, 0xe0, 0xe2, 0xe7, 0xf4, 0xfb,
                                       0xfc, 0xf6, 0xe4, 0xdf, 0xf1, 0xed, 0xf3, 0xc9};
  std::string out;
  while (out.size() < bytes) {
    if (kind == "ascii") {
      out += kWords[pick(0, 11)];
      out += pick(0, 9) == 0 ? ". " : " ";
    } else if (kind == "latin") {
      // Words of French/German/Spanish flavour: about one letter in four accented.
      const uint32_t letters = pick(2, 9);
      for (uint32_t i = 0; i < letters; ++i) {
        if (pick(0, 3) == 0)
          AppendUtf8(out, kAccented[pick(0, 15)]);
        else
          out += static_cast<char>('a' + pick(0, 25));
      }
      out += pick(0, 9) == 0 ? ", " : " ";
    } else if (kind == "cjk") {
      // Ideographs with the ideographic comma and full stop, now and then a digit.
      const uint32_t r = pick(0, 99);
      if (r < 6)
        AppendUtf8(out, r < 3 ? 0x3001 : 0x3002);
      else if (r < 8)
        out += static_cast<char>('0' + pick(0, 9));
      else
        AppendUtf8(out, pick(0x4e00, 0x9fa5));
    } else {  // emoji
      const uint32_t r = pick(0, 9);
      if (r < 6)
        AppendUtf8(out, pick(0x1f300, 0x1f64f));
      else if (r < 8)
        out += ' ';
      else
        out += kWords[pick(0, 11)];
    }
  }
  // Cut back to a character boundary at most `bytes` long.
  size_t cut = bytes;
  while (cut > 0 && (static_cast<unsigned char>(out[cut]) & 0xc0) == 0x80)
    --cut;
  out.resize(cut);
  return out;
}

std::u16string ToUtf16WithIcu(const std::string& utf8) {
  UErrorCode status = U_ZERO_ERROR;
  int32_t length = 0;
  u_strFromUTF8WithSub(nullptr, 0, &length, utf8.data(), static_cast<int32_t>(utf8.size()), 0xfffd,
                       nullptr, &status);
  std::u16string out(static_cast<size_t>(length), u'\0');
  status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(out.data(), length + 1, &length, utf8.data(),
                       static_cast<int32_t>(utf8.size()), 0xfffd, nullptr, &status);
  if (U_FAILURE(status)) {
    std::fprintf(stderr, "ICU failed to convert the corpus: %s\n", u_errorName(status));
    std::exit(1);
  }
  return out;
}

void Require(bool condition, const std::string& what) {
  if (!condition) {
    std::fprintf(stderr, "output differs from ICU: %s\n", what.c_str());
    std::exit(1);
  }
}

struct Corpus {
  std::string name;  // kind and size, e.g. "cjk/1MiB"
  std::string utf8;
  std::u16string utf16;
};

// ---------------------------------------------------------------------------------------------
// UTF-16 to UTF-8

void ToUtf8Ours(benchmark::State& state, const Corpus* corpus) {
  const ICStringUniqueW wide(corpus->utf16.c_str());
  for (auto _ : state) {
    ICStringUnique narrow = wide.ConvertToUTF8();  // measure, one allocation, write
    benchmark::DoNotOptimize(narrow.GetText());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus->utf16.size() * 2));
}

// ICU at its fastest: one pass into a buffer that is known to be large enough.
void ToUtf8Icu(benchmark::State& state, const Corpus* corpus) {
  std::vector<char> out(corpus->utf8.size() + 1);
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strToUTF8(out.data(), static_cast<int32_t>(out.size()), &length, corpus->utf16.data(),
                static_cast<int32_t>(corpus->utf16.size()), &status);
    benchmark::DoNotOptimize(out.data());
    benchmark::DoNotOptimize(length);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus->utf16.size() * 2));
}

// ICU as a caller without a size uses it: measure, allocate, convert, free.
void ToUtf8IcuPreflight(benchmark::State& state, const Corpus* corpus) {
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strToUTF8(nullptr, 0, &length, corpus->utf16.data(),
                static_cast<int32_t>(corpus->utf16.size()), &status);
    std::unique_ptr<char[]> out(new char[static_cast<size_t>(length) + 1]);
    status = U_ZERO_ERROR;
    u_strToUTF8(out.get(), length + 1, &length, corpus->utf16.data(),
                static_cast<int32_t>(corpus->utf16.size()), &status);
    benchmark::DoNotOptimize(out.get());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus->utf16.size() * 2));
}

// ---------------------------------------------------------------------------------------------
// UTF-8 to UTF-16

// A string that is converted into again and again, as a buffer that is reused.
void FromUtf8OursReused(benchmark::State& state, const Corpus* corpus) {
  ICStringUniqueW wide;
  const auto length = static_cast<int32_t>(corpus->utf8.size());
  for (auto _ : state) {
    wide.ConvertFromUTF8String(corpus->utf8.data(), length);
    benchmark::DoNotOptimize(wide.GetText());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus->utf8.size()));
}

// A new string each time: measure, one allocation, convert, free.
void FromUtf8OursFresh(benchmark::State& state, const Corpus* corpus) {
  const auto length = static_cast<int32_t>(corpus->utf8.size());
  for (auto _ : state) {
    ICStringUniqueW wide;
    wide.ConvertFromUTF8String(corpus->utf8.data(), length);
    benchmark::DoNotOptimize(wide.GetText());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus->utf8.size()));
}

void FromUtf8Icu(benchmark::State& state, const Corpus* corpus) {
  std::vector<char16_t> out(corpus->utf16.size() + 1);
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &length, corpus->utf8.data(),
                         static_cast<int32_t>(corpus->utf8.size()), 0xfffd, nullptr, &status);
    benchmark::DoNotOptimize(out.data());
    benchmark::DoNotOptimize(length);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus->utf8.size()));
}

void FromUtf8IcuPreflight(benchmark::State& state, const Corpus* corpus) {
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8WithSub(nullptr, 0, &length, corpus->utf8.data(),
                         static_cast<int32_t>(corpus->utf8.size()), 0xfffd, nullptr, &status);
    std::unique_ptr<char16_t[]> out(new char16_t[static_cast<size_t>(length) + 1]);
    status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(out.get(), length + 1, &length, corpus->utf8.data(),
                         static_cast<int32_t>(corpus->utf8.size()), 0xfffd, nullptr, &status);
    benchmark::DoNotOptimize(out.get());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus->utf8.size()));
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

  static std::vector<Corpus> corpora;
  for (const char* kind : {"ascii", "latin", "cjk", "emoji"}) {
    for (const auto& [size, sizeName] : {std::pair<size_t, const char*>{1024, "1KiB"},
                                         std::pair<size_t, const char*>{1 << 20, "1MiB"}}) {
      Corpus c;
      c.name = std::string(kind) + "/" + sizeName;
      c.utf8 = MakeCorpus(kind, size);
      c.utf16 = ToUtf16WithIcu(c.utf8);
      corpora.push_back(std::move(c));
    }
  }

  // Our output must be ICU's output, byte for byte, on these valid texts.
  for (const Corpus& c : corpora) {
    const ICStringUnique narrow = ICStringUniqueW(c.utf16.c_str()).ConvertToUTF8();
    Require(std::string(narrow.GetText(), static_cast<size_t>(narrow.GetLength())) == c.utf8,
            "ConvertToUTF8 " + c.name);
    const ICStringUnique ranged =
        ic::ConvertToUTF8(ic::ICStringRangeW{c.utf16.data(), static_cast<int32_t>(c.utf16.size())});
    Require(std::string(ranged.GetText(), static_cast<size_t>(ranged.GetLength())) == c.utf8,
            "ConvertToUTF8 (range) " + c.name);
    ICStringUniqueW wide;
    wide.ConvertFromUTF8String(c.utf8.data(), static_cast<int32_t>(c.utf8.size()));
    Require(std::u16string(wide.GetText(), static_cast<size_t>(wide.GetLength())) == c.utf16,
            "ConvertFromUTF8String " + c.name);
    wide.ConvertFromUTF8String(c.utf8.data(), static_cast<int32_t>(c.utf8.size()));  // reused
    Require(std::u16string(wide.GetText(), static_cast<size_t>(wide.GetLength())) == c.utf16,
            "ConvertFromUTF8String (reused) " + c.name);
  }
  std::printf("outputs checked: equal to ICU on all %zu texts\n", corpora.size());

  ic::bench::RatioReporter reporter;
  for (const Corpus& c : corpora) {
    const std::string to = "ConvertToUTF8/" + c.name;
    const std::string from = "ConvertFromUTF8String/" + c.name;
    benchmark::RegisterBenchmark((to + "/ours").c_str(), ToUtf8Ours, &c);
    benchmark::RegisterBenchmark((to + "/icu").c_str(), ToUtf8Icu, &c);
    benchmark::RegisterBenchmark((to + "/icu_preflight_alloc").c_str(), ToUtf8IcuPreflight, &c);
    benchmark::RegisterBenchmark((from + "/ours_reused").c_str(), FromUtf8OursReused, &c);
    benchmark::RegisterBenchmark((from + "/ours_fresh").c_str(), FromUtf8OursFresh, &c);
    benchmark::RegisterBenchmark((from + "/icu").c_str(), FromUtf8Icu, &c);
    benchmark::RegisterBenchmark((from + "/icu_preflight_alloc").c_str(), FromUtf8IcuPreflight, &c);
    reporter.Compare(to + " vs icu", to + "/ours", to + "/icu", 2.0);
    reporter.Compare(to + " vs icu+alloc", to + "/ours", to + "/icu_preflight_alloc", 2.0);
    reporter.Compare(from + " reused vs icu", from + "/ours_reused", from + "/icu", 2.0);
    reporter.Compare(from + " fresh vs icu+alloc", from + "/ours_fresh",
                     from + "/icu_preflight_alloc", 2.0);
  }
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
