// PieceRun: a list of pieces gathered once. Lists shorter and longer than the array, the total,
// the aliasing test at its limits, and the writer against WriteChain on random lists of every
// kind; then chains long enough to spill past the array, through assignment and appending.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/piece_run.h>

#include "block_probe.h"
#include "counting_allocator.h"
#include "edit_test_util.h"

namespace ic {
namespace {

using internal::PieceRun;
using test::AllocationScope;
using test::Own;
using test::TextOf;
using test::Units;

// Pieces linked in order, held in a vector that does not move once linked.
template <class Unit>
struct PieceList {
  std::vector<ICStringPieceT<Unit>> pieces;
  void Link() {
    for (size_t i = 0; i < pieces.size(); ++i)
      pieces[i].Next = i + 1 < pieces.size() ? &pieces[i + 1] : nullptr;
  }
  const ICStringPieceT<Unit>* First() const { return pieces.empty() ? nullptr : &pieces[0]; }
};

TEST(PieceRun, GathersUpToTheArraySizeAndKeepsTheRestLinked) {
  const char* texts[] = {"a", "bb", "ccc"};
  for (int n : {0, 1, 15, 16, 17, 40}) {
    PieceList<char> list;
    int64_t sum = 0;
    for (int i = 0; i < n; ++i) {
      list.pieces.emplace_back(texts[i % 3]);
      sum += i % 3 + 1;
    }
    list.Link();
    const PieceRun<char> run(list.First());
    const int gathered = std::min(n, PieceRun<char>::kGathered);
    ASSERT_EQ(run.size, gathered) << n;
    EXPECT_EQ(run.sum, sum) << n;
    for (int i = 0; i < gathered; ++i)
      EXPECT_EQ(run.items[i], &list.pieces[static_cast<size_t>(i)]);
    if (n > PieceRun<char>::kGathered)
      EXPECT_EQ(run.rest, &list.pieces[PieceRun<char>::kGathered]);
    else
      EXPECT_EQ(run.rest, nullptr);
  }
}

TEST(PieceRun, AnyTextWithinIncludesBothLimits) {
  char block[32] = {};
  const char* begin = block + 8;
  for (int n : {3, 30}) {  // the candidate piece among the gathered ones, then in the rest
    for (int offset : {-1, 0, 5, 10, 11}) {
      PieceList<char> list;
      for (int i = 0; i < n - 1; ++i)
        list.pieces.emplace_back("elsewhere");
      list.pieces.emplace_back(begin + offset, 1);
      list.Link();
      const PieceRun<char> run(list.First());
      EXPECT_EQ(run.AnyTextWithin(begin, 10), offset >= 0 && offset <= 10)
          << "pieces " << n << " offset " << offset;
    }
  }
}

TEST(PieceRun, OnlyTextPiecesCount) {
  char block[8] = {};
  ICStringPiece number(42);
  // A number piece whose value happens to be an address inside the block.
  number.Value = reinterpret_cast<uintptr_t>(block + 2);
  number.Next = nullptr;
  const PieceRun<char> run(&number);
  EXPECT_FALSE(run.AnyTextWithin(block, 8));
}

// Random lists of every kind, including pieces with Count 0, unknown kinds and formats that
// report no room, written by both writers into canary-guarded buffers.
template <class Unit>
void CompareWriters(uint32_t seed) {
  using Piece = ICStringPieceT<Unit>;
  std::mt19937 rng(seed);
  const std::basic_string<Unit> words[] = {Units<Unit>(""), Units<Unit>("x"),
                                           Units<Unit>("seventeen-units--"),
                                           Units<Unit>(std::string(45, 'w').c_str())};
  for (int round = 0; round < 300; ++round) {
    PieceList<Unit> list;
    const int n = static_cast<int>(rng() % 41);
    for (int i = 0; i < n; ++i) {
      switch (rng() % 8) {
        case 0:
          list.pieces.emplace_back(U'\u00e9');
          break;
        case 1:
          list.pieces.emplace_back(-1234567);
          break;
        case 2:
          list.pieces.emplace_back(98765u);
          break;
        case 3:
          list.pieces.emplace_back(2.25f);
          break;
        case 4:
          list.pieces.push_back(Piece::Pointer(uint32_t{0xbeef}));
          break;
        case 5: {
          Piece odd(words[1].c_str());
          odd.Kind = 9;  // skipped
          list.pieces.push_back(odd);
          break;
        }
        case 6: {
          Piece shortNumber(123456);
          shortNumber.Count = 2;  // no room: the formatter writes nothing
          list.pieces.push_back(shortNumber);
          break;
        }
        default: {
          const auto& w = words[rng() % 4];
          list.pieces.emplace_back(w.c_str(), static_cast<int32_t>(w.size()));
        }
      }
    }
    list.Link();
    const PieceRun<Unit> run(list.First());
    const size_t room = static_cast<size_t>(run.sum) + 1;
    std::vector<Unit> ours(room + 16, Unit(0x7e)), expected(room + 16, Unit(0x7e));
    Unit* oursEnd = internal::WritePieceRun(ours.data() + 8, run);
    Unit* expectedEnd = WriteChain(expected.data() + 8, list.First());
    ASSERT_EQ(oursEnd - ours.data(), expectedEnd - expected.data()) << "round " << round;
    ASSERT_EQ(ours, expected) << "round " << round;
  }
}

TEST(PieceRun, WritesAsWriteChainNarrow) {
  CompareWriters<char>(11);
}
TEST(PieceRun, WritesAsWriteChainWide) {
  CompareWriters<char16_t>(12);
}

template <class T>
class LongChain : public ::testing::Test {};
TYPED_TEST_SUITE(LongChain, test::AllStringShapes);

// 20 operands: more pieces than the run gathers into its array.
TYPED_TEST(LongChain, AssignAndAppendAllocateOnce) {
  using Unit = typename TypeParam::UnitType;
  const auto a = Own<TypeParam>("ab");
  const auto dash = Units<Unit>("-");
  const Unit* d = dash.c_str();
  std::basic_string<Unit> expected;
  for (int i = 0; i < 10; ++i)
    expected += Units<Unit>("ab-");
  TypeParam s;
  {
    AllocationScope scope;
    s.Assign(a + d + a + d + a + d + a + d + a + d + a + d + a + d + a + d + a + d + a + d);
    EXPECT_EQ(scope.Allocations(), 1);
  }
  EXPECT_EQ(TextOf(s), expected);
  EXPECT_EQ(s.GetCapacity(), 30);
  {
    AllocationScope scope;
    s.Append(d + a + d + a + d + a + d + a + d + a + d + a + d + a + d + a + d + a + d + a);
    EXPECT_EQ(scope.Allocations(), 1);
  }
  for (int i = 0; i < 10; ++i)
    expected += Units<Unit>("-ab");
  EXPECT_EQ(TextOf(s), expected);
}

// The target's own text as the 19th operand, past the gathered array: the guard still sees it.
TYPED_TEST(LongChain, GuardFindsTheTargetInTheTail) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("self");
  const auto t = Own<ICStringUniqueT<Unit>>("x");
  s.Assign(t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + s + t);
  EXPECT_EQ(TextOf(s), Units<Unit>("xxxxxxxxxxxxxxxxxxselfx"));
  const std::basic_string<Unit> before = TextOf(s);
  s.Append(t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + t + s);
  std::basic_string<Unit> expected = before;
  expected.append(18, Unit('x'));
  expected += before;
  EXPECT_EQ(TextOf(s), expected);
}

TYPED_TEST(LongChain, GetChainTextOfALongChain) {
  using Unit = typename TypeParam::UnitType;
  const auto a = Own<TypeParam>("q");
  auto text = [&](const ICStringChainT<Unit>& chain) {
    return std::basic_string<Unit>(chain.GetChainText());
  };
  EXPECT_EQ(text(a + a + a + a + a + a + a + a + a + a + a + a + a + a + a + a + a + a),
            Units<Unit>("qqqqqqqqqqqqqqqqqq"));
}

}  // namespace
}  // namespace ic
