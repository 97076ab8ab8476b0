// The language module loaded the way a host loads it, for the tests: loaded by path, the exports
// looked up by name, unloaded when the object goes.
#pragma once

#include <string>
#include <vector>

#include <ic/platform/dynamic_library.h>
#include <ic/resources/host_api.h>
#include <ic/resources/library.h>

namespace ic::test {

class LoadedModule {
 public:
  /// Loads the built module; check IsLoaded() and Error().
  explicit LoadedModule(const std::string& path);
  ~LoadedModule() { Unload(); }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  bool IsLoaded() const { return _library.IsLoaded(); }
  const std::string& Error() const { return _error; }

  /// Unloads the module; true if the loader reported no fault.
  bool Unload();

  resources::GetFirstResourceStringLibraryFn getFirst = nullptr;
  resources::SetResourceLanguageFn setLanguage = nullptr;
  resources::GetResourceLanguageFn getLanguage = nullptr;
  resources::BuildResourceKeyIndexFn buildKeyIndex = nullptr;
  resources::FindResourceRowFn findRow = nullptr;

  /// The records from the head along Next (at most 100, so a broken chain cannot loop).
  std::vector<resources::ResourceStringLibrary*> Chain() const;
  /// The record of that name, or null.
  resources::ResourceStringLibrary* Find(const std::u16string& name) const;
  /// GetLanguage into a string.
  std::u16string Language(bool lowerCase) const;

 private:
  platform::DynamicLibrary _library;
  std::string _error;
};

/// True if the module at `path` is mapped in this process now.
bool IsModuleMapped(const std::string& path);

}  // namespace ic::test
