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
  search.Executable = "/opt/ic/bin/icres";
  search.Installed = "../lib/libicres_zh.so";
  search.BuildTree = "/src/build/resources/libicres_zh.so";
  return search;
}

// A file system that holds `files` and nothing else.
auto Holding(std::set<std::string> files) {
  return [files = std::move(files)](const std::string& path) { return files.count(path) > 0; };
}

const std::set<std::string> kInstalledModule = {"/opt/ic/lib/libicres_zh.so"};

TEST(IcresModuleSearchTest, InstalledModuleBesideTheExecutable) {
  const ModuleLocation found = FindModule(Installed(), Holding(kInstalledModule));
  EXPECT_EQ(found.Path, "/opt/ic/lib/libicres_zh.so");
  EXPECT_EQ(found.Origin, "installed");
}

TEST(IcresModuleSearchTest, BuildTreeWhenNothingIsInstalled) {
  const ModuleLocation found = FindModule(Installed(), Holding({}));
  EXPECT_EQ(found.Path, "/src/build/resources/libicres_zh.so");
  EXPECT_EQ(found.Origin, "build tree");
}

TEST(IcresModuleSearchTest, BuildTreeWhenTheExecutableIsUnknown) {
  ModuleSearch search = Installed();
  search.Executable.clear();
  EXPECT_EQ(FindModule(search, Holding(kInstalledModule)).Origin, "build tree");
}

TEST(IcresModuleSearchTest, OptionComesFirstEvenWhenItsFileIsMissing) {
  ModuleSearch search = Installed();
  search.Option = "other.so";
  search.Environment = "/env/module.so";
  const ModuleLocation found = FindModule(search, Holding(kInstalledModule));
  EXPECT_EQ(found.Path, "other.so");
  EXPECT_EQ(found.Origin, "--module");
}

TEST(IcresModuleSearchTest, EnvironmentComesBeforeTheInstalledModule) {
  ModuleSearch search = Installed();
  search.Environment = "/env/module.so";
  const ModuleLocation found = FindModule(search, Holding(kInstalledModule));
  EXPECT_EQ(found.Path, "/env/module.so");
  EXPECT_EQ(found.Origin, "ICRES_MODULE");
}

TEST(IcresModuleSearchTest, EmptyEnvironmentVariableIsIgnored) {
  ModuleSearch search = Installed();
  search.Environment = "";
  EXPECT_EQ(FindModule(search, Holding(kInstalledModule)).Origin, "installed");
}

TEST(IcresModuleSearchTest, InstalledPathIsTakenFromTheExecutablesFolder) {
  ModuleSearch search = Installed();
  search.Installed = "libicres_zh.so";  // a module in the same folder, as on Windows
  const ModuleLocation found = FindModule(search, Holding({"/opt/ic/bin/libicres_zh.so"}));
  EXPECT_EQ(found.Path, "/opt/ic/bin/libicres_zh.so");
  EXPECT_EQ(found.Origin, "installed");
}

}  // namespace
