// The process-wide resource string manager: the chain of catalogue records, the current
// language, the overrides of single messages, and the one mutex of the resource strings.
//
// There is exactly one ResourceStringManager, a function-local static reached through
// GetResourceStringManager. The first catalogue record built at module start-up builds it, so
// its exit action is registered ahead of every record's and it outlives them all (a record's
// exit action unlinks it from the chain and needs the manager for that).
//
// Locking: Mutex (recursive) guards LanguageName, Overrides, the writes of CurrentLanguage and
// the lazy indices of every library. The chain (FirstLibrary and the records' Next) takes no
// lock at all: it is changed only while the module starts and ends, which is single-threaded.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include <ic/platform/recursive_mutex.h>
#include <ic/resources/library.h>
#include <ic/string/ic_string.h>

namespace ic::resources {

/// The two-word result of a message getter: a wide text and a second word.
struct MessageResult {
  const char16_t* text;
  uint32_t word;
};

/// Hook behind the catalogues' GetMessage: fills `result` and returns it.
using GetMessageHookFn = MessageResult* (*)(MessageResult* result,
                                            const ResourceStringLibrary* library, uint32_t word1,
                                            uint32_t word2);
/// Hook that empties a wide string and returns it.
using ClearStringHookFn = ICStringUniqueW& (*)(ICStringUniqueW& text);
/// Hook without arguments or result.
using NotifyHookFn = void (*)();

/// Writes the shared wide empty text and a second word of 0 into `result` and returns it;
/// ignores the library and the two words.
MessageResult* DefaultGetMessage(MessageResult* result, const ResourceStringLibrary* library,
                                 uint32_t word1, uint32_t word2);
/// Clears `text` (its block stays) and returns it.
ICStringUniqueW& DefaultClearString(ICStringUniqueW& text);
/// Does nothing.
void DefaultNotify();

/// Number of codes in the language table.
inline constexpr int LanguageCount = 6;
/// Language index of a code outside the table.
inline constexpr int32_t UnknownLanguageIndex = 6;
/// The language table: the position of a code is its language index.
inline constexpr std::array<const char16_t*, LanguageCount> LanguageCodes = {u"en", u"de", u"ja",
                                                                             u"zh", u"es", u"fr"};

/// Orders wide strings by their text, unit by unit, as WideTextLess does for plain pointers.
struct WideStringLess {
  bool operator()(const ICStringUniqueW& left, const ICStringUniqueW& right) const noexcept {
    return WideTextLess()(left.GetText(), right.GetText());
  }
};

/// Three-level store of texts by two names and an id.
using NestedStringMap =
    std::map<ICStringUniqueW,
             std::map<ICStringUniqueW, std::map<uint32_t, ICStringUniqueW>, WideStringLess>,
             WideStringLess>;

/// The one manager. Fields are in their fixed order; they are torn down from last to first
/// (ExtraName, SharedSlots from the sixth to the first, NestedStrings, Overrides, LanguageName,
/// and the mutex last). The hooks, HookContext, NestedStrings, SharedSlots and ExtraName are
/// seams for a text layer above this module: they are built and destroyed here, and only
/// GetMessageHook is ever called (by the catalogues' GetMessage).
struct ResourceStringManager {
  platform::RecursiveMutex Mutex;  ///< a std::recursive_mutex
  uint32_t HookContext;
  GetMessageHookFn GetMessageHook;
  GetMessageHookFn GetMessageHook2;
  ClearStringHookFn ClearStringHook;
  ClearStringHookFn ClearStringHook2;
  NotifyHookFn NotifyHook;
  ResourceStringLibrary* FirstLibrary;   ///< head of the chain; the last registered record
  std::atomic<int32_t> CurrentLanguage;  ///< language index, 0 to 6
  ICStringUniqueW LanguageName;          ///< the code as last given to SetLanguage
  std::map<uint32_t, ICStringUniqueW> Overrides;
  NestedStringMap NestedStrings;
  std::shared_ptr<void> SharedSlots[LanguageCount];
  ICStringUniqueW ExtraName;

  ResourceStringManager();
  ResourceStringManager(const ResourceStringManager&) = delete;
  ResourceStringManager& operator=(const ResourceStringManager&) = delete;
};

/// The instance, built on first use under the one-time rule of function-local statics; if its
/// construction throws, the next call tries again. Its tear-down runs at module exit.
ResourceStringManager& GetResourceStringManager();

/// @name The chain of libraries (no lock: start and exit of the module are single-threaded)
/// @{

/// Puts `library` at the head of the chain: its Next takes the old head. Null is ignored.
void RegisterLibrary(ResourceStringLibrary* library);

/// Splices `library` out of the chain at its first occurrence. Its own Next keeps its value;
/// only the predecessor's link (or the head) changes. A null library, an empty chain or a record
/// that is not in the chain leaves the chain as it was.
void UnregisterLibrary(ResourceStringLibrary* library);

/// The first record from the head whose Name equals `name` unit by unit (case-sensitive);
/// null if none, or if `name` is null.
ResourceStringLibrary* FindLibrary(const char16_t* name);

/// As FindLibrary, walking from `first`; null for a null start or a null name.
ResourceStringLibrary* FindLibraryFrom(ResourceStringLibrary* first, const char16_t* name);
/// @}

/// @name Language
/// @{

/// Index of `code` in the language table, compared without regard to case; 6 for a code that
/// is not in it, for the empty text and for null. Takes no lock.
int32_t GetLanguageIndex(const char16_t* code);

/// Makes `code` the current language: its index (6 for a code outside the table, which is
/// accepted) and its spelling as given. Null or empty changes nothing.
void SetLanguage(const char16_t* code);

/// The language as last set, in the caller's spelling, or the table's code for the index if
/// none was set ("en" before the first SetLanguage). With `lowerCase` the copy is lower-cased
/// (as GetStringOverride), still under the lock.
ICStringUniqueW GetLanguage(bool lowerCase);
/// @}

/// @name Overrides of single messages
/// @{

/// Makes `text` (copied) stand in for the message of `id`. Null or the empty text removes the
/// override of `id`; removing an absent one is no fault.
void SetStringOverride(const char16_t* text, const uint32_t& id);

/// A copy of the override of `id`, or the empty string if there is none; with `lowerCase` the
/// copy is lower-cased after the lock is released, by the platform's wide run-time (on Windows
/// ASCII letters only in the C run-time's default locale: platform/wide_runtime.h).
ICStringUniqueW GetStringOverride(bool lowerCase, const uint32_t& id);
/// @}

}  // namespace ic::resources
