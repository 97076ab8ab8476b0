#include <ic/unicode/unicode_tables.h>

#include <cstdlib>
#include <new>

#include <ic/unicode/internal/unicode_table_data.h>

namespace ic {
namespace {

// The rows of one table. Their arrays are freed by the table's exit action (registered when it
// is loaded), in the order that the start-up list needs; static destruction leaves them alone,
// since it would run in no fixed order relative to that list.
template <size_t N>
union TableRows {
  constexpr TableRows() : rows{} {}
  ~TableRows() {}
  NamedCodePointSet rows[N];
};

constinit TableRows<UnicodeBlockTableSize> TBlockRows;
constinit TableRows<UnicodeCategoryTableSize> TCategoryRows;
constinit TableRows<UnicodeScriptTableSize> TScriptRows;
constinit TableRows<UnicodeScriptExtensionTableSize> TScriptExtensionRows;

bool TBlockLoaded = false;
bool TCategoryLoaded = false;
bool TScriptLoaded = false;
bool TScriptExtensionLoaded = false;

// Frees the first `count` rows, from the last to the first.
void FreeRows(NamedCodePointSet* rows, size_t count) noexcept {
  for (size_t i = count; i-- > 0;) {
    rows[i].ranges = CodePointRangeSet();
    rows[i].name = nullptr;
    rows[i].nameLength = 0;
  }
}

// How a row takes its ranges: the block rows through Add, so that they are proper sets; the
// bulk tables as they stand in the data, sorted and merged or not.
enum class Fill { ThroughAdd, AsTheyStand };

// The tear-down of a table at exit: a function-local static whose destructor runs Unload,
// made the first time the table is filled. The compiler registers the destructor with the exit
// list of the module that holds it, so it also runs when a host unloads the module (a plain
// atexit registration does too, except under ThreadSanitizer, whose atexit keeps the function
// for the process's exit, after the module is gone). Unload does nothing for a table that is
// not loaded.
template <void (*Unload)()>
void UnloadAtExit() {
  struct Action {
    ~Action() { Unload(); }
  };
  static const Action action;
  (void)action;
}

// Fills every row with one allocation, makes sure that Unload runs at exit and sets `loaded`.
// A table already loaded is left alone.
template <void (*Unload)(), size_t N>
void LoadTable(NamedCodePointSet (&table)[N], const internal::UnicodeRowSource (&sources)[N],
               const CodePointRange* ranges, Fill fill, bool& loaded) {
  NamedCodePointSet* const rows = table;
  if (loaded) return;
  size_t filled = 0;
  try {
    for (; filled < N; ++filled) {
      const internal::UnicodeRowSource& source = sources[filled];
      NamedCodePointSet& row = rows[filled];
      const CodePointRange* const first = ranges + source.offset;
      if (fill == Fill::ThroughAdd) {
        row.ranges.Reserve(source.count);
        for (uint32_t i = 0; i < source.count; ++i)
          row.ranges.Add(first[i], false);
      } else {
        row.ranges.AssignRanges(first, source.count);
      }
      row.name = source.name;
      row.nameLength = source.nameLength;
    }
    UnloadAtExit<Unload>();
  } catch (...) {
    FreeRows(rows, filled < N ? filled + 1 : N);
    throw;
  }
  loaded = true;
}

void UnloadTable(NamedCodePointSet* rows, size_t count, bool& loaded) noexcept {
  if (!loaded) return;
  FreeRows(rows, count);
  loaded = false;
}

}  // namespace

constinit const NamedCodePointSet (&UnicodeBlockTable)[UnicodeBlockTableSize] = TBlockRows.rows;
constinit const NamedCodePointSet (&UnicodeCategoryTable)[UnicodeCategoryTableSize] =
    TCategoryRows.rows;
constinit const NamedCodePointSet (&UnicodeScriptTable)[UnicodeScriptTableSize] = TScriptRows.rows;
constinit const NamedCodePointSet (&UnicodeScriptExtensionTable)[UnicodeScriptExtensionTableSize] =
    TScriptExtensionRows.rows;

void LoadUnicodeBlockTable() {
  LoadTable<internal::UnloadUnicodeBlockTable>(TBlockRows.rows, internal::UnicodeBlockRows,
                                               internal::UnicodeBlockRanges, Fill::ThroughAdd,
                                               TBlockLoaded);
}

void LoadUnicodeCategoryTable() {
  LoadTable<internal::UnloadUnicodeCategoryTable>(TCategoryRows.rows, internal::UnicodeCategoryRows,
                                                  internal::UnicodeCategoryRanges,
                                                  Fill::AsTheyStand, TCategoryLoaded);
}

void LoadUnicodeScriptTable() {
  LoadTable<internal::UnloadUnicodeScriptTable>(TScriptRows.rows, internal::UnicodeScriptRows,
                                                internal::UnicodeScriptRanges, Fill::AsTheyStand,
                                                TScriptLoaded);
}

void LoadUnicodeScriptExtensionTable() {
  LoadTable<internal::UnloadUnicodeScriptExtensionTable>(
      TScriptExtensionRows.rows, internal::UnicodeScriptExtensionRows,
      internal::UnicodeScriptExtensionRanges, Fill::AsTheyStand, TScriptExtensionLoaded);
}

void LoadUnicodeTables() {
  LoadUnicodeBlockTable();
  LoadUnicodeCategoryTable();
  LoadUnicodeScriptTable();
  LoadUnicodeScriptExtensionTable();
}

bool UnicodeCategoryTableLoaded() noexcept {
  return TCategoryLoaded;
}

namespace internal {

void UnloadUnicodeBlockTable() noexcept {
  UnloadTable(TBlockRows.rows, UnicodeBlockTableSize, TBlockLoaded);
}
void UnloadUnicodeCategoryTable() noexcept {
  UnloadTable(TCategoryRows.rows, UnicodeCategoryTableSize, TCategoryLoaded);
}
void UnloadUnicodeScriptTable() noexcept {
  UnloadTable(TScriptRows.rows, UnicodeScriptTableSize, TScriptLoaded);
}
void UnloadUnicodeScriptExtensionTable() noexcept {
  UnloadTable(TScriptExtensionRows.rows, UnicodeScriptExtensionTableSize, TScriptExtensionLoaded);
}

}  // namespace internal

}  // namespace ic
