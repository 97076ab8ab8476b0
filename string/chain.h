// ICStringChain: the value of a concatenation expression.
//
//   ICStringUnique s = a + "; " + b + '!';
//
// Each operator+ adds one piece to a list that lives on the stack, inside the temporaries of the
// expression; nothing is copied until the chain is assigned or appended to a string, which then
// learns the total length, makes room once and writes every piece straight into place. A chain
// holds pointers into the texts of the expression, so it lives only as long as that expression.
#pragma once

#include <cstdint>

#include <ic/string/ic_string.h>
#include <ic/string/piece.h>
#include <ic/string/piece_run.h>

namespace ic {

template <class Unit>
class ICStringChainT {
 public:
  using Piece = ICStringPieceT<Unit>;

  /// Head of the list of pieces.
  Piece* First;
  /// Tail of the list, where a longer expression links its next piece.
  Piece* Last;
  /// The built-in first piece.
  Piece Left;
  /// The built-in second piece; only a chain of two operands uses it (and Left too is unused
  /// in a chain made of two chains).
  Piece Right;
  /// The written-out text; the empty data until a caller needs a text of the chain's own.
  mutable ICStringUniqueT<Unit> Result;

  /// Two operands: First leads to Left, Left to Right.
  ICStringChainT(const Piece& left, const Piece& right) noexcept : Left(left), Right(right) {
    Left.Next = &Right;
    Right.Next = nullptr;
    First = &Left;
    Last = &Right;
  }
  /// A longer expression: the new piece is linked behind the head chain's last piece.
  ICStringChainT(ICStringChainT& head, const Piece& tail) noexcept
      : Left(tail), Right(typename Piece::UnsetTag{}) {
    Left.Next = nullptr;
    head.Last->Next = &Left;
    First = head.First;
    Last = &Left;
  }
  /// A piece in front of a chain.
  ICStringChainT(const Piece& head, ICStringChainT& tail) noexcept
      : Left(head), Right(typename Piece::UnsetTag{}) {
    Left.Next = tail.First;
    First = &Left;
    Last = tail.Last;
  }
  /// Two chains, one behind the other.
  ICStringChainT(ICStringChainT& head, ICStringChainT& tail) noexcept
      : Left(typename Piece::UnsetTag{}), Right(typename Piece::UnsetTag{}) {
    head.Last->Next = tail.First;
    First = head.First;
    Last = tail.Last;
  }

  // The pieces point at each other: a chain never moves.
  ICStringChainT(const ICStringChainT&) = delete;
  ICStringChainT& operator=(const ICStringChainT&) = delete;

  /// The length of Result if it has been written, else the sum of the pieces' counts.
  int32_t GetChainLength() const noexcept {
    if (!IsResultUnwritten()) return Result.GetLength();
    return static_cast<int32_t>(SumPieces(First));
  }

  /// A zero-terminated text of the chain's own, written into Result on the first call. A chain
  /// of empty pieces still gets a block (of room 4 narrow, 1 wide) with an empty text.
  const Unit* GetChainText() const;

 private:
  friend struct internal::StringAccess;
  friend struct test::LayerAccess;

  /// True until Result has been written (it holds the empty data).
  bool IsResultUnwritten() const noexcept { return Result.GetText() == EmptyText<Unit>(); }

  /// If a text piece points into the target's block (from its text up to text plus capacity,
  /// both included), writes the whole chain into Result now, so that a write into the target
  /// cannot overwrite a piece before it is read.
  template <class Storage>
  void _GuardChain(const BasicICString<Unit, Storage>* target) const {
    if (!IsResultUnwritten()) return;
    internal::PieceRun<Unit> run(First);
    _GuardRun(target, run);
  }

  /// Reads the chain for a write into `target` (null: none): gathers the pieces into `run`,
  /// guards as _GuardChain does, and stores the chain's length in `length`. Returns Result's
  /// text when the chain has been written out, to be copied with its terminator; else null, and
  /// `run` holds the pieces to write.
  template <class Storage>
  const Unit* _ReadForWrite(const BasicICString<Unit, Storage>* target,
                            internal::PieceRun<Unit>& run, int32_t& length) const {
    if (IsResultUnwritten()) {
      run.Gather(First);
      _GuardRun(target, run);
      if (IsResultUnwritten()) {
        length = static_cast<int32_t>(run.sum);
        return nullptr;
      }
    }
    length = Result.GetLength();
    return Result.GetText();
  }

  template <class Storage>
  void _GuardRun(const BasicICString<Unit, Storage>* target,
                 const internal::PieceRun<Unit>& run) const {
    // Nothing can be overwritten in a target without a block of its own.
    if (target == nullptr || target->GetText() == EmptyText<Unit>()) return;
    if (run.AnyTextWithin(target->GetText(), target->GetCapacity())) Result.AssignPieces(First);
  }
};

using ICStringChain = ICStringChainT<char>;       ///< a UTF-8 concatenation
using ICStringChainW = ICStringChainT<char16_t>;  ///< a UTF-16 concatenation

extern template class IC_API ICStringChainT<char>;
extern template class IC_API ICStringChainT<char16_t>;

namespace internal {
template <class Unit>
TextArgument<Unit> MakeTextArgument(const ICStringChainT<Unit>& chain) {
  TextArgument<Unit> a;
  a.text = chain.GetChainText();
  a.length = chain.GetChainLength();
  return a;
}
}  // namespace internal

/// @name operator+: strings of any shape, zero-terminated texts, single units and pieces of one
/// width, and chains of them, in any order and number
/// @{
template <class U, class S1, class S2>
ICStringChainT<U> operator+(const BasicICString<U, S1>& a, const BasicICString<U, S2>& b) {
  return {ICStringPieceT<U>(a), ICStringPieceT<U>(b)};
}
template <class U, class S>
ICStringChainT<U> operator+(const BasicICString<U, S>& a, const U* b) {
  return {ICStringPieceT<U>(a), ICStringPieceT<U>(b)};
}
template <class U, class S>
ICStringChainT<U> operator+(const U* a, const BasicICString<U, S>& b) {
  return {ICStringPieceT<U>(a), ICStringPieceT<U>(b)};
}
template <class U, class S>
ICStringChainT<U> operator+(const BasicICString<U, S>& a, U b) {
  return {ICStringPieceT<U>(a), ICStringPieceT<U>(b)};
}
template <class U, class S>
ICStringChainT<U> operator+(U a, const BasicICString<U, S>& b) {
  return {ICStringPieceT<U>(a), ICStringPieceT<U>(b)};
}
template <class U, class S>
ICStringChainT<U> operator+(const BasicICString<U, S>& a, const ICStringPieceT<U>& b) {
  return {ICStringPieceT<U>(a), b};
}
template <class U, class S>
ICStringChainT<U> operator+(const ICStringPieceT<U>& a, const BasicICString<U, S>& b) {
  return {a, ICStringPieceT<U>(b)};
}

template <class U, class S>
ICStringChainT<U> operator+(ICStringChainT<U>&& a, const BasicICString<U, S>& b) {
  return {a, ICStringPieceT<U>(b)};
}
template <class U>
ICStringChainT<U> operator+(ICStringChainT<U>&& a, const U* b) {
  return {a, ICStringPieceT<U>(b)};
}
template <class U>
ICStringChainT<U> operator+(ICStringChainT<U>&& a, U b) {
  return {a, ICStringPieceT<U>(b)};
}
template <class U>
ICStringChainT<U> operator+(ICStringChainT<U>&& a, const ICStringPieceT<U>& b) {
  return {a, b};
}

template <class U, class S>
ICStringChainT<U> operator+(const BasicICString<U, S>& a, ICStringChainT<U>&& b) {
  return {ICStringPieceT<U>(a), b};
}
template <class U>
ICStringChainT<U> operator+(const U* a, ICStringChainT<U>&& b) {
  return {ICStringPieceT<U>(a), b};
}
template <class U>
ICStringChainT<U> operator+(U a, ICStringChainT<U>&& b) {
  return {ICStringPieceT<U>(a), b};
}
template <class U>
ICStringChainT<U> operator+(const ICStringPieceT<U>& a, ICStringChainT<U>&& b) {
  return {a, b};
}

template <class U>
ICStringChainT<U> operator+(ICStringChainT<U>&& a, ICStringChainT<U>&& b) {
  return {a, b};
}
/// @}

}  // namespace ic
