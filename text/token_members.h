// Members of every string that take its text apart: ExtractToken, ExtractTokenText and
// FirstLines, with free ExtractToken forms over a plain text. Mixed into BasicICString; the
// walks are in internal/trim_core.h.
//
// A token walk keeps its whole state in the caller's position variable (a code unit offset), so
// a caller walks a text by calling with the same variable until atEnd turns true, and any
// number of walks may run over one text at the same time.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringTokenMembers;

template <class Unit, class Storage>
class ICStringTokenMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringTokenMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringTokenMembers);
  using Code = std::conditional_t<sizeof(Unit) == 1, char32_t, char16_t>;

 public:
  /// The token that starts at `position`: the text up to the next character of the delimiter
  /// set (a zero-terminated text read as a set of code points, narrow, or units, wide). A quote
  /// character of `quotes` (may be null or empty) opens a stretch up to and including the next
  /// same quote, or to the end, in which delimiters do not count; quotes stay in the token.
  /// With `mergeDelimiters` an empty token counts for nothing; `skipCount` tokens are passed
  /// over first (below 0 counts as 0). `position` moves behind the delimiter; at the end of the
  /// text the rest is the token, `position` becomes the length and `*atEnd` (if given) true,
  /// else false. A position below 0 or beyond the length gives the empty string and leaves
  /// position and atEnd alone; a position on the terminator gives the empty token at the end.
  /// 'a,b,,c' with ',' gives 'a', 'b', '', 'c'; 'a,' gives 'a', then '' with atEnd true.
  Str ExtractToken(const Unit* delimiters, int32_t& position, const Unit* quotes = nullptr,
                   bool mergeDelimiters = false, int32_t skipCount = 0,
                   bool* atEnd = nullptr) const;
  /// The same with one delimiter character.
  Str ExtractToken(Code delimiter, int32_t& position, const Unit* quotes = nullptr,
                   bool mergeDelimiters = false, int32_t skipCount = 0,
                   bool* atEnd = nullptr) const;
  /// The same with the delimiter a whole text (null or empty: no delimiter at all).
  Str ExtractTokenText(const Unit* delimiter, int32_t& position, const Unit* quotes = nullptr,
                       bool mergeDelimiters = false, int32_t skipCount = 0,
                       bool* atEnd = nullptr) const;

  /// A new string with at most `maxLines` lines of the text. Line ends are "\r\n", "\r" or
  /// "\n", kept as they stood between the lines taken; the last line's end is not written.
  /// With `trimLines` each line loses its leading and trailing blanks (space, tab); with
  /// `skipEmptyLines` lines that are then empty are passed over. When text that is not only
  /// blanks is left behind, a non-empty `moreMarker` is appended: 'a\r\nb\nc' with 2 lines and
  /// '...' gives 'a\r\nb...'. Does not let exceptions escape: a failed allocation ends the
  /// process.
  Str FirstLines(int32_t maxLines, bool skipEmptyLines = false, bool trimLines = false,
                 const Unit* moreMarker = nullptr) const noexcept;
};

IC_EXTERN_STRING_MIXIN(ICStringTokenMembers)

template <class Unit>
class ICStringUniqueStorage;

/// @name ExtractToken over a plain text of `length` units (null: the empty string)
/// As the member, except that a position at or beyond `length` gives the empty string.
/// @{
IC_API BasicICString<char, ICStringUniqueStorage<char>> ExtractToken(
    const char* text, int32_t length, const char* delimiters, int32_t& position,
    const char* quotes = nullptr, bool mergeDelimiters = false, int32_t skipCount = 0,
    bool* atEnd = nullptr);
IC_API BasicICString<char16_t, ICStringUniqueStorage<char16_t>> ExtractToken(
    const char16_t* text, int32_t length, const char16_t* delimiters, int32_t& position,
    const char16_t* quotes = nullptr, bool mergeDelimiters = false, int32_t skipCount = 0,
    bool* atEnd = nullptr);
IC_API BasicICString<char, ICStringUniqueStorage<char>> ExtractToken(
    const char* text, int32_t length, char32_t delimiter, int32_t& position,
    const char* quotes = nullptr, bool mergeDelimiters = false, int32_t skipCount = 0,
    bool* atEnd = nullptr);
IC_API BasicICString<char16_t, ICStringUniqueStorage<char16_t>> ExtractToken(
    const char16_t* text, int32_t length, char16_t delimiter, int32_t& position,
    const char16_t* quotes = nullptr, bool mergeDelimiters = false, int32_t skipCount = 0,
    bool* atEnd = nullptr);
/// @}

/// @name ExtractTokenText over a plain text of `length` units, with a whole-text delimiter
/// @{
IC_API BasicICString<char, ICStringUniqueStorage<char>> ExtractTokenText(
    const char* text, int32_t length, const char* delimiter, int32_t& position,
    const char* quotes = nullptr, bool mergeDelimiters = false, int32_t skipCount = 0,
    bool* atEnd = nullptr);
IC_API BasicICString<char16_t, ICStringUniqueStorage<char16_t>> ExtractTokenText(
    const char16_t* text, int32_t length, const char16_t* delimiter, int32_t& position,
    const char16_t* quotes = nullptr, bool mergeDelimiters = false, int32_t skipCount = 0,
    bool* atEnd = nullptr);
/// @}

}  // namespace ic
