// Which module icres loads: --module, then ICRES_MODULE, then the module installed beside the
// executable when it exists, then the build-tree path.
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "module_search.h"

namespace {

using ic::icres::FindModule;
using ic::icres::ModuleLocation;
using ic::icres::ModuleSearch;

ModuleSearch Installed() {
  ModuleSearch search;
  search.executable = "/opt/ic/bin/icres";
  search.installed = "../lib/libicres_zh.so";
  search.buildTree = "/src/build/resources/libicres_zh.so";
  return search;
}

// A file system that holds `files` and nothing else.
auto Holding(std::set<std::string> files) {
  return [files = std::move(files)](const std::string& path) { return files.count(path) > 0; };
}

const std::set<std::string> kInstalledModule = {"/opt/ic/lib/libicres_zh.so"};

TEST(IcresModuleSearchTest, InstalledModuleBesideTheExecutable) {
  const ModuleLocation found = FindModule(Installed(), Holding(kInstalledModule));
  EXPECT_EQ(found.path, "/opt/ic/lib/libicres_zh.so");
  EXPECT_EQ(found.origin, "installed");
}

TEST(IcresModuleSearchTest, BuildTreeWhenNothingIsInstalled) {
  const ModuleLocation found = FindModule(Installed(), Holding({}));
  EXPECT_EQ(found.path, "/src/build/resources/libicres_zh.so");
  EXPECT_EQ(found.origin, "build tree");
}

TEST(IcresModuleSearchTest, BuildTreeWhenTheExecutableIsUnknown) {
  ModuleSearch search = Installed();
  search.executable.clear();
  EXPECT_EQ(FindModule(search, Holding(kInstalledModule)).origin, "build tree");
}

TEST(IcresModuleSearchTest, OptionComesFirstEvenWhenItsFileIsMissing) {
  ModuleSearch search = Installed();
  search.option = "other.so";
  search.environment = "/env/module.so";
  const ModuleLocation found = FindModule(search, Holding(kInstalledModule));
  EXPECT_EQ(found.path, "other.so");
  EXPECT_EQ(found.origin, "--module");
}

TEST(IcresModuleSearchTest, EnvironmentComesBeforeTheInstalledModule) {
  ModuleSearch search = Installed();
  search.environment = "/env/module.so";
  const ModuleLocation found = FindModule(search, Holding(kInstalledModule));
  EXPECT_EQ(found.path, "/env/module.so");
  EXPECT_EQ(found.origin, "ICRES_MODULE");
}

TEST(IcresModuleSearchTest, EmptyEnvironmentVariableIsIgnored) {
  ModuleSearch search = Installed();
  search.environment = "";
  EXPECT_EQ(FindModule(search, Holding(kInstalledModule)).origin, "installed");
}

TEST(IcresModuleSearchTest, InstalledPathIsTakenFromTheExecutablesFolder) {
  ModuleSearch search = Installed();
  search.installed = "libicres_zh.so";  // a module in the same folder, as on Windows
  const ModuleLocation found = FindModule(search, Holding({"/opt/ic/bin/libicres_zh.so"}));
  EXPECT_EQ(found.path, "/opt/ic/bin/libicres_zh.so");
  EXPECT_EQ(found.origin, "installed");
}

}  // namespace
