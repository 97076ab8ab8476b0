// dlopen/dlsym/dlclose of the language module for the tests.
#include "loaded_module.h"

#include <dlfcn.h>

namespace ic::test {

namespace {

template <class Function>
Function LookUp(void* handle, const char* name) {
  return reinterpret_cast<Function>(dlsym(handle, name));
}

}  // namespace

LoadedModule::LoadedModule(const std::string& path) {
  _handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!_handle) {
    const char* reason = dlerror();
    _error = reason ? reason : "dlopen failed";
    return;
  }
  GetFirst =
      LookUp<resources::GetFirstResourceStringLibraryFn>(_handle, "GetFirstResourceStringLibrary");
  SetLanguage = LookUp<resources::SetResourceLanguageFn>(_handle, "SetResourceLanguage");
  GetLanguage = LookUp<resources::GetResourceLanguageFn>(_handle, "GetResourceLanguage");
  BuildKeyIndex = LookUp<resources::BuildResourceKeyIndexFn>(_handle, "BuildResourceKeyIndex");
  FindRow = LookUp<resources::FindResourceRowFn>(_handle, "FindResourceRow");
  if (!GetFirst || !SetLanguage || !GetLanguage || !BuildKeyIndex || !FindRow) {
    _error = "an export is missing";
  }
}

bool LoadedModule::Unload() {
  if (!_handle) return true;
  const int result = dlclose(_handle);
  _handle = nullptr;
  GetFirst = nullptr;
  SetLanguage = nullptr;
  GetLanguage = nullptr;
  BuildKeyIndex = nullptr;
  FindRow = nullptr;
  return result == 0;
}

std::vector<resources::ResourceStringLibrary*> LoadedModule::Chain() const {
  std::vector<resources::ResourceStringLibrary*> chain;
  if (!GetFirst) return chain;
  for (auto* record = GetFirst(); record && chain.size() < 100; record = record->Next) {
    chain.push_back(record);
  }
  return chain;
}

resources::ResourceStringLibrary* LoadedModule::Find(const std::u16string& name) const {
  for (auto* record : Chain()) {
    if (record->Name && name == record->Name) return record;
  }
  return nullptr;
}

std::u16string LoadedModule::Language(bool lowerCase) const {
  const int32_t needed = GetLanguage(lowerCase, nullptr, 0);
  std::u16string code(static_cast<size_t>(needed), u'\0');
  if (GetLanguage(lowerCase, code.data(), needed) != 0) return u"<write failed>";
  code.resize(static_cast<size_t>(needed - 1));
  return code;
}

bool IsModuleMapped(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (!handle) return false;
  dlclose(handle);
  return true;
}

}  // namespace ic::test
