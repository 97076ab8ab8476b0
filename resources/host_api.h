// What the language module exports to the host that loads it.
//
// A host loads the module at run time and looks these functions up by name (their names are C
// names, undecorated); a host that links the resource runtime in-process may call them directly.
// GetFirstResourceStringLibrary is the entry to the catalogues. The others give a host the
// module's own manager and index builder, so that a host that only loads the module can set the
// language and find rows by key without sharing the manager's code. No heap block crosses the
// border: texts are returned as pointers into the module's constant data or copied into the
// caller's buffer.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/resources/library.h>

namespace ic::resources {

extern "C" {

/// Head of the chain of catalogue records (the last registered), or null if the module holds
/// no catalogue. Valid while the module is loaded.
IC_API ResourceStringLibrary* GetFirstResourceStringLibrary();

/// SetLanguage through the module's manager: null or empty changes nothing.
IC_API void SetResourceLanguage(const char16_t* code);

/// GetLanguage through the module's manager, measure-or-write: with a null `buffer`, or one of
/// fewer than the length plus one units, returns the number of units needed, terminator
/// included, and writes nothing; else copies the code with its terminator and returns 0.
IC_API int32_t GetResourceLanguage(bool lowerCase, char16_t* buffer, int32_t size);

/// BuildKeyIndex through the module, under the module's manager mutex. Afterwards the host may
/// read library->KeyIndex without a lock.
IC_API void BuildResourceKeyIndex(ResourceStringLibrary* library);

/// Row of `key` in `library` (building the key index on first use), or -1.
IC_API int32_t FindResourceRow(ResourceStringLibrary* library, const char16_t* key);

}  // extern "C"

/// Types of the exports, for hosts that look them up by name.
using GetFirstResourceStringLibraryFn = ResourceStringLibrary* (*)();
using SetResourceLanguageFn = void (*)(const char16_t* code);
using GetResourceLanguageFn = int32_t (*)(bool lowerCase, char16_t* buffer, int32_t size);
using BuildResourceKeyIndexFn = void (*)(ResourceStringLibrary* library);
using FindResourceRowFn = int32_t (*)(ResourceStringLibrary* library, const char16_t* key);

}  // namespace ic::resources
