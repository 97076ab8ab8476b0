// Loading a language module with the platform's loader and reading its chain of records.
#include "language_module.h"

namespace ic::icres {

namespace {

// A bound on the walk along Next, so that a damaged chain cannot loop for ever.
constexpr size_t kMaxCatalogues = 100000;

bool SameName(const char16_t* name, const std::u16string& wanted) {
  return name && std::u16string_view(name) == wanted;
}

}  // namespace

std::unique_ptr<LanguageModule> LanguageModule::Load(const std::string& path, std::string& error) {
  // A path without a folder names a file in the working directory, as a user who names a file
  // means; the loader does not search its library path for it.
  std::string reason;
  platform::DynamicLibrary library = platform::DynamicLibrary::Load(path, reason);
  if (!library.IsLoaded()) {
    error = "cannot load module " + path + ": " + reason;
    return nullptr;
  }
  std::unique_ptr<LanguageModule> module(new LanguageModule(std::move(library)));
  const platform::DynamicLibrary& handle = module->_library;
  module->_getFirst =
      handle.Find<resources::GetFirstResourceStringLibraryFn>("GetFirstResourceStringLibrary");
  if (!module->_getFirst) {
    error = path + " is not a language module: it does not export GetFirstResourceStringLibrary";
    return nullptr;
  }
  module->_setLanguage = handle.Find<resources::SetResourceLanguageFn>("SetResourceLanguage");
  module->_getLanguage = handle.Find<resources::GetResourceLanguageFn>("GetResourceLanguage");
  module->_findRow = handle.Find<resources::FindResourceRowFn>("FindResourceRow");
  return module;
}

LanguageModule::~LanguageModule() = default;

std::vector<resources::ResourceStringLibrary*> LanguageModule::Catalogues() const {
  std::vector<resources::ResourceStringLibrary*> records;
  for (resources::ResourceStringLibrary* record = _getFirst();
       record && records.size() < kMaxCatalogues; record = record->Next) {
    records.push_back(record);
  }
  return records;
}

resources::ResourceStringLibrary* LanguageModule::FindCatalogue(const std::u16string& name) const {
  for (resources::ResourceStringLibrary* record : Catalogues()) {
    if (SameName(record->Name, name)) return record;
  }
  return nullptr;
}

int32_t LanguageModule::FindRow(resources::ResourceStringLibrary* catalogue,
                                const std::u16string& key) const {
  if (!catalogue) return -1;
  if (_findRow) return _findRow(catalogue, key.c_str());
  for (int32_t row = 0; row < catalogue->Count; ++row) {
    if (SameName(catalogue->GetKey(catalogue, row), key)) return row;
  }
  return -1;
}

bool LanguageModule::SetLanguage(const std::u16string& code, std::string& error) const {
  if (!_setLanguage) {
    error = "the module does not export SetResourceLanguage";
    return false;
  }
  _setLanguage(code.c_str());
  return true;
}

std::optional<std::u16string> LanguageModule::GetLanguage(bool lowerCase) const {
  if (!_getLanguage) return std::nullopt;
  const int32_t needed = _getLanguage(lowerCase, nullptr, 0);
  std::u16string code(static_cast<size_t>(needed), u'\0');
  if (_getLanguage(lowerCase, code.data(), needed) != 0) return std::nullopt;
  code.resize(static_cast<size_t>(needed - 1));
  return code;
}

}  // namespace ic::icres
