// Members of every string that treat its text as a file path or URL: separators, directory and
// file name parts, extensions, root prefixes, validity of file names, normalisation and
// comparison. Mixed into BasicICString.
//
// Everything is text work: nothing touches the file system. Slash and backslash are both
// separators in every operation and a text may mix them; every scan for a scheme or drive stops
// at the first colon, so 'proto://host/a/../b' normalises like 'C:\a\..\b'.
//
// Members marked "in place" change the string and return it; a view that does not own its text
// copies it first, a shared block that others hold is left to them. The others leave the string
// alone and return a new string of the same shape. Members defined in path_members.cpp for the
// six strings; the text work lives in internal/path_core.h.
#pragma once

#include <cstdint>

#include <ic/path/path_constants.h>
#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringPathMembers;

template <class Unit, class Storage>
class ICStringPathMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringPathMembers, Unit, Storage>, public ICStringTextConstants<Unit> {
  IC_STRING_MIXIN_NAMES(ICStringPathMembers);

 public:
  /// In place: cuts blanks (space, tab, CR, LF) from the right end, then appends a separator
  /// unless the text is empty or ends in one: a backslash if the text holds a backslash anywhere,
  /// else a slash.
  Str& AddTrailingSeparator();
  /// A copy treated as AddTrailingSeparator.
  Str WithTrailingSeparator() const;

  /// Pointer to the last separator of the text (one unit further with `afterSeparator`), or
  /// null when the text has none.
  const Unit* FindLastSeparator(bool afterSeparator = false) const noexcept;
  /// Everything before the last separator, with it when `keepSeparator` is set; empty when the
  /// text has no separator.
  Str GetDirectoryPart(bool keepSeparator = false) const;
  /// In place: GetDirectoryPart.
  Str& RemoveFileNamePart(bool keepSeparator = false);
  /// Everything behind the last separator; the whole text without one. A view's result views
  /// the source text (not owning, length measured on demand): the source must outlive it.
  Str GetFileNamePart() const;
  /// In place: GetFileNamePart; without a separator the text stays.
  Str& RemoveDirectoryPart();
  /// The text left of the separator `levels` levels up, walking back from the last code point
  /// but one (a trailing separator is no level; levels below 1 act as 1), with that separator
  /// when `keepSeparator` is set; empty when the start is reached first, and for texts of less
  /// than two code points.
  Str GetAncestorPath(bool keepSeparator = false, int32_t levels = 1) const;

  /// Pointer to the dot that opens the extension: the last dot of the text, provided no space,
  /// '#', '%', ';', slash or backslash follows it; else null (no earlier dot is tried).
  const Unit* FindExtensionDot() const noexcept;
  /// The extension: what the width's PathSchemeHandler writes when it answers true, else the
  /// text behind FindExtensionDot (empty without one). Lowered by MakeLower when `lowerCase` is
  /// set. A view's result views the source text unless it is lowered or comes from the handler.
  Str GetExtension(bool lowerCase = false) const;
  /// Everything before the extension dot; the whole text without one.
  Str GetWithoutExtension() const;
  /// In place: GetWithoutExtension.
  Str& RemoveExtension();
  /// In place: removes everything through the first colon and the separators directly behind
  /// it ('C:\dir\f' gives 'dir\f', 'proto://host/x' gives 'host/x'); without a colon the text
  /// stays.
  Str& RemoveRootPrefix();

  /// False for null, empty text and text with a colon anywhere; with `rootedIsAbsolute`, false
  /// when the text starts with a separator; otherwise true unless the text starts with two
  /// separators ('\dir' is relative, '\\host' is not).
  static bool IsRelativePath(const Unit* text, bool rootedIsAbsolute = false) noexcept;
  /// True for a valid single file name: 1 to 260 code points, not only dots, none of CR, LF and
  /// InvalidFileNameChars, and no reserved device name (CON, PRN, NUL, AUX, COM1-9, LPT1-9,
  /// CLOCK$, case ignored) as its stem. Null or empty: false.
  static bool IsValidFileName(const Unit* text);
  /// IsValidFileName on the string's own text.
  bool IsValidFileName() const;

  /// Normalises the zero-terminated writable `text` in place: runs of separators collapse, "."
  /// segments go with `removeDots`, ".." segments take the segment before them with
  /// `removeDotDots`, never below the head (drive, "scheme://host", "\\host", or a first
  /// component). Separators are kept as they stand. Returns the new length; null gives 0.
  static int32_t NormalizePath(Unit* text, bool removeDots = true,
                               bool removeDotDots = true) noexcept;
  /// In place: NormalizePath on the text, the new length stored. A text that does not change is
  /// not written (a shared block stays shared, a view keeps viewing).
  Str& Normalize(bool removeDots = true, bool removeDotDots = true);
  /// In place: a non-empty text with no colon that does not start with a separator stays; any
  /// other text goes through Normalize(true, true).
  Str& NormalizeAbsolute();
  /// In place: MakeLower (with `fast` when `normalize` is clear), every backslash to a slash,
  /// and with `normalize` Normalize(true, true).
  Str& ToPathCompareForm(bool normalize = true);
  /// True if copies of both texts (null is empty) are equal after ToPathCompareForm(normalize).
  static bool PathsEqual(const Unit* first, const Unit* second, bool normalize = true);
  /// Walks both texts at once, skipping every code point that `ignored` holds; true if the
  /// remaining code points are equal one for one. Null `other` or `ignored` is empty.
  bool EqualIgnoringChars(const Unit* other, const Unit* ignored) const noexcept;
};

IC_EXTERN_STRING_MIXIN(ICStringPathMembers)

}  // namespace ic
