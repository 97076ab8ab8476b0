// A language module loaded at run time, as any host loads it: by path, with its exports looked
// up by name, and its catalogues read through the records of the chain.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ic/platform/dynamic_library.h>
#include <ic/resources/host_api.h>
#include <ic/resources/library.h>

namespace ic::icres {

class LanguageModule {
 public:
  /// Loads the module at `path`. On failure returns null and puts a one-line reason in `error`.
  static std::unique_ptr<LanguageModule> Load(const std::string& path, std::string& error);

  /// Unloads the module: every record and text pointer taken from it becomes void.
  ~LanguageModule();
  LanguageModule(const LanguageModule&) = delete;
  LanguageModule& operator=(const LanguageModule&) = delete;

  /// The records in chain order, from GetFirstResourceStringLibrary along Next.
  std::vector<resources::ResourceStringLibrary*> Catalogues() const;

  /// The record whose name is `name` (exact, case-sensitive), or null.
  resources::ResourceStringLibrary* FindCatalogue(const std::u16string& name) const;

  /// Row of `key` in `catalogue`, or -1. Uses the module's key index where the module exports
  /// FindResourceRow, and walks the keys otherwise.
  int32_t FindRow(resources::ResourceStringLibrary* catalogue, const std::u16string& key) const;

  /// Sets the language through the module's manager; false (with a reason) if the module does
  /// not export SetResourceLanguage.
  bool SetLanguage(const std::u16string& code, std::string& error) const;

  /// The module's current language, or nothing if the module does not export
  /// GetResourceLanguage.
  std::optional<std::u16string> GetLanguage(bool lowerCase) const;

 private:
  explicit LanguageModule(platform::DynamicLibrary library) : _library(std::move(library)) {}

  platform::DynamicLibrary _library;
  resources::GetFirstResourceStringLibraryFn _getFirst = nullptr;
  resources::SetResourceLanguageFn _setLanguage = nullptr;
  resources::GetResourceLanguageFn _getLanguage = nullptr;
  resources::FindResourceRowFn _findRow = nullptr;
};

}  // namespace ic::icres
