// Members of every string that replace its text: the Assign family, _SetCodePoint, and the
// assignment of a concatenation (a chain, or two to ten pieces). Mixed into BasicICString.
//
// The mixin is specialised on BasicICString<Unit, Storage>, so that width and shape are known
// from the template arguments alone; the members are defined once in assign_members.cpp and
// instantiated there for the six strings. Shapes differ only in the write steps that the string
// itself offers: _PrepareReplace (room for a new text), _Clear (the empty string).
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/piece.h>
#include <ic/string/piece_run.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringAssignMembers;

template <class Unit, class Storage>
class ICStringAssignMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringAssignMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringAssignMembers);
  using Piece = ICStringPieceT<Unit>;

 public:
  /// A string of the same shape: as the copy assignment (itself: no change; a shared string
  /// shares the other's block; a view becomes what its copy constructor makes). A string of
  /// another shape: its text and length are copied in (_AssignText).
  template <class OtherStorage>
  Str& Assign(const BasicICString<Unit, OtherStorage>& other) {
    Str& self = Self();
    if constexpr (std::is_same_v<OtherStorage, Storage>)
      self = other;
    else
      self._AssignText(other.GetText(), other.GetLength());
    return self;
  }

  /// A zero-terminated text, as the assignment operator takes it: copied (null clears); a view
  /// becomes a view of it.
  Str& Assign(const Unit* text);

  /// The units from `begin` up to `end`. Both must be non-null and begin at most end; otherwise
  /// the string is cleared.
  Str& Assign(const Unit* begin, const Unit* end);

  /// `length` units of `text`, or for a narrow string with lengthInUnits false `length`
  /// characters (EndOfText is taken as it stands; wide strings ignore the flag). A length of 0
  /// or below clears the string. A null text stands for "", of which nothing can be copied: the
  /// converted length is then 0, room for nothing is made, and the string keeps its text. The
  /// text is copied as it stands, without looking for a terminator inside; it must not lie in
  /// the string's own block.
  Str& Assign(const Unit* text, int32_t length, bool lengthInUnits);

  /// The plain assignment of a text of this width with a signed length: null clears; a negative
  /// length measures up to the terminator (a view then views the text); 0 clears; otherwise the
  /// units are copied.
  Str& Assign(const Unit* text, int32_t length);
  /// The same with a range of this width.
  Str& Assign(ICStringRangeT<Unit> range);

  /// UTF-8 text into a wide string: ConvertFromUTF8String of the text and length (negative: up
  /// to the terminator).
  Str& Assign(const char* utf8, int32_t length) requires(IsWide);
  /// UTF-8 range into a wide string, through ConvertFromUTF8String.
  Str& Assign(ICStringRange utf8) requires(IsWide);

  /// One 8-bit character. Narrow: from 0x80 on it is a Latin-1 code point, stored as two UTF-8
  /// bytes; below, the byte is the whole text (zero gives an empty text, in a block of room 1).
  /// Wide: the value AND 255 as one unit.
  Str& Assign(char ch);
  /// One 16-bit unit as the whole text (wide strings); zero gives an empty text.
  Str& Assign(char16_t unit) requires(IsWide);
  /// A code point as the whole text (narrow strings), in room of its UTF-8 size. A value that
  /// EncodeCodePoint refuses leaves length 0 and no terminator written.
  Str& Assign(char32_t codePoint) requires(IsNarrow);

  /// A concatenation: the chain is written straight into the string, which gets exactly the room
  /// it needs (a block that is large enough stays). A chain that holds the string's own text is
  /// first written out into its Result, so that the write does not overwrite its own source.
  /// An empty chain gives an empty text.
  Str& Assign(const ICStringChainT<Unit>& chain);

  /// @name AssignPieces: the pieces, linked in argument order, written as a chain is (no guard:
  /// no piece may point into this string's block)
  /// @{
  template <class... Texts>
  requires(sizeof...(Texts) >= 2 && sizeof...(Texts) <= 10 &&
           (std::is_convertible_v<const Texts&, Piece> &&
            ...)) Str& AssignPieces(const Texts&... texts) {
    Piece pieces[] = {texts...};
    return AssignPieces(LinkPieces(pieces, sizeof...(Texts)));
  }
  /// The list form: a null list, or one whose counts sum to 0, leaves the string unchanged.
  Str& AssignPieces(const Piece* first);
  /// @}

 private:
  friend struct internal::StringAccess;
  friend struct test::LayerAccess;

  /// Writes a code point as the whole text of a block that has room for it (narrow strings):
  /// zero gives an empty text; otherwise its UTF-8 bytes, a terminator and their count as the
  /// length. A value that EncodeCodePoint refuses gives length 0 and no terminator.
  void _SetCodePoint(uint32_t codePoint) requires(IsNarrow);

  /// The core of chain and piece assignment: room for `length` units without the old text,
  /// then either `written`'s text (a chain written out before) copied with its terminator, or
  /// the run's pieces written; the length is stored.
  void _AssignChainCore(const internal::PieceRun<Unit>* run, int32_t length, const Unit* written);
};

IC_EXTERN_STRING_MIXIN(ICStringAssignMembers)

}  // namespace ic
