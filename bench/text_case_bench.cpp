// MakeUpper and MakeLower (full mode) on 1 MiB of mixed Latin, Greek and Cyrillic text, and on
// 1 MiB of ASCII text, against
// ICU: narrow strings against ucasemap_utf8ToUpper / ucasemap_utf8ToLower (UTF-8 in, UTF-8 out)
// and u_strToUpper / u_strToLower (the UTF-16 forms), wide strings against u_strToUpper /
// u_strToLower. The letters are chosen so that simple and full case mapping agree (no sharp s,
// no final sigma context, no dotted capital I); the outputs are checked to be equal to ICU's
// before any timing.
#include <benchmark/benchmark.h>
#include <unicode/ucasemap.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>

#include "ratio_reporter.h"

namespace ic::bench {
namespace {

struct CaseCorpus {
  std::string utf8;
  std::u16string utf16;
  ICStringUnique narrow;
  ICStringUniqueW wide;
  UCaseMap* caseMap = nullptr;
};

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "result check failed: %s\n", what);
    std::exit(1);
  }
}

std::u16string ToUtf16(const std::string& utf8) {
  std::u16string out(utf8.size() + 1, u'\0');
  int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8(reinterpret_cast<UChar*>(out.data()), static_cast<int32_t>(out.size()), &length,
                utf8.data(), static_cast<int32_t>(utf8.size()), &error);
  Check(U_SUCCESS(error), "u_strFromUTF8");
  out.resize(static_cast<size_t>(length));
  return out;
}

// Words of ASCII letters in both cases, with spaces and now and then a full stop.
CaseCorpus* MakeAsciiCorpus() {
  auto* c = new CaseCorpus;
  std::mt19937 rng(8);
  while (c->utf8.size() < (1u << 20) - 32) {
    for (int n = 2 + static_cast<int>(rng() % 8); n > 0; --n)
      c->utf8 += static_cast<char>((rng() % 2 ? 'a' : 'A') + rng() % 26);
    c->utf8 += rng() % 10 == 0 ? ". " : " ";
  }
  return c;
}

// Fills the other forms of a corpus whose UTF-8 text is made.
CaseCorpus* FinishCorpus(CaseCorpus* c) {
  c->utf16 = ToUtf16(c->utf8);
  c->narrow = ICStringUnique(c->utf8.c_str());
  c->wide = ICStringUniqueW(c->utf16.c_str());
  UErrorCode error = U_ZERO_ERROR;
  c->caseMap = ucasemap_open("", 0, &error);
  Check(U_SUCCESS(error), "ucasemap_open");
  return c;
}

CaseCorpus* MakeMixedCorpus() {
  std::vector<uint32_t> letters;
  for (uint32_t c = 'a'; c <= 'z'; ++c)
    letters.insert(letters.end(), {c, c - 32});
  for (uint32_t c : {0xE0, 0xE1, 0xE2, 0xE4, 0xE7, 0xE8, 0xE9, 0xEA, 0xEB, 0xED,
                     0xEE, 0xEF, 0xF1, 0xF3, 0xF4, 0xF6, 0xF9, 0xFA, 0xFB, 0xFC})
    letters.insert(letters.end(), {c, c - 32});
  for (uint32_t c = 0x3B1; c <= 0x3C9; ++c)
    if (c != 0x3C2 && c != 0x3C3) letters.insert(letters.end(), {c, c - 32});  // no sigma
  for (uint32_t c = 0x430; c <= 0x44F; ++c)
    letters.insert(letters.end(), {c, c - 32});
  letters.insert(letters.end(), {0x451, 0x401});

  auto* c = new CaseCorpus;
  std::mt19937 rng(7);
  // Words of one script at a time, as in real mixed text.
  const size_t latinEnd = 52 + 40, greekEnd = latinEnd + 46;
  while (c->utf8.size() < (1u << 20) - 32) {
    const int script = static_cast<int>(rng() % 3);
    const size_t lo = script == 0 ? 0 : script == 1 ? latinEnd : greekEnd;
    const size_t hi = script == 0 ? latinEnd : script == 1 ? greekEnd : letters.size();
    for (int n = 2 + static_cast<int>(rng() % 8); n > 0; --n) {
      char buffer[4];
      char* end = buffer;
      EncodeCodePoint(end, letters[lo + rng() % (hi - lo)]);
      c->utf8.append(buffer, end);
    }
    c->utf8 += rng() % 10 == 0 ? ". " : " ";
  }
  return c;
}

template <bool Upper>
void NarrowOurs(benchmark::State& state, CaseCorpus* c) {
  ICStringUnique s;
  for (auto _ : state) {
    state.PauseTiming();
    s = c->narrow;  // the block stays: a copy of the text, no allocation
    state.ResumeTiming();
    if (Upper)
      s.MakeUpper();
    else
      s.MakeLower();
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->utf8.size()));
}

template <bool Upper>
void NarrowIcuUtf8(benchmark::State& state, CaseCorpus* c) {
  std::string out(c->utf8.size() * 2, '\0');
  for (auto _ : state) {
    UErrorCode error = U_ZERO_ERROR;
    const int32_t n =
        Upper ? ucasemap_utf8ToUpper(c->caseMap, out.data(), static_cast<int32_t>(out.size()),
                                     c->utf8.data(), static_cast<int32_t>(c->utf8.size()), &error)
              : ucasemap_utf8ToLower(c->caseMap, out.data(), static_cast<int32_t>(out.size()),
                                     c->utf8.data(), static_cast<int32_t>(c->utf8.size()), &error);
    benchmark::DoNotOptimize(n);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->utf8.size()));
}

template <bool Upper>
void WideOurs(benchmark::State& state, CaseCorpus* c) {
  ICStringUniqueW s;
  for (auto _ : state) {
    state.PauseTiming();
    s = c->wide;
    state.ResumeTiming();
    if (Upper)
      s.MakeUpper();
    else
      s.MakeLower();
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->utf16.size() * 2));
}

template <bool Upper>
void WideIcu(benchmark::State& state, CaseCorpus* c) {
  std::u16string out(c->utf16.size() * 2, u'\0');
  for (auto _ : state) {
    UErrorCode error = U_ZERO_ERROR;
    auto* dest = reinterpret_cast<UChar*>(out.data());
    const auto* src = reinterpret_cast<const UChar*>(c->utf16.data());
    const int32_t n = Upper ? u_strToUpper(dest, static_cast<int32_t>(out.size()), src,
                                           static_cast<int32_t>(c->utf16.size()), "", &error)
                            : u_strToLower(dest, static_cast<int32_t>(out.size()), src,
                                           static_cast<int32_t>(c->utf16.size()), "", &error);
    benchmark::DoNotOptimize(n);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(c->utf16.size() * 2));
}

void CheckOutputs(CaseCorpus* c, const char* name) {
  for (const bool upper : {true, false}) {
    ICStringUnique narrow = c->narrow;
    ICStringUniqueW wide = c->wide;
    if (upper) {
      narrow.MakeUpper();
      wide.MakeUpper();
    } else {
      narrow.MakeLower();
      wide.MakeLower();
    }
    std::string icu8(c->utf8.size() * 2, '\0');
    std::u16string icu16(c->utf16.size() * 2, u'\0');
    UErrorCode error = U_ZERO_ERROR;
    const int32_t n8 =
        upper ? ucasemap_utf8ToUpper(c->caseMap, icu8.data(), static_cast<int32_t>(icu8.size()),
                                     c->utf8.data(), static_cast<int32_t>(c->utf8.size()), &error)
              : ucasemap_utf8ToLower(c->caseMap, icu8.data(), static_cast<int32_t>(icu8.size()),
                                     c->utf8.data(), static_cast<int32_t>(c->utf8.size()), &error);
    const int32_t n16 = upper ? u_strToUpper(reinterpret_cast<UChar*>(icu16.data()),
                                             static_cast<int32_t>(icu16.size()),
                                             reinterpret_cast<const UChar*>(c->utf16.data()),
                                             static_cast<int32_t>(c->utf16.size()), "", &error)
                              : u_strToLower(reinterpret_cast<UChar*>(icu16.data()),
                                             static_cast<int32_t>(icu16.size()),
                                             reinterpret_cast<const UChar*>(c->utf16.data()),
                                             static_cast<int32_t>(c->utf16.size()), "", &error);
    Check(U_SUCCESS(error), "ICU case mapping");
    icu8.resize(static_cast<size_t>(n8));
    icu16.resize(static_cast<size_t>(n16));
    Check(std::string(narrow.GetText(), static_cast<size_t>(narrow.GetLength())) == icu8,
          upper ? "narrow MakeUpper equals ICU" : "narrow MakeLower equals ICU");
    Check(std::u16string(wide.GetText(), static_cast<size_t>(wide.GetLength())) == icu16,
          upper ? "wide MakeUpper equals ICU" : "wide MakeLower equals ICU");
  }
  std::printf("outputs checked: MakeUpper and MakeLower equal ICU's on the %s text\n", name);
}

}  // namespace

void RegisterCaseBenchmarks(RatioReporter& reporter) {
  struct Named {
    const char* name;
    CaseCorpus* corpus;
    double goal;  // times ICU's speed
  };
  for (const Named& n : {Named{"mixed", FinishCorpus(MakeMixedCorpus()), 3.0},
                         Named{"ascii", FinishCorpus(MakeAsciiCorpus()), 10.0}}) {
    CaseCorpus* c = n.corpus;
    CheckOutputs(c, n.name);
    const std::string upper = std::string("MakeUpper/") + n.name;
    const std::string lower = std::string("MakeLower/") + n.name;
    benchmark::RegisterBenchmark((upper + "/narrow/ours").c_str(), NarrowOurs<true>, c);
    benchmark::RegisterBenchmark((upper + "/narrow/icu_utf8").c_str(), NarrowIcuUtf8<true>, c);
    benchmark::RegisterBenchmark((lower + "/narrow/ours").c_str(), NarrowOurs<false>, c);
    benchmark::RegisterBenchmark((lower + "/narrow/icu_utf8").c_str(), NarrowIcuUtf8<false>, c);
    benchmark::RegisterBenchmark((upper + "/wide/ours").c_str(), WideOurs<true>, c);
    benchmark::RegisterBenchmark((upper + "/wide/icu_u_strToUpper").c_str(), WideIcu<true>, c);
    benchmark::RegisterBenchmark((lower + "/wide/ours").c_str(), WideOurs<false>, c);
    benchmark::RegisterBenchmark((lower + "/wide/icu_u_strToLower").c_str(), WideIcu<false>, c);
    reporter.Compare(upper + " narrow vs ICU utf8", upper + "/narrow/ours",
                     upper + "/narrow/icu_utf8", n.goal);
    reporter.Compare(lower + " narrow vs ICU utf8", lower + "/narrow/ours",
                     lower + "/narrow/icu_utf8", n.goal);
    reporter.Compare(upper + " narrow vs ICU u_strToUpper", upper + "/narrow/ours",
                     upper + "/wide/icu_u_strToUpper", n.goal);
    reporter.Compare(lower + " narrow vs ICU u_strToLower", lower + "/narrow/ours",
                     lower + "/wide/icu_u_strToLower", n.goal);
    reporter.Compare(upper + " wide vs ICU u_strToUpper", upper + "/wide/ours",
                     upper + "/wide/icu_u_strToUpper", n.goal);
    reporter.Compare(lower + " wide vs ICU u_strToLower", lower + "/wide/ours",
                     lower + "/wide/icu_u_strToLower", n.goal);
  }
}

}  // namespace ic::bench
