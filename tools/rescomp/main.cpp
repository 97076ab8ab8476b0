// rescomp: the resource string compiler. Turns one module of a catalogue source (XML) into a
// C++ header and source holding the module's keys and texts as constant UTF-16 tables.
//
//   rescomp --module NAME --out-cpp FILE.cpp --out-h FILE.h [--pseudo] [--depfile FILE.d]
//           SOURCE.xml
//   rescomp --module NAME --out-keys FILE.h [--depfile FILE.d] SOURCE.xml
//   rescomp --list SOURCE.xml
//
// Faults go to standard error as "FILE(LINE): error: MESSAGE". Exit status: 0 on success
// (warnings allowed), 1 when the source has an error or an output cannot be written (no
// output is then touched), 2 for a wrong command line.

#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diagnostics.h"
#include "key_header_writer.h"
#include "output_files.h"
#include "pseudo_locale.h"
#include "source_reader.h"
#include "table_writer.h"

namespace fs = std::filesystem;
using namespace ic::rescomp;

namespace {

constexpr int kExitError = 1;
constexpr int kExitUsage = 2;

constexpr std::string_view kUsage =
    "usage: rescomp --module NAME --out-cpp FILE.cpp --out-h FILE.h [--pseudo] "
    "[--depfile FILE.d] SOURCE.xml\n"
    "       rescomp --module NAME --out-keys FILE.h [--depfile FILE.d] SOURCE.xml\n"
    "       rescomp --list SOURCE.xml\n"
    "\n"
    "  --module NAME     the module of SOURCE.xml (or of a file it includes) to compile\n"
    "  --out-cpp FILE    the C++ source to write, with the module's tables\n"
    "  --out-h FILE      the C++ header to write, which declares the module's catalogue\n"
    "  --pseudo          write the pseudo-locale of the texts: marked, lengthened by 30 %,\n"
    "                    Latin letters accented, parameters and escapes as they are\n"
    "  --out-keys FILE   the key header to write: a compile-time constant per key, with its\n"
    "                    parameter names, in namespace ic::msg::NAME\n"
    "  --depfile FILE    also write a make-style dependency file naming every source read\n"
    "  --list            check SOURCE.xml and print the names of its modules, one a line\n"
    "  --help            print this text\n";

struct Options {
  std::string module;
  std::string outCpp;
  std::string outH;
  std::string outKeys;
  std::string depfile;
  std::string source;
  bool list = false;
  bool pseudo = false;
};

int Usage(std::string_view problem) {
  std::cerr << "rescomp: " << problem << "\n" << kUsage;
  return kExitUsage;
}

// Parses the command line; on a fault prints it with the usage text and gives the exit code.
std::optional<int> ParseOptions(int argc, char** argv, Options& options) {
  bool haveSource = false;
  for (int i = 1; i < argc; ++i) {
    std::string_view arg = argv[i];
    std::string_view value;
    bool inlineValue = false;
    if (arg.substr(0, 2) == "--") {
      if (const std::size_t equals = arg.find('='); equals != std::string_view::npos) {
        value = arg.substr(equals + 1);
        arg = arg.substr(0, equals);
        inlineValue = true;
      }
    }
    if (arg == "--help" || arg == "-h") {
      std::cout << kUsage;
      return 0;
    }
    if (arg == "--list") {
      if (inlineValue) return Usage("--list takes no value");
      options.list = true;
      continue;
    }
    if (arg == "--pseudo") {
      if (inlineValue) return Usage("--pseudo takes no value");
      options.pseudo = true;
      continue;
    }
    std::string* target = nullptr;
    if (arg == "--module") {
      target = &options.module;
    } else if (arg == "--out-cpp") {
      target = &options.outCpp;
    } else if (arg == "--out-h") {
      target = &options.outH;
    } else if (arg == "--out-keys") {
      target = &options.outKeys;
    } else if (arg == "--depfile") {
      target = &options.depfile;
    }
    if (target != nullptr) {
      if (!inlineValue) {
        if (i + 1 == argc) return Usage(std::string(arg) + " needs a value");
        value = argv[++i];
      }
      if (value.empty()) return Usage(std::string(arg) + " needs a non-empty value");
      *target = value;
      continue;
    }
    if (arg.size() > 1 && arg[0] == '-') return Usage("unknown option '" + std::string(arg) + "'");
    if (haveSource) return Usage("more than one source file given");
    options.source = arg;
    haveSource = true;
  }
  if (!haveSource) return Usage("no source file given");
  if (options.list) {
    if (!options.module.empty() || !options.outCpp.empty() || !options.outH.empty() ||
        !options.outKeys.empty() || !options.depfile.empty() || options.pseudo) {
      return Usage("--list takes no other option");
    }
    return std::nullopt;
  }
  if (options.module.empty()) return Usage("--module or --list is required");
  if (options.outCpp.empty() != options.outH.empty()) {
    return Usage("--out-cpp and --out-h go together");
  }
  if (options.outCpp.empty() && options.outKeys.empty()) {
    return Usage("--out-cpp and --out-h, or --out-keys, are required with --module");
  }
  if (options.pseudo && options.outCpp.empty()) return Usage("--pseudo goes with --out-cpp");
  return std::nullopt;
}

// A path as it may stand in a make-style dependency file.
std::string DepfilePath(const std::string& path) {
  std::error_code error;
  const std::string absolute = fs::absolute(path, error).lexically_normal().generic_string();
  std::string out;
  for (char c : error ? path : absolute) {
    if (c == ' ' || c == '#' || c == '\\') out.push_back('\\');
    if (c == '$') out.push_back('$');
    out.push_back(c);
  }
  return out;
}

// How the generated source includes the header: its path relative to the source's directory.
std::string HeaderInclude(const Options& options) {
  std::error_code error;
  const fs::path cppDir = fs::absolute(options.outCpp, error).lexically_normal().parent_path();
  const fs::path header = fs::absolute(options.outH, error).lexically_normal();
  fs::path relative = header.lexically_relative(cppDir);
  return (relative.empty() ? header : relative).generic_string();
}

void PrintDiagnostics(const Diagnostics& diagnostics) {
  for (const Diagnostic& diagnostic : diagnostics.All()) {
    std::cerr << FormatDiagnostic(diagnostic) << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (std::optional<int> exit = ParseOptions(argc, argv, options)) return *exit;

  Diagnostics diagnostics;
  const Catalogue catalogue = ReadCatalogue(options.source, diagnostics);
  PrintDiagnostics(diagnostics);
  // Every fault of the run is reported before it ends: the checks of the module's key header
  // run on a source with faults too.
  bool hasErrors = diagnostics.ErrorCount() > 0;

  if (options.list) {
    if (hasErrors) return kExitError;
    for (const Module& module : catalogue.modules)
      std::cout << module.name << '\n';
    return 0;
  }

  const Module* module = catalogue.Find(options.module);
  if (module == nullptr) {
    // With faults in the source the module may be missing because of them: they are reported.
    if (!hasErrors) {
      std::cerr << FormatDiagnostic({Severity::kError, options.source, 0,
                                     "the module '" + options.module +
                                         "' is not defined in this source or its includes"})
                << '\n';
    }
    return kExitError;
  }

  const std::string sourceName = fs::path(options.source).filename().string();
  std::string keys;
  if (!options.outKeys.empty()) {
    std::vector<std::string> faults;
    keys = GenerateKeyHeader(*module, sourceName, faults);
    for (const std::string& fault : faults) {
      std::cerr << FormatDiagnostic({Severity::kError, module->file, module->line, fault}) << '\n';
    }
    hasErrors = hasErrors || !faults.empty();
  }
  if (hasErrors) return kExitError;

  OutputFiles outputs;
  if (!options.outCpp.empty()) {
    const std::string headerInclude = HeaderInclude(options);
    if (headerInclude.find_first_of("\"\r\n") != std::string::npos) {
      return Usage(
          "the header path cannot be written in an #include: it holds '\"' or a line "
          "break");
    }
    Module tables = *module;
    if (options.pseudo) {
      for (ResourceString& string : tables.strings)
        string.text = PseudoLocalise(string.text);
    }
    outputs.Add(options.outH, GenerateHeader(tables, sourceName));
    outputs.Add(options.outCpp, GenerateSource(tables, sourceName, headerInclude));
  }
  if (!options.outKeys.empty()) outputs.Add(options.outKeys, std::move(keys));
  if (!options.depfile.empty()) {
    std::string depfile =
        DepfilePath(options.outCpp.empty() ? options.outKeys : options.outCpp) + ":";
    for (const std::string& file : catalogue.files)
      depfile += " " + DepfilePath(file);
    outputs.Add(options.depfile, depfile + "\n");
  }
  std::string failed;
  if (!outputs.Commit(failed)) {
    std::cerr << FormatDiagnostic({Severity::kError, failed, 0, "cannot write the file"}) << '\n';
    return kExitError;
  }
  return 0;
}
