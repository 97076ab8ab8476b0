// Key to row and key to text, building the key index on first use.
#include <ic/resources/lookup.h>

namespace ic::resources {

int32_t FindRow(ResourceStringLibrary* library, const char16_t* key) {
  if (!library || !key) return -1;
  BuildKeyIndex(library);
  return FindRowInKeyIndex(library, key);
}

const char16_t* FindText(ResourceStringLibrary* library, const char16_t* key) {
  const int32_t row = FindRow(library, key);
  if (row < 0 || !library->GetText) return nullptr;
  return library->GetText(library, row);
}

}  // namespace ic::resources
