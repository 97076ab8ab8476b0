#include "module_search.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <ic/platform/executable_path.h>

namespace ic::icres {

ModuleLocation FindModule(const ModuleSearch& search,
                          const std::function<bool(const std::string&)>& exists) {
  if (search.Option) return {*search.Option, "--module"};
  if (search.Environment && !search.Environment->empty()) {
    return {*search.Environment, ModuleEnvironmentVariable};
  }
  if (!search.Executable.empty() && !search.Installed.empty()) {
    const std::filesystem::path folder = std::filesystem::path(search.Executable).parent_path();
    const std::string installed =
        (folder / std::filesystem::path(search.Installed)).lexically_normal().string();
    if (exists(installed)) return {installed, "installed"};
  }
  return {search.BuildTree, "build tree"};
}

ModuleLocation FindModule(const std::optional<std::string>& option, const std::string& installed,
                          const std::string& buildTree) {
  ModuleSearch search;
  search.Option = option;
  if (const char* value = std::getenv(ModuleEnvironmentVariable)) search.Environment = value;
  search.Executable = platform::GetExecutablePath();
  search.Installed = installed;
  search.BuildTree = buildTree;
  return FindModule(search, [](const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
  });
}

}  // namespace ic::icres
