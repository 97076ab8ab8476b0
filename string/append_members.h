// Members of every string that lengthen it: the Append family, the cursor appends
// (PutAtCursor), Join, and the appending of a concatenation (a chain, or two to ten pieces).
// Mixed into BasicICString.
//
// Append grows a string to exactly the new length, so a loop of appends copies the text over and
// over: loops use ICStringBuilder (builder.h) or PutAtCursor, which grow geometrically and leave
// the stored length unmeasured until someone asks for it. Shapes differ only in the write step
// _PrepareGrow (room that keeps the old text): a shared block that others hold is detached, a
// view becomes owning.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/piece.h>
#include <ic/string/piece_run.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringAppendMembers;

template <class Unit, class Storage>
class ICStringAppendMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringAppendMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringAppendMembers);
  using Piece = ICStringPieceT<Unit>;

 public:
  /// The text of a string of any shape of this width. A string may append itself.
  template <class OtherStorage>
  Str& Append(const BasicICString<Unit, OtherStorage>& other) {
    return Append(other.GetText(), other.GetLength());
  }
  /// `length` units of `text` (nothing for a length below 1). Room for exactly the new length
  /// is made, keeping the old text, the units are copied behind it and the end is set. The
  /// text may lie in the string's own text.
  Str& Append(const Unit* text, int32_t length);
  /// A zero-terminated text; null appends nothing.
  Str& Append(const Unit* text);
  /// A range: its pointer and length; a negative length is not measured here, and appends
  /// nothing.
  Str& Append(ICStringRangeT<Unit> range) { return Append(range.Text, range.Length); }
  /// A concatenation, written straight behind the old text with one growth. A chain that holds
  /// the string's own text is written out into its Result first.
  Str& Append(const ICStringChainT<Unit>& chain);
  /// One 8-bit character; zero appends nothing. Narrow: from 0x80 on it is a Latin-1 code point
  /// (two UTF-8 bytes). Wide: the value AND 255 as one unit.
  Str& Append(char ch);
  /// One 16-bit unit (wide strings); zero appends nothing.
  Str& Append(char16_t unit) requires(IsWide);
  /// A code point in UTF-8 (narrow strings); zero appends nothing. Room is made for its UTF-8
  /// size and the length raised by it even if EncodeCodePoint refuses the value (a surrogate,
  /// above U+10FFFF): callers check.
  Str& Append(char32_t codePoint) requires(IsNarrow);

  /// The same as Append, as operators.
  template <class T>
  Str& operator+=(const T& value) requires requires(ICStringAppendMembers& a, const T& v) {
    a.Append(v);
  }
  { return Append(value); }

  /// @name AppendPieces: the pieces, linked in argument order, written behind the text as a
  /// chain is (no guard: no piece may point into this string's block)
  /// @{
  template <class... Texts>
  requires(sizeof...(Texts) >= 2 && sizeof...(Texts) <= 10 &&
           (std::is_convertible_v<const Texts&, Piece> &&
            ...)) Str& AppendPieces(const Texts&... texts) {
    Piece pieces[] = {texts...};
    return AppendPieces(LinkPieces(pieces, sizeof...(Texts)));
  }
  /// The list form: a null list, or one whose counts sum to 0, leaves the string unchanged.
  Str& AppendPieces(const Piece* first);
  /// @}

  /// @name PutAtCursor: appends at the unit position `cursor`, for callers that keep the count
  /// themselves. The string is made writable (a view owning, a shared block detached); if
  /// cursor plus the source's length exceeds the capacity, the block grows, keeping the text,
  /// to the larger of twice that and 1024 units when `reserveHint` is 0, else to reserveHint
  /// more. The source is copied to text[cursor], `cursor` moves behind it, a zero unit is
  /// written there and the stored length is left unknown, to be measured when asked for. With
  /// `doWrite` clear only the source's length is added to `cursor`: the same run of calls first
  /// measures and then writes.
  /// @{
  /// A text with a signed length: negative measures up to the terminator; null is empty.
  void PutAtCursor(const Unit* text, int32_t length, uint32_t& cursor, int32_t reserveHint);
  /// One unit (a narrow byte as it is, a wide 16-bit unit).
  void PutAtCursor(Unit unit, uint32_t& cursor, int32_t reserveHint);
  /// A string of any shape of this width.
  template <class OtherStorage>
  void PutAtCursor(const BasicICString<Unit, OtherStorage>& source, uint32_t& cursor,
                   int32_t reserveHint) {
    PutAtCursor(source.GetText(), source.GetLength(), cursor, reserveHint);
  }
  void PutAtCursor(bool doWrite, const Unit* text, int32_t length, uint32_t& cursor,
                   int32_t reserveHint);
  void PutAtCursor(bool doWrite, Unit unit, uint32_t& cursor, int32_t reserveHint);
  template <class OtherStorage>
  void PutAtCursor(bool doWrite, const BasicICString<Unit, OtherStorage>& source, uint32_t& cursor,
                   int32_t reserveHint) {
    PutAtCursor(doWrite, source.GetText(), source.GetLength(), cursor, reserveHint);
  }
  /// @}

  /// @name Join: replaces the text by the elements with the separator between them, in one
  /// allocation (a measuring pass, one exact reservation, a writing pass). An empty sequence
  /// gives an empty text.
  /// @{
  /// A zero-terminated separator; null stands for "".
  Str& Join(const UniqueStr* elements, size_t count, const Unit* separator);
  /// A separator of one code point (narrow: UTF-8 encoded first; wide: one 16-bit unit).
  Str& Join(const UniqueStr* elements, size_t count, char32_t separator);
  /// Any contiguous container of ICStringUnique of this width (std::vector, std::array, ...).
  template <class Container>
  Str& Join(const Container& elements, const Unit* separator) requires
      requires(const Container& c) {
    { std::data(c) } -> std::convertible_to<const UniqueStr*>;
  }
  { return Join(std::data(elements), std::size(elements), separator); }
  template <class Container>
  Str& Join(const Container& elements, char32_t separator) requires requires(const Container& c) {
    { std::data(c) } -> std::convertible_to<const UniqueStr*>;
  }
  { return Join(std::data(elements), std::size(elements), separator); }
  /// @}

 private:
  friend struct internal::StringAccess;
  friend struct test::LayerAccess;

  /// The core of chain and piece appending: room for the old length plus `length`, keeping the
  /// old text, then either `written` copied with its terminator or the run's pieces written behind
  /// the old text; the length is stored.
  void _AppendChainCore(const internal::PieceRun<Unit>* run, int32_t length, const Unit* written);
};

IC_EXTERN_STRING_MIXIN(ICStringAppendMembers)

}  // namespace ic
