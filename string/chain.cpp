#include <ic/string/chain.h>

#include <cstring>

#include <ic/number/number_format.h>
#include <ic/platform/bounded_format.h>
#include <ic/string/utf8.h>

namespace ic {
namespace {

// The float piece's text: "%10.2f" of the value widened to double, in a buffer of 100 units,
// which holds any 32-bit float.
constexpr int kFloatBufferUnits = 100;

int FormatFloat(char* buffer, float value) noexcept {
  return platform::BoundedFormat(buffer, kFloatBufferUnits, "%10.2f", static_cast<double>(value));
}
int FormatFloat(char16_t* buffer, float value) noexcept {
  return platform::BoundedFormat(buffer, kFloatBufferUnits, u"%10.2f", static_cast<double>(value));
}

float FloatFromBits(uint64_t value) noexcept {
  const uint32_t bits = static_cast<uint32_t>(value);
  float f;
  std::memcpy(&f, &bits, sizeof f);
  return f;
}

template <class Unit>
Unit* WriteChainImpl(Unit* cursor, const ICStringPieceT<Unit>* piece) noexcept {
  for (; piece != nullptr; piece = piece->Next) {
    const int32_t count = piece->Count;
    if (count == 0) continue;
    // Text is by far the most common piece: copy it before dispatching on the other kinds.
    if (piece->Kind == PieceText) {
      std::memcpy(cursor, piece->_TextPointer(), static_cast<size_t>(count) * sizeof(Unit));
      cursor += count;
      continue;
    }
    switch (piece->Kind) {
      case PieceText:
        CopyUnits(cursor, piece->_TextPointer(), static_cast<size_t>(count));
        cursor += count;
        break;
      case PieceCodePoint:
        if constexpr (sizeof(Unit) == 1) {
          EncodeCodePoint(cursor, static_cast<uint32_t>(piece->Value));
        } else {
          *cursor++ = static_cast<Unit>(piece->Value & 0xffff);
        }
        break;
      case PieceFloat: {
        Unit text[kFloatBufferUnits];
        const int length = FormatFloat(text, FloatFromBits(piece->Value));
        if (length >= 0 && length <= count) {
          CopyUnits(cursor, text, static_cast<size_t>(length));
          // A count larger than the text (set by hand) is filled with blanks.
          for (int32_t i = length; i < count; ++i)
            cursor[i] = Unit(' ');
          cursor += count;
        }
        break;
      }
      case PieceSigned:
        if (FormatNumber(cursor, count + 1, static_cast<long long>(piece->Value)) == 0)
          cursor += count;
        break;
      case PieceUnsigned:
        if (FormatNumber(cursor, count + 1, static_cast<unsigned long long>(piece->Value)) == 0)
          cursor += count;
        break;
      case PiecePointer:
        if (FormatPointer(cursor, count + 1, static_cast<uint32_t>(piece->Value)) == 0)
          cursor += count;
        break;
      default:
        break;
    }
  }
  *cursor = 0;
  return cursor;
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

char* WriteChain(char* cursor, const ICStringPieceT<char>* first) noexcept {
  return WriteChainImpl(cursor, first);
}
char16_t* WriteChain(char16_t* cursor, const ICStringPieceT<char16_t>* first) noexcept {
  return WriteChainImpl(cursor, first);
}

template <class Unit>
const Unit* ICStringChainT<Unit>::GetChainText() const {
  if (!Result._IsEmptyData()) return Result.GetText();
  const int32_t sum = static_cast<int32_t>(SumPieces(First));
  if (sum != 0) {
    if (sum > Result.GetCapacity()) Result._Reserve(sum, 0);
    WriteChain(Result._GetBuffer(), First);
    Result._SetStoredLength(sum);
  }
  if (Result._IsEmptyData()) {
    // Even a chain of empty pieces ends with a block of its own.
    Result._Reserve(sizeof(Unit) == 1 ? 4 : 1, 0);
    Result.ClearText();
  }
  return Result.GetText();
}

template class ICStringChainT<char>;
template class ICStringChainT<char16_t>;

}  // namespace ic
