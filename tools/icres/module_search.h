// Which language module icres loads when it is run: the one named on the command line, else
// the one named by the environment, else the one installed with icres, else the one built
// beside it in the build tree.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace ic::icres {

/// The name of the environment variable that names the module when --module does not.
inline constexpr const char* ModuleEnvironmentVariable = "ICRES_MODULE";

/// What the search looks at, gathered by the caller.
struct ModuleSearch {
  std::optional<std::string> option;       ///< the value of --module, if given
  std::optional<std::string> environment;  ///< the value of ICRES_MODULE, if set
  std::string executable;                  ///< icres's own path; empty if unknown
  std::string installed;                   ///< the module relative to icres's folder once installed
  std::string buildTree;                   ///< the module in the build tree
};

/// Where the module was found, and which rule found it (for messages).
struct ModuleLocation {
  std::string path;
  std::string origin;  ///< "--module", "ICRES_MODULE", "installed" or "build tree"
};

/// Picks the module: --module as given; else ICRES_MODULE when it is set and not empty; else
/// the installed module beside the executable when `exists` says that file is there (a
/// relative `installed` is taken from the executable's folder); else the build-tree path. The
/// first two are taken without looking at the file, so that loading it names the fault.
ModuleLocation FindModule(const ModuleSearch& search,
                          const std::function<bool(const std::string&)>& exists);

/// FindModule with ICRES_MODULE read from the environment, icres's path from the system and
/// the file system asked whether the installed module exists.
ModuleLocation FindModule(const std::optional<std::string>& option, const std::string& installed,
                          const std::string& buildTree);

}  // namespace ic::icres
