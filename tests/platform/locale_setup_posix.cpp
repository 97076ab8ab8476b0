// Generates a UTF-8 locale with localedef into a folder under the temporary directory and points
// LOCPATH at it, unless the C library can open the locale already.
#include "locale_setup.h"

#include <locale.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace ic::test {

namespace {

bool CanOpen(const std::string& name) {
  locale_t handle = newlocale(LC_ALL_MASK, name.c_str(), static_cast<locale_t>(0));
  if (!handle) return false;
  freelocale(handle);
  return true;
}

}  // namespace

bool EnsureLocale(const std::string& name, std::string& why) {
  const std::string full = name + ".UTF-8";
  if (CanOpen(full)) return true;
  // One folder for all test processes: localedef takes seconds per locale. A locale is made
  // under a name of this process's own and then renamed, so that processes running side by
  // side never see half of one.
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "ictext-locales";
  std::filesystem::create_directories(folder);
  const std::filesystem::path target = folder / full;
  if (!std::filesystem::exists(target)) {
    const std::filesystem::path partial = folder / (full + ".part" + std::to_string(getpid()));
    const std::string command = "env -u LOCPATH localedef -i " + name + " -f UTF-8 '" +
                                partial.string() + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) {
      std::filesystem::remove_all(partial);
      why = "localedef cannot make " + full +
            " here (are the locale sources of the Debian "
            "package 'locales' installed?)";
      return false;
    }
    std::error_code ignored;
    std::filesystem::rename(partial, target, ignored);
    std::filesystem::remove_all(partial, ignored);  // another process was first
  }
  setenv("LOCPATH", folder.c_str(), 1);
  if (!CanOpen(full)) {
    why = "the C library does not open the generated " + full;
    return false;
  }
  return true;
}

}  // namespace ic::test
