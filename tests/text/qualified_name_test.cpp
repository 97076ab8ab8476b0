// GetTextBeforeColon, GetTextAfterColon, KeepTextBeforeColon and MakeQualifiedName.
#include <gtest/gtest.h>

#include <string>

#include <ic/string/ic_string.h>
#include <ic/string/null_data.h>

#include "../string/block_probe.h"
#include "../string/counting_allocator.h"
#include "../string/owned_text.h"

namespace ic {
namespace {

using test::Owned;
using test::TextOf;
using test::Units;

template <class S>
class QualifiedNames : public ::testing::Test {};
TYPED_TEST_SUITE(QualifiedNames, test::AllStringShapes);

template <class S>
bool IsEmptyData(const S& s) {
  return s.GetText() == EmptyText<typename S::UnitType>();
}

TYPED_TEST(QualifiedNames, TextBeforeColon) {
  EXPECT_EQ(TextOf(Owned<TypeParam>("a:b:c").GetTextBeforeColon()), "a");
  EXPECT_TRUE(IsEmptyData(Owned<TypeParam>(":x").GetTextBeforeColon()));
  EXPECT_TRUE(IsEmptyData(Owned<TypeParam>("x").GetTextBeforeColon()));
  const TypeParam s = Owned<TypeParam>("p:l");
  s.GetTextBeforeColon();
  EXPECT_EQ(TextOf(s), "p:l");
}

TYPED_TEST(QualifiedNames, TextAfterColon) {
  EXPECT_EQ(TextOf(Owned<TypeParam>("a:b:c").GetTextAfterColon()), "b:c");
  EXPECT_EQ(TextOf(Owned<TypeParam>(":x").GetTextAfterColon()), "x");
  EXPECT_TRUE(IsEmptyData(Owned<TypeParam>("x:").GetTextAfterColon()));
  EXPECT_TRUE(IsEmptyData(TypeParam().GetTextAfterColon()));
  const TypeParam x = Owned<TypeParam>("x");
  const TypeParam copy = x.GetTextAfterColon();
  EXPECT_EQ(TextOf(copy), "x");
  EXPECT_NE(copy.GetText(), x.GetText());  // a new block, also for a shared string
}

TYPED_TEST(QualifiedNames, KeepTextBeforeColon) {
  TypeParam s = Owned<TypeParam>("pre:fix:x");
  const auto* block = s.GetText();
  s.KeepTextBeforeColon();
  EXPECT_EQ(TextOf(s), "pre");
  EXPECT_EQ(s.GetText(), block);
  TypeParam x = Owned<TypeParam>("x");
  const auto* xBlock = x.GetText();
  x.KeepTextBeforeColon();
  EXPECT_EQ(x.GetLength(), 0);  // no colon: cleared, not kept
  EXPECT_EQ(x.GetText(), xBlock);
  EXPECT_EQ(x.GetText()[0], 0);
  TypeParam empty;
  empty.KeepTextBeforeColon();
  EXPECT_EQ(empty.GetLength(), 0);
}

TYPED_TEST(QualifiedNames, KeepTextBeforeColonLeavesOtherOwnersAlone) {
  const TypeParam owner = Owned<TypeParam>("a:b");
  TypeParam s = owner;
  s.KeepTextBeforeColon();
  EXPECT_EQ(TextOf(s), "a");
  EXPECT_EQ(TextOf(owner), "a:b");
  const TypeParam owner2 = Owned<TypeParam>("ab");
  TypeParam t = owner2;
  t.KeepTextBeforeColon();
  EXPECT_EQ(t.GetLength(), 0);
  EXPECT_EQ(TextOf(owner2), "ab");
  if constexpr (TypeParam::IsShared) {
    EXPECT_TRUE(IsEmptyData(t));  // the shared block loses this owner
    EXPECT_EQ(test::ShareWord(owner2.GetText()), 0);
  }
}

TEST(QualifiedNamesView, ForeignTextTakesABlockFirst) {
  const char foreign[] = "ns:local";
  ICStringView v(foreign);
  v.KeepTextBeforeColon();
  EXPECT_STREQ(v.GetText(), "ns");
  EXPECT_TRUE(v.OwnsBlock());
  EXPECT_STREQ(foreign, "ns:local");
  const char16_t plain[] = u"nocolon";
  ICStringViewW w(plain);
  w.KeepTextBeforeColon();
  EXPECT_TRUE(w.OwnsBlock());
  EXPECT_EQ(w.GetLength(), 0);
  EXPECT_EQ(std::u16string(plain), u"nocolon");
}

TYPED_TEST(QualifiedNames, MakeQualifiedName) {
  using Unit = typename TypeParam::UnitType;
  const auto n = Units<Unit>("n"), empty = Units<Unit>("");
  EXPECT_EQ(TextOf(TypeParam().MakeQualifiedName(n.c_str())), "n");
  EXPECT_TRUE(IsEmptyData(TypeParam().MakeQualifiedName(empty.c_str())));
  EXPECT_TRUE(IsEmptyData(TypeParam().MakeQualifiedName(nullptr)));
  const TypeParam p = Owned<TypeParam>("p");
  EXPECT_EQ(TextOf(p.MakeQualifiedName(n.c_str())), "p:n");
  EXPECT_EQ(TextOf(p.MakeQualifiedName(empty.c_str())), "p:");
  EXPECT_EQ(TextOf(p.MakeQualifiedName(nullptr)), "p:");
  test::AllocationScope scope;
  const TypeParam name = p.MakeQualifiedName(n.c_str());
  EXPECT_EQ(scope.Allocations(), 1);
  EXPECT_EQ(name.GetCapacity(), 3);
}

TEST(QualifiedNamesView, EmptyPrefixViewsTheLocalName) {
  const char16_t local[] = u"name";
  const ICStringViewW result = ICStringViewW().MakeQualifiedName(local);
  EXPECT_EQ(result.GetText(), local);
  EXPECT_FALSE(result.OwnsBlock());
  const ICStringUniqueW copy = ICStringUniqueW().MakeQualifiedName(local);
  EXPECT_NE(copy.GetText(), local);
  EXPECT_EQ(std::u16string(copy.GetText()), u"name");
}

}  // namespace
}  // namespace ic
