// Members of every string that turn a file path into a "file:" URL and back. Mixed into
// BasicICString.
//
// Pure text work: no file is looked at. The two directions are not mirror images: each takes
// what its callers hand in, which may already be in the other form.
#pragma once

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringFileUrlMembers;

template <class Unit, class Storage>
class ICStringFileUrlMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringFileUrlMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringFileUrlMembers);

 public:
  /// In place: turns the path into a URL. Blanks at the front go (not at the end); an empty
  /// text stays. An absolute local path that does not start with "file:" (any case) gets a
  /// prefix: "\\host..." becomes "file://host..." (with a slash added when the host is all
  /// there is), anything else gets "file:///" in front; it is then escaped as it stands, so a
  /// '%' in it becomes "%25". A relative text, a text that the width's PathSchemeHandler (or,
  /// without one, a "://" in it) marks as not local, and a "file:" text are taken as escaped
  /// already: decoded first, then escaped. The escaping is PercentEncode(EscapeUnsafe), and
  /// every backslash becomes a slash. Returns the string.
  Str& ToFileUrl();
  /// ToFileUrl on a copy of `text` (null is empty).
  static Str PathToFileUrl(const Unit* text);

  /// In place: turns a "file:" URL into a path. Blanks at the front go; a text that does not
  /// start with "file:" exactly stays as it is. The prefix goes with the slashes that belong to
  /// it ('file:///C:/x' and 'file://C:/x' give 'C:\x', 'file://host/share' gives
  /// '\\host\share'), the rest is percent-decoded and every slash becomes a backslash.
  /// Returns the string.
  Str& ToFilePath();
  /// ToFilePath on a copy of `text` (null is empty).
  static Str FileUrlToPath(const Unit* text);
};

IC_EXTERN_STRING_MIXIN(ICStringFileUrlMembers)

}  // namespace ic
