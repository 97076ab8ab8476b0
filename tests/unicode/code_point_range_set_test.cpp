// CodePointRangeSet: the worked examples, and random sequences of Add (with and without case
// closure), Subtract and Complement checked step by step against a plain bitset of all
// 0x110000 code points.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <vector>

#include <ic/text/case_mapping.h>
#include <ic/unicode/code_point_range_set.h>
#include <ic/unicode/internal/range_growth.h>

namespace ic {
namespace {

using Ranges = std::vector<CodePointRange>;

Ranges Of(const CodePointRangeSet& set) {
  return Ranges(set.begin(), set.end());
}

CodePointRangeSet Make(const Ranges& ranges) {
  CodePointRangeSet set;
  for (const CodePointRange& r : ranges)
    set.Add(r, false);
  return set;
}

TEST(CodePointRangeSet, EmptySet) {
  CodePointRangeSet set;
  EXPECT_TRUE(set.empty());
  EXPECT_EQ(set.capacity(), 0u);
  set.Subtract(Make({{0, 10}}));
  EXPECT_TRUE(set.empty());
  EXPECT_EQ(FirstCommonCodePoint(set, Make({{0, 10}})), -1);
  EXPECT_EQ(PickCommonCodePoint(set, Make({{0, 10}}), 7), -1);
  set.Complement();
  EXPECT_EQ(Of(set), (Ranges{{0, 0x10FFFF}}));
}

TEST(CodePointRangeSet, ReversedRangeAddsNothing) {
  CodePointRangeSet set = Make({{1, 3}});
  set.Add({5, 4}, false);
  EXPECT_EQ(Of(set), (Ranges{{1, 3}}));
  EXPECT_EQ(set.AddRange({9, 8}), set.size());
  EXPECT_EQ(Of(set), (Ranges{{1, 3}}));
  set.Add({2, 1}, true);
  EXPECT_EQ(Of(set), (Ranges{{1, 3}}));
  CodePointRangeSet empty;
  empty.Add({'b', 'a'}, true);  // the closure loop does not run either
  EXPECT_TRUE(empty.empty());
}

TEST(CodePointRangeSet, ZeroTouchesTheFirstRange) {
  CodePointRangeSet set = Make({{1, 3}});
  set.Add({0, 0}, false);
  EXPECT_EQ(Of(set), (Ranges{{0, 3}}));
}

TEST(CodePointRangeSet, AdjacencyMergesAsOverlapDoes) {
  CodePointRangeSet set = Make({{0, 9}, {21, 30}});
  EXPECT_EQ(set.AddRange({10, 20}), 0u);
  EXPECT_EQ(Of(set), (Ranges{{0, 30}}));
  set.Add({0, 30}, false);
  EXPECT_EQ(Of(set), (Ranges{{0, 30}}));
  set.Add({32, 40}, false);
  EXPECT_EQ(Of(set), (Ranges{{0, 30}, {32, 40}}));
  EXPECT_EQ(set.AddRange({50, 60}), 2u);
  EXPECT_EQ(set.AddRange({5, 55}), 0u);
  EXPECT_EQ(Of(set), (Ranges{{0, 60}}));
}

TEST(CodePointRangeSet, TopOfTheValueRangeDoesNotWrap) {
  CodePointRangeSet set = Make({{0, 0}});
  set.Add({0xFFFFFFF0u, 0xFFFFFFFFu}, false);
  EXPECT_EQ(Of(set), (Ranges{{0, 0}, {0xFFFFFFF0u, 0xFFFFFFFFu}}));
  set.Complement();
  EXPECT_EQ(Of(set), (Ranges{{1, 0xFFFFFFEFu}}));
}

TEST(CodePointRangeSet, TwoAddsOfTheSameRangeLeaveOne) {
  CodePointRangeSet set;
  set.Add({100, 200}, false);
  set.Add({100, 200}, false);
  EXPECT_EQ(Of(set), (Ranges{{100, 200}}));
}

TEST(CodePointRangeSet, CaseClosure) {
  CodePointRangeSet a;
  a.Add({65, 65}, true);
  EXPECT_EQ(Of(a), (Ranges{{65, 65}, {97, 97}}));
  CodePointRangeSet k;
  k.Add({75, 75}, true);
  EXPECT_EQ(Of(k), (Ranges{{75, 75}, {0x6B, 0x6B}, {0x212A, 0x212A}}));
  // U+00B5 brings its upper U+039C and its variant U+03BC.
  CodePointRangeSet micro;
  micro.Add({0xB5, 0xB5}, true);
  EXPECT_EQ(Of(micro), (Ranges{{0xB5, 0xB5}, {0x39C, 0x39C}, {0x3BC, 0x3BC}}));
  // Without the flag nothing else comes in.
  CodePointRangeSet plain;
  plain.Add({75, 75}, false);
  EXPECT_EQ(Of(plain), (Ranges{{75, 75}}));
}

TEST(CodePointRangeSet, Subtract) {
  CodePointRangeSet a = Make({{0, 10}});
  a.Subtract(Make({{5, 6}}));
  EXPECT_EQ(Of(a), (Ranges{{0, 4}, {7, 10}}));
  CodePointRangeSet b = Make({{0, 10}});
  b.Subtract(Make({{0, 10}}));
  EXPECT_TRUE(b.empty());
  CodePointRangeSet c = Make({{0, 10}, {15, 30}});
  c.Subtract(Make({{3, 20}}));
  EXPECT_EQ(Of(c), (Ranges{{0, 2}, {21, 30}}));
  CodePointRangeSet d = Make({{0, 100}});
  d.Subtract(Make({{10, 20}, {30, 40}, {100, 200}}));
  EXPECT_EQ(Of(d), (Ranges{{0, 9}, {21, 29}, {41, 99}}));
  CodePointRangeSet e = Make({{5, 9}});
  e.Subtract(CodePointRangeSet());
  EXPECT_EQ(Of(e), (Ranges{{5, 9}}));
}

TEST(CodePointRangeSet, Complement) {
  CodePointRangeSet full = Make({{0, 0x10FFFF}});
  full.Complement();
  EXPECT_TRUE(full.empty());
  CodePointRangeSet two = Make({{10, 10}, {13, 13}});
  two.Complement();
  EXPECT_EQ(Of(two), (Ranges{{0, 9}, {11, 12}, {14, 0x10FFFF}}));
  CodePointRangeSet tail = Make({{0, 5}, {0x10FFF0, 0x10FFFF}});
  tail.Complement();
  EXPECT_EQ(Of(tail), (Ranges{{6, 0x10FFEF}}));
}

TEST(CodePointRangeSet, CommonCodePoints) {
  const CodePointRangeSet five = Make({{5, 5}});
  for (uint32_t seed : {0u, 1u, 2u, 99u, 0xFFFFFFFFu})
    EXPECT_EQ(PickCommonCodePoint(five, five, seed), 5);
  const CodePointRangeSet a = Make({{0, 3}, {10, 20}, {40, 50}});
  const CodePointRangeSet b = Make({{5, 8}, {15, 45}});
  EXPECT_EQ(FirstCommonCodePoint(a, b), 15);
  EXPECT_EQ(FirstCommonCodePoint(b, a), 15);
  EXPECT_EQ(FirstCommonCodePoint(a, Make({{4, 9}, {21, 39}})), -1);
  // First range starts first: m = seed mod (45 - 15) + 15, below 20 and 45.
  EXPECT_EQ(PickCommonCodePoint(a, b, 3), 18);
  // m at or above the end of the first range falls back to the second's start.
  EXPECT_EQ(PickCommonCodePoint(a, b, 5), 15);
  // The second array's range starts first: m = seed mod (45 - 15) + 15 must be below both
  // ends, else the first array's start.
  EXPECT_EQ(PickCommonCodePoint(b, a, 2), 17);
  EXPECT_EQ(PickCommonCodePoint(b, a, 9), 15);
}

TEST(CodePointRangeSet, CopyAndAssign) {
  const CodePointRangeSet a = Make({{1, 2}, {4, 8}});
  CodePointRangeSet b = a;
  EXPECT_EQ(b, a);
  EXPECT_EQ(b.capacity(), 2u);
  CodePointRangeSet c;
  c = std::move(b);
  EXPECT_EQ(c, a);
  EXPECT_TRUE(b.empty());  // NOLINT(bugprone-use-after-move): the moved-from set is empty
  // Assignment keeps the array as it stands, out of order and touching.
  const CodePointRange raw[] = {{30, 40}, {1, 2}, {3, 4}};
  c.AssignRanges(raw, 3);
  EXPECT_EQ(Of(c), (Ranges{{30, 40}, {1, 2}, {3, 4}}));
  c.AssignRanges(raw, 0);
  EXPECT_TRUE(c.empty());
  CodePointRangeSet exact;
  exact.AssignRanges(raw, 3);
  EXPECT_EQ(exact.capacity(), 3u);
}

TEST(CodePointRangeSet, GrowthRuleAndCap) {
  EXPECT_EQ(internal::GrowRangeCapacity(0, 1), 1u);
  EXPECT_EQ(internal::GrowRangeCapacity(1, 2), 2u);
  EXPECT_EQ(internal::GrowRangeCapacity(4, 5), 6u);
  EXPECT_EQ(internal::GrowRangeCapacity(100, 101), 150u);
  EXPECT_EQ(internal::GrowRangeCapacity(100, 400), 400u);
  EXPECT_EQ(internal::GrowRangeCapacity(0x1F000000, 0x1F000001), CodePointRangeSet::MaxSize);
  EXPECT_EQ(internal::GrowRangeCapacity(0, CodePointRangeSet::MaxSize), CodePointRangeSet::MaxSize);
  try {
    internal::GrowRangeCapacity(CodePointRangeSet::MaxSize, CodePointRangeSet::MaxSize + 1);
    FAIL() << "no exception";
  } catch (const std::length_error& e) {
    EXPECT_STREQ(e.what(), "vector too long");
  }
  CodePointRangeSet set;
  const CodePointRange one{1, 1};
  EXPECT_THROW(set.AssignRanges(&one, CodePointRangeSet::MaxSize + 1), std::length_error);
  // Growth as seen from Add: 1, 2, 3, 4, 6, 9.
  std::vector<size_t> capacities;
  for (uint32_t i = 0; i < 7; ++i) {
    set.Add({i * 4, i * 4}, false);
    capacities.push_back(set.capacity());
  }
  EXPECT_EQ(capacities, (std::vector<size_t>{1, 2, 3, 4, 6, 6, 9}));
}

// A set of all code points as 64-bit words.
class Bits {
 public:
  static constexpr uint32_t Size = 0x110000;
  Bits() : _words(Size / 64, 0) {}
  void Set(uint32_t first, uint32_t last, bool value) {
    for (uint32_t c = first; c <= last; ++c) {
      if (c % 64 == 0 && last - c >= 63) {
        _words[c / 64] = value ? ~uint64_t{0} : 0;
        c += 63;
        continue;
      }
      if (value)
        _words[c / 64] |= uint64_t{1} << (c % 64);
      else
        _words[c / 64] &= ~(uint64_t{1} << (c % 64));
    }
  }
  bool Get(uint32_t c) const { return (_words[c / 64] >> (c % 64)) & 1; }
  void Flip() {
    for (uint64_t& w : _words)
      w = ~w;
  }
  // The maximal runs of set bits.
  Ranges Runs() const {
    Ranges runs;
    bool inRun = false;
    uint32_t start = 0;
    for (uint32_t w = 0; w < Size / 64; ++w) {
      const uint64_t word = _words[w];
      if ((word == 0 && !inRun) || (word == ~uint64_t{0} && inRun)) continue;
      for (uint32_t bit = 0; bit < 64; ++bit) {
        const bool set = (word >> bit) & 1;
        const uint32_t c = w * 64 + bit;
        if (set && !inRun) {
          inRun = true;
          start = c;
        } else if (!set && inRun) {
          inRun = false;
          runs.push_back({start, c - 1});
        }
      }
    }
    if (inRun) runs.push_back({start, Size - 1});
    return runs;
  }

 private:
  std::vector<uint64_t> _words;
};

void ExpectInvariants(const CodePointRangeSet& set) {
  for (size_t i = 0; i < set.size(); ++i) {
    ASSERT_LE(set[i].first, set[i].last) << "range " << i;
    ASSERT_LE(set[i].last, 0x10FFFFu);
    if (i > 0) {
      ASSERT_GT(set[i].first, set[i - 1].last + 1) << "ranges " << i - 1 << ", " << i;
    }
  }
}

// A random range: mostly short ones, at times long ones, anywhere in the code space.
CodePointRange RandomRange(std::mt19937& rng, uint32_t maxLength) {
  const uint32_t length = std::uniform_int_distribution<uint32_t>(0, maxLength)(rng);
  const uint32_t first = std::uniform_int_distribution<uint32_t>(0, 0x10FFFF - length)(rng);
  return {first, first + length};
}

// Where the case table has records, so that closure has something to do.
CodePointRange RandomCasedRange(std::mt19937& rng) {
  static const uint32_t starts[] = {0x40, 0xB0, 0x100, 0x370, 0x400, 0x1E00, 0x2120, 0x10400};
  const uint32_t base = starts[std::uniform_int_distribution<size_t>(0, 7)(rng)];
  const uint32_t first = base + std::uniform_int_distribution<uint32_t>(0, 80)(rng);
  return {first, first + std::uniform_int_distribution<uint32_t>(0, 40)(rng)};
}

void ModelAddWithCase(Bits& bits, CodePointRange r) {
  for (uint32_t c = r.first; c <= r.last; ++c) {
    bits.Set(c, c, true);
    const CaseRecord* record = FindCaseRecord(c);
    if (record == nullptr) continue;
    bits.Set(record->upper, record->upper, true);
    bits.Set(record->lower, record->lower, true);
    if (record->variantA == 0) continue;
    bits.Set(record->variantA, record->variantA, true);
    if (record->variantB != 0) bits.Set(record->variantB, record->variantB, true);
  }
}

TEST(CodePointRangeSetModel, RandomOperationsMatchABitset) {
  std::mt19937 rng(20241123);
  for (int round = 0; round < 20; ++round) {
    CodePointRangeSet set;
    Bits model;
    for (int step = 0; step < 300; ++step) {
      const int op = std::uniform_int_distribution<int>(0, 99)(rng);
      if (op < 45) {
        const CodePointRange r = RandomRange(rng, op < 40 ? 40 : 0x20000);
        set.Add(r, false);
        model.Set(r.first, r.last, true);
      } else if (op < 65) {
        const CodePointRange r = RandomCasedRange(rng);
        set.Add(r, true);
        ModelAddWithCase(model, r);
      } else if (op < 95) {
        CodePointRangeSet other;
        Bits otherModel;
        const int count = std::uniform_int_distribution<int>(0, 6)(rng);
        for (int i = 0; i < count; ++i) {
          const CodePointRange r = RandomRange(rng, i % 2 ? 5000 : 200);
          other.Add(r, false);
          otherModel.Set(r.first, r.last, true);
        }
        set.Subtract(other);
        for (const CodePointRange& r : otherModel.Runs())
          model.Set(r.first, r.last, false);
      } else {
        set.Complement();
        model.Flip();
      }
      ASSERT_NO_FATAL_FAILURE(ExpectInvariants(set));
      ASSERT_EQ(Of(set), model.Runs()) << "round " << round << " step " << step << " op " << op;
    }
  }
}

TEST(CodePointRangeSetModel, CommonCodePointsAreInBothSets) {
  std::mt19937 rng(7);
  for (int round = 0; round < 400; ++round) {
    CodePointRangeSet a, b;
    Bits bitsA, bitsB;
    for (int i = 0; i < 6; ++i) {
      const CodePointRange ra = RandomRange(rng, 3000);
      const CodePointRange rb = RandomRange(rng, 3000);
      a.Add(ra, false);
      bitsA.Set(ra.first, ra.last, true);
      b.Add(rb, false);
      bitsB.Set(rb.first, rb.last, true);
    }
    // Reference: the lowest code point in both.
    int64_t lowest = -1;
    for (const CodePointRange& r : bitsA.Runs()) {
      for (uint32_t c = r.first; c <= r.last && lowest < 0; ++c)
        if (bitsB.Get(c)) lowest = c;
      if (lowest >= 0) break;
    }
    ASSERT_EQ(FirstCommonCodePoint(a, b), lowest);
    const int64_t picked = PickCommonCodePoint(a, b, static_cast<uint32_t>(rng()));
    if (lowest < 0) {
      ASSERT_EQ(picked, -1);
    } else {
      ASSERT_TRUE(bitsA.Get(static_cast<uint32_t>(picked)) &&
                  bitsB.Get(static_cast<uint32_t>(picked)))
          << picked;
    }
  }
}

}  // namespace
}  // namespace ic
