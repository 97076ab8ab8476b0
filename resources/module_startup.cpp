// Start-up and exit of the language module.
//
// Everything the module sets up runs among its static initialisers while the host's loader
// holds its lock, and everything it tears down runs as exit actions when the host unloads it.
// The order is fixed, and this is the only translation unit of the module with static
// initialisers of its own (the entry point of platform/module_entry.cpp has none), so the
// definitions below run one after the other as written:
//
//   1-13  the thirteen catalogue records, os first and gui last. Each links itself at the head
//         of the chain, so gui ends at the head and os at the tail. The first of them builds
//         the manager, whose exit action is therefore registered first and runs last.
//   14    the narrow empty data is checked to be zero;
//   15-17 exit actions of the narrow block pointer and the narrow module-wide strings;
//   18    the wide empty data is checked to be zero;
//   19-21 exit actions of the wide block pointer and the wide module-wide strings;
//   22-25 the Unicode block, category, script and script extension tables are filled, each
//         registering the exit action that frees its rows.
//
// At exit the actions run in reverse: the four Unicode tables, script extensions first; the
// wide, then the narrow objects; the records from gui
// to os, each unlinking itself and freeing its indices; the manager last.
#include <cstdlib>

#include <ic/resources/host_api.h>
#include <ic/string/ic_string.h>
#include <ic/string/null_data.h>
#include <ic/unicode/unicode_tables.h>

#include "catalogues/Scintilla.h"
#include "catalogues/core.h"
#include "catalogues/cryptography.h"
#include "catalogues/dispatch.h"
#include "catalogues/gui.h"
#include "catalogues/icgui.h"
#include "catalogues/msg.h"
#include "catalogues/os.h"
#include "catalogues/pkg.h"
#include "catalogues/regex.h"
#include "catalogues/res.h"
#include "catalogues/xml.h"
#include "catalogues/xsdt.h"

namespace {

namespace catalogues = ic::resources::catalogues;

// Checks the empty data of a width when constructed; throws std::logic_error, which stops the
// load, if the block is not zero.
template <class Unit>
struct NullDataCheck {
  NullDataCheck() { ic::CheckNullData<Unit>(); }
};

// A block pointer of the module that is freed at exit. Nothing in the module ever gives it a
// value, so the free at exit is of null.
template <class Unit>
struct ModuleBlockPointer {
  constexpr ModuleBlockPointer() noexcept = default;
  ~ModuleBlockPointer() { std::free(block); }
  ModuleBlockPointer(const ModuleBlockPointer&) = delete;
  ModuleBlockPointer& operator=(const ModuleBlockPointer&) = delete;

  Unit* block = nullptr;
};

// Fills one of the Unicode tables when constructed; the table registers its own exit action.
struct UnicodeTableFill {
  explicit UnicodeTableFill(void (*load)()) { load(); }
};

// Steps 1 to 13.
const catalogues::os::Registrar osRecord;
const catalogues::pkg::Registrar pkgRecord;
const catalogues::core::Registrar coreRecord;
const catalogues::res::Registrar resRecord;
const catalogues::icgui::Registrar icguiRecord;
const catalogues::msg::Registrar msgRecord;
const catalogues::Scintilla::Registrar scintillaRecord;
const catalogues::xml::Registrar xmlRecord;
const catalogues::cryptography::Registrar cryptographyRecord;
const catalogues::regex::Registrar regexRecord;
const catalogues::dispatch::Registrar dispatchRecord;
const catalogues::xsdt::Registrar xsdtRecord;
const catalogues::gui::Registrar guiRecord;

// Steps 14 to 17.
const NullDataCheck<char> narrowNullDataCheck;
ModuleBlockPointer<char> narrowBlock;
ic::ICStringUnique narrowUnique;
ic::ICStringShared narrowShared;

// Steps 18 to 21.
const NullDataCheck<char16_t> wideNullDataCheck;
ModuleBlockPointer<char16_t> wideBlock;
ic::ICStringUniqueW wideUnique;
ic::ICStringSharedW wideShared;

// Steps 22 to 25.
const UnicodeTableFill TBlockTable(ic::LoadUnicodeBlockTable);
const UnicodeTableFill TCategoryTable(ic::LoadUnicodeCategoryTable);
const UnicodeTableFill TScriptTable(ic::LoadUnicodeScriptTable);
const UnicodeTableFill TScriptExtensionTable(ic::LoadUnicodeScriptExtensionTable);

}  // namespace
