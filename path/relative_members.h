// Members of every string that make a path relative to the directory of another path:
// MakeRelative and its member forms MakeRelativeTo and MakeRelativeToInPlace. Mixed into
// BasicICString.
//
// The inverse of ResolveRelative for the common cases. The comparison runs on folded copies
// (MakeLower with `fast`, backslashes as slashes), while the text returned comes from the
// caller's path with its own case and separators.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringRelativeMembers;

template <class Unit, class Storage>
class ICStringRelativeMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringRelativeMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringRelativeMembers);

 public:
  /// Writes `path` made relative to the directory of `base` into `out` (which may be `path`).
  /// The directory is `base` cut behind its last separator (a base without one gives an empty
  /// directory), or `fallbackDirectory` with a trailing separator when `base` is null or empty.
  /// A path below the directory loses the directory's length from its front ("." for the
  /// directory itself when `pathIsDirectory` is set; a path with that flag is compared with a
  /// trailing separator). Otherwise, with `allowParentSteps` and the same drive letter ("X:" at
  /// index 1), the result climbs with one "..\" per directory level above the last common
  /// separator. In every other case the path comes back unchanged.
  static void MakeRelative(Str& out, const Str& path, const Unit* base,
                           const Unit* fallbackDirectory, bool allowParentSteps,
                           bool pathIsDirectory);
  /// MakeRelative of this string: returns the result as a new string.
  Str MakeRelativeTo(const Unit* base, const Unit* fallbackDirectory = nullptr,
                     bool allowParentSteps = false, bool pathIsDirectory = false) const;
  /// MakeRelative of this string into this string; returns it.
  Str& MakeRelativeToInPlace(const Unit* base, const Unit* fallbackDirectory = nullptr,
                             bool allowParentSteps = false, bool pathIsDirectory = false);
};

IC_EXTERN_STRING_MIXIN(ICStringRelativeMembers)

}  // namespace ic
