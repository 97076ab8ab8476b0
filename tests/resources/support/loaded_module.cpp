// The language module loaded through the platform's loader for the tests.
#include "loaded_module.h"

namespace ic::test {

LoadedModule::LoadedModule(const std::string& path) {
  _library = platform::DynamicLibrary::Load(path, _error);
  if (!_library.IsLoaded()) return;
  getFirst =
      _library.Find<resources::GetFirstResourceStringLibraryFn>("GetFirstResourceStringLibrary");
  setLanguage = _library.Find<resources::SetResourceLanguageFn>("SetResourceLanguage");
  getLanguage = _library.Find<resources::GetResourceLanguageFn>("GetResourceLanguage");
  buildKeyIndex = _library.Find<resources::BuildResourceKeyIndexFn>("BuildResourceKeyIndex");
  findRow = _library.Find<resources::FindResourceRowFn>("FindResourceRow");
  if (!getFirst || !setLanguage || !getLanguage || !buildKeyIndex || !findRow) {
    _error = "an export is missing";
  }
}

bool LoadedModule::Unload() {
  const bool result = _library.Unload();
  getFirst = nullptr;
  setLanguage = nullptr;
  getLanguage = nullptr;
  buildKeyIndex = nullptr;
  findRow = nullptr;
  return result;
}

std::vector<resources::ResourceStringLibrary*> LoadedModule::Chain() const {
  std::vector<resources::ResourceStringLibrary*> chain;
  if (!getFirst) return chain;
  for (auto* record = getFirst(); record && chain.size() < 100; record = record->Next) {
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
  const int32_t needed = getLanguage(lowerCase, nullptr, 0);
  std::u16string code(static_cast<size_t>(needed), u'\0');
  if (getLanguage(lowerCase, code.data(), needed) != 0) return u"<write failed>";
  code.resize(static_cast<size_t>(needed - 1));
  return code;
}

bool IsModuleMapped(const std::string& path) {
  return platform::IsLibraryMapped(path);
}

}  // namespace ic::test
