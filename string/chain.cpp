#include <ic/string/chain.h>

#include <cstring>

#include <ic/number/internal/fixed_float.h>
#include <ic/number/number_format.h>
#include <ic/platform/export.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/move_units.h>
#include <ic/string/utf8.h>

namespace ic {
namespace {

// The float piece's text: the one fixed float form of the number formatters.
constexpr int kFloatBufferUnits = internal::kFixedFloatUnits;

template <class Unit>
int FormatFloat(Unit* buffer, float value) noexcept {
  return internal::FormatFixedFloat(buffer, value);
}

float FloatFromBits(uint64_t value) noexcept {
  const uint32_t bits = static_cast<uint32_t>(value);
  float f;
  std::memcpy(&f, &bits, sizeof f);
  return f;
}

// Writes one piece of a kind other than text, which WritePiece copies itself, and returns the
// cursor behind it. Out of line so that the loops over mostly-text lists stay small.
template <class Unit>
IC_NOINLINE Unit* WriteFormattedPiece(Unit* cursor, const ICStringPieceT<Unit>& piece) noexcept {
  const int32_t count = piece.Count;
  switch (piece.Kind) {
    case PieceCodePoint:
      if constexpr (sizeof(Unit) == 1) {
        EncodeCodePoint(cursor, static_cast<uint32_t>(piece.Value));
      } else {
        *cursor++ = static_cast<Unit>(piece.Value & 0xffff);
      }
      return cursor;
    case PieceFloat: {
      Unit text[kFloatBufferUnits];
      const int length = FormatFloat(text, FloatFromBits(piece.Value));
      if (length < 0 || length > count) return cursor;
      CopyUnits(cursor, text, static_cast<size_t>(length));
      // A count larger than the text (set by hand) is filled with blanks.
      for (int32_t i = length; i < count; ++i)
        cursor[i] = Unit(' ');
      return cursor + count;
    }
    case PieceSigned:
      if (FormatNumber(cursor, count + 1, static_cast<long long>(piece.Value)) == 0)
        return cursor + count;
      return cursor;
    case PieceUnsigned:
      if (FormatNumber(cursor, count + 1, static_cast<unsigned long long>(piece.Value)) == 0)
        return cursor + count;
      return cursor;
    case PiecePointer:
      if (FormatPointer(cursor, count + 1, static_cast<uint32_t>(piece.Value)) == 0)
        return cursor + count;
      return cursor;
    default:
      return cursor;
  }
}

// One piece: text, by far the most common, is copied before any dispatch on the other kinds.
template <class Unit>
inline Unit* WritePiece(Unit* cursor, const ICStringPieceT<Unit>& piece) noexcept {
  const int32_t count = piece.Count;
  if (count == 0) return cursor;
  if (piece.Kind == PieceText) {
    MoveUnits(cursor, internal::StringAccess::_TextPointer(piece), static_cast<size_t>(count));
    return cursor + count;
  }
  return WriteFormattedPiece(cursor, piece);
}

template <class Unit>
Unit* WriteChainImpl(Unit* cursor, const ICStringPieceT<Unit>* piece) noexcept {
  for (; piece != nullptr; piece = piece->Next)
    cursor = WritePiece(cursor, *piece);
  *cursor = 0;
  return cursor;
}

template <class Unit>
Unit* WritePieceRunImpl(Unit* cursor, const internal::PieceRun<Unit>& run) noexcept {
  // The size is read once: the unit stores below may alias anything as far as the compiler
  // knows.
  const int size = run.size;
  for (int i = 0; i < size; ++i)
    cursor = WritePiece(cursor, *run.items[i]);
  return WriteChainImpl(cursor, run.rest);
}

}  // namespace

namespace internal {
int32_t MeasureFloatPiece(float value, char) noexcept {
  char text[kFloatBufferUnits];
  const int length = FormatFloat(text, value);
  return length > 0 ? length : 0;
}
int32_t MeasureFloatPiece(float value, char16_t) noexcept {
  char16_t text[kFloatBufferUnits];
  const int length = FormatFloat(text, value);
  return length > 0 ? length : 0;
}
}  // namespace internal

namespace internal {
char* WritePieceRun(char* cursor, const PieceRun<char>& run) noexcept {
  return WritePieceRunImpl(cursor, run);
}
char16_t* WritePieceRun(char16_t* cursor, const PieceRun<char16_t>& run) noexcept {
  return WritePieceRunImpl(cursor, run);
}
}  // namespace internal

char* WriteChain(char* cursor, const ICStringPieceT<char>* first) noexcept {
  return WriteChainImpl(cursor, first);
}
char16_t* WriteChain(char16_t* cursor, const ICStringPieceT<char16_t>* first) noexcept {
  return WriteChainImpl(cursor, first);
}

template <class Unit>
const Unit* ICStringChainT<Unit>::GetChainText() const {
  if (!internal::StringAccess::_IsEmptyData(Result)) return Result.GetText();
  const internal::PieceRun<Unit> run(First);
  const int32_t sum = static_cast<int32_t>(run.sum);
  if (sum != 0) {
    if (sum > Result.GetCapacity()) internal::StringAccess::_Reserve(Result, sum, 0);
    internal::WritePieceRun(internal::StringAccess::_GetBuffer(Result), run);
    internal::StringAccess::_SetStoredLength(Result, sum);
  }
  if (internal::StringAccess::_IsEmptyData(Result)) {
    // Even a chain of empty pieces ends with a block of its own.
    internal::StringAccess::_Reserve(Result, sizeof(Unit) == 1 ? 4 : 1, 0);
    Result.ClearText();
  }
  return Result.GetText();
}

template class ICStringChainT<char>;
template class ICStringChainT<char16_t>;

}  // namespace ic
