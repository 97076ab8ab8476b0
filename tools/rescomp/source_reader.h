// Reads a catalogue source (XML) with the sources it includes, and checks it.
//
//   <resources>
//     <module name="core" params="uri encoding">
//       <string name="no_encoding_specified" note="for translators">...{uri}...</string>
//     </module>
//     <Include file="other.xml"/>
//   </resources>
//
// An Include's path is relative to the file that holds it. Every fault of every file is
// reported, not only the first; a catalogue is usable only when no error was reported.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "diagnostics.h"

namespace ic::rescomp {

struct ResourceString {
  std::string name;     // the key
  std::u16string text;  // the message, escapes decoded, in UTF-16
  long line = 0;
};

struct Module {
  std::string name;
  std::string file;
  long line = 0;
  std::vector<ResourceString> strings;  // in source order
};

struct Catalogue {
  std::vector<Module> modules;     // in source order, included modules at their Include
  std::vector<std::string> files;  // every file read: the source first, then its includes
  bool complete = true;            // false when a file could not be opened or is not XML

  // The module of that name, or null.
  const Module* Find(std::string_view name) const;
};

// Which of the reader's own checks of the texts run.
struct ReadOptions {
  bool warnEmpty = true;                // a text that is empty or blank is worth a warning
  bool checkDeclaredParameters = true;  // a parameter outside the module's 'params' is an error
};

// Reads `path` and the files it includes. Faults go to `diagnostics`, with file names as
// they are reached from `path`. Modules and strings with faults in their names are left out
// of the result.
Catalogue ReadCatalogue(const std::string& path, Diagnostics& diagnostics,
                        const ReadOptions& options = {});

// As ReadCatalogue, with the bytes of `path` given instead of read; its includes are read from
// the file system, relative to `path`.
Catalogue ReadCatalogueBytes(const std::string& path, const std::string& bytes,
                             Diagnostics& diagnostics, const ReadOptions& options = {});

}  // namespace ic::rescomp
