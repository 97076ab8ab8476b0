// Squeeze, SqueezeTrim, KeepOnly, RemoveAll, Translate, ExpandDoubleSpaces, RemoveBalanced,
// Reverse and CountCode.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>

#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>

#include "../string/block_probe.h"
#include "../string/counting_allocator.h"
#include "../string/owned_text.h"

namespace ic {
namespace {

using test::Owned;
using test::TextOf;
using test::Units;
using test::Utf8;

template <class S>
class Filters : public ::testing::Test {};
TYPED_TEST_SUITE(Filters, test::AllStringShapes);

template <class S>
struct Sets {
  using Unit = typename S::UnitType;
  std::basic_string<Unit> a, b;
  Sets(const std::string& x, const std::string& y) : a(Units<Unit>(x)), b(Units<Unit>(y)) {}
};

template <class S>
std::string Squeezed(const std::string& text, const std::string& keep, char replacement,
                     const std::string& collapse, bool trim) {
  using Unit = typename S::UnitType;
  const Sets<S> sets(keep, collapse);
  S s = Owned<S>(text);
  if (trim)
    s.SqueezeTrim(sets.a.c_str(), Unit(replacement), sets.b.c_str());
  else
    s.Squeeze(sets.a.c_str(), Unit(replacement), sets.b.c_str());
  EXPECT_EQ(s.GetText()[s.GetLength()], 0);
  return TextOf(s);
}

TYPED_TEST(Filters, SqueezeExamples) {
  EXPECT_EQ(Squeezed<TypeParam>("a  b", "", '_', " ", false), "a_b");
  EXPECT_EQ(Squeezed<TypeParam>("  a  b  ", "", '_', " ", true), "a_b");
  EXPECT_EQ(Squeezed<TypeParam>("  a", "", '_', " ", false), "_a");
  EXPECT_EQ(Squeezed<TypeParam>("   ", "", '_', " ", false), "_");
  EXPECT_EQ(Squeezed<TypeParam>("   ", "", '_', " ", true), "");
  EXPECT_EQ(Squeezed<TypeParam>("a \n\n  b", "\n", '_', " \n", false), "a_\n\n_b");
  EXPECT_EQ(Squeezed<TypeParam>("", "", '_', " ", false), "");
}

TEST(FiltersNarrow, SqueezeReplacementAndCodePoints) {
  ICStringUnique s("a\u00a0\u00a0b  c");
  s.Squeeze(nullptr, '\0', "\u00a0 ");
  EXPECT_STREQ(s.GetText(), "a b c");
  ICStringUnique t("x--y");
  t.Squeeze(nullptr, static_cast<char>(0xC3), "-");
  EXPECT_STREQ(t.GetText(), "x y");
  ICStringUniqueW w(u"x--y");
  w.Squeeze(nullptr, u'\u2014', u"-");
  EXPECT_EQ(std::u16string(w.GetText()), u"x\u2014y");
}

TYPED_TEST(Filters, NothingToDoLeavesTheBlockUntouched) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam owner = Owned<TypeParam>("a b(c");
  TypeParam s = owner;
  const auto* block = s.GetText();
  const auto space = Units<Unit>(" "), xyz = Units<Unit>("xyz"), spec = Units<Unit>("a..z (");
  const auto open = Units<Unit>("["), close = Units<Unit>("]");
  {
    test::AllocationScope scope;
    s.Squeeze(nullptr, Unit(' '), space.c_str());
    s.SqueezeTrim(nullptr, Unit(' '), space.c_str());
    s.RemoveAll(xyz.c_str());
    s.RemoveAll(Unit('q'));
    s.Translate(xyz.c_str(), space.c_str());
    s.ExpandDoubleSpaces(xyz.c_str());
    s.RemoveBalanced(open.c_str(), close.c_str());
    s.RemoveBalanced(Unit('['), Unit(']'), Unit('\\'));
    EXPECT_EQ(s.CountCode(Unit('b')), 1);
    EXPECT_EQ(scope.Allocations(), 0);
    EXPECT_EQ(scope.Frees(), 0);
  }
  s.KeepOnly(spec.c_str());  // its parsed set may allocate; the block stays
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(TextOf(s), "a b(c");
  if constexpr (TypeParam::IsShared) {
    EXPECT_EQ(test::ShareWord(block), 1);
  }
}

TYPED_TEST(Filters, ChangesLeaveOtherOwnersAndForeignTextAlone) {
  using Unit = typename TypeParam::UnitType;
  const auto set = Units<Unit>("b");
  const TypeParam owner = Owned<TypeParam>("abcb");
  TypeParam s = owner;
  s.RemoveAll(set.c_str());
  EXPECT_EQ(TextOf(s), "ac");
  EXPECT_EQ(TextOf(owner), "abcb");
  const auto foreign = Units<Unit>("abc");
  TypeParam view(foreign.c_str());
  view.Reverse(3);
  EXPECT_EQ(TextOf(view), "cba");
  EXPECT_EQ(foreign, Units<Unit>("abc"));
  TypeParam other = owner;
  other.Translate(Unit('a'), Unit('z'));
  EXPECT_EQ(TextOf(other), "zbcb");
  EXPECT_EQ(TextOf(owner), "abcb");
}

template <class S>
std::string Kept(const std::string& text, const std::string& spec) {
  const auto units = Units<typename S::UnitType>(spec);
  S s = Owned<S>(text);
  return TextOf(s.KeepOnly(units.c_str()));
}

TYPED_TEST(Filters, KeepOnlyRanges) {
  EXPECT_EQ(Kept<TypeParam>("a1b2", "0..9"), "12");
  EXPECT_EQ(Kept<TypeParam>("abcdz!", "a..cz"), "abcz");
  EXPECT_EQ(Kept<TypeParam>("a.b..c", "."), "...");
  EXPECT_EQ(Kept<TypeParam>("a.b..c", "a.."), "a...");  // no fourth code point: three singles
  EXPECT_EQ(Kept<TypeParam>("abc", ""), "");
  TypeParam s = Owned<TypeParam>("abc");
  s.KeepOnly(nullptr);
  EXPECT_EQ(s.GetLength(), 0);
}

TYPED_TEST(Filters, RemoveAllSetsAndCodes) {
  using Unit = typename TypeParam::UnitType;
  const auto set = Units<Unit>("ae");
  EXPECT_EQ(TextOf(Owned<TypeParam>("banana bread").RemoveAll(set.c_str())), "bnn brd");
  EXPECT_EQ(TextOf(Owned<TypeParam>("banana").RemoveAll(Unit('n'))), "baaa");
  EXPECT_EQ(TextOf(Owned<TypeParam>("banana").RemoveAll(static_cast<const Unit*>(nullptr))),
            "banana");
}

template <class S>
std::string Translated(const std::string& text, const std::string& from, const std::string& to) {
  const Sets<S> sets(from, to);
  S s = Owned<S>(text);
  return TextOf(s.Translate(sets.a.c_str(), sets.b.c_str()));
}

TYPED_TEST(Filters, TranslateExamples) {
  EXPECT_EQ(Translated<TypeParam>("aabbcc", "abc", "xy"), "xxyy");
  EXPECT_EQ(Translated<TypeParam>("aabbcc", "", "xy"), "aabbcc");
  EXPECT_EQ(Translated<TypeParam>("aabbcc", "b", ""), "aacc");
  EXPECT_EQ(Translated<TypeParam>("abab", "aa", "xy"), "xbxb");  // the first place wins
}

TEST(FiltersNarrow, TranslateGrowsIntoMoreBytes) {
  ICStringShared s("aaa");
  const ICStringShared other = s;
  s.Translate(U'a', "\u20ac");
  EXPECT_STREQ(s.GetText(), "\u20ac\u20ac\u20ac");
  EXPECT_EQ(s.GetLength(), 9);
  EXPECT_STREQ(other.GetText(), "aaa");
  ICStringUnique t("x\u20acy");
  t.Translate("\u20acy", "ab");
  EXPECT_STREQ(t.GetText(), "xab");
  EXPECT_EQ(t.GetLength(), 3);
}

TYPED_TEST(Filters, ExpandDoubleSpaces) {
  using Unit = typename TypeParam::UnitType;
  const auto nbsp = Units<Unit>("&nbsp;");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a   b").ExpandDoubleSpaces(nbsp.c_str())), "a&nbsp;&nbsp; b");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a  b ").ExpandDoubleSpaces(nullptr)), "a b ");
  const TypeParam owner = Owned<TypeParam>("x  y");
  TypeParam s = owner;
  s.ExpandDoubleSpaces(nbsp.c_str());
  EXPECT_EQ(TextOf(s), "x&nbsp; y");
  EXPECT_EQ(TextOf(owner), "x  y");
}

TYPED_TEST(Filters, RemoveBalanced) {
  using Unit = typename TypeParam::UnitType;
  const Sets<TypeParam> parens("(", ")"), quotes("'", "'");
  EXPECT_EQ(
      TextOf(Owned<TypeParam>("a(b(c)d)e").RemoveBalanced(parens.a.c_str(), parens.b.c_str())),
      "ae");
  EXPECT_EQ(
      TextOf(
          Owned<TypeParam>("a(b(c)d)e").RemoveBalanced(parens.a.c_str(), parens.b.c_str(), true)),
      "ad)e");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a'b'c'd").RemoveBalanced(quotes.a.c_str(), quotes.b.c_str())),
            "ac");
  EXPECT_EQ(
      TextOf(Owned<TypeParam>("a\\(b(c\\)d)e").RemoveBalanced(Unit('('), Unit(')'), Unit('\\'))),
      "a\\(be");
  EXPECT_EQ(TextOf(Owned<TypeParam>("ab\\").RemoveBalanced(Unit('('), Unit(')'), Unit('\\'))),
            "ab");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a(b").RemoveBalanced(parens.a.c_str(), parens.b.c_str())),
            "a");
  const Sets<TypeParam> tags("<!--", "-->");
  EXPECT_EQ(TextOf(Owned<TypeParam>("x<!--y-->z").RemoveBalanced(tags.a.c_str(), tags.b.c_str())),
            "xz");
  EXPECT_EQ(TextOf(Owned<TypeParam>("a(b)").RemoveBalanced(parens.a.c_str(),
                                                           static_cast<const Unit*>(nullptr))),
            "a(b)");
}

TYPED_TEST(Filters, ReverseRanges) {
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(1, true, 4, true)), "adcbef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(3)), "cbadef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abc").Reverse(99)), "cba");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abc").Reverse(0)), "abc");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(-3, true, 2, true)), "bacdef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(1, true, 4, false)), "abcdef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(4, true, 2, true)), "abcdef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(7, true, 9, true)), "abcdef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(0, true, -1, true)), "abcdef");
  EXPECT_EQ(TextOf(Owned<TypeParam>("abcdef").Reverse(0, true, 0x7fffffff, true)), "fedcba");
}

TEST(FiltersNarrow, ReverseKeepsSequencesInOrder) {
  ICStringUnique s("a\u00e4");
  s.Reverse(0, false, 0x7fffffff, false);
  EXPECT_STREQ(s.GetText(), "\u00e4a");
  ICStringUnique t("\u00e4b\u20acc\U0001F600");
  t.Reverse(1, false, 4, false);
  EXPECT_STREQ(t.GetText(), "\u00e4c\u20acb\U0001F600");
  ICStringUniqueW w(u"a\U0001F600");
  w.Reverse(0, true, 3, true);
  EXPECT_EQ(std::u16string(w.GetText()),
            u"\xde00\xd83d"
            u"a");  // the pair comes out reversed
}

TYPED_TEST(Filters, CountCode) {
  using Unit = typename TypeParam::UnitType;
  const TypeParam s = Owned<TypeParam>("banana");
  EXPECT_EQ(s.CountCode(Unit('a'), 2), 2);
  EXPECT_EQ(s.CountCode(Unit('a')), 3);
  EXPECT_EQ(s.CountCode(Unit('a'), -4), 3);
  EXPECT_EQ(s.CountCode(Unit('a'), 6), 0);
  EXPECT_EQ(s.CountCode(Unit('a'), 7), 0);
  EXPECT_EQ(s.CountCode(Unit(0)), 0);
  const auto text = Units<Unit>("banana");
  EXPECT_EQ(CountCode(text.c_str(), Unit('n'), 3), 1);
  EXPECT_EQ(CountCode(static_cast<const Unit*>(nullptr), Unit('n')), 0);
}

TEST(FiltersNarrow, CountCodeInCodePoints) {
  EXPECT_EQ(CountCode("\u00e9a\u00e9a\u00e9", U'\u00e9', 1, false), 2);
  EXPECT_EQ(CountCode("\u00e9a\u00e9a\u00e9", U'a', 2, true), 2);
  EXPECT_EQ(CountCode("\u00e9a", U'a', 3, false), 0);
}

// ---------------------------------------------------------------------------------------------
// Model tests over std::u32string, narrow and wide.

const char32_t kAlphabet[] = {U'a', U'b', U' ', U'\n', U'\u00e9', U'\u20ac', U'\U0001F600', U'.'};

std::u32string RandomText(std::mt19937& random, int maxLength, bool bmpOnly) {
  std::u32string text;
  for (int i = static_cast<int>(random() % (maxLength + 1)); i > 0; --i) {
    char32_t c = kAlphabet[random() % 8];
    if (bmpOnly && c > 0xFFFF) c = U'x';
    text.push_back(c);
  }
  return text;
}

// A string of type S holding the text: UTF-8 or UTF-16 units (wide texts are kept in the BMP).
template <class S>
S Make(const std::u32string& text) {
  if constexpr (sizeof(typename S::UnitType) == 1) {
    const std::string units = Utf8(text);
    return S(units.data(), static_cast<int32_t>(units.size()));
  } else {
    const std::u16string units(text.begin(), text.end());
    return S(units.data(), static_cast<int32_t>(units.size()));
  }
}
template <class S>
std::u32string Read(const S& s) {
  std::u32string out;
  if constexpr (sizeof(typename S::UnitType) == 1) {
    for (const char* p = s.GetText(); *p;)
      out.push_back(DecodeUTF8Sequence(p));
  } else {
    for (int32_t i = 0; i < s.GetLength(); ++i)
      out.push_back(s.GetText()[i]);
  }
  return out;
}
template <class S>
std::basic_string<typename S::UnitType> SetText(const std::u32string& set) {
  if constexpr (sizeof(typename S::UnitType) == 1)
    return Utf8(set);
  else
    return std::u16string(set.begin(), set.end());
}

TYPED_TEST(Filters, SqueezeMatchesAReference) {
  using Unit = typename TypeParam::UnitType;
  std::mt19937 random(31);
  const bool wide = sizeof(Unit) == 2;
  for (int trial = 0; trial < 3000; ++trial) {
    const std::u32string text = RandomText(random, 16, wide);
    const std::u32string keep = RandomText(random, 1, wide), collapse = RandomText(random, 3, wide);
    const bool trim = random() % 2;
    std::u32string expected;
    size_t i = 0;
    while (i < text.size()) {
      const char32_t c = text[i];
      const auto collapses = [&](char32_t x) {
        return keep.find(x) == std::u32string::npos && collapse.find(x) != std::u32string::npos;
      };
      if (!collapses(c)) {
        expected.push_back(c);
        ++i;
        continue;
      }
      const size_t start = i;
      while (i < text.size() && collapses(text[i]))
        ++i;
      if (!trim || (start != 0 && i < text.size())) expected.push_back(U'_');
    }
    TypeParam s = Make<TypeParam>(text);
    const TypeParam before = s;
    const auto k = SetText<TypeParam>(keep), c = SetText<TypeParam>(collapse);
    const auto* block = s.GetText();
    if (trim)
      s.SqueezeTrim(k.c_str(), Unit('_'), c.c_str());
    else
      s.Squeeze(k.c_str(), Unit('_'), c.c_str());
    ASSERT_EQ(Read(s), expected);
    ASSERT_EQ(Read(before), text);
    if (expected == text) {
      ASSERT_EQ(s.GetText(), block);  // nothing to do: the same block
    }
  }
}

TYPED_TEST(Filters, KeepOnlyMatchesAReference) {
  std::mt19937 random(32);
  const bool wide = sizeof(typename TypeParam::UnitType) == 2;
  for (int trial = 0; trial < 3000; ++trial) {
    const std::u32string text = RandomText(random, 16, wide);
    std::u32string spec = RandomText(random, 6, wide);
    if (spec.empty()) spec.push_back(U'a');
    std::u32string expected;
    for (char32_t c : text) {
      bool kept = false;
      for (size_t i = 0; i < spec.size();) {
        if (i + 3 < spec.size() && spec[i + 1] == U'.' && spec[i + 2] == U'.') {
          kept |= c >= spec[i] && c <= spec[i + 3];
          i += 4;
        } else {
          kept |= c == spec[i];
          i += 1;
        }
      }
      if (kept) expected.push_back(c);
    }
    TypeParam s = Make<TypeParam>(text);
    const auto setSpec = SetText<TypeParam>(spec);
    s.KeepOnly(setSpec.c_str());
    ASSERT_EQ(Read(s), expected);
  }
}

TYPED_TEST(Filters, TranslateMatchesAReference) {
  std::mt19937 random(33);
  const bool wide = sizeof(typename TypeParam::UnitType) == 2;
  for (int trial = 0; trial < 3000; ++trial) {
    const std::u32string text = RandomText(random, 16, wide);
    const std::u32string from = RandomText(random, 4, wide), to = RandomText(random, 4, wide);
    std::u32string expected = text;
    if (!from.empty()) {
      expected.clear();
      for (char32_t c : text) {
        const size_t place = from.find(c);
        if (place == std::u32string::npos)
          expected.push_back(c);
        else if (place < to.size())
          expected.push_back(to[place]);
      }
    }
    TypeParam s = Make<TypeParam>(text);
    const TypeParam before = s;
    const auto f = SetText<TypeParam>(from), t = SetText<TypeParam>(to);
    s.Translate(f.c_str(), t.c_str());
    ASSERT_EQ(Read(s), expected);
    ASSERT_EQ(Read(before), text);
  }
}

TYPED_TEST(Filters, ReverseMatchesAReference) {
  using Unit = typename TypeParam::UnitType;
  std::mt19937 random(34);
  const bool wide = sizeof(Unit) == 2;
  for (int trial = 0; trial < 3000; ++trial) {
    const std::u32string text = RandomText(random, 12, wide);
    const int32_t size = static_cast<int32_t>(text.size());
    const int32_t first = static_cast<int32_t>(random() % (size + 3)) - 1;
    const int32_t last = static_cast<int32_t>(random() % (size + 3)) - 1;
    std::u32string expected = text;
    const int32_t from = std::max(first, 0), to = std::min(last, size);
    if (first <= size && last > 0 && from < to)
      std::reverse(expected.begin() + from, expected.begin() + to);
    TypeParam s = Make<TypeParam>(text);
    s.Reverse(first, false, last, false);  // code points in narrow text, units in wide
    ASSERT_EQ(Read(s), expected);
  }
}

}  // namespace
}  // namespace ic
