// The module's exports: thin wrappers over the manager, the record and the key lookup.
#include <ic/resources/host_api.h>

#include <string>

#include <ic/resources/lookup.h>
#include <ic/resources/manager.h>

namespace ic::resources {

extern "C" {

ResourceStringLibrary* GetFirstResourceStringLibrary() {
  return GetResourceStringManager().FirstLibrary;
}

void SetResourceLanguage(const char16_t* code) {
  SetLanguage(code);
}

int32_t GetResourceLanguage(bool lowerCase, char16_t* buffer, int32_t size) {
  const ICStringUniqueW language = GetLanguage(lowerCase);
  const int32_t length = language.GetLength();
  if (!buffer || size < length + 1) return length + 1;
  std::char_traits<char16_t>::copy(buffer, language.GetText(), static_cast<size_t>(length) + 1);
  return 0;
}

void BuildResourceKeyIndex(ResourceStringLibrary* library) {
  BuildKeyIndex(library);
}

int32_t FindResourceRow(ResourceStringLibrary* library, const char16_t* key) {
  return FindRow(library, key);
}

}  // extern "C"

}  // namespace ic::resources
