// PieceRun: a list of pieces read once. Walking a linked list costs one dependent load per
// piece, and a write of a chain needs the list several times (the total, the aliasing guard, the
// write itself), so the first pieces are gathered into an array in a single walk and everything
// after reads the array.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/piece.h>
#include <ic/string/write_steps.h>

namespace ic::internal {

template <class Unit>
struct PieceRun {
  using Piece = ICStringPieceT<Unit>;
  /// Pieces held in the array; a longer list keeps its tail linked in rest.
  static constexpr int kGathered = 16;

  /// The first size pieces of the list, in order.
  const Piece* items[kGathered];
  int size = 0;
  /// The pieces past the array, still linked; null when the array holds them all.
  const Piece* rest = nullptr;
  /// The sum of every piece's Count.
  int64_t sum = 0;

  PieceRun() noexcept {}
  explicit PieceRun(const Piece* first) noexcept { Gather(first); }

  void Gather(const Piece* first) noexcept {
    for (const Piece* p = first; p != nullptr; p = p->Next) {
      if (size == kGathered) {
        rest = p;
        sum += SumPieces(p);
        return;
      }
      items[size++] = p;
      sum += p->Count;
    }
  }

  /// True if the text pointer of some text piece lies within [begin, begin + count], both
  /// limits included.
  bool AnyTextWithin(const Unit* begin, int64_t count) const noexcept {
    auto within = [&](const Piece* p) {
      return p->Kind == PieceText && PointsInto(p->_TextPointer(), begin, count);
    };
    for (int i = 0; i < size; ++i)
      if (within(items[i])) return true;
    for (const Piece* p = rest; p != nullptr; p = p->Next)
      if (within(p)) return true;
    return false;
  }
};

/// Writes the run's pieces at `cursor` as WriteChain writes a list, ends with a zero unit, and
/// returns the cursor at that zero.
IC_API char* WritePieceRun(char* cursor, const PieceRun<char>& run) noexcept;
IC_API char16_t* WritePieceRun(char16_t* cursor, const PieceRun<char16_t>& run) noexcept;

}  // namespace ic::internal
