// Loading a language module with the dynamic loader and reading its chain of records.
#include "language_module.h"

#include <dlfcn.h>

namespace ic::icres {

namespace {

// A bound on the walk along Next, so that a damaged chain cannot loop for ever.
constexpr size_t kMaxCatalogues = 100000;

template <class Function>
Function LookUp(void* handle, const char* name) {
  return reinterpret_cast<Function>(dlsym(handle, name));
}

bool SameName(const char16_t* name, const std::u16string& wanted) {
  return name && std::u16string_view(name) == wanted;
}

}  // namespace

std::unique_ptr<LanguageModule> LanguageModule::Load(const std::string& path, std::string& error) {
  // A path without a slash would be searched for along the library path; make it relative to
  // the working directory instead, as a user who names a file means.
  const std::string where = path.find('/') == std::string::npos ? "./" + path : path;
  void* handle = dlopen(where.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) {
    const char* reason = dlerror();
    error = "cannot load module " + path + ": " + (reason ? reason : "unknown error");
    return nullptr;
  }
  std::unique_ptr<LanguageModule> module(new LanguageModule(handle));
  module->_getFirst =
      LookUp<resources::GetFirstResourceStringLibraryFn>(handle, "GetFirstResourceStringLibrary");
  if (!module->_getFirst) {
    error = path + " is not a language module: it does not export GetFirstResourceStringLibrary";
    return nullptr;
  }
  module->_setLanguage = LookUp<resources::SetResourceLanguageFn>(handle, "SetResourceLanguage");
  module->_getLanguage = LookUp<resources::GetResourceLanguageFn>(handle, "GetResourceLanguage");
  module->_findRow = LookUp<resources::FindResourceRowFn>(handle, "FindResourceRow");
  return module;
}

LanguageModule::~LanguageModule() {
  dlclose(_handle);
}

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
