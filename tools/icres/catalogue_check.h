// The translators' check: a catalogue source compared with a reference catalogue, every finding
// of every row in one run.
//
// Errors: a module or key of the reference that is missing, one that the reference does not
// have, parameters that differ from the reference's as multisets (a parameter used twice there
// must be used twice here), a _hint row that gained parameters, a _no_uri row that is not its
// twin without {uri}, an empty text, leading or trailing blanks that differ from the
// reference's, bidirectional control characters and other invisible code points, and every
// fault the resource compiler finds in either file (braces, escapes, names).
// Warnings: a text left identical to the reference in a module that is translated (most of its
// rows differ from the reference), and full-width and half-width punctuation mixed in a text
// that differs from the reference.
#pragma once

#include <string>
#include <vector>

#include "diagnostics.h"

namespace ic::icres {

struct Finding {
  rescomp::Severity severity = rescomp::Severity::kError;
  std::string file;    ///< the file as named on the command line (or reached by an Include)
  long line = 0;       ///< 1-based; 0 for a finding about the whole file
  std::string module;  ///< empty when the finding is about no module
  std::string key;     ///< empty when the finding is about no row
  std::string message;
};

struct CheckResult {
  /// False when a file cannot be opened or is not well-formed XML; `fault` then names the
  /// file and the reason, and `findings` is empty.
  bool readable = true;
  std::string fault;
  std::vector<Finding> findings;  ///< by file, then by line; the source's first

  int Errors() const;
  int Warnings() const;
};

/// Checks the catalogue source at `sourcePath` against the one at `referencePath`.
CheckResult CheckCatalogue(const std::string& sourcePath, const std::string& referencePath);

/// Checks the catalogues of the language module at `modulePath` against those of the module at
/// `referencePath`, with the findings of CheckCatalogue that apply to compiled texts: those
/// about the XML of a source do not, and the braces of every text of both modules are checked
/// here (in a source the reader checks them). A row's file is "MODULE[CATALOGUE]" and its line
/// the 1-based row number; a finding about a whole catalogue has line 0. Not readable when a
/// module does not load or is no language module.
CheckResult CheckModules(const std::string& modulePath, const std::string& referencePath);

/// True when `path` names a catalogue source (it ends in ".xml", in any case) rather than a
/// language module.
bool IsCatalogueSource(const std::string& path);

/// One line per finding, compiler style: "FILE(LINE): error: MESSAGE" ("FILE: ..." without a
/// line; "warning" for a warning).
std::string FindingsText(const std::vector<Finding>& findings);

/// The findings as one JSON document: {"errors": N, "warnings": N, "findings": [{"file",
/// "line", "severity", "module", "key", "message"}...]}, module and key null when empty.
std::string FindingsJson(const CheckResult& result);

}  // namespace ic::icres
