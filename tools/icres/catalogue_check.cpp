#include "catalogue_check.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string_view>

#include "key_header_writer.h"
#include "language_module.h"
#include "output_format.h"
#include "source_reader.h"
#include "text_checks.h"
#include "utf.h"
#include "utf8.h"

namespace ic::icres {

namespace {

using rescomp::Catalogue;
using rescomp::Module;
using rescomp::Quote;
using rescomp::ResourceString;
using rescomp::Severity;

std::string CodePoint(char32_t c) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out = "U+";
  for (int shift = c > 0xFFFF ? 20 : 12; shift >= 0; shift -= 4)
    out.push_back(kHex[(c >> shift) & 0xF]);
  return out;
}

std::u32string CodePoints(std::u16string_view text) {
  return rescomp::DecodeUtf8(ToUtf8(text)).value_or(std::u32string());
}

bool EndsWith(std::string_view text, std::string_view tail) {
  return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

bool IsBidiControl(char32_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

// Code points that show nothing and are no blank: format characters, fillers, variation
// selectors, tags, and the control characters but tab and the line breaks.
bool IsInvisible(char32_t c) {
  if (c < 0x20) return c != U'\t' && c != U'\n' && c != U'\r';
  return (c >= 0x7F && c <= 0x9F) || c == 0x00AD || c == 0x034F || c == 0x115F || c == 0x1160 ||
         c == 0x17B4 || c == 0x17B5 || (c >= 0x180B && c <= 0x180F) ||
         (c >= 0x200B && c <= 0x200D) || (c >= 0x2060 && c <= 0x2064) ||
         (c >= 0x206A && c <= 0x206F) || c == 0x3164 || (c >= 0xFE00 && c <= 0xFE0F) ||
         c == 0xFEFF || c == 0xFFA0 || (c >= 0xFFF9 && c <= 0xFFFB) ||
         (c >= 0x1D173 && c <= 0x1D17A) || (c >= 0xE0000 && c <= 0xE0FFF);
}

bool IsBlank(char32_t c) {
  return c == U' ' || c == U'\t' || c == U'\n' || c == U'\r' || c == 0xA0 || c == 0x3000;
}

// Han, kana, hangul, CJK punctuation and the full-width forms.
bool IsCjk(char32_t c) {
  return (c >= 0x2E80 && c <= 0x9FFF) || (c >= 0xAC00 && c <= 0xD7AF) ||
         (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFE30 && c <= 0xFE4F) ||
         (c >= 0xFF00 && c <= 0xFFEF) || (c >= 0x20000 && c <= 0x3FFFF);
}

bool IsFullWidthPunctuation(char32_t c) {
  static constexpr std::u32string_view kMarks = U"，。：；！？（）、“”‘’【】《》";
  return kMarks.find(c) != std::u32string_view::npos;
}

bool IsHalfWidthPunctuation(char32_t c) {
  static constexpr std::u32string_view kMarks = U",.:;!?()\"'[]";
  return kMarks.find(c) != std::u32string_view::npos;
}

std::string ShowBlanks(std::u32string_view blanks) {
  if (blanks.empty()) return "none";
  std::string out;
  for (char32_t c : blanks) {
    if (!out.empty()) out += ' ';
    out += CodePoint(c);
  }
  return out;
}

std::u32string_view LeadingBlanks(std::u32string_view text) {
  std::size_t n = 0;
  while (n < text.size() && IsBlank(text[n]))
    ++n;
  return text.substr(0, n);
}

std::u32string_view TrailingBlanks(std::u32string_view text) {
  std::size_t n = text.size();
  while (n > 0 && IsBlank(text[n - 1]))
    --n;
  return text.substr(n);
}

// How often each parameter is used, with the names in the order of first use.
struct ParameterCounts {
  std::vector<std::string> order;
  std::map<std::string, int> counts;

  explicit ParameterCounts(std::u16string_view text) {
    for (const std::string& name : rescomp::ParameterUses(text)) {
      if (counts[name]++ == 0) order.push_back(name);
    }
  }
  int Count(const std::string& name) const {
    const auto at = counts.find(name);
    return at == counts.end() ? 0 : at->second;
  }
  bool operator==(const ParameterCounts& other) const { return counts == other.counts; }
};

std::string Times(int count) {
  return count == 1 ? "once" : std::to_string(count) + " times";
}

const ResourceString* FindRow(const Module& module, std::string_view key) {
  for (const ResourceString& row : module.strings) {
    if (row.name == key) return &row;
  }
  return nullptr;
}

class Checker {
 public:
  Checker(const Catalogue& source, const Catalogue& reference, std::vector<Finding>& findings)
      : source_(source), reference_(reference), findings_(findings) {}

  void Run() {
    for (const Module& module : source_.modules) {
      const Module* ref = reference_.Find(module.name);
      if (!ref) {
        Add(Severity::kError, module.file, module.line, module.name, "",
            "the module " + Quote(module.name) + " is not in the reference");
      }
      CheckModule(module, ref);
    }
    for (const Module& ref : reference_.modules) {
      if (source_.Find(ref.name)) continue;
      Add(Severity::kError, source_.files.front(), 0, ref.name, "",
          "the module " + Quote(ref.name) + " of the reference (" + Site(ref.file, ref.line) +
              ") is missing");
    }
  }

 private:
  static std::string Site(const std::string& file, long line) {
    return file + "(" + std::to_string(line) + ")";
  }

  void Add(Severity severity, const std::string& file, long line, const std::string& module,
           const std::string& key, std::string message) {
    findings_.push_back({severity, file, line, module, key, std::move(message)});
  }

  void CheckModule(const Module& module, const Module* ref) {
    // A module is a translation of the reference when most of its shared rows differ from it;
    // only there does a row left as the reference has it stand out.
    int shared = 0;
    int differing = 0;
    if (ref) {
      for (const ResourceString& row : module.strings) {
        if (const ResourceString* twin = FindRow(*ref, row.name)) {
          ++shared;
          if (twin->text != row.text) ++differing;
        }
      }
    }
    const bool translated = differing * 2 > shared;
    for (const ResourceString& row : module.strings) {
      const ResourceString* refRow = ref ? FindRow(*ref, row.name) : nullptr;
      if (ref && !refRow) {
        Add(Severity::kError, module.file, row.line, module.name, row.name,
            "the key " + Quote(row.name) + " is not in the reference");
      }
      CheckRow(module, row, ref, refRow, translated);
    }
    if (!ref) return;
    for (const ResourceString& refRow : ref->strings) {
      if (FindRow(module, refRow.name)) continue;
      Add(Severity::kError, module.file, module.line, module.name, refRow.name,
          "the key " + Quote(refRow.name) + " of the reference (" + Site(ref->file, refRow.line) +
              ") is missing from the module " + Quote(module.name));
    }
  }

  void CheckRow(const Module& module, const ResourceString& row, const Module* ref,
                const ResourceString* refRow, bool translated) {
    auto add = [&](Severity severity, std::string message) {
      Add(severity, module.file, row.line, module.name, row.name,
          Quote(row.name) + ": " + std::move(message));
    };
    const std::u32string text = CodePoints(row.text);
    const bool empty = rescomp::LooksEmpty(text);
    if (empty) add(Severity::kError, "the text is empty");
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (IsBidiControl(text[i])) {
        add(Severity::kError, "bidirectional control character " + CodePoint(text[i]) +
                                  " at position " + std::to_string(i));
      } else if (IsInvisible(text[i])) {
        add(Severity::kError,
            "invisible character " + CodePoint(text[i]) + " at position " + std::to_string(i));
      }
    }
    // A row with unbalanced braces has its fault from the reader; its parameters are not
    // compared, since the unbalanced one cannot be counted.
    const bool bracesHold = rescomp::CheckParameters(text, nullptr, module.name).empty();
    const ParameterCounts params(row.text);
    if (refRow) {
      const ParameterCounts refParams(refRow->text);
      if (bracesHold) CheckParameters(row.name, params, refParams, add);
      const std::u32string refText = CodePoints(refRow->text);
      if (!empty) {
        const std::u32string_view lead = LeadingBlanks(text), refLead = LeadingBlanks(refText);
        if (lead != refLead) {
          add(Severity::kError, "leading blanks differ from the reference: " + ShowBlanks(lead) +
                                    " here, " + ShowBlanks(refLead) + " there");
        }
        const std::u32string_view trail = TrailingBlanks(text), refTrail = TrailingBlanks(refText);
        if (trail != refTrail) {
          add(Severity::kError, "trailing blanks differ from the reference: " + ShowBlanks(trail) +
                                    " here, " + ShowBlanks(refTrail) + " there");
        }
      }
      if (text == refText) {
        if (translated && !empty) {
          add(Severity::kWarning, "the text is identical to the reference: left untranslated?");
        }
      } else {
        CheckPunctuation(text, add);
      }
    }
    if (bracesHold && EndsWith(row.name, "_no_uri"))
      CheckNoUriTwin(module, row, params, ref, refRow, add);
  }

  template <class Add>
  static void CheckParameters(const std::string& key, const ParameterCounts& params,
                              const ParameterCounts& refParams, Add& add) {
    const bool hint = EndsWith(key, "_hint");
    std::vector<std::string> names = refParams.order;
    for (const std::string& name : params.order) {
      if (!refParams.Count(name)) names.push_back(name);
    }
    for (const std::string& name : names) {
      const int here = params.Count(name);
      const int there = refParams.Count(name);
      if (here == there) continue;
      const std::string shown = "{" + name + "}";
      if (hint && here > there) {
        add(Severity::kError,
            "the _hint row gained the parameter " + shown + " (used " + Times(here) + " here, " +
                (there ? Times(there) : std::string("never")) + " in the reference)");
      } else if (here == 0) {
        add(Severity::kError,
            "the parameter " + shown + " is missing: the reference uses it " + Times(there));
      } else if (there == 0) {
        add(Severity::kError, "the parameter " + shown + " is not in the reference");
      } else {
        add(Severity::kError, "the parameter " + shown + " is used " + Times(here) +
                                  ", the reference uses it " + Times(there));
      }
    }
  }

  // The _no_uri row must be its twin (the key without the suffix) without {uri}. Where either
  // row's parameters already differ from the reference, that finding names the fault.
  template <class Add>
  static void CheckNoUriTwin(const Module& module, const ResourceString& row,
                             const ParameterCounts& params, const Module* ref,
                             const ResourceString* refRow, Add& add) {
    const std::string twinKey = row.name.substr(0, row.name.size() - 7);
    const ResourceString* twin = FindRow(module, twinKey);
    if (!twin) return;
    const ParameterCounts twinParams(twin->text);
    if (refRow && !(params == ParameterCounts(refRow->text))) return;
    if (ref) {
      const ResourceString* refTwin = FindRow(*ref, twinKey);
      if (refTwin && !(twinParams == ParameterCounts(refTwin->text))) return;
    }
    if (!twinParams.Count("uri")) {
      add(Severity::kError, "its twin " + Quote(twinKey) + " has no {uri}");
      return;
    }
    ParameterCounts expected = twinParams;
    expected.counts.erase("uri");
    if (params == expected) return;
    std::string differences;
    auto note = [&differences](const std::string& what) {
      differences += differences.empty() ? what : ", " + what;
    };
    for (const auto& [name, count] : params.counts) {
      const auto at = expected.counts.find(name);
      const int want = at == expected.counts.end() ? 0 : at->second;
      if (count != want)
        note("{" + name + "} " + Times(count) + " here, " +
             (want ? Times(want) : std::string("never")) + " in the twin");
    }
    for (const auto& [name, count] : expected.counts) {
      if (!params.Count(name)) note("{" + name + "} missing");
    }
    add(Severity::kError,
        "the _no_uri row is not its twin " + Quote(twinKey) + " without {uri}: " + differences);
  }

  // Chinese text takes full-width marks; a half-width mark that touches a CJK character is used
  // as one of them, while those between Latin letters or digits (URLs, numbers, names) are not.
  template <class Add>
  static void CheckPunctuation(std::u32string_view text, Add& add) {
    std::optional<std::size_t> full, half;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (!full && IsFullWidthPunctuation(text[i])) full = i;
      if (!half && IsHalfWidthPunctuation(text[i]) &&
          ((i > 0 && IsCjk(text[i - 1])) || (i + 1 < text.size() && IsCjk(text[i + 1])))) {
        half = i;
      }
    }
    if (!full || !half) return;
    std::string fullMark, halfMark;
    rescomp::AppendUtf8(fullMark, text[*full]);
    rescomp::AppendUtf8(halfMark, text[*half]);
    add(Severity::kWarning, "full-width and half-width punctuation mixed: '" + fullMark +
                                "' at position " + std::to_string(*full) + ", '" + halfMark +
                                "' at position " + std::to_string(*half));
  }

  const Catalogue& source_;
  const Catalogue& reference_;
  std::vector<Finding>& findings_;
};

std::string Unreadable(const std::string& path, const rescomp::Diagnostics& diagnostics) {
  std::string reason = "cannot read the catalogue " + path;
  for (const rescomp::Diagnostic& diagnostic : diagnostics.All()) {
    if (diagnostic.severity == Severity::kError) {
      return reason + ": " + rescomp::FormatDiagnostic(diagnostic);
    }
  }
  return reason;
}

// By file, in the order in which the files first appear (the source's first), then by line.
void SortFindings(std::vector<Finding>& findings, const Catalogue& source,
                  const Catalogue& reference) {
  std::vector<std::string> files = source.files;
  files.insert(files.end(), reference.files.begin(), reference.files.end());
  auto rank = [&files](const Finding& finding) {
    return std::find(files.begin(), files.end(), finding.file) - files.begin();
  };
  std::stable_sort(findings.begin(), findings.end(), [&rank](const Finding& a, const Finding& b) {
    const auto ra = rank(a), rb = rank(b);
    return ra != rb ? ra < rb : a.line < b.line;
  });
}

// The chain of a loaded module as a catalogue: a module per record, named "PATH[NAME]", and a
// row per key with its 1-based row number for a line. Rows without a key are left out.
Catalogue ReadModuleCatalogue(const std::string& path, const LanguageModule& module) {
  Catalogue catalogue;
  catalogue.files.push_back(path);
  for (resources::ResourceStringLibrary* record : module.Catalogues()) {
    Module& read = catalogue.modules.emplace_back();
    read.name = ToUtf8(record->Name);
    read.file = path + "[" + read.name + "]";
    catalogue.files.push_back(read.file);
    for (int32_t row = 0; row < record->Count; ++row) {
      const char16_t* key = record->GetKey ? record->GetKey(record, row) : nullptr;
      if (!key) continue;
      const char16_t* text = record->GetText ? record->GetText(record, row) : nullptr;
      read.strings.push_back(
          {ToUtf8(key), text ? std::u16string(text) : std::u16string(), row + 1});
    }
  }
  return catalogue;
}

// The brace faults of every text, as the source reader reports them.
void AddBraceFaults(const Catalogue& catalogue, std::vector<Finding>& findings) {
  for (const Module& module : catalogue.modules) {
    for (const ResourceString& row : module.strings) {
      for (const std::string& fault :
           rescomp::CheckParameters(CodePoints(row.text), nullptr, module.name)) {
        findings.push_back({Severity::kError, module.file, row.line, module.name, row.name,
                            "resource string " + Quote(row.name) + ": " + fault});
      }
    }
  }
}

}  // namespace

bool IsCatalogueSource(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(c | 0x20); });
  return extension == ".xml";
}

CheckResult CheckModules(const std::string& modulePath, const std::string& referencePath) {
  CheckResult result;
  // Each module is unloaded as soon as its texts are copied.
  auto read = [&result](const std::string& path) -> std::optional<Catalogue> {
    const std::unique_ptr<LanguageModule> module = LanguageModule::Load(path, result.fault);
    if (!module) return std::nullopt;
    return ReadModuleCatalogue(path, *module);
  };
  const std::optional<Catalogue> sourceRead = read(modulePath);
  const std::optional<Catalogue> referenceRead = sourceRead ? read(referencePath) : std::nullopt;
  if (!referenceRead) {
    result.readable = false;
    return result;
  }
  const Catalogue& source = *sourceRead;
  const Catalogue& reference = *referenceRead;
  AddBraceFaults(source, result.findings);
  AddBraceFaults(reference, result.findings);
  Checker(source, reference, result.findings).Run();
  SortFindings(result.findings, source, reference);
  return result;
}

int CheckResult::Errors() const {
  return static_cast<int>(std::count_if(findings.begin(), findings.end(), [](const Finding& f) {
    return f.severity == Severity::kError;
  }));
}

int CheckResult::Warnings() const {
  return static_cast<int>(findings.size()) - Errors();
}

CheckResult CheckCatalogue(const std::string& sourcePath, const std::string& referencePath) {
  CheckResult result;
  // The reference tells which parameters a row takes, so the modules' 'params' lists are not
  // consulted; an empty text is an error of this check, not the compiler's warning.
  rescomp::ReadOptions options;
  options.warnEmpty = false;
  options.checkDeclaredParameters = false;
  rescomp::Diagnostics sourceDiagnostics, referenceDiagnostics;
  const Catalogue source = rescomp::ReadCatalogue(sourcePath, sourceDiagnostics, options);
  const Catalogue reference = rescomp::ReadCatalogue(referencePath, referenceDiagnostics, options);
  if (!source.complete || !reference.complete) {
    result.readable = false;
    result.fault = !source.complete ? Unreadable(sourcePath, sourceDiagnostics)
                                    : Unreadable(referencePath, referenceDiagnostics);
    return result;
  }
  for (const rescomp::Diagnostics* diagnostics : {&sourceDiagnostics, &referenceDiagnostics}) {
    for (const rescomp::Diagnostic& d : diagnostics->All()) {
      result.findings.push_back({d.severity, d.file, d.line, "", "", d.message});
    }
  }
  Checker(source, reference, result.findings).Run();
  SortFindings(result.findings, source, reference);
  return result;
}

std::string FindingsText(const std::vector<Finding>& findings) {
  std::string out;
  for (const Finding& finding : findings) {
    out +=
        rescomp::FormatDiagnostic({finding.severity, finding.file, finding.line, finding.message}) +
        "\n";
  }
  return out;
}

std::string FindingsJson(const CheckResult& result) {
  auto orNull = [](const std::string& text) {
    return text.empty() ? std::string("null") : JsonString(text);
  };
  std::string out = "{\"errors\": " + std::to_string(result.Errors()) +
                    ", \"warnings\": " + std::to_string(result.Warnings()) + ", \"findings\": [";
  const char* separator = "\n  ";
  for (const Finding& f : result.findings) {
    out += separator;
    separator = ",\n  ";
    out += "{\"file\": " + JsonString(f.file) + ", \"line\": " + std::to_string(f.line) +
           ", \"severity\": \"" + (f.severity == Severity::kError ? "error" : "warning") +
           "\", \"module\": " + orNull(f.module) + ", \"key\": " + orNull(f.key) +
           ", \"message\": " + JsonString(f.message) + "}";
  }
  out += result.findings.empty() ? "]}\n" : "\n]}\n";
  return out;
}

}  // namespace ic::icres
