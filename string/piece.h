// ICStringPiece: one element of a concatenation, a value that knows how many code units it will
// write. Pieces live on the stack, linked through Next, and are written out by WriteChain into
// room that the caller has made for the sum of their counts.
#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

#include <ic/number/number_format.h>
#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/range.h>

namespace ic {

/// What a piece holds, and so how WriteChain writes it.
enum ICStringPieceKind : uint32_t {
  PieceText = 1,       ///< Value: pointer to Count units, copied as they are
  PieceCodePoint = 2,  ///< Value: a code point; narrow encodes UTF-8, wide writes the low 16 bits
  PieceFloat = 3,      ///< Value: the bits of a 32-bit float, written by the format "%10.2f"
  PieceSigned = 4,     ///< Value: a signed 64-bit integer in decimal
  PieceUnsigned = 5,   ///< Value: an unsigned 64-bit integer in decimal
  PiecePointer = 6,    ///< Value: a 32-bit value in hexadecimal as FormatPointer writes it
};

namespace internal {
/// Units of the float piece's text, by the format "%10.2f"; at least 10.
IC_API int32_t MeasureFloatPiece(float value, char) noexcept;
IC_API int32_t MeasureFloatPiece(float value, char16_t) noexcept;
template <class Unit>
struct PieceRun;
}  // namespace internal

template <class Unit>
struct ICStringPieceT {
  /// Units that this piece writes; a piece with Count 0 is skipped.
  int32_t Count;
  /// The next piece, or null.
  ICStringPieceT* Next;
  /// An ICStringPieceKind; any other value is skipped.
  uint32_t Kind;
  /// The value, as Kind says.
  uint64_t Value;

  /// An empty piece: writes nothing.
  constexpr ICStringPieceT() noexcept : Count(0), Next(nullptr), Kind(0), Value(0) {}

  /// A piece whose fields are left unset, for a slot that is filled or linked later (a chain's
  /// second built-in piece when the chain adds a single piece). Reading it before then is an
  /// error.
  struct UnsetTag {};
  explicit ICStringPieceT(UnsetTag) noexcept {}

  /// @name Text pieces (Kind 1)
  /// @{
  /// A zero-terminated text; null counts as empty.
  ICStringPieceT(const Unit* text) noexcept { _SetText(text, text ? _Measure(text) : 0); }
  /// `length` units at `text` (a null text or a negative length: empty).
  ICStringPieceT(const Unit* text, int32_t length) noexcept {
    _SetText(text, text && length > 0 ? length : 0);
  }
  /// A range: a negative length means up to the terminator.
  ICStringPieceT(ICStringRangeT<Unit> range) noexcept {
    _SetText(range.Text, range.Text == nullptr ? 0
                         : range.Length < 0    ? _Measure(range.Text)
                                               : range.Length);
  }
  /// Any string of this width: its text and GetLength().
  template <class S>
  requires requires(const S& s) {
    { s.GetText() } -> std::convertible_to<const Unit*>;
    s.GetLength();
  }
  ICStringPieceT(const S& string) noexcept { _SetText(string.GetText(), string.GetLength()); }
  /// @}

  /// @name Code point pieces (Kind 2)
  /// A narrow 8-bit character is Latin-1, so from 0x80 on it takes two UTF-8 bytes.
  /// @{
  ICStringPieceT(char ch) noexcept { _SetCodePoint(static_cast<unsigned char>(ch)); }
  ICStringPieceT(char16_t unit) noexcept { _SetCodePoint(unit); }
  ICStringPieceT(char32_t codePoint) noexcept { _SetCodePoint(codePoint); }
  /// @}

  /// A 32-bit float (Kind 3), written as "%10.2f" writes it: '      3.50'.
  ICStringPieceT(float value) noexcept {
    Next = nullptr;
    Kind = PieceFloat;
    uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    Value = bits;
    Count = internal::MeasureFloatPiece(value, Unit{});
  }

  /// @name Integers in decimal (Kind 4 signed, Kind 5 unsigned), DefaultDecimalFormat
  /// @{
  ICStringPieceT(signed char v) noexcept { _SetSigned(v); }
  ICStringPieceT(short v) noexcept { _SetSigned(v); }
  ICStringPieceT(int v) noexcept { _SetSigned(v); }
  ICStringPieceT(long v) noexcept { _SetSigned(v); }
  ICStringPieceT(long long v) noexcept { _SetSigned(v); }
  ICStringPieceT(unsigned char v) noexcept { _SetUnsigned(v); }
  ICStringPieceT(unsigned short v) noexcept { _SetUnsigned(v); }
  ICStringPieceT(unsigned int v) noexcept { _SetUnsigned(v); }
  ICStringPieceT(unsigned long v) noexcept { _SetUnsigned(v); }
  ICStringPieceT(unsigned long long v) noexcept { _SetUnsigned(v); }
  /// @}

  ICStringPieceT(bool) = delete;

  /// A 32-bit value in hexadecimal (Kind 6), as FormatPointer writes it: '0x1A2B'. A pointer is
  /// cut to its low 32 bits.
  static ICStringPieceT Pointer(uint32_t value) noexcept {
    ICStringPieceT piece;
    piece.Kind = PiecePointer;
    piece.Value = value;
    piece.Count = FormatPointer(static_cast<Unit*>(nullptr), 0, value) - 1;
    return piece;
  }
  static ICStringPieceT Pointer(const void* pointer) noexcept {
    return Pointer(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pointer)));
  }

 private:
  friend struct internal::StringAccess;
  friend struct internal::PieceRun<Unit>;

  /// The text pointer of a Kind 1 piece.
  const Unit* _TextPointer() const noexcept {
    return reinterpret_cast<const Unit*>(static_cast<uintptr_t>(Value));
  }
  // char_traits::length folds to a constant for literals.
  static int32_t _Measure(const Unit* text) noexcept {
    return static_cast<int32_t>(std::char_traits<Unit>::length(text));
  }
  void _SetText(const Unit* text, int32_t count) noexcept {
    Next = nullptr;
    Kind = PieceText;
    Value = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(text));
    Count = count;
  }
  void _SetCodePoint(uint32_t codePoint) noexcept {
    Next = nullptr;
    Kind = PieceCodePoint;
    Value = codePoint;
    if (codePoint == 0)
      Count = 0;
    else if constexpr (sizeof(Unit) == 1)
      Count = codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
    else
      Count = 1;
  }
  void _SetSigned(long long v) noexcept {
    Next = nullptr;
    Kind = PieceSigned;
    Value = static_cast<uint64_t>(v);
    Count = FormatNumber(static_cast<Unit*>(nullptr), 0, v) - 1;
  }
  void _SetUnsigned(unsigned long long v) noexcept {
    Next = nullptr;
    Kind = PieceUnsigned;
    Value = v;
    Count = FormatNumber(static_cast<Unit*>(nullptr), 0, v) - 1;
  }
};

using ICStringPiece = ICStringPieceT<char>;       ///< a piece of a UTF-8 concatenation
using ICStringPieceW = ICStringPieceT<char16_t>;  ///< a piece of a UTF-16 concatenation

/// Writes the pieces from `first` on at `cursor`, each as its Kind says, and ends with a zero
/// unit; returns the cursor at that zero. A Kind 3 to 6 piece moves the cursor by its Count when
/// its text was written; a formatter that reports no room leaves the cursor where it was. There
/// is no capacity check: the caller has made room for the sum of the counts and a terminator.
IC_API char* WriteChain(char* cursor, const ICStringPieceT<char>* first) noexcept;
IC_API char16_t* WriteChain(char16_t* cursor, const ICStringPieceT<char16_t>* first) noexcept;

/// Links `count` pieces of an array in order, the last with Next null, and returns the first
/// (null for none).
template <class Unit>
inline ICStringPieceT<Unit>* LinkPieces(ICStringPieceT<Unit>* pieces, size_t count) noexcept {
  if (count == 0) return nullptr;
  for (size_t i = 0; i + 1 < count; ++i)
    pieces[i].Next = &pieces[i + 1];
  pieces[count - 1].Next = nullptr;
  return pieces;
}

/// The sum of the pieces' Count from `first` on.
template <class Unit>
inline int64_t SumPieces(const ICStringPieceT<Unit>* first) noexcept {
  int64_t sum = 0;
  for (const ICStringPieceT<Unit>* p = first; p; p = p->Next)
    sum += p->Count;
  return sum;
}

}  // namespace ic
