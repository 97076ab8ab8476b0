// The library record: construction into the chain, tear-down, and the lazy indices.
#include <ic/resources/library.h>

#include <cstring>
#include <mutex>

#include <ic/resources/internal/map_room.h>
#include <ic/resources/manager.h>

namespace ic::resources {

ResourceStringLibrary::ResourceStringLibrary(const char16_t* name, RowAccessor getText,
                                             RowAccessor getKey, int32_t count,
                                             NumericEntryAccessor getNumericEntry,
                                             AlternateKeyAccessor getAlternateKey,
                                             int32_t alternateCount)
    : LanguageSlots(),
      GetText(getText),
      GetKey(getKey),
      GetNumericEntry(getNumericEntry),
      GetAlternateKey(getAlternateKey),
      Name(name),
      Next(nullptr),
      RecordMark(LibraryRecordMark),
      Count(count),
      AlternateCount(alternateCount),
      KeyIndexBuilt(0),
      KeyIndex(),
      IdIndicesBuilt(0),
      AlternateKeyIndex(),
      NumericIndex() {
  // The language slots are cleared as a block, then word by word with atomic stores, so that a
  // host that reads them from another thread sees the zeros.
  std::memset(static_cast<void*>(LanguageSlots), 0, sizeof LanguageSlots);
  for (auto& row : LanguageSlots) {
    for (auto& word : row)
      word.exchange(0);
  }
  KeyIndexBuilt.exchange(0);
  IdIndicesBuilt.exchange(0);
  RegisterLibrary(this);
}

ResourceStringLibrary::~ResourceStringLibrary() {
  // The maps are destroyed after this body, in reverse order of the fields: NumericIndex,
  // AlternateKeyIndex, KeyIndex.
  UnregisterLibrary(this);
}

void BuildKeyIndex(ResourceStringLibrary* library) {
  if (!library) return;
  if (library->KeyIndexBuilt.load(std::memory_order_acquire)) return;
  std::lock_guard<std::recursive_mutex> lock(GetResourceStringManager().Mutex);
  if (library->KeyIndexBuilt.load(std::memory_order_acquire)) return;
  if (library->GetKey) {
    for (int32_t row = 0; row < library->Count; ++row) {
      const char16_t* key = library->GetKey(library, row);
      if (key) internal::AssignEntry(library->KeyIndex, key, row);
    }
  }
  library->KeyIndexBuilt.exchange(1, std::memory_order_acq_rel);
}

void BuildIdIndices(ResourceStringLibrary* library) {
  if (!library) return;
  if (library->IdIndicesBuilt.load(std::memory_order_acquire)) return;
  std::lock_guard<std::recursive_mutex> lock(GetResourceStringManager().Mutex);
  if (library->IdIndicesBuilt.load(std::memory_order_acquire)) return;
  if (library->GetAlternateKey) {
    for (int32_t row = 0; row < library->AlternateCount; ++row) {
      const char16_t* key = library->GetAlternateKey(row);
      if (key) internal::AssignEntry(library->AlternateKeyIndex, key, row);
    }
  }
  if (library->GetNumericEntry) {
    // No bound but the null entry.
    for (int32_t index = 0;; ++index) {
      const NumericEntry* entry = library->GetNumericEntry(index);
      if (!entry) break;
      internal::AssignEntry(library->NumericIndex, entry->id, entry->value);
    }
  }
  library->IdIndicesBuilt.exchange(1, std::memory_order_acq_rel);
}

}  // namespace ic::resources
