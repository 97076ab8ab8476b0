// Members of every string that resolve a relative reference (a URL or a file path) against a
// base: ResolveRelative and its member forms ResolveAgainst and ResolveAgainstInPlace. Mixed into
// BasicICString.
//
// There is no URL object: the base is scanned for "://", the first colon and the separators, so
// a drive letter counts as a scheme-like head and slash and backslash are both honoured.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringResolveMembers;

template <class Unit, class Storage>
class ICStringResolveMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringResolveMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringResolveMembers);

 public:
  /// Writes `reference` resolved against `base` into `out` (which may hold the reference
  /// itself); `reference`, `base` and `fallbackBase` are null-safe plain texts.
  ///
  /// A reference that IsRelativePath(reference, false) rejects (empty, with a colon, '\\host')
  /// is the result as it stands. Otherwise the base is copied and handed to the width's
  /// PathSchemeHandler::PrepareBase if one is set, then cut behind its last separator (a base
  /// that ends its "://" gets a slash instead; one without separator stays whole); an empty
  /// base takes `fallbackBase`, with a backslash added unless it ends in a separator. A
  /// reference not starting with a separator is appended and, when `removeDots` or
  /// `removeDotDots` is set, the result goes through NormalizePath with these flags. A rooted
  /// reference replaces the path of the base: behind "scheme://authority" (every backslash then
  /// becoming a slash), else behind the first colon, else it stands alone; it is never
  /// normalised.
  static void ResolveRelative(Str& out, const Unit* reference, const Unit* base,
                              const Unit* fallbackBase, bool removeDots = true,
                              bool removeDotDots = true);
  /// ResolveRelative of this string's text: returns the result as a new string.
  Str ResolveAgainst(const Unit* base, const Unit* fallbackBase = nullptr, bool removeDots = true,
                     bool removeDotDots = true) const;
  /// ResolveRelative of this string's text into this string; returns it.
  Str& ResolveAgainstInPlace(const Unit* base, const Unit* fallbackBase = nullptr,
                             bool removeDots = true, bool removeDotDots = true);
};

IC_EXTERN_STRING_MIXIN(ICStringResolveMembers)

}  // namespace ic
