// Finding a row of a catalogue by its key.
//
// The record holds the key index and its builder; the find itself is the host's side. These
// helpers build the index on first use (under the manager's mutex, once per library) and then
// read it without a lock, which is safe because a built index never changes again.
#pragma once

#include <cstdint>

#include <ic/resources/library.h>

namespace ic::resources {

/// Row of `key` in a library whose KeyIndex is built; -1 if the key is absent, if `library` or
/// `key` is null, or if the index has not been built yet. Takes no lock and builds nothing.
inline int32_t FindRowInKeyIndex(const ResourceStringLibrary* library,
                                 const char16_t* key) noexcept {
  if (!library || !key || !library->KeyIndexBuilt.load(std::memory_order_acquire)) return -1;
  const auto at = library->KeyIndex.find(key);
  return at == library->KeyIndex.end() ? -1 : at->second;
}

/// Row of `key` in `library`, building its key index first if need be; -1 if the key is not in
/// the catalogue, or for a null library or key. Comparison is exact, unit by unit.
int32_t FindRow(ResourceStringLibrary* library, const char16_t* key);

/// Message text of the row of `key` (a pointer into the catalogue's constant table), or null if
/// the key is not in the catalogue, or for a null library or key.
const char16_t* FindText(ResourceStringLibrary* library, const char16_t* key);

}  // namespace ic::resources
