// Members of every string that cut blanks or other characters at its edges, fill it to a width
// and insert a text at regular steps: TrimLeft, TrimRight, Trim, SkipLeft, Pad, InsertEvery;
// and the free blank tests IsBlank and IsBlankOrNoBreak. Mixed into BasicICString.
//
// Sets are zero-terminated texts of the string's width read as sets of code points (narrow) or
// units (wide); a null or empty set removes nothing. A member that finds nothing to do leaves
// the block untouched: a shared block is not detached, a view not copied. The cores are in
// internal/trim_core.h.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

/// The default blanks of the trim members and FirstLines: space, tab, carriage return, line
/// feed.
template <class Unit>
inline constexpr Unit DefaultBlanks[5] = {Unit(' '), Unit('\t'), Unit('\r'), Unit('\n'), 0};

/// The blanks of IsBlankOrNoBreak: the default blanks and U+00A0 in wide text; in narrow text
/// the single byte 160, which no UTF-8 no-break space (0xC2 0xA0) matches.
template <class Unit>
inline constexpr Unit BlanksWithNoBreak[6] = {Unit(' '),  Unit('\t'), Unit('\r'),
                                              Unit('\n'), Unit(0xA0), 0};

/// @name Blank tests: true if the text holds nothing but the blanks (null and "" give true)
/// @{
IC_API bool IsBlank(const char* text) noexcept;
IC_API bool IsBlank(const char16_t* text) noexcept;
IC_API bool IsBlankOrNoBreak(const char* text) noexcept;
IC_API bool IsBlankOrNoBreak(const char16_t* text) noexcept;
/// @}

template <class Str>
class ICStringTrimMembers;

template <class Unit, class Storage>
class ICStringTrimMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringTrimMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringTrimMembers);
  /// One character: a code point in narrow strings, a unit in wide ones.
  using Code = std::conditional_t<sizeof(Unit) == 1, char32_t, char16_t>;

 public:
  /// Removes the leading characters that are in `set` (the rest moves to the front) and returns
  /// the string.
  Str& TrimLeft(const Unit* set);
  /// Removes the leading copies of one character (0: nothing).
  Str& TrimLeft(Code code);
  /// Removes leading space, tab, carriage return and line feed.
  Str& TrimLeft();

  /// Removes the trailing characters that are in `set` (whole code points in narrow strings).
  Str& TrimRight(const Unit* set);
  Str& TrimRight(Code code);
  Str& TrimRight();

  /// TrimLeft, then TrimRight. A text of blanks alone becomes empty and keeps its block.
  Str& Trim(const Unit* set);
  Str& Trim(Code code);
  Str& Trim();

  /// The first character not in the set, without changing the string; the end of the text if
  /// all are in the set (or the text is empty).
  const Unit* SkipLeft(const Unit* set) const noexcept;
  const Unit* SkipLeft(Code code) const noexcept;
  const Unit* SkipLeft() const noexcept;

  /// Fills the string with `code` up to `targetLength` characters, at the end or with `atStart`
  /// at the start, and returns it. The length counts units with lengthInUnits (narrow: then a
  /// character of more than one byte does nothing, as the count could not be met exactly), and
  /// code points without (wide strings always count units). A target at or below the length
  /// does nothing; so does a code point that UTF-8 cannot hold.
  Str& Pad(Code code, int32_t targetLength, bool lengthInUnits = true, bool atStart = false);

  /// Inserts `text` after every `count` characters (code points in narrow strings, units in
  /// wide ones) that more text follows, and with `atEnd` once more behind a last group that has
  /// begun: 'abcdef', 2, "-" gives 'ab-cd-ef', with atEnd 'ab-cd-ef-'. A null or empty text
  /// does nothing. The string moves into a new block. `count` must be above 0. Does not let
  /// exceptions escape: a failed allocation ends the process.
  Str& InsertEvery(int32_t count, const Unit* text, bool atEnd = false) noexcept;
};

IC_EXTERN_STRING_MIXIN(ICStringTrimMembers)

}  // namespace ic
