// Concatenation chains and pieces: operator+, GetChainLength, WriteChain, GetChainText, the
// guard against a chain that holds the target's own text, AssignPieces and AppendPieces.
#include <gtest/gtest.h>

#include <string>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>

#include "block_probe.h"
#include "counting_allocator.h"
#include "edit_test_util.h"
#include "layer_access.h"

namespace ic {
namespace {

using test::AllocationScope;
using test::Own;
using test::TextOf;
using test::Units;

template <class T>
class ChainAnyShape : public ::testing::Test {};
using AllShapes = test::AllStringShapes;
TYPED_TEST_SUITE(ChainAnyShape, AllShapes);

TYPED_TEST(ChainAnyShape, AssignWritesOnceWithOneAllocation) {
  using Unit = typename TypeParam::UnitType;
  const auto a = Own<TypeParam>("alpha");
  const auto b = Own<ICStringSharedT<Unit>>("beta");
  const auto c = Own<ICStringUniqueT<Unit>>("gamma");
  const auto sep = Units<Unit>(", ");
  TypeParam s;
  AllocationScope scope;
  s.Assign(a + sep.c_str() + b + sep.c_str() + c + Unit('!') + sep.c_str() + a);
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(TextOf(s), Units<Unit>("alpha, beta, gamma!, alpha"));
  EXPECT_EQ(s.GetCapacity(), s.GetLength());
}

TYPED_TEST(ChainAnyShape, AppendGrowsOnce) {
  using Unit = typename TypeParam::UnitType;
  const auto a = Own<TypeParam>("a");
  const auto b = Own<TypeParam>("b");
  TypeParam s = Own<TypeParam>("start:");
  AllocationScope scope;
  s.Append(a + b + a + b);
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(TextOf(s), Units<Unit>("start:abab"));
  s += b + a;
  EXPECT_EQ(TextOf(s), Units<Unit>("start:ababba"));
}

TYPED_TEST(ChainAnyShape, AssignOfItsOwnTextGoesThroughTheGuard) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("old");
  const auto x = Units<Unit>("x");
  s.Assign(x.c_str() + s);
  EXPECT_EQ(TextOf(s), Units<Unit>("xold"));
  s.Assign(s + s + x.c_str());
  EXPECT_EQ(TextOf(s), Units<Unit>("xoldxoldx"));
  s.Append(s + x.c_str() + s);
  EXPECT_EQ(TextOf(s), Units<Unit>("xoldxoldxxoldxoldxxxoldxoldx"));
}

TYPED_TEST(ChainAnyShape, GuardOnlyWhenNeeded) {
  using Unit = typename TypeParam::UnitType;
  const auto a = Own<TypeParam>("abc");
  const auto b = Own<TypeParam>("def");
  auto chain = a + b;
  TypeParam target = Own<TypeParam>("zzzzzzzzzz");
  ic::test::LayerAccess::_GuardChain(chain, &target);
  EXPECT_TRUE(ic::test::HoldsEmptyData(chain.Result));
  ic::test::LayerAccess::_GuardChain(chain, &a);
  EXPECT_FALSE(ic::test::HoldsEmptyData(chain.Result));
  EXPECT_EQ(TextOf(chain.Result), Units<Unit>("abcdef"));
  EXPECT_EQ(chain.GetChainLength(), 6);
}

TYPED_TEST(ChainAnyShape, EmptyChain) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam e1, e2;
  TypeParam s = Own<TypeParam>("abc");
  s.Assign(e1 + e2);
  EXPECT_EQ(s.GetLength(), 0);
  auto chain = e1 + e2;
  EXPECT_EQ(chain.GetChainLength(), 0);
  const Unit* text = chain.GetChainText();
  EXPECT_EQ(text[0], Unit(0));
  EXPECT_FALSE(ic::test::HoldsEmptyData(chain.Result));
  EXPECT_EQ(chain.Result.GetCapacity(), sizeof(Unit) == 1 ? 4 : 1);
}

TYPED_TEST(ChainAnyShape, ChainOperandsInEveryPosition) {
  using Unit = typename TypeParam::UnitType;
  const auto a = Own<TypeParam>("a");
  const auto b = Own<TypeParam>("b");
  const auto t = Units<Unit>("t");
  TypeParam s;
  s.Assign((a + b) + (b + a));
  EXPECT_EQ(TextOf(s), Units<Unit>("abba"));
  s.Assign(t.c_str() + (a + b));
  EXPECT_EQ(TextOf(s), Units<Unit>("tab"));
  s.Assign(a + (b + t.c_str()));
  EXPECT_EQ(TextOf(s), Units<Unit>("abt"));
  s.Assign(Unit('[') + a + Unit(']'));
  EXPECT_EQ(TextOf(s), Units<Unit>("[a]"));
  s.Assign(a + ICStringPieceT<Unit>(42) + b + ICStringPieceT<Unit>(-7LL));
  EXPECT_EQ(TextOf(s), Units<Unit>("a42b-7"));
}

TYPED_TEST(ChainAnyShape, AssignToSharedLeavesOtherOwnersAlone) {
  using Unit = typename TypeParam::UnitType;
  ICStringSharedT<Unit> a = Own<ICStringSharedT<Unit>>("original");
  ICStringSharedT<Unit> b(a);
  const auto x = Own<TypeParam>("xy");
  b.Assign(x + x);
  EXPECT_EQ(TextOf(a), Units<Unit>("original"));
  EXPECT_EQ(TextOf(b), Units<Unit>("xyxy"));
  ICStringSharedT<Unit> c(a);
  c.Append(x + x);
  EXPECT_EQ(TextOf(a), Units<Unit>("original"));
  EXPECT_EQ(TextOf(c), Units<Unit>("originalxyxy"));
}

TYPED_TEST(ChainAnyShape, AssignKeepsALargeEnoughBlock) {
  using Unit = typename TypeParam::UnitType;
  TypeParam s = Own<TypeParam>("a rather long text of some length");
  const Unit* block = s.GetText();
  const auto a = Own<ICStringUniqueT<Unit>>("ab");
  AllocationScope scope;
  s.Assign(a + a);
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(scope.Allocations(), 0);
  EXPECT_EQ(TextOf(s), Units<Unit>("abab"));
}

TYPED_TEST(ChainAnyShape, PiecesOfAllKinds) {
  using Unit = typename TypeParam::UnitType;
  using Piece = ICStringPieceT<Unit>;
  TypeParam s;
  s.AssignPieces(Piece(Units<Unit>("t=").c_str()), Piece(U'x'), Piece(3.5f), Piece(-12),
                 Piece(18446744073709551615ull), Piece::Pointer(uint32_t{0x1a2b}));
  EXPECT_EQ(TextOf(s), Units<Unit>("t=x      3.50-12184467440737095516150x1A2B"));
  s.AppendPieces(Piece(Units<Unit>("!").c_str()), Piece(0u));
  EXPECT_EQ(TextOf(s), Units<Unit>("t=x      3.50-12184467440737095516150x1A2B!0"));
}

TYPED_TEST(ChainAnyShape, TenPiecesAndTheListForm) {
  using Unit = typename TypeParam::UnitType;
  using Piece = ICStringPieceT<Unit>;
  TypeParam s;
  AllocationScope scope;
  s.AssignPieces(0, 1, 2, 3, 4, 5, 6, 7, 8, 9);
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(TextOf(s), Units<Unit>("0123456789"));
  s.AppendPieces(Unit('a'), Unit('b'));
  EXPECT_EQ(TextOf(s), Units<Unit>("0123456789ab"));
  // The list form with an all-empty list leaves an assigned string unchanged.
  Piece empty1, empty2;
  empty1.Next = &empty2;
  s.AssignPieces(&empty1);
  EXPECT_EQ(TextOf(s), Units<Unit>("0123456789ab"));
  s.AssignPieces(static_cast<const Piece*>(nullptr));
  EXPECT_EQ(TextOf(s), Units<Unit>("0123456789ab"));
}

TEST(ChainNarrow, LatinOneAndCodePointPieces) {
  ICStringUnique s;
  s.AssignPieces('\xe9', U'\U0001F600', "z");
  EXPECT_EQ(TextOf(s), "\xc3\xa9\xf0\x9f\x98\x80z");
}

TEST(ChainWide, CodePointPieceWritesTheLow16Bits) {
  ICStringUniqueW s;
  s.AssignPieces(U'\x263a', u"z");
  EXPECT_EQ(TextOf(s), std::u16string(u"\x263az"));
}

TEST(WriteChain, UnknownKindsAndFailedFormatsAreSkipped) {
  ICStringPiece a("ab");
  ICStringPiece odd;
  odd.Kind = 99;
  odd.Count = 3;
  ICStringPiece small(12345);
  small.Count = 2;  // the formatter reports no room: the cursor stays
  ICStringPiece c("cd");
  a.Next = &odd;
  odd.Next = &small;
  small.Next = &c;
  c.Next = nullptr;
  char buffer[16];
  std::memset(buffer, '#', sizeof buffer);
  char* end = WriteChain(buffer, &a);
  EXPECT_EQ(end - buffer, 4);
  EXPECT_STREQ(buffer, "abcd");
  EXPECT_EQ(WriteChain(buffer, nullptr), buffer);
  EXPECT_EQ(buffer[0], 0);
}

TEST(ChainText, GetChainTextGivesAZeroTerminatedText) {
  const ICStringUnique a("left-"), b("right");
  // A chain of two operands holds its own pieces and may be named; a longer one lives only as
  // long as the expression that makes it.
  auto chain = a + b;
  EXPECT_EQ(chain.GetChainLength(), 10);
  EXPECT_STREQ(chain.GetChainText(), "left-right");
  EXPECT_EQ(chain.GetChainLength(), 10);
  EXPECT_EQ(chain.Result.GetCapacity(), 10);
  EXPECT_STREQ((a + "+" + b + "!").GetChainText(), "left-+right!");
}

TEST(ChainView, ViewTargetOfForeignTextInTheChain) {
  char foreign[] = "foreign";
  ICStringView v(foreign);
  v.Assign(v + "+" + v);
  EXPECT_STREQ(foreign, "foreign");
  EXPECT_EQ(TextOf(v), "foreign+foreign");
}

TEST(ChainInsertAndReplace, ChainsAsArguments) {
  const ICStringUnique a("AB"), b("CD");
  ICStringUnique s("0123");
  s.Insert(a + b, 2);
  EXPECT_EQ(TextOf(s), "01ABCD23");
  EXPECT_EQ(s.Replace(a + b, b + a, 0), 1);
  EXPECT_EQ(TextOf(s), "01CDAB23");
}

}  // namespace
}  // namespace ic
