// The record of one catalogue of keyed messages, and its lazy indices.
//
// A ResourceStringLibrary is what crosses the module's border: a host gets the first record from
// GetFirstResourceStringLibrary, walks Next, and reads keys and message texts through GetKey and
// GetText. A host reads the record by its layout, so the fields, their order and their widths
// are fixed; keep them in place even where nothing in this module reads them. Keys and texts are
// pointers into constant generated tables that live as long as the module.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>

namespace ic::resources {

struct ResourceStringLibrary;

/// One entry of a library's numeric ids: an id and the value that it stands for.
struct NumericEntry {
  int32_t id;
  uint32_t value;
};

/// Message text or key of a row; null for a row out of range. The library is passed along but
/// the generated accessors ignore it.
using RowAccessor = const char16_t* (*)(const ResourceStringLibrary* library, int32_t index);
/// The entry at a position of the numeric id walk, or null past the last.
using NumericEntryAccessor = const NumericEntry* (*)(int32_t index);
/// The key of a row in the second naming, or null.
using AlternateKeyAccessor = const char16_t* (*)(int32_t index);

/// Orders zero-terminated wide texts by ordinal comparison of their unsigned 16-bit units, a
/// prefix ahead of what extends it. The maps of keys store the pointers and copy no text.
struct WideTextLess {
  bool operator()(const char16_t* left, const char16_t* right) const noexcept {
    while (*left && *left == *right) {
      ++left;
      ++right;
    }
    return *left < *right;  // char16_t is unsigned, so this is the unsigned unit order
  }
};

/// Key to row, and alternate key to row.
using KeyIndexMap = std::map<const char16_t*, int32_t, WideTextLess>;
/// Numeric id (signed order) to the value of its entry.
using NumericIndexMap = std::map<int32_t, uint32_t>;

/// Number of language columns; the same as the number of codes in the manager's language table.
inline constexpr int LanguageSlotColumns = 6;

/// The value of RecordMark in every record.
inline constexpr uint32_t LibraryRecordMark = 2;

/// One catalogue. Built once, as a function-local static of its catalogue's GetLibrary, and
/// linked at the head of the manager's chain by its constructor; unlinked by its destructor,
/// which then frees the three maps (NumericIndex, AlternateKeyIndex, KeyIndex in that order).
struct ResourceStringLibrary {
  /// Two rows of six words, one column per language; cleared at construction and otherwise
  /// left alone by this module.
  std::atomic<uint32_t> LanguageSlots[2][LanguageSlotColumns];
  RowAccessor GetText;
  RowAccessor GetKey;
  NumericEntryAccessor GetNumericEntry;  ///< null in this module's catalogues
  AlternateKeyAccessor GetAlternateKey;  ///< null in this module's catalogues
  const char16_t* Name;                  ///< catalogue name, for example u"core"
  ResourceStringLibrary* Next;           ///< chain link, set by RegisterLibrary
  uint32_t RecordMark;                   ///< LibraryRecordMark
  int32_t Count;                         ///< number of real rows
  int32_t AlternateCount;                ///< rows reachable through GetAlternateKey
  std::atomic<uint8_t> KeyIndexBuilt;    ///< KeyIndex is complete
  KeyIndexMap KeyIndex;
  std::atomic<uint8_t> IdIndicesBuilt;  ///< AlternateKeyIndex and NumericIndex are complete
  KeyIndexMap AlternateKeyIndex;
  NumericIndexMap NumericIndex;

  /// Sets the fields, makes the three empty maps, clears the atomics and, as its last step,
  /// puts the record at the head of the manager's chain (building the manager if need be).
  ResourceStringLibrary(const char16_t* name, RowAccessor getText, RowAccessor getKey,
                        int32_t count, NumericEntryAccessor getNumericEntry,
                        AlternateKeyAccessor getAlternateKey, int32_t alternateCount);
  /// Takes the record out of the chain; the maps are freed after it.
  ~ResourceStringLibrary();

  ResourceStringLibrary(const ResourceStringLibrary&) = delete;
  ResourceStringLibrary& operator=(const ResourceStringLibrary&) = delete;
};

/// Builds KeyIndex once: every row from 0 to Count - 1 whose GetKey is not null maps its key to
/// the row (a key that occurs twice keeps its last row). A null library does nothing; a built
/// index returns at once without the lock. Runs under the manager's mutex, and sets
/// KeyIndexBuilt only when the map is complete, so a reader that sees the flag sees the map.
/// Throws what the map insert throws (the flag then stays clear, and the next call walks again).
void BuildKeyIndex(ResourceStringLibrary* library);

/// Builds AlternateKeyIndex (rows 0 to AlternateCount - 1 of GetAlternateKey) and NumericIndex
/// (GetNumericEntry from 0 up to the first null, the last pair of an id winning) once, each
/// only if its accessor is not null, then sets IdIndicesBuilt. Locking as BuildKeyIndex.
void BuildIdIndices(ResourceStringLibrary* library);

}  // namespace ic::resources
