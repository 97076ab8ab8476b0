// The language module loaded the way a host loads it, for the tests: dlopen, the exports looked
// up by name, dlclose when the object goes.
#pragma once

#include <string>
#include <vector>

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

  bool IsLoaded() const { return _handle != nullptr; }
  const std::string& Error() const { return _error; }

  /// dlclose; true if the loader reported no fault.
  bool Unload();

  resources::GetFirstResourceStringLibraryFn GetFirst = nullptr;
  resources::SetResourceLanguageFn SetLanguage = nullptr;
  resources::GetResourceLanguageFn GetLanguage = nullptr;
  resources::BuildResourceKeyIndexFn BuildKeyIndex = nullptr;
  resources::FindResourceRowFn FindRow = nullptr;

  /// The records from the head along Next (at most 100, so a broken chain cannot loop).
  std::vector<resources::ResourceStringLibrary*> Chain() const;
  /// The record of that name, or null.
  resources::ResourceStringLibrary* Find(const std::u16string& name) const;
  /// GetLanguage into a string.
  std::u16string Language(bool lowerCase) const;

 private:
  void* _handle = nullptr;
  std::string _error;
};

/// True if the module at `path` is mapped in this process now (dlopen with RTLD_NOLOAD).
bool IsModuleMapped(const std::string& path);

}  // namespace ic::test
