// The catalogue compiler on arbitrary XML: reads the input as a catalogue source and, when it
// has no error, generates every module's tables, pseudo-locale tables and key header. Checks
// that each fault is reported in the compiler's format and that a source without errors
// yields modules whose keys are identifiers. Includes are resolved in a folder of this run,
// which holds one small source to include ("part.xml").
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "diagnostics.h"
#include "fuzz_input.h"
#include "key_header_writer.h"
#include "names.h"
#include "pseudo_locale.h"
#include "source_reader.h"
#include "table_writer.h"

namespace {

namespace fs = std::filesystem;
using namespace ic::rescomp;

// The folder of the run, made once, with the source that inputs can include.
const std::string& SourcePath() {
  static const std::string path = [] {
    std::string pattern = (fs::temp_directory_path() / "rescomp_fuzz_XXXXXX").string();
    const char* dir = mkdtemp(pattern.data());
    if (dir == nullptr) ic::fuzz::Fail("mkdtemp");
    std::ofstream(fs::path(dir) / "part.xml")
        << "<resources><module name=\"part\" params=\"a b\">"
           "<string name=\"k\">x {a} y</string></module></resources>";
    return (fs::path(dir) / "fuzz.xml").string();
  }();
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Diagnostics diagnostics;
  const Catalogue catalogue = ReadCatalogueBytes(SourcePath(), bytes, diagnostics);
  int errors = 0;
  for (const Diagnostic& d : diagnostics.All()) {
    const std::string line = FormatDiagnostic(d);
    IC_FUZZ_CHECK(!d.file.empty() && !d.message.empty());
    IC_FUZZ_CHECK(line.compare(0, d.file.size(), d.file) == 0);
    IC_FUZZ_CHECK(line.find(d.severity == Severity::kError ? ": error: " : ": warning: ") !=
                  std::string::npos);
    if (d.severity == Severity::kError) ++errors;
  }
  IC_FUZZ_CHECK(errors == diagnostics.ErrorCount());
  if (errors != 0) return 0;
  for (const Module& module : catalogue.modules) {
    IC_FUZZ_CHECK(IsModuleName(module.name));
    Module pseudo = module;
    for (ResourceString& string : pseudo.strings) {
      IC_FUZZ_CHECK(IsResourceName(string.name));
      string.text = PseudoLocalise(string.text);
    }
    (void)GenerateHeader(module, "fuzz.xml");
    (void)GenerateSource(module, "fuzz.xml", "fuzz.h");
    (void)GenerateSource(pseudo, "fuzz.xml", "fuzz.h");
    std::vector<std::string> faults;
    (void)GenerateKeyHeader(module, "fuzz.xml", faults);
  }
  return 0;
}
