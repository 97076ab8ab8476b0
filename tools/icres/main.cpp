// icres: reads the catalogues of a language module, as a host does. It loads the module at run
// time, walks the chain of catalogue records from GetFirstResourceStringLibrary and prints
// catalogues, rows and messages as UTF-8.
//
//   icres [--module PATH] [--lang CODE] list
//   icres [--module PATH] [--lang CODE] show CATALOGUE
//   icres [--module PATH] [--lang CODE] get CATALOGUE KEY [name=value ...]
//   icres [--module PATH] [--lang CODE] dump [--json]
//   icres [--module PATH] [--lang CODE] language
//   icres [--module PATH] module
//   icres check SOURCE.xml --ref REFERENCE.xml [--json]
//   icres check MODULE --ref REFERENCE_MODULE [--json]
//
// Without --module, icres loads the module named by ICRES_MODULE, else the one installed with it
// (module_search.h), else the one built beside it.
//
// Exit status: 0 on success; 2 with one line on standard error for a module that does not
// load, an unknown catalogue or key, a parameter without a value or a value without a
// parameter, a catalogue source that cannot be read, and a wrong command line. check exits
// with 1 when it finds an error (warnings alone give 0).
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue_check.h"
#include "language_module.h"
#include "module_search.h"
#include "output_format.h"
#include "substitute.h"
#include "utf.h"

namespace {

using ic::icres::LanguageModule;
using ic::resources::ResourceStringLibrary;

constexpr int kExitFault = 2;
constexpr int kExitFindings = 1;

constexpr std::string_view kUsage =
    "usage: icres [--module PATH] [--lang CODE] COMMAND [ARGUMENTS]\n"
    "\n"
    "commands:\n"
    "  list                               the catalogues in chain order, with their row counts\n"
    "  show CATALOGUE                     the rows of a catalogue: key and text, one a line\n"
    "  get CATALOGUE KEY [name=value ...] one message with its {name} parameters substituted\n"
    "  dump [--json]                      every row of every catalogue\n"
    "  language                           the module's current language\n"
    "  module                             the module's path and what chose it, loading nothing\n"
    "  check SOURCE.xml --ref REFERENCE.xml\n"
    "                                     compare a translated catalogue source with its\n"
    "                                     reference; findings as FILE(LINE): error|warning\n"
    "  check MODULE --ref REFERENCE_MODULE\n"
    "                                     the same for two built modules; findings as\n"
    "                                     MODULE[CATALOGUE](ROW): error|warning\n"
    "\n"
    "options:\n"
    "  --module PATH   the language module to load (default: $ICRES_MODULE, else the module\n"
    "                  installed with icres, else " ICRES_DEFAULT_MODULE
    ")\n"
    "  --lang CODE     set the module's language first\n"
    "  --ref FILE      with check: the reference catalogue source\n"
    "  --json          with dump and check: one JSON document\n"
    "  --help          print this text\n"
    "\n"
    "In show and dump, backslash, line feed, carriage return and tab are written \\\\, \\n, \\r\n"
    "and \\t. In messages, \\{ and \\} stand for literal braces.\n";

struct Options {
  std::optional<std::string> module;  // --module
  std::optional<std::string> language;
  std::optional<std::string> reference;
  bool json = false;
  bool help = false;
  std::vector<std::string> words;  // the command and its arguments
};

int Fault(const std::string& message) {
  std::fprintf(stderr, "icres: %s\n", message.c_str());
  return kExitFault;
}

int UsageFault(const std::string& message) {
  return Fault(message + " (see icres --help)");
}

void Print(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// Reads the options anywhere on the command line; the other words are the command and its
// arguments. Returns a usage fault message, or nothing.
std::optional<std::string> ParseCommandLine(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    std::string_view arg = argv[i];
    std::optional<std::string_view> inlineValue;
    if (arg.substr(0, 2) == "--") {
      if (const size_t equals = arg.find('='); equals != std::string_view::npos) {
        inlineValue = arg.substr(equals + 1);
        arg = arg.substr(0, equals);
      }
    }
    auto value = [&](std::string& target) -> std::optional<std::string> {
      if (inlineValue) {
        target = *inlineValue;
      } else if (i + 1 < argc) {
        target = argv[++i];
      } else {
        return std::string(arg) + " needs a value";
      }
      return std::nullopt;
    };
    if (arg == "--help" || arg == "-h") {
      options.help = true;
    } else if (arg == "--module") {
      std::string path;
      if (auto fault = value(path)) return fault;
      if (path.empty()) return std::string("--module needs a path");
      options.module = path;
    } else if (arg == "--lang") {
      std::string code;
      if (auto fault = value(code)) return fault;
      if (code.empty()) return std::string("--lang needs a language code");
      options.language = code;
    } else if (arg == "--ref") {
      std::string path;
      if (auto fault = value(path)) return fault;
      if (path.empty()) return std::string("--ref needs a path");
      options.reference = path;
    } else if (arg == "--json") {
      if (inlineValue) return std::string("--json takes no value");
      options.json = true;
    } else if (arg.size() > 1 && arg[0] == '-') {
      return "unknown option " + std::string(arg);
    } else {
      options.words.emplace_back(arg);
    }
  }
  return std::nullopt;
}

std::string NameOf(const ResourceStringLibrary* catalogue) {
  return ic::icres::ToUtf8(catalogue->Name);
}

const char16_t* KeyOf(ResourceStringLibrary* catalogue, int32_t row) {
  return catalogue->GetKey ? catalogue->GetKey(catalogue, row) : nullptr;
}

const char16_t* TextOf(ResourceStringLibrary* catalogue, int32_t row) {
  return catalogue->GetText ? catalogue->GetText(catalogue, row) : nullptr;
}

ResourceStringLibrary* FindCatalogue(const LanguageModule& module, const std::string& name,
                                     std::string& fault) {
  ResourceStringLibrary* catalogue = module.FindCatalogue(ic::icres::FromUtf8(name));
  if (!catalogue) fault = "unknown catalogue " + Quoted(name);
  return catalogue;
}

int List(const LanguageModule& module) {
  std::string out;
  for (ResourceStringLibrary* catalogue : module.Catalogues()) {
    out += NameOf(catalogue) + "\t" + std::to_string(catalogue->Count) + "\n";
  }
  Print(out);
  return 0;
}

int Show(const LanguageModule& module, const std::string& name) {
  std::string fault;
  ResourceStringLibrary* catalogue = FindCatalogue(module, name, fault);
  if (!catalogue) return Fault(fault);
  std::string out;
  for (int32_t row = 0; row < catalogue->Count; ++row) {
    out += ic::icres::EscapeRowText(ic::icres::ToUtf8(KeyOf(catalogue, row))) + "\t" +
           ic::icres::EscapeRowText(ic::icres::ToUtf8(TextOf(catalogue, row))) + "\n";
  }
  Print(out);
  return 0;
}

int Get(const LanguageModule& module, const std::vector<std::string>& words) {
  const std::string& name = words[1];
  const std::string& key = words[2];
  std::map<std::string, std::string> values;
  for (size_t i = 3; i < words.size(); ++i) {
    const size_t equals = words[i].find('=');
    if (equals == std::string::npos || equals == 0) {
      return UsageFault("expected name=value, got " + Quoted(words[i]));
    }
    const std::string parameter = words[i].substr(0, equals);
    if (!values.emplace(parameter, words[i].substr(equals + 1)).second) {
      return UsageFault("parameter {" + parameter + "} is given twice");
    }
  }
  std::string fault;
  ResourceStringLibrary* catalogue = FindCatalogue(module, name, fault);
  if (!catalogue) return Fault(fault);
  const int32_t row = module.FindRow(catalogue, ic::icres::FromUtf8(key));
  if (row < 0) return Fault("catalogue " + Quoted(name) + " has no key " + Quoted(key));
  const std::string message = name + "/" + key;
  const auto result = ic::icres::Substitute(ic::icres::ToUtf8(TextOf(catalogue, row)), values);
  switch (result.fault) {
    case ic::icres::SubstitutionFault::UnknownParameter:
      return Fault(message + " has no parameter {" + result.name + "}");
    case ic::icres::SubstitutionFault::MissingValue:
      return Fault("parameter {" + result.name + "} of " + message + " has no value");
    case ic::icres::SubstitutionFault::None:
      break;
  }
  Print(result.text + "\n");
  return 0;
}

int DumpRows(const LanguageModule& module) {
  std::string out;
  for (ResourceStringLibrary* catalogue : module.Catalogues()) {
    const std::string name = NameOf(catalogue);
    for (int32_t row = 0; row < catalogue->Count; ++row) {
      out += name + "\t" + std::to_string(row) + "\t" +
             ic::icres::EscapeRowText(ic::icres::ToUtf8(KeyOf(catalogue, row))) + "\t" +
             ic::icres::EscapeRowText(ic::icres::ToUtf8(TextOf(catalogue, row))) + "\n";
    }
  }
  Print(out);
  return 0;
}

// A text as a JSON string, or null for a row without one.
std::string JsonText(const char16_t* text) {
  return text ? ic::icres::JsonString(ic::icres::ToUtf8(text)) : "null";
}

int DumpJson(const LanguageModule& module) {
  std::string out = "{\"catalogues\": [";
  const char* catalogueSeparator = "\n  ";
  for (ResourceStringLibrary* catalogue : module.Catalogues()) {
    out += catalogueSeparator;
    catalogueSeparator = ",\n  ";
    out += "{\"name\": " + ic::icres::JsonString(NameOf(catalogue)) +
           ", \"count\": " + std::to_string(catalogue->Count) + ", \"rows\": [";
    const char* rowSeparator = "\n    ";
    for (int32_t row = 0; row < catalogue->Count; ++row) {
      out += rowSeparator;
      rowSeparator = ",\n    ";
      out += "{\"key\": " + JsonText(KeyOf(catalogue, row)) +
             ", \"text\": " + JsonText(TextOf(catalogue, row)) + "}";
    }
    out += catalogue->Count > 0 ? "\n  ]}" : "]}";
  }
  out += "\n]}\n";
  Print(out);
  return 0;
}

int Language(const LanguageModule& module) {
  const std::optional<std::u16string> code = module.GetLanguage(false);
  if (!code) return Fault("the module does not export GetResourceLanguage");
  Print(ic::icres::ToUtf8(*code) + "\n");
  return 0;
}

// Compares a catalogue source with its reference (loading no module), or a module with its
// reference module.
int Check(const std::string& source, const std::string& reference, bool json) {
  // Either file named as a source (.xml) makes both sources: the other is then read as one.
  const bool sources =
      ic::icres::IsCatalogueSource(source) || ic::icres::IsCatalogueSource(reference);
  const ic::icres::CheckResult result = sources ? ic::icres::CheckCatalogue(source, reference)
                                                : ic::icres::CheckModules(source, reference);
  if (!result.readable) return Fault(result.fault);
  Print(json ? ic::icres::FindingsJson(result) : ic::icres::FindingsText(result.findings));
  return result.Errors() > 0 ? kExitFindings : 0;
}

// Checks the number of arguments of a command before anything is loaded.
std::optional<std::string> CheckArguments(const Options& options) {
  if (options.words.empty()) return std::string("no command given");
  const std::string& command = options.words[0];
  const size_t arguments = options.words.size() - 1;
  if (options.json && command != "dump" && command != "check") {
    return std::string("--json goes with dump and check only");
  }
  if (options.reference && command != "check") return std::string("--ref goes with check only");
  if (command == "list" || command == "dump" || command == "language" || command == "module") {
    if (arguments != 0) return command + " takes no arguments";
  } else if (command == "show") {
    if (arguments != 1) return std::string("show takes one catalogue name");
  } else if (command == "get") {
    if (arguments < 2) return std::string("get takes a catalogue name and a key");
  } else if (command == "check") {
    if (arguments != 1) return std::string("check takes one catalogue source or module");
    if (!options.reference) return std::string("check needs --ref REFERENCE");
  } else {
    return "unknown command " + Quoted(command);
  }
  return std::nullopt;
}

int Run(int argc, char** argv) {
  Options options;
  if (auto fault = ParseCommandLine(argc, argv, options)) return UsageFault(*fault);
  if (options.help) {
    Print(kUsage);
    return 0;
  }
  if (auto fault = CheckArguments(options)) return UsageFault(*fault);
  if (options.words[0] == "check") return Check(options.words[1], *options.reference, options.json);

  std::string error;
  const ic::icres::ModuleLocation location =
      ic::icres::FindModule(options.module, ICRES_INSTALLED_MODULE, ICRES_DEFAULT_MODULE);
  if (options.words[0] == "module") {
    Print(location.path + "\t" + location.origin + "\n");
    return 0;
  }
  const std::unique_ptr<LanguageModule> module = LanguageModule::Load(location.path, error);
  if (!module) return Fault(error);
  if (options.language && !module->SetLanguage(ic::icres::FromUtf8(*options.language), error)) {
    return Fault(error);
  }

  const std::string& command = options.words[0];
  if (command == "list") return List(*module);
  if (command == "show") return Show(*module, options.words[1]);
  if (command == "get") return Get(*module, options.words);
  if (command == "dump") return options.json ? DumpJson(*module) : DumpRows(*module);
  return Language(*module);
}

}  // namespace

int main(int argc, char** argv) {
  const int status = Run(argc, argv);
  return std::fflush(stdout) == 0 ? status : kExitFault;
}
