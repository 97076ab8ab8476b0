#include "module_search.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <ic/platform/executable_path.h>

namespace ic::icres {

ModuleLocation FindModule(const ModuleSearch& search,
                          const std::function<bool(const std::string&)>& exists) {
  if (search.option) return {*search.option, "--module"};
  if (search.environment && !search.environment->empty()) {
    return {*search.environment, ModuleEnvironmentVariable};
  }
  if (!search.executable.empty() && !search.installed.empty()) {
    const std::filesystem::path folder = std::filesystem::path(search.executable).parent_path();
    const std::string installed =
        (folder / std::filesystem::path(search.installed)).lexically_normal().string();
    if (exists(installed)) return {installed, "installed"};
  }
  return {search.buildTree, "build tree"};
}

ModuleLocation FindModule(const std::optional<std::string>& option, const std::string& installed,
                          const std::string& buildTree) {
  ModuleSearch search;
  search.option = option;
  if (const char* value = std::getenv(ModuleEnvironmentVariable)) search.environment = value;
  search.executable = platform::GetExecutablePath();
  search.installed = installed;
  search.buildTree = buildTree;
  return FindModule(search, [](const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
  });
}

}  // namespace ic::icres
