// The group of functions that every generated catalogue has.
//
// The resource string compiler writes, for each catalogue NAME, a header with
//   namespace ic::resources::catalogues::NAME { IC_RESOURCE_CATALOGUE_DECLARATIONS(COUNT) }
// and a source with the two constant tables (message texts and keys, COUNT + 1 entries each,
// the last a null pointer) followed by
//   IC_RESOURCE_CATALOGUE(u"NAME", COUNT, kTexts, kKeys)
// in the same namespace. The macros only spell out the per-catalogue functions; what they do is
// in the helpers below, shared by all catalogues.
//
// Per catalogue:
//   GetLibrary()         the catalogue's one record, built on first use (and then unlinked and
//                        freed at module exit).
//   GetKeyAt(index)      builds the record, then the key of a row: null for a negative index or
//                        one beyond Count, the table's final null for Count itself.
//   GetMessage(result, word1, word2)
//                        builds the record, then calls the manager's GetMessageHook with the
//                        result, the record and the two words unchanged; returns the result.
//   KeyAccessor(library, index), TextAccessor(library, index)
//                        the record's GetKey and GetText: pure table reads, the library ignored;
//                        an index below 0 or above Count reads entry Count, the null one.
//   Registrar            a type whose constructor only calls GetLibrary (module start-up).
#pragma once

#include <cstdint>

#include <ic/resources/library.h>
#include <ic/resources/manager.h>

namespace ic::resources::internal {

/// Entry `index` of a table of count + 1 entries, where an index below 0 or above `count`
/// reads the final entry (index `count`, a null pointer).
inline const char16_t* ClampedTableEntry(const char16_t* const* table, int32_t count,
                                         int32_t index) noexcept {
  if (index < 0 || index > count) index = count;
  return table[index];
}

/// Entry `index` of a table of count + 1 entries, or null for an index outside 0 to `count`.
inline const char16_t* TableEntryOrNull(const char16_t* const* table, int32_t count,
                                        int32_t index) noexcept {
  return (index < 0 || index > count) ? nullptr : table[index];
}

/// Hands a message request of a catalogue to the manager's GetMessageHook.
inline MessageResult* ForwardMessage(const ResourceStringLibrary* library, MessageResult* result,
                                     uint32_t word1, uint32_t word2) {
  return GetResourceStringManager().GetMessageHook(result, library, word1, word2);
}

}  // namespace ic::resources::internal

/// Declarations of a catalogue's functions, inside its namespace.
#define IC_RESOURCE_CATALOGUE_DECLARATIONS(COUNT)                                     \
  inline constexpr int32_t RowCount = (COUNT);                                        \
  ::ic::resources::ResourceStringLibrary* GetLibrary();                               \
  const char16_t* GetKeyAt(int32_t index);                                            \
  ::ic::resources::MessageResult* GetMessage(::ic::resources::MessageResult* result,  \
                                             uint32_t word1, uint32_t word2);         \
  const char16_t* KeyAccessor(const ::ic::resources::ResourceStringLibrary* library,  \
                              int32_t index);                                         \
  const char16_t* TextAccessor(const ::ic::resources::ResourceStringLibrary* library, \
                               int32_t index);                                        \
  struct Registrar {                                                                  \
    Registrar() { GetLibrary(); }                                                     \
  };

/// Definitions of a catalogue's functions over its tables, inside its namespace.
#define IC_RESOURCE_CATALOGUE(NAME, COUNT, TEXTS, KEYS)                                        \
  static_assert(RowCount == (COUNT), "catalogue count differs from its declaration");          \
  static_assert(sizeof(TEXTS) / sizeof((TEXTS)[0]) == (COUNT) + 1,                             \
                "the text table needs COUNT + 1 entries");                                     \
  static_assert(sizeof(KEYS) / sizeof((KEYS)[0]) == (COUNT) + 1,                               \
                "the key table needs COUNT + 1 entries");                                      \
  const char16_t* KeyAccessor(const ::ic::resources::ResourceStringLibrary*, int32_t index) {  \
    return ::ic::resources::internal::ClampedTableEntry(KEYS, (COUNT), index);                 \
  }                                                                                            \
  const char16_t* TextAccessor(const ::ic::resources::ResourceStringLibrary*, int32_t index) { \
    return ::ic::resources::internal::ClampedTableEntry(TEXTS, (COUNT), index);                \
  }                                                                                            \
  ::ic::resources::ResourceStringLibrary* GetLibrary() {                                       \
    static ::ic::resources::ResourceStringLibrary library((NAME), &TextAccessor, &KeyAccessor, \
                                                          (COUNT), nullptr, nullptr, 0);       \
    return &library;                                                                           \
  }                                                                                            \
  const char16_t* GetKeyAt(int32_t index) {                                                    \
    GetLibrary();                                                                              \
    return ::ic::resources::internal::TableEntryOrNull(KEYS, (COUNT), index);                  \
  }                                                                                            \
  ::ic::resources::MessageResult* GetMessage(::ic::resources::MessageResult* result,           \
                                             uint32_t word1, uint32_t word2) {                 \
    return ::ic::resources::internal::ForwardMessage(GetLibrary(), result, word1, word2);      \
  }
