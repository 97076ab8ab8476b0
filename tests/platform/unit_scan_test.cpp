// The unit-set scans, the stop masks and the folded-pair scan against a straightforward loop
// written here, on the AVX2 kernels (where the processor has them) and on the portable path: every
// length 0 to 130 with the unit that matters at every offset, both widths, and random texts and
// sets. Each text lies in a heap block of exactly its length, so that a read past it shows under
// AddressSanitizer.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include <ic/platform/internal/stop_walk.h>
#include <ic/platform/internal/unit_scan.h>
#include <ic/platform/internal/vector_kernels.h>

namespace ic::platform {
namespace {

using internal::UnitStopSet;

// A set built through Add, with its members kept here as well.
struct TestSet {
  UnitStopSet set;
  bool in[128] = {};
  bool high = false;
  void Add(uint32_t u) {
    set.Add(u);
    if (u < 128) in[u] = true;
  }
  void High(bool on) { set.high = high = on; }
};

template <class Unit>
bool InSet(const TestSet& set, Unit unit) {
  const uint32_t u = static_cast<std::make_unsigned_t<Unit>>(unit);
  return u < 128 ? set.in[u] : set.high;
}

template <class Unit>
size_t FirstInSet(const std::vector<Unit>& text, const TestSet& set) {
  for (size_t i = 0; i < text.size(); ++i)
    if (InSet(set, text[i])) return i;
  return text.size();
}

template <class Unit>
size_t FirstRun(const std::vector<Unit>& text, const TestSet& set, uint32_t single) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (!InSet(set, text[i])) continue;
    const bool lone = single < 128 && static_cast<uint32_t>(text[i]) == single &&
                      i + 1 < text.size() && !InSet(set, text[i + 1]);
    if (!lone) return i;
  }
  return text.size();
}

// The text in a block of exactly its size.
template <class Unit>
std::unique_ptr<Unit[]> Exact(const std::vector<Unit>& text) {
  std::unique_ptr<Unit[]> block(new Unit[text.size() == 0 ? 1 : text.size()]);
  for (size_t i = 0; i < text.size(); ++i)
    block[i] = text[i];
  return block;
}

// Bit k of mask j for unit 64 * j + k of the text.
template <class Unit>
std::vector<uint64_t> Masks(const std::vector<Unit>& text, const TestSet& set) {
  std::vector<uint64_t> masks((text.size() + 63) / 64, 0);
  for (size_t i = 0; i < text.size(); ++i)
    if (InSet(set, text[i])) masks[i / 64] |= uint64_t{1} << (i % 64);
  return masks;
}

template <class Unit>
void Check(const std::vector<Unit>& text, const TestSet& set, uint32_t single) {
  const auto block = Exact(text);
  // One mask more than needed, which must stay as it is.
  std::vector<uint64_t> masks((text.size() + 63) / 64 + 1, 0x5A5A5A5A5A5A5A5Au);
  internal::FillStopMasks(block.get(), text.size(), set.set, masks.data());
  ASSERT_EQ(masks.back(), 0x5A5A5A5A5A5A5A5Au) << "length " << text.size();
  masks.pop_back();
  ASSERT_EQ(masks, Masks(text, set)) << "length " << text.size();
  ASSERT_EQ(internal::FindFirstInSet(block.get(), text.size(), set.set), FirstInSet(text, set))
      << "length " << text.size();
  ASSERT_EQ(internal::FindFirstRunInSet(block.get(), text.size(), set.set, single),
            FirstRun(text, set, single))
      << "length " << text.size();
}

// The blanks set with the high block, as the squeezing scan uses it; ' ' is the single.
TestSet Blanks(bool high) {
  TestSet set;
  set.Add(' ');
  set.Add('\t');
  set.High(high);
  return set;
}

class UnitScan : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { internal::EnableVectorKernels(true); }
};

template <class Unit>
void EveryOffset(const std::vector<uint32_t>& units) {
  for (const bool high : {false, true}) {
    const TestSet set = Blanks(high);
    for (size_t n = 0; n <= 130; ++n) {
      const std::vector<Unit> clean(n, Unit('x'));
      Check(clean, set, ' ');
      for (size_t at = 0; at < n; ++at)
        for (const uint32_t u : units) {
          std::vector<Unit> text = clean;
          text[at] = static_cast<Unit>(u);
          Check(text, set, ' ');
          if (at + 1 < n) {  // a pair: a run of two, or a single before a member
            text[at + 1] = Unit('\t');
            Check(text, set, ' ');
          }
        }
    }
  }
}

TEST_P(UnitScan, NarrowEveryLengthAndOffset) {
  EveryOffset<char>({' ', '\t', 0, 'y', 0x7F, 0x80, 0xC3, 0xFF});
}

TEST_P(UnitScan, WideEveryLengthAndOffset) {
  EveryOffset<char16_t>(
      {' ', '\t', 0, 'y', 0x7F, 0x80, 0xFF, 0x100, 0x120, 0x7FFF, 0x8000, 0xD800, 0xFFFF});
}

TEST_P(UnitScan, EverySingleUnitValue) {
  // Each unit value alone in a window, against every set of one member.
  for (uint32_t member = 0; member < 128; member += 7) {
    TestSet set;
    set.Add(member);
    for (uint32_t u = 0; u < 0x10000; u += (u < 0x200 ? 1 : 97)) {
      std::vector<char16_t> wide(70, char16_t(member == 'x' ? 'y' : 'x'));
      wide[40] = static_cast<char16_t>(u);
      Check(wide, set, member);
      if (u < 256) {
        std::vector<char> narrow(70, member == 'x' ? 'y' : 'x');
        narrow[40] = static_cast<char>(u);
        Check(narrow, set, member);
      }
    }
  }
}

template <class Unit>
void Random(std::mt19937& rng, uint32_t top) {
  for (int round = 0; round < 3000; ++round) {
    TestSet set;
    const int members = static_cast<int>(rng() % 6);
    for (int k = 0; k < members; ++k)
      set.Add(rng() % 128);
    if (rng() % 3 == 0)  // every low four bits start a member: the tables then hold the block
      for (uint32_t u = 16; u < 32; ++u)
        set.Add(u);
    set.High(rng() % 2 == 0);
    const uint32_t single = rng() % 4 == 0 ? rng() % 256 : rng() % 128;
    std::vector<Unit> text(rng() % 300);
    for (Unit& u : text)
      u = static_cast<Unit>(rng() % 8 == 0 ? rng() % top : 'a' + rng() % 26);
    Check(text, set, single);
  }
}

TEST_P(UnitScan, RandomTextsAndSets) {
  std::mt19937 rng(GetParam() ? 11 : 12);
  Random<char>(rng, 256);
  Random<char16_t>(rng, 0x10000);
}

TEST_P(UnitScan, SetHolds) {
  UnitStopSet set = Blanks(false).set;
  set.Add(200);  // not below 128: nothing happens
  EXPECT_TRUE(set.Holds(' '));
  EXPECT_FALSE(set.Holds('x'));
  EXPECT_FALSE(set.Holds(200));
  set.high = true;
  EXPECT_TRUE(set.Holds(200));
  EXPECT_TRUE(set.Holds(0xFFFF));
}

// FindFoldedPair's rule, unit by unit.
uint32_t Fold(uint32_t u) {
  return u >= 'a' && u <= 'z' ? u - 32 : u;
}

template <class Unit>
size_t FoldedPairReference(const std::vector<Unit>& text, uint32_t first, uint32_t second) {
  for (size_t i = 0; i < text.size(); ++i) {
    const uint32_t u = static_cast<std::make_unsigned_t<Unit>>(text[i]);
    if (u >= 128) return i;
    if (Fold(u) != first) continue;
    if (i + 1 == text.size()) return i;
    const uint32_t next = static_cast<std::make_unsigned_t<Unit>>(text[i + 1]);
    if (next >= 128 || Fold(next) == second) return i;
  }
  return text.size();
}

template <class Unit>
void CheckFoldedPair(const std::vector<Unit>& text, uint32_t first, uint32_t second) {
  const auto block = Exact(text);
  ASSERT_EQ(internal::FindFoldedPair(block.get(), text.size(), first, second),
            FoldedPairReference(text, first, second))
      << "length " << text.size() << " first " << first << " second " << second;
}

// Every length 0 to 130; at every offset one unit, or a pair of units, that stops the scan or
// nearly does: the first code in either case before the second in either case, before a unit
// from 128 up, before another letter, and at the end.
template <class Unit>
void FoldedPairEveryOffset(const std::vector<uint32_t>& others) {
  for (const uint32_t second : {uint32_t('E'), uint32_t(' '), uint32_t(0x130)}) {
    for (size_t n = 0; n <= 130; ++n) {
      const std::vector<Unit> clean(n, Unit('x'));
      CheckFoldedPair(clean, 'N', second);
      for (size_t at = 0; at < n; ++at) {
        for (const uint32_t u : others) {
          std::vector<Unit> text = clean;
          text[at] = static_cast<Unit>(u);
          CheckFoldedPair(text, 'N', second);
        }
        for (const uint32_t lead : {uint32_t('n'), uint32_t('N')})
          for (const uint32_t next : {uint32_t('e'), uint32_t('E'), uint32_t(' '), uint32_t('y'),
                                      uint32_t(0xC4), uint32_t(0x80), uint32_t(0)}) {
            std::vector<Unit> text = clean;
            text[at] = static_cast<Unit>(lead);
            if (at + 1 < n) text[at + 1] = static_cast<Unit>(next);
            CheckFoldedPair(text, 'N', second);
          }
      }
    }
  }
}

TEST_P(UnitScan, NarrowFoldedPairEveryLengthAndOffset) {
  FoldedPairEveryOffset<char>({'n', 'N', 'e', 0, 0x7F, 0x80, 0xC3, 0xFF, 'n' + 0x80});
}

TEST_P(UnitScan, WideFoldedPairEveryLengthAndOffset) {
  FoldedPairEveryOffset<char16_t>(
      {'n', 'N', 'e', 0, 0x7F, 0x80, 0xFF, 0x14E, 0x4E00, 0xD800, 0xFFFF, 'N' + 0x100});
}

TEST_P(UnitScan, FoldedPairRandom) {
  std::mt19937 rng(GetParam() ? 21 : 22);
  for (int round = 0; round < 3000; ++round) {
    const uint32_t first = Fold('a' + rng() % 4);
    const uint32_t second = rng() % 8 == 0 ? 0x100 + rng() % 50 : Fold('a' + rng() % 4);
    std::vector<char> narrow(rng() % 200);
    for (char& u : narrow)
      u = static_cast<char>(rng() % 16 == 0 ? rng() % 256 : (rng() % 2 ? 'a' : 'A') + rng() % 4);
    CheckFoldedPair(narrow, first, second);
    std::vector<char16_t> wide(rng() % 200);
    for (char16_t& u : wide)
      u = static_cast<char16_t>(rng() % 16 == 0 ? rng() % 0x10000
                                                : (rng() % 2 ? 'a' : 'A') + rng() % 4);
    CheckFoldedPair(wide, first, second);
  }
}

INSTANTIATE_TEST_SUITE_P(Paths, UnitScan, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Vector" : "Portable"; });

}  // namespace
}  // namespace ic::platform

namespace ic::platform {
namespace {

// WalkStops against a plain loop: members every seven units over several blocks, and a visit
// that jumps ahead by a varying amount (sometimes past a whole block), so that the marks it
// passes over must be skipped and the walk must resume at the right one.
TEST(WalkStops, VisitsTheMembersFromWhereEachVisitGoesOn) {
  std::vector<char> text(5000, 'x');
  for (size_t i = 3; i < text.size(); i += 7)
    text[i] = '<';
  UnitStopSet set;
  set.Add('<');
  for (const size_t jump : {size_t{1}, size_t{2}, size_t{8}, size_t{700}, size_t{1500}}) {
    std::vector<size_t> expected;
    size_t expectedStop = 0;  // where the walk stands after the last visit
    for (size_t at = 0; at < text.size(); ++at)
      if (text[at] == '<') {
        expected.push_back(at);
        expectedStop = std::min(at + jump, text.size());
        at += jump - 1;
      }
    std::vector<size_t> visited;
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* stop = internal::WalkStops(begin, end, set, [&](const char* at, const char* mark) {
      EXPECT_LE(at, mark);
      visited.push_back(static_cast<size_t>(mark - begin));
      return mark + jump < end ? mark + jump : end;
    });
    EXPECT_EQ(visited, expected) << "jump " << jump;
    EXPECT_EQ(stop, begin + expectedStop) << "jump " << jump;
  }
  // A visit that stops the walk.
  int calls = 0;
  EXPECT_EQ(internal::WalkStops(text.data(), text.data() + text.size(), set,
                                [&](const char*, const char*) -> const char* {
                                  ++calls;
                                  return nullptr;
                                }),
            nullptr);
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace ic::platform
