// The language module loaded through the platform's loader for the tests.
#include "loaded_module.h"

namespace ic::test {

LoadedModule::LoadedModule(const std::string& path) {
  _library = platform::DynamicLibrary::Load(path, _error);
  if (!_library.IsLoaded()) return;
  GetFirst =
      _library.Find<resources::GetFirstResourceStringLibraryFn>("GetFirstResourceStringLibrary");
  SetLanguage = _library.Find<resources::SetResourceLanguageFn>("SetResourceLanguage");
  GetLanguage = _library.Find<resources::GetResourceLanguageFn>("GetResourceLanguage");
  BuildKeyIndex = _library.Find<resources::BuildResourceKeyIndexFn>("BuildResourceKeyIndex");
  FindRow = _library.Find<resources::FindResourceRowFn>("FindResourceRow");
  if (!GetFirst || !SetLanguage || !GetLanguage || !BuildKeyIndex || !FindRow) {
    _error = "an export is missing";
  }
}

bool LoadedModule::Unload() {
  const bool result = _library.Unload();
  GetFirst = nullptr;
  SetLanguage = nullptr;
  GetLanguage = nullptr;
  BuildKeyIndex = nullptr;
  FindRow = nullptr;
  return result;
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
  return platform::IsLibraryMapped(path);
}

}  // namespace ic::test
