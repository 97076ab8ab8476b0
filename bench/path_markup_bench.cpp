// Paths, URLs and markup against named alternatives, each on the same input in one program:
// EscapeXml on 1 MiB (nothing to escape against memchr over the same bytes; 5 % to escape
// against a plain std::string escaping loop), PercentEncode/PercentDecode on 1 MiB against
// libcurl's curl_easy_escape/curl_easy_unescape, and NormalizePath on typical paths against
// std::filesystem::path::lexically_normal (whose rules differ: time only). Outputs that can be
// compared are checked before any timing.
#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <ic/string/ic_string.h>

#include "ratio_reporter.h"

namespace {

using ic::ICStringUnique;

constexpr size_t TextSize = 1 << 20;

void Require(bool ok, const std::string& what) {
  if (!ok) {
    std::fprintf(stderr, "result check failed: %s\n", what.c_str());
    std::exit(1);
  }
}

// 1 MiB of prose-like ASCII with line breaks; with `special`, about that share of the
// characters are markup characters.
std::string MakeText(double special) {
  static const char* const kWords[] = {"the",     "of",   "value", "string", "library", "attribute",
                                       "element", "text", "which", "would",  "about",   "there"};
  static const char kSpecial[] = {'<', '>', '&', '"', '\''};
  std::mt19937 rng(42);
  std::uniform_real_distribution<double> unit(0, 1);
  std::string out;
  out.reserve(TextSize + 16);
  while (out.size() < TextSize) {
    const std::string word = kWords[rng() % std::size(kWords)];
    for (char c : word)
      out += unit(rng) < special * 1.2 ? kSpecial[rng() % std::size(kSpecial)] : c;
    out += (rng() % 16 == 0) ? '\n' : ' ';
  }
  out.resize(TextSize);
  return out;
}

// The alternative: a plain loop that appends to a std::string.
std::string EscapeStd(const std::string& in) {
  std::string out;
  for (char c : in) {
    switch (c) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&apos;";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r')
          out += "&#" + std::to_string(static_cast<int>(c)) + ";";
        else
          out += c;
    }
  }
  return out;
}

struct Texts {
  std::string plain = MakeText(0);
  std::string marked = MakeText(0.05);
  std::string url;      // path-like text with spaces and some UTF-8
  std::string escaped;  // url escaped
  std::vector<std::string> paths;
};

const Texts& Inputs() {
  static const Texts* texts = [] {
    auto* t = new Texts;
    static const char* const kSegments[] = {
        "Users", "My Documents",  "report 2026.pdf", "a+b=c", "\xE4\xB8\xAD\xE6\x96\x87",
        "src",   "index.html?q=1"};
    std::mt19937 rng(7);
    while (t->url.size() < TextSize) {
      t->url += '/';
      t->url += kSegments[rng() % std::size(kSegments)];
    }
    t->url.resize(TextSize - 8);
    t->url += "/end.txt";
    static const char* const kPaths[] = {
        "C:\\Users\\me\\Documents\\..\\Pictures\\.\\holiday\\img_0001.png",
        "C:\\Program Files\\App\\bin\\..\\lib\\plugins\\.\\codec.dll",
        "/usr/local/lib/../share/./doc/package/README.txt",
        "/home/user/projects/app/src/../include/./app/config.h",
        "\\\\server\\share\\dept\\..\\common\\templates\\letter.dotx",
        "proto://host/a/b/../c/./d/index.html",
        "docs/manual/../guide/./chapter1/section2.md",
        "./build/release/../debug/tests/unit",
        "C:\\a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\\l\\m\\n\\o\\p.txt",
        "/var/log//nginx///access.log",
    };
    for (const char* p : kPaths)
      t->paths.emplace_back(p);
    return t;
  }();
  return *texts;
}

void EscapeXmlNothingOurs(benchmark::State& state) {
  ICStringUnique s(Inputs().plain.c_str());
  for (auto _ : state) {
    s.EscapeXml(true);
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * TextSize));
}

void EscapeXmlNothingMemchr(benchmark::State& state) {
  const std::string& text = Inputs().plain;
  for (auto _ : state) {
    // The pointer is made opaque each time, so that the pure call is not hoisted out of the loop.
    const char* data = text.data();
    benchmark::DoNotOptimize(data);
    const void* p = std::memchr(data, '<', text.size());
    benchmark::DoNotOptimize(p);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * TextSize));
}

// The C library's own set scan over the same bytes, for the same stops: the markup characters
// and the controls other than tab, LF and CR (the text has no other byte that EscapeXml stops at).
void EscapeXmlNothingStrcspn(benchmark::State& state) {
  static const std::string stops = [] {
    std::string set = "<>&\"'";
    for (char c = 1; c < 0x20; ++c)
      if (c != '\t' && c != '\n' && c != '\r') set += c;
    return set;
  }();
  const std::string& text = Inputs().plain;
  for (auto _ : state) {
    const char* data = text.c_str();
    benchmark::DoNotOptimize(data);
    benchmark::DoNotOptimize(std::strcspn(data, stops.c_str()));
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * TextSize));
}

void EscapeXmlMarkedOurs(benchmark::State& state) {
  const char* text = Inputs().marked.c_str();
  for (auto _ : state) {
    ICStringUnique out = ICStringUnique::EscapedXml(text, true);
    benchmark::DoNotOptimize(out.GetText());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * TextSize));
}

void EscapeXmlMarkedStd(benchmark::State& state) {
  const std::string& text = Inputs().marked;
  for (auto _ : state) {
    std::string out = EscapeStd(text);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * TextSize));
}

void PercentEncodeOurs(benchmark::State& state) {
  const std::string& url = Inputs().url;
  for (auto _ : state) {
    ICStringUnique s(url.c_str(), static_cast<int32_t>(url.size()));
    s.PercentEncode(ic::EscapeReserved);
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * url.size()));
}

void PercentEncodeCurl(benchmark::State& state) {
  const std::string& url = Inputs().url;
  CURL* curl = curl_easy_init();
  for (auto _ : state) {
    char* out = curl_easy_escape(curl, url.data(), static_cast<int>(url.size()));
    benchmark::DoNotOptimize(out);
    curl_free(out);
  }
  curl_easy_cleanup(curl);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * url.size()));
}

void PercentDecodeOurs(benchmark::State& state) {
  const std::string& escaped = Inputs().escaped;
  // The decoding runs in place: each round copies the escaped text into the same block first
  // (curl's decoder allocates its output instead).
  ICStringUnique s;
  for (auto _ : state) {
    s.Assign(escaped.c_str(), static_cast<int32_t>(escaped.size()));
    s.PercentDecode();
    benchmark::DoNotOptimize(s.GetText());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * escaped.size()));
}

void PercentDecodeCurl(benchmark::State& state) {
  const std::string& escaped = Inputs().escaped;
  CURL* curl = curl_easy_init();
  for (auto _ : state) {
    int length = 0;
    char* out = curl_easy_unescape(curl, escaped.data(), static_cast<int>(escaped.size()), &length);
    benchmark::DoNotOptimize(out);
    curl_free(out);
  }
  curl_easy_cleanup(curl);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * escaped.size()));
}

void NormalizeOurs(benchmark::State& state) {
  const std::vector<std::string>& paths = Inputs().paths;
  char buffer[512];
  for (auto _ : state) {
    for (const std::string& p : paths) {
      std::memcpy(buffer, p.c_str(), p.size() + 1);
      benchmark::DoNotOptimize(ICStringUnique::NormalizePath(buffer, true, true));
      benchmark::DoNotOptimize(buffer);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * paths.size()));
}

void NormalizeFilesystem(benchmark::State& state) {
  const std::vector<std::string>& paths = Inputs().paths;
  for (auto _ : state) {
    for (const std::string& p : paths) {
      std::filesystem::path normal = std::filesystem::path(p).lexically_normal();
      benchmark::DoNotOptimize(normal.native().data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * paths.size()));
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  curl_global_init(CURL_GLOBAL_DEFAULT);
  ic::bench::RatioReporter reporter;

  Texts& t = const_cast<Texts&>(Inputs());
  {
    ICStringUnique plain(t.plain.c_str());
    const char* block = plain.GetText();
    plain.EscapeXml(true);
    Require(plain.GetText() == block, "EscapeXml with nothing to escape keeps the block");
    Require(std::memchr(t.plain.data(), '<', t.plain.size()) == nullptr, "plain text has no '<'");
    const ICStringUnique ours = ICStringUnique::EscapedXml(t.marked.c_str(), true);
    Require(
        std::string(ours.GetText(), static_cast<size_t>(ours.GetLength())) == EscapeStd(t.marked),
        "EscapeXml against the std::string loop");
    size_t specials = 0;
    for (char c : t.marked)
      specials += std::strchr("<>&\"'", c) != nullptr && c != 0;
    std::printf("marked text: %.1f %% of the characters to escape\n",
                100.0 * static_cast<double>(specials) / static_cast<double>(t.marked.size()));
  }
  {
    ICStringUnique encoded(t.url.c_str(), static_cast<int32_t>(t.url.size()));
    encoded.PercentEncode(ic::EscapeReserved);
    t.escaped.assign(encoded.GetText(), static_cast<size_t>(encoded.GetLength()));
    CURL* curl = curl_easy_init();
    int length = 0;
    char* theirs =
        curl_easy_unescape(curl, t.escaped.data(), static_cast<int>(t.escaped.size()), &length);
    Require(std::string(theirs, static_cast<size_t>(length)) == t.url, "curl decodes our escapes");
    curl_free(theirs);
    char* curlEscaped = curl_easy_escape(curl, t.url.data(), static_cast<int>(t.url.size()));
    ICStringUnique decoded(curlEscaped);
    decoded.PercentDecode();
    Require(std::string(decoded.GetText(), static_cast<size_t>(decoded.GetLength())) == t.url,
            "we decode curl's escapes");
    curl_free(curlEscaped);
    curl_easy_cleanup(curl);
  }
  std::printf(
      "outputs checked: EscapeXml against the std::string loop, percent escapes with "
      "curl both ways\n");

  benchmark::RegisterBenchmark("EscapeXml/nothing/ours", EscapeXmlNothingOurs);
  benchmark::RegisterBenchmark("EscapeXml/nothing/memchr", EscapeXmlNothingMemchr);
  benchmark::RegisterBenchmark("EscapeXml/nothing/strcspn", EscapeXmlNothingStrcspn);
  benchmark::RegisterBenchmark("EscapeXml/5pct/ours", EscapeXmlMarkedOurs);
  benchmark::RegisterBenchmark("EscapeXml/5pct/std_string_loop", EscapeXmlMarkedStd);
  benchmark::RegisterBenchmark("PercentEncode/ours", PercentEncodeOurs);
  benchmark::RegisterBenchmark("PercentEncode/curl_easy_escape", PercentEncodeCurl);
  benchmark::RegisterBenchmark("PercentDecode/ours", PercentDecodeOurs);
  benchmark::RegisterBenchmark("PercentDecode/curl_easy_unescape", PercentDecodeCurl);
  benchmark::RegisterBenchmark("NormalizePath/ours", NormalizeOurs);
  benchmark::RegisterBenchmark("NormalizePath/lexically_normal", NormalizeFilesystem);

  // Nothing to escape: within 1.5x of memchr, a speed ratio of at least 1/1.5.
  reporter.Compare("EscapeXml nothing vs memchr", "EscapeXml/nothing/ours",
                   "EscapeXml/nothing/memchr", 1 / 1.5);
  // The best scan for a set that the C library offers, as a yardstick for the row above.
  reporter.Compare("EscapeXml nothing vs strcspn", "EscapeXml/nothing/ours",
                   "EscapeXml/nothing/strcspn", 1.0);
  reporter.Compare("EscapeXml 5% vs std::string loop", "EscapeXml/5pct/ours",
                   "EscapeXml/5pct/std_string_loop", 2.0);
  reporter.Compare("PercentEncode vs curl_easy_escape", "PercentEncode/ours",
                   "PercentEncode/curl_easy_escape", 1.5);
  reporter.Compare("PercentDecode vs curl_easy_unescape", "PercentDecode/ours",
                   "PercentDecode/curl_easy_unescape", 1.5);
  reporter.Compare("NormalizePath vs lexically_normal", "NormalizePath/ours",
                   "NormalizePath/lexically_normal", 3.0);

  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  curl_global_cleanup();
  return 0;
}
