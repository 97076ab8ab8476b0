// PathSchemeHandler: the hook by which a host teaches the path operations about URL-like schemes
// that are not plain files. One process-wide slot per width holds a non-owning pointer, null at
// start; nothing guards the slots, so a host sets them once before other threads use the library.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>

namespace ic {

/// The hook interface of one width. `Unit` is char (UTF-8) or char16_t (UTF-16).
template <class Unit>
class PathSchemeHandlerT {
 public:
  using String = BasicICString<Unit, ICStringUniqueStorage<Unit>>;

  virtual ~PathSchemeHandlerT() = default;

  /// True when the absolute `text` (never null) is a local path that may get a "file:" prefix.
  /// Without a handler the library answers: the text does not contain "://".
  virtual bool IsLocalPath(const Unit* text) = 0;

  /// True when the handler has written the extension of `text` (never null) into `out`; false
  /// lets the library's own rule decide.
  virtual bool ExtractExtension(const Unit* text, String& out) = 0;

  /// May rewrite a base URL in place before a reference is resolved against it.
  virtual void PrepareBase(String& base) = 0;
};

using PathSchemeHandler = PathSchemeHandlerT<char>;
using PathSchemeHandlerW = PathSchemeHandlerT<char16_t>;

/// Stores `handler` (may be null) in the narrow slot and returns it.
IC_API PathSchemeHandler* SetPathSchemeHandler(PathSchemeHandler* handler) noexcept;
/// Stores `handler` (may be null) in the wide slot and returns it.
IC_API PathSchemeHandlerW* SetPathSchemeHandler(PathSchemeHandlerW* handler) noexcept;

/// The handler in the slot of the width, or null.
template <class Unit>
PathSchemeHandlerT<Unit>* GetPathSchemeHandler() noexcept;

extern template IC_API PathSchemeHandlerT<char>* GetPathSchemeHandler<char>() noexcept;
extern template IC_API PathSchemeHandlerT<char16_t>* GetPathSchemeHandler<char16_t>() noexcept;

}  // namespace ic
