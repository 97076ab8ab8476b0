// Members of every string that cut, insert, remove and replace text, and normalise line ends.
// Mixed into BasicICString.
//
// Positions and counts are code units, or for a narrow string with lengthInUnits false
// characters (code points), turned into units with GetUTF8Offset; EndOfText is taken
// as it stands, and wide strings ignore the flag. When a member has both a position and a count
// in characters, the count is walked from the converted position. Out-of-range arguments are no
// errors: each member says what it does with them, which is mostly nothing.
//
// Every write scans first and prepares the block only when something changes: a shared block
// that others hold is detached, a view becomes owning, through the string's write steps
// (_PrepareGrow, _PrepareReplace, _Clear). Members that build the new text in a temporary
// (Left, Mid, ReplaceRange, NormalizeLineEnds) do not let exceptions escape.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

/// The fixed line ends of NormalizeLineEnds.
enum class ICLineEnd {
  CarriageReturn,          ///< "\r"
  CarriageReturnLineFeed,  ///< "\r\n"
  LineFeed,                ///< "\n"
};

namespace internal {

/// A text argument reduced to a pointer and a length in units, with room for an encoded code
/// point. Used by the Replace adapters, which take any kind of text.
template <class Unit>
struct TextArgument {
  const Unit* Text = nullptr;  ///< the text, or null for the units in Encoded
  int32_t Length = 0;
  Unit Encoded[5] = {};  ///< an encoded code point and a terminator
  /// The units: Text, or Encoded when Text is null (so that a copy stays valid).
  const Unit* Data() const noexcept { return Text ? Text : Encoded; }
};

/// A zero-terminated text (null counts as "").
template <class Unit>
TextArgument<Unit> MakeTextArgument(const Unit* text) noexcept {
  TextArgument<Unit> a;
  if (text != nullptr) {
    a.Text = text;
    while (text[a.Length])
      ++a.Length;
  }
  return a;
}
/// A string of any shape.
template <class Unit, class Storage>
TextArgument<Unit> MakeTextArgument(const BasicICString<Unit, Storage>& s) noexcept {
  TextArgument<Unit> a;
  a.Text = s.GetText();
  a.Length = s.GetLength();
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
class ICStringEditMembers;

template <class Unit, class Storage>
class ICStringEditMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringEditMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringEditMembers);

 public:
  /// @name Reading parts
  /// @{

  /// The length in units, or for a narrow string with lengthInUnits false the number of code
  /// points (CountCodePoints). Wide: always the length.
  int32_t GetCharCount(bool lengthInUnits = true) const noexcept;

  /// A new string of this shape with the first `count` units or characters. Negative: the empty
  /// data. A count not below GetCharCount: a copy of the whole (a view copies as views do).
  /// Left and Mid build their result in a temporary and are noexcept by contract: a failed
  /// allocation ends the process.
  Str Left(int32_t count, bool lengthInUnits = true) const noexcept;
  /// A new string with the text from `position` to the end. Position 0 or below: a copy of the
  /// whole; above the length: the empty data.
  Str Mid(int32_t position, bool lengthInUnits = true) const noexcept;
  /// At most `count` units or characters from `position`. A negative position lowers the count
  /// by as much and starts at 0; a position at or past the end, or a count below 1 after that:
  /// the empty data.
  Str Mid(int32_t position, bool lengthInUnits, int32_t count) const noexcept;

  /// The text pointer at `position`, without a copy: position below 1 gives the text pointer,
  /// a position above the length null.
  const Unit* GetTailPointer(int32_t position, bool lengthInUnits = true) const noexcept;
  /// The text at `position` and, in `length`, the smaller of `count` and what remains, in
  /// units; without a copy. A negative position lowers the count by as much and starts at 0; a
  /// position at or past the end gives null and leaves `length` alone.
  const Unit* GetSpan(int32_t& length, int32_t position, bool lengthInUnits,
                      int32_t count) const noexcept;
  /// Puts the pointer at `index` into `slot`: index below 1 gives the text pointer; an index
  /// above the length (in the unit chosen) leaves the slot unwritten and answers false.
  bool GetPositionAt(const Unit*& slot, int32_t index, bool lengthInUnits = true) const noexcept;
  /// Puts the pointer `count` units or code points before the end into `slot`: a negative count
  /// leaves it unwritten (false); a count not below the length gives the text pointer.
  bool GetPositionFromEnd(const Unit*& slot, int32_t count,
                          bool lengthInUnits = true) const noexcept;

  /// Assigns the text from `index` on to `result`: index below 1 assigns the whole string; an
  /// index above the length leaves the result as it was. A view result of a view source takes a
  /// view of the tail, without a copy.
  template <class ResultStorage>
  void GetTextFrom(BasicICString<Unit, ResultStorage>& result, int32_t index,
                   bool lengthInUnits = true) const {
    const Str& self = Self();
    if (index < 1) {
      result.Assign(self);
      return;
    }
    const Unit* tail = nullptr;
    if (!GetPositionAt(tail, index, lengthInUnits)) return;
    if constexpr (IsView && std::is_same_v<ResultStorage, Storage>) {
      if (&result != &self) {
        result = tail;  // a view of the zero-terminated tail
        return;
      }
    }
    _AssignTail(result, tail);
  }
  /// Assigns the last `count` units or code points to `result`: a negative count leaves it as
  /// it was; a count not below the length assigns the whole string.
  template <class ResultStorage>
  void GetTextFromEnd(BasicICString<Unit, ResultStorage>& result, int32_t count,
                      bool lengthInUnits = true) const {
    const Str& self = Self();
    const Unit* from = nullptr;
    if (!GetPositionFromEnd(from, count, lengthInUnits)) return;
    if (from == self.GetText()) {
      result.Assign(self);
      return;
    }
    _AssignTail(result, from);
  }
  /// Replaces this string by the tail of `other` from `position` on. The same object: KeepFrom.
  /// Position 0 or below: the whole; past the other's end: empty.
  template <class OtherStorage>
  Str& AssignMid(const BasicICString<Unit, OtherStorage>& other, int32_t position,
                 bool lengthInUnits = true) {
    Str& self = Self();
    if (static_cast<const void*>(&other) == static_cast<const void*>(&self))
      return KeepFrom(position, lengthInUnits);
    if (position <= 0) return self.Assign(other);
    const int32_t offset = _ToUnitsIn(other.GetText(), position, lengthInUnits);
    const int32_t length = other.GetLength();
    if (offset > length) {
      self._Clear();
      return self;
    }
    self._AssignText(other.GetText() + offset, length - offset);
    return self;
  }
  /// @}

  /// @name Cutting in place
  /// @{

  /// Keeps the first `count` units or characters: 0 or below clears; a count at or past the
  /// length changes nothing (a shared block is not detached).
  Str& KeepLeft(int32_t count, bool lengthInUnits = true);
  /// Keeps the text from `position` on: 0 or below changes nothing; up to the length the text
  /// moves to the front; past the length the string is cleared.
  Str& KeepFrom(int32_t position, bool lengthInUnits = true);
  /// Keeps `count` units or characters from `position`. A negative position lowers the count
  /// by as much and starts at 0; a position at or past the end clears.
  Str& KeepRange(int32_t position, bool lengthInUnits, int32_t count);
  /// Removes `count` units or characters at `position`. A negative position lowers the count
  /// by as much and starts at 0; then a negative count, or a position at or past the end,
  /// changes nothing. A count that reaches the end cuts the text at position.
  Str& Remove(int32_t position, bool lengthInUnits, int32_t count);
  /// Moves the text from `from` (a pointer into the text) with its terminator to the front and
  /// stores the new length; nothing unless `from` lies past the start.
  void _RemoveBefore(const Unit* from);
  /// @}

  /// @name Inserting and overwriting
  /// @{

  /// Inserts the text of a string of any shape at `position`. An empty source, a negative
  /// position or one past the end: nothing. At exactly the length it appends.
  template <class OtherStorage>
  Str& Insert(const BasicICString<Unit, OtherStorage>& source, int32_t position,
              bool lengthInUnits = true) {
    return _InsertUnits(source.GetText(), source.GetLength(), position, lengthInUnits);
  }
  /// Inserts a concatenation (written out into its Result first).
  Str& Insert(const ICStringChainT<Unit>& source, int32_t position, bool lengthInUnits = true);
  /// Inserts a zero-terminated text (null: nothing).
  Str& Insert(const Unit* source, int32_t position, bool lengthInUnits = true);
  /// Inserts one code point in UTF-8 (narrow strings); zero: nothing.
  Str& Insert(char32_t codePoint, int32_t position, bool lengthInUnits = true) requires(IsNarrow);
  /// Inserts one 16-bit unit (wide strings); zero: nothing.
  Str& Insert(char16_t unit, int32_t position, bool lengthInUnits = true) requires(IsWide);

  /// Room for the length plus `count`, keeping the text; the tail from the unit `position` on
  /// moves up by `count` with its terminator and the new length is stored. Returns the gap,
  /// whose units are left as they are.
  Unit* _OpenGap(int32_t count, int32_t position);

  /// Replaces the text from `position` on (negative counts as 0) by `text` (null stands for
  /// ""), so that the length becomes position plus its size. Nothing if the length is at or
  /// below position, even for position 0 on an empty string.
  Str& SetTail(int32_t position, bool lengthInUnits, const Unit* text);
  /// The same with a code point (narrow: UTF-8 encoded; wide: one 16-bit unit).
  Str& SetTail(int32_t position, bool lengthInUnits, char32_t codePoint);

  /// Writes `value` `repeatCount` times from `position` on, and ends the text right behind it
  /// (so it may get shorter). A null or empty text, a zero unit, a negative position, one past
  /// the end or a repeat count below 1: nothing.
  Str& PutRepeated(const Unit* value, int32_t repeatCount, int32_t position,
                   bool lengthInUnits = true);
  /// The same with one unit.
  Str& PutRepeated(Unit value, int32_t repeatCount, int32_t position, bool lengthInUnits = true);
  /// The same with a code point in UTF-8 (narrow strings).
  Str& PutRepeated(char32_t value, int32_t repeatCount, int32_t position,
                   bool lengthInUnits = true) requires(IsNarrow);
  /// @}

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
    return ReplaceAll(n.Data(), n.Length, r.Data(), r.Length, maxCount);
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

  /// @name Line ends
  /// @{

  /// Replaces the text by `source` (null stands for "") with each carriage return, line feed or
  /// pair of the two turned into `lineEnd` (a line feed followed by a carriage return is two
  /// ends). A line end of one unit must be a carriage return or a line feed; one of two units
  /// must start with a carriage return or end with a line feed; any other line end does nothing.
  /// The source may be the string's own text. The new text is built in a temporary; noexcept by
  /// contract: a failed allocation ends the process.
  Str& NormalizeLineEnds(const Unit* source, const Unit* lineEnd) noexcept;
  /// The same with the string itself as the source.
  Str& NormalizeLineEnds(const Unit* lineEnd) noexcept;
  /// The same with a fixed line end.
  Str& NormalizeLineEnds(const Unit* source, ICLineEnd lineEnd) noexcept;
  Str& NormalizeLineEnds(ICLineEnd lineEnd) noexcept;

  /// True if the unit at `position` is a carriage return or a line feed.
  bool IsLineEndAt(int32_t position, bool lengthInUnits = true) const noexcept;
  /// @}

 private:
  /// The unit offset of a position in `text`: for a narrow text with lengthInUnits false and a
  /// position from 1 to below EndOfText, GetUTF8Offset; otherwise the position itself
  /// (internal::UnitOffsetOf).
  static int32_t _ToUnitsIn(const Unit* text, int32_t position, bool lengthInUnits) noexcept;
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
  template <class ResultStorage>
  void _AssignTail(BasicICString<Unit, ResultStorage>& result, const Unit* from) const {
    const Str& self = Self();
    const int32_t length = static_cast<int32_t>(self.GetEnd() - from);
    if (static_cast<const void*>(&result) == static_cast<const void*>(&self))
      result._RemoveBefore(from);
    else
      result._AssignText(from, length);
  }
  Str& _InsertUnits(const Unit* text, int32_t length, int32_t position, bool lengthInUnits);
};

IC_EXTERN_STRING_MIXIN(ICStringEditMembers)

}  // namespace ic
