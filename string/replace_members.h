// Members of every string that replace text: a range, every occurrence of a needle, single
// characters, characters of a set. Mixed into BasicICString.
//
// Positions and counts are code units, or for a narrow string with lengthInUnits false
// characters (code points), turned into units with GetUTF8Offset; EndOfText is taken as it
// stands, and wide strings ignore the flag (string/internal/positions.h tells which members
// default to which). Out-of-range arguments are no errors: each member says what it does with
// them, which is mostly nothing.
//
// Every write scans first and prepares the block only when something changes: a shared block
// that others hold is detached, a view becomes owning, through the string's write steps
// (_PrepareGrow, _PrepareReplace, _Clear).
// ReplaceRange builds a longer text in a temporary and does not let exceptions escape. The
// bodies of ReplaceAll are compiled once per width (string/internal/replace_core.h).
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

namespace internal {

/// A text argument reduced to a pointer and a length in units, with room for an encoded code
/// point. Used by the Replace adapters, which take any kind of text.
template <class Unit>
struct TextArgument {
  const Unit* text = nullptr;  ///< the text, or null for the units in encoded
  int32_t length = 0;
  Unit encoded[5] = {};  ///< an encoded code point and a terminator
  /// The units: text, or encoded when text is null (so that a copy stays valid).
  const Unit* Data() const noexcept { return text ? text : encoded; }
};

/// A zero-terminated text (null counts as "").
template <class Unit>
TextArgument<Unit> MakeTextArgument(const Unit* text) noexcept {
  TextArgument<Unit> a;
  if (text != nullptr) {
    a.text = text;
    while (text[a.length])
      ++a.length;
  }
  return a;
}
/// A string of any shape.
template <class Unit, class Storage>
TextArgument<Unit> MakeTextArgument(const BasicICString<Unit, Storage>& s) noexcept {
  TextArgument<Unit> a;
  a.text = s.GetText();
  a.length = s.GetLength();
  return a;
}
/// A chain, written out into its Result first (chain.h).
template <class Unit>
TextArgument<Unit> MakeTextArgument(const ICStringChainT<Unit>& chain);
/// A code point: UTF-8 in narrow (nothing for a value EncodeCodePoint refuses), one 16-bit unit
/// in wide; zero gives an empty text.
IC_API TextArgument<char> MakeCodePointArgument(char, uint32_t codePoint) noexcept;
IC_API TextArgument<char16_t> MakeCodePointArgument(char16_t, uint32_t codePoint) noexcept;
template <class Unit>
TextArgument<Unit> MakeTextArgument(char32_t codePoint) noexcept {
  return MakeCodePointArgument(Unit{}, codePoint);
}
template <class Unit>
TextArgument<Unit> MakeTextArgument(char16_t unit) noexcept {
  return MakeCodePointArgument(Unit{}, unit);
}
template <class Unit>
TextArgument<Unit> MakeTextArgument(char ch) noexcept {
  return MakeCodePointArgument(Unit{}, static_cast<unsigned char>(ch));
}

}  // namespace internal

template <class Str>
class ICStringReplaceMembers;

template <class Unit, class Storage>
class ICStringReplaceMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringReplaceMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringReplaceMembers);

 public:
  /// @name Replacing
  /// @{

  /// Replaces `count` units or characters at `position` by `textLength` units of `text`
  /// (negative: up to the terminator). An empty text does nothing (this cannot delete: use
  /// Remove); so do a negative position and one past the end. A negative count counts as 0, one
  /// past the end is cut to it. A replacement that is not longer than the range is written in
  /// place; a longer one is built in a new block of exactly the new length, which replaces the
  /// old block. Noexcept by contract: a failed allocation ends the process.
  Str& ReplaceRange(int32_t position, bool lengthInUnits, int32_t count, const Unit* text,
                    int32_t textLength = -1) noexcept;
  /// The same with one code point (narrow: UTF-8; wide: one 16-bit unit); zero: nothing.
  Str& ReplaceRange(int32_t position, bool lengthInUnits, int32_t count,
                    char32_t codePoint) noexcept;

  /// Replaces the matches of the needle, found from the start and each time behind the last
  /// match (so matches do not overlap, and the replacement is never searched), by the text; at
  /// most maxCount of them (0: no limit). Lengths are in units; a negative one means up to the
  /// terminator. An empty needle: nothing; a null text stands for "". A replacement of the same
  /// length works in place; otherwise the block is made exactly as large as the larger of the
  /// old and the new length, keeping the text. Returns the number of replacements. Throws
  /// std::length_error("list too long") above 0x15555555 matches.
  int32_t ReplaceAll(const Unit* needle, int32_t needleLength, const Unit* text, int32_t textLength,
                     int32_t maxCount = 0);

  /// ReplaceAll with a needle and a replacement of any kind: a string of any shape, a chain, a
  /// zero-terminated text (null counts as "") or a code point.
  template <class Needle, class Replacement>
  int32_t Replace(const Needle& needle, const Replacement& replacement, int32_t maxCount) {
    const auto n = _Argument(needle);
    const auto r = _Argument(replacement);
    return ReplaceAll(n.Data(), n.length, r.Data(), r.length, maxCount);
  }
  /// Replaces every occurrence of one character by another: narrow strings take code points
  /// (both below 0x80: byte by byte in place; otherwise ReplaceAll of their UTF-8 forms), wide
  /// strings units, in place. A zero replacement does nothing, and so does a character that does
  /// not occur (a shared block is not detached). Returns the number of replacements.
  int32_t Replace(char32_t from, char32_t to) requires(IsNarrow);
  int32_t Replace(char16_t from, char16_t to) requires(IsWide);

  /// Replaces every character of the text that is in `set` (a zero-terminated text) by the unit
  /// `replacement`. Narrow strings compare code points and rebuild the text in place; a
  /// replacement outside 1 to 0x7f does nothing. Wide strings compare units; a zero replacement
  /// does nothing. A null or empty set: nothing.
  Str& ReplaceAnyOf(const Unit* set, Unit replacement);
  /// @}

 private:
  template <class Arg>
  static internal::TextArgument<Unit> _Argument(const Arg& arg) {
    if constexpr (std::is_array_v<Arg>)
      return internal::MakeTextArgument<Unit>(static_cast<const Unit*>(arg));
    else if constexpr (std::is_same_v<Arg, char32_t> || std::is_same_v<Arg, char16_t> ||
                       std::is_same_v<Arg, char>)
      return internal::MakeTextArgument<Unit>(arg);
    else
      return internal::MakeTextArgument(arg);
  }
};

IC_EXTERN_STRING_MIXIN(ICStringReplaceMembers)

}  // namespace ic
