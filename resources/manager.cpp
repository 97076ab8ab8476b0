// The resource string manager: building it, the chain of libraries, language and overrides.
#include <ic/resources/manager.h>

#include <ic/platform/wide_runtime.h>
#include <ic/resources/internal/map_room.h>
#include <ic/string/header.h>
#include <ic/string/internal/string_access.h>

namespace ic::resources {

namespace {

// Lower-cases a string that this code owns alone, in place: the stored length is marked
// unknown (the next GetLength measures it) and the run-time lower-cases the text with the
// capacity plus one as the buffer size. On the empty data this marks the shared empty block,
// which GetLength turns back into 0.
void LowerCaseInPlace(ICStringUniqueW& text) {
  char16_t* buffer = ic::internal::StringAccess::_GetBuffer(text);
  ic::internal::SetLengthWord(buffer, UnknownLength);
  platform::_wcslwr_s(buffer, static_cast<size_t>(text.GetCapacity()) + 1);
}

bool SameText(const char16_t* left, const char16_t* right) {
  while (*left && *left == *right) {
    ++left;
    ++right;
  }
  return *left == *right;
}

}  // namespace

MessageResult* DefaultGetMessage(MessageResult* result, const ResourceStringLibrary* /*library*/,
                                 uint32_t /*word1*/, uint32_t /*word2*/) {
  result->text = EmptyText<char16_t>();
  result->word = 0;
  return result;
}

ICStringUniqueW& DefaultClearString(ICStringUniqueW& text) {
  text.ClearText();
  return text;
}

void DefaultNotify() {}

ResourceStringManager::ResourceStringManager()
    : Mutex(),
      HookContext(0),
      GetMessageHook(&DefaultGetMessage),
      GetMessageHook2(&DefaultGetMessage),
      ClearStringHook(&DefaultClearString),
      ClearStringHook2(&DefaultClearString),
      NotifyHook(&DefaultNotify),
      FirstLibrary(nullptr),
      CurrentLanguage(0),
      LanguageName(),
      Overrides(),
      NestedStrings(),
      SharedSlots(),
      ExtraName() {
  CurrentLanguage.exchange(0);
}

ResourceStringManager& GetResourceStringManager() {
  // Built on first use, torn down at module exit in the reverse order of the fields.
  static ResourceStringManager manager;
  return manager;
}

void RegisterLibrary(ResourceStringLibrary* library) {
  if (!library) return;
  ResourceStringManager& manager = GetResourceStringManager();
  library->Next = manager.FirstLibrary;
  manager.FirstLibrary = library;
}

void UnregisterLibrary(ResourceStringLibrary* library) {
  if (!library) return;
  ResourceStringManager& manager = GetResourceStringManager();
  for (ResourceStringLibrary** link = &manager.FirstLibrary; *link; link = &(*link)->Next) {
    if (*link == library) {
      *link = library->Next;
      return;
    }
  }
}

ResourceStringLibrary* FindLibrary(const char16_t* name) {
  return FindLibraryFrom(GetResourceStringManager().FirstLibrary, name);
}

ResourceStringLibrary* FindLibraryFrom(ResourceStringLibrary* first, const char16_t* name) {
  if (!first || !name) return nullptr;
  for (ResourceStringLibrary* library = first; library; library = library->Next) {
    if (library->Name && SameText(library->Name, name)) return library;
  }
  return nullptr;
}

int32_t GetLanguageIndex(const char16_t* code) {
  if (!code) return UnknownLanguageIndex;
  for (uint8_t index = 0; index < LanguageCount; ++index) {
    if (platform::_wcsicmp(code, LanguageCodes[index]) == 0) return index;
  }
  return UnknownLanguageIndex;
}

void SetLanguage(const char16_t* code) {
  if (!code || !*code) return;
  const int32_t index = GetLanguageIndex(code);
  ResourceStringManager& manager = GetResourceStringManager();
  std::lock_guard<std::recursive_mutex> lock(manager.Mutex);
  manager.CurrentLanguage.exchange(index);
  manager.LanguageName = code;
}

ICStringUniqueW GetLanguage(bool lowerCase) {
  ResourceStringManager& manager = GetResourceStringManager();
  std::lock_guard<std::recursive_mutex> lock(manager.Mutex);
  const int32_t index = manager.CurrentLanguage.load();
  ICStringUniqueW result(manager.LanguageName);
  if (result.IsEmpty() && index >= 0 && index < LanguageCount) result = LanguageCodes[index];
  if (lowerCase) LowerCaseInPlace(result);
  return result;
}

void SetStringOverride(const char16_t* text, const uint32_t& id) {
  ResourceStringManager& manager = GetResourceStringManager();
  std::lock_guard<std::recursive_mutex> lock(manager.Mutex);
  if (!text || !*text) {
    manager.Overrides.erase(id);
    return;
  }
  auto at = manager.Overrides.lower_bound(id);
  if (at == manager.Overrides.end() || at->first != id) {
    internal::EnsureRoomForOne(manager.Overrides);
    at = manager.Overrides.emplace_hint(at, id, ICStringUniqueW());
  }
  at->second = text;
}

ICStringUniqueW GetStringOverride(bool lowerCase, const uint32_t& id) {
  ICStringUniqueW result;
  {
    ResourceStringManager& manager = GetResourceStringManager();
    std::lock_guard<std::recursive_mutex> lock(manager.Mutex);
    const auto at = manager.Overrides.lower_bound(id);
    if (at != manager.Overrides.end() && at->first == id) result = at->second;
  }
  if (lowerCase) LowerCaseInPlace(result);
  return result;
}

}  // namespace ic::resources
