// Members of every string that read parts of the text, cut it in place, and insert or overwrite
// text. Mixed into BasicICString.
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
// Left and Mid build the new text in a temporary and do not let exceptions escape.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringCutMembers;

template <class Unit, class Storage>
class ICStringCutMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringCutMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringCutMembers);

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

 private:
  friend struct internal::StringAccess;
  friend struct test::LayerAccess;
  template <class>
  friend class ICStringCutMembers;

  /// Moves the text from `from` (a pointer into the text) with its terminator to the front and
  /// stores the new length; nothing unless `from` lies past the start.
  void _RemoveBefore(const Unit* from);
  /// Room for the length plus `count`, keeping the text; the tail from the unit `position` on
  /// moves up by `count` with its terminator and the new length is stored. Returns the gap,
  /// whose units are left as they are.
  Unit* _OpenGap(int32_t count, int32_t position);
  /// The unit offset of a position in `text`: for a narrow text with lengthInUnits false and a
  /// position from 1 to below EndOfText, GetUTF8Offset; otherwise the position itself
  /// (internal::UnitOffsetOf).
  static int32_t _ToUnitsIn(const Unit* text, int32_t position, bool lengthInUnits) noexcept;
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

IC_EXTERN_STRING_MIXIN(ICStringCutMembers)

}  // namespace ic
