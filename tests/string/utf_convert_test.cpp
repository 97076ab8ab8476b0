// Hand-written UTF-16 to UTF-8 conversion (ConvertToUTF8) and the UTF-8 text holder.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <ic/platform/internal/vector_kernels.h>
#include <ic/string/ic_string.h>
#include <ic/string/null_data.h>
#include <ic/string/utf_convert.h>

#include "counting_allocator.h"

namespace ic {
namespace {

using test::AllocationScope;

std::string Bytes(const ICStringUnique& s) {
  return std::string(s.GetText(), static_cast<size_t>(s.GetLength()));
}

// The conversion as told: a unit in the surrogate range always pairs with the unit behind it.
void AppendCodePoint(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xc0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 63));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xe0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 63));
    out += static_cast<char>(0x80 | (cp & 63));
  } else {
    out += static_cast<char>(0xf0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 63));
    out += static_cast<char>(0x80 | ((cp >> 6) & 63));
    out += static_cast<char>(0x80 | (cp & 63));
  }
}

uint32_t PairValue(char16_t first, char16_t second) {
  return (((first & 0x3ffu) << 10) | (second & 0x3ffu)) + 0x10000;
}

std::string ModelText(const char16_t* text) {
  std::string out;
  for (size_t i = 0;;) {
    const char16_t u = text[i];
    if (u >= 0xd800 && u <= 0xdfff) {
      AppendCodePoint(out, PairValue(u, text[i + 1]));
      i += 2;
    } else if (u == 0) {
      return out;
    } else {
      AppendCodePoint(out, u);
      i += 1;
    }
  }
}

std::string ModelRange(const char16_t* text, int32_t length) {
  std::string out;
  for (int32_t i = 0; i < length;) {
    const char16_t u = text[i];
    if (u >= 0xd800 && u <= 0xdfff) {
      AppendCodePoint(out, PairValue(u, text[i + 1]));
      i += 2;
    } else {
      AppendCodePoint(out, u);
      i += 1;
    }
  }
  return out;
}

TEST(ConvertToUTF8, ASurrogatePairGivesFourBytes) {
  const char16_t text[] = {0xd83d, 0xde00, 0};
  EXPECT_EQ(Bytes(ConvertToUTF8(text)), "\xf0\x9f\x98\x80");
}

TEST(ConvertToUTF8, AReversedPairIsTakenAsAPair) {
  const char16_t text[] = {0xde00, 0xd83d, 0};
  std::string expected;
  AppendCodePoint(expected, ((0x200u << 10) | 0x3du) + 0x10000);
  EXPECT_EQ(Bytes(ConvertToUTF8(text)), expected);
  EXPECT_EQ(expected, "\xf2\x90\x80\xbd");
}

TEST(ConvertToUTF8, ALoneHighSurrogateSwallowsTheNextUnit) {
  const char16_t text[] = {'a', 0xd800, 'b', 'c', 0};
  std::string expected = "a";
  AppendCodePoint(expected, PairValue(0xd800, 'b'));
  expected += "c";
  const std::string result = Bytes(ConvertToUTF8(text));
  EXPECT_EQ(result, expected);
  EXPECT_EQ(result.find('b'), std::string::npos);
}

TEST(ConvertToUTF8, ALoneSurrogateAtTheEndPairsWithTheTerminatorAndWalksOn) {
  const char16_t text[] = {'x', 0xd800, 0, 'A', 'B', 0};
  std::string expected = "x";
  AppendCodePoint(expected, 0x10000);  // 0xd800 with the terminator
  expected += "AB";
  EXPECT_EQ(Bytes(ConvertToUTF8(text)), expected);
}

TEST(ConvertToUTF8, NeverProducesAReplacementOrAnEncodedSurrogate) {
  const char16_t text[] = {0xdfff, 0xdfff, 0xdbff, 0xdbff, 0};
  const std::string result = Bytes(ConvertToUTF8(text));
  EXPECT_EQ(result.size(), 8u);
  EXPECT_EQ(result.find("\xef\xbf\xbd"), std::string::npos);
  EXPECT_EQ(static_cast<unsigned char>(result[0]), 0xf4);
  EXPECT_EQ(static_cast<unsigned char>(result[4]), 0xf4);
}

TEST(ConvertToUTF8, TheEmptyTextGivesTheEmptyDataAndNoBlock) {
  AllocationScope scope;
  {
    ICStringUnique empty = ConvertToUTF8(u"");
    EXPECT_EQ(empty.GetText(), EmptyText<char>());
    ICStringUnique none = ConvertToUTF8(static_cast<const char16_t*>(nullptr));
    EXPECT_EQ(none.GetText(), EmptyText<char>());
  }
  EXPECT_EQ(scope.Allocations(), 0);
}

TEST(ConvertToUTF8, OneAllocationOfExactlyTheSize) {
  const char16_t* text = u"a\u00e9\u20ac\U0001F600 and more text after it";
  const std::string expected = ModelText(text);
  long allocations;
  {
    AllocationScope scope;
    ICStringUnique s = ConvertToUTF8(text);
    allocations = scope.Allocations();
    EXPECT_EQ(s.GetLength(), static_cast<int32_t>(expected.size()));
    EXPECT_EQ(s.GetCapacity(), static_cast<int32_t>(expected.size()));
    EXPECT_EQ(s.GetText()[s.GetLength()], 0);
    EXPECT_EQ(Bytes(s), expected);
  }
  EXPECT_EQ(allocations, 1);
}

TEST(ConvertToUTF8, RangeWithLengthMinusOneGivesTheEmptyData) {
  AllocationScope scope;
  {
    const ICStringUnique s = ConvertToUTF8(ICStringRangeW{u"abc", -1});
    EXPECT_EQ(s.GetText(), EmptyText<char>());
    EXPECT_EQ(ConvertToUTF8(ICStringRangeW{u"abc", 0}).GetText(), EmptyText<char>());
    EXPECT_EQ(ConvertToUTF8(ICStringRangeW{nullptr, 3}).GetText(), EmptyText<char>());
  }
  EXPECT_EQ(scope.Allocations(), 0);
}

TEST(ConvertToUTF8, RangeKeepsZeroUnits) {
  const char16_t text[] = {'a', 0, 0xe9, 0, 'b'};
  const ICStringUnique s = ConvertToUTF8(ICStringRangeW{text, 5});
  EXPECT_EQ(Bytes(s), std::string("a\0\xc3\xa9\0b", 6));
  EXPECT_EQ(s.GetCapacity(), 6);
}

TEST(ConvertToUTF8, RangeWithASurrogateLastReadsOneUnitBeyond) {
  const char16_t text[] = {'x', 0xd83d, 0xde00, 0};
  EXPECT_EQ(Bytes(ConvertToUTF8(ICStringRangeW{text, 2})), "x\xf0\x9f\x98\x80");
}

TEST(ConvertToUTF8, NarrowTextIsCopied) {
  const char* text = "caf\xc3\xa9";
  const ICStringUnique s = ConvertToUTF8(text);
  EXPECT_NE(s.GetText(), text);
  EXPECT_EQ(Bytes(s), text);
  EXPECT_EQ(ConvertToUTF8("").GetText(), EmptyText<char>());
  EXPECT_EQ(ConvertToUTF8(static_cast<const char*>(nullptr)).GetText(), EmptyText<char>());
}

TEST(ConvertToUTF8, TheWritingWalkSkipsWhatDoesNotFit) {
  const char16_t text[] = {'a', 0x20ac, 'b', 0xe9, 0};
  char out[8] = {'#', '#', '#', '#', '#', '#', '#', '#'};
  const internal::Utf8Measure measure = internal::MeasureUTF8(text);
  EXPECT_EQ(measure.bytes, 7u);
  EXPECT_EQ(measure.end, text + 4);
  // Room for 3 bytes: 'a' fits, the euro sign does not and is skipped, 'b' fits, 'é' does not.
  char* end = internal::WriteUTF8(text, measure.end, out, out + 3);
  EXPECT_EQ(end, out + 2);
  EXPECT_EQ(std::string(out, 8), "ab######");
}

// Random texts: ASCII runs, two- and three-byte units, proper, reversed and lone surrogates.
std::vector<char16_t> RandomUnits(std::mt19937& rng, int pieces, bool zeros) {
  std::vector<char16_t> out;
  auto pick = [&](uint32_t lo, uint32_t hi) {
    return static_cast<char16_t>(std::uniform_int_distribution<uint32_t>(lo, hi)(rng));
  };
  for (int i = 0; i < pieces; ++i) {
    switch (std::uniform_int_distribution<int>(0, 8)(rng)) {
      case 0:
      case 1: {
        const int n = std::uniform_int_distribution<int>(1, 30)(rng);
        for (int k = 0; k < n; ++k)
          out.push_back(pick(1, 0x7f));
        break;
      }
      case 2:
        out.push_back(pick(0x80, 0x7ff));
        break;
      case 3:
        out.push_back(pick(0x800, 0xd7ff));
        break;
      case 4:
        out.push_back(pick(0xe000, 0xffff));
        break;
      case 5:
        out.push_back(pick(0xd800, 0xdbff));
        out.push_back(pick(0xdc00, 0xdfff));
        break;
      case 6:
        out.push_back(pick(0xd800, 0xdfff));
        break;
      case 7: {  // a run of CJK, for the bulk path
        const int n = std::uniform_int_distribution<int>(1, 20)(rng);
        for (int k = 0; k < n; ++k)
          out.push_back(pick(0x4e00, 0x9fff));
        break;
      }
      default:
        out.push_back(zeros ? 0 : pick(1, 0xffff));
        break;
    }
  }
  return out;
}

// Runs a check with the vector kernels switched on (where the processor has them) and off.
class BothPaths : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { platform::internal::EnableVectorKernels(GetParam()); }
  void TearDown() override { platform::internal::EnableVectorKernels(true); }
};

INSTANTIATE_TEST_SUITE_P(ConvertToUTF8, BothPaths, ::testing::Values(true, false),
                         [](const ::testing::TestParamInfo<bool>& info) {
                           return info.param ? "VectorKernels" : "Portable";
                         });

// Checks both forms on `units`, starting at every alignment, with readable units behind the
// terminator for a surrogate in the last place.
void CheckBothForms(const std::vector<char16_t>& units, int offset) {
  std::vector<char16_t> buffer(static_cast<size_t>(offset), u'#');
  buffer.insert(buffer.end(), units.begin(), units.end());
  buffer.insert(buffer.end(), {0, 'T', 'U', 0, 0, 0, 0, 0, 0, 0, 0, 0});
  const char16_t* text = buffer.data() + offset;
  const std::string expected = ModelText(text);
  const ICStringUnique s = ConvertToUTF8(text);
  ASSERT_EQ(Bytes(s), expected);
  ASSERT_EQ(s.GetCapacity(), static_cast<int32_t>(expected.size()));
  const auto length = static_cast<int32_t>(units.size());
  if (length > 0) {
    const ICStringUnique r = ConvertToUTF8(ICStringRangeW{text, length});
    ASSERT_EQ(Bytes(r), ModelRange(text, length));
  }
}

TEST_P(BothPaths, TextFormAgreesWithTheModelOnRandomInput) {
  std::mt19937 rng(31337);
  for (int round = 0; round < 6000; ++round) {
    const std::vector<char16_t> units = RandomUnits(rng, 1 + round % 60, false);
    CheckBothForms(units, round % 16);
    if (HasFatalFailure()) {
      ADD_FAILURE() << "round " << round;
      return;
    }
  }
}

// Every length 0 to 130 of Latin text (ASCII with two-byte letters), with one unit that matters
// at every offset: a letter of two or three bytes, a pair, a lone or reversed surrogate, a zero.
// The end of the output is where the kernels write through room of their own.
TEST_P(BothPaths, EveryLengthWithAUnitAtEveryOffset) {
  const std::vector<std::vector<char16_t>> inserts = {
      {0xe9}, {0x4e00}, {0xd83d, 0xde00}, {0xd800}, {0xdc00, 0xd800}, {0}, {'x'}};
  for (size_t length = 0; length <= 130; ++length) {
    std::vector<char16_t> clean(length);
    for (size_t i = 0; i < length; ++i)
      clean[i] =
          i % 4 == 3 ? static_cast<char16_t>(0xe0 + i % 20) : static_cast<char16_t>('a' + i % 26);
    CheckBothForms(clean, 0);
    for (size_t at = 0; at < length; ++at)
      for (const std::vector<char16_t>& insert : inserts) {
        std::vector<char16_t> units = clean;
        for (size_t k = 0; k < insert.size() && at + k < length; ++k)
          units[at + k] = insert[k];
        CheckBothForms(units, static_cast<int>(at % 16));
        if (HasFatalFailure()) {
          ADD_FAILURE() << "length " << length << " at " << at;
          return;
        }
      }
  }
}

TEST_P(BothPaths, RangeFormAgreesWithTheModelOnRandomInput) {
  std::mt19937 rng(2718);
  for (int round = 0; round < 6000; ++round) {
    std::vector<char16_t> units = RandomUnits(rng, 1 + round % 60, true);
    const auto length = static_cast<int32_t>(units.size());
    units.push_back(std::uniform_int_distribution<int>(0, 1)(rng) ? 0xde00 : 'z');  // read beyond
    const std::string expected = ModelRange(units.data(), length);
    const ICStringUnique s = ConvertToUTF8(ICStringRangeW{units.data(), length});
    ASSERT_EQ(Bytes(s), expected) << "round " << round;
  }
}

// Long well-formed text of every kind, pairs included, with a rare flaw (a lone or reversed
// surrogate, a zero unit) that lands at every place in a block.
TEST_P(BothPaths, AgreesWithTheModelOnMostlyWellFormedText) {
  std::mt19937 rng(4711);
  auto pick = [&](uint32_t lo, uint32_t hi) {
    return std::uniform_int_distribution<uint32_t>(lo, hi)(rng);
  };
  for (int round = 0; round < 3000; ++round) {
    std::vector<char16_t> units;
    const uint32_t mix = pick(0, 3);
    const uint32_t flawRate = pick(0, 1) ? 40 : 300;
    const size_t length = pick(10, 200);
    while (units.size() < length) {
      const uint32_t r = pick(0, 99);
      uint32_t cp;
      if (mix == 0)
        cp = r < 80 ? pick(0x20, 0x7e) : pick(0x80, 0x7ff);
      else if (mix == 1)
        cp = r < 10 ? pick(0x30, 0x39) : pick(0x4e00, 0x9fff);
      else if (mix == 2)
        cp = r < 40 ? pick(0x20, 0x7e) : pick(0x1f300, 0x1faff);
      else
        cp = r < 25   ? pick(1, 0x7f)
             : r < 50 ? pick(0x80, 0x7ff)
             : r < 75 ? pick(0xe000, 0xffff)
                      : pick(0x10000, 0x10ffff);
      if (cp >= 0x10000) {
        units.push_back(static_cast<char16_t>(0xd800 + ((cp - 0x10000) >> 10)));
        units.push_back(static_cast<char16_t>(0xdc00 + ((cp - 0x10000) & 0x3ff)));
      } else {
        units.push_back(static_cast<char16_t>(cp));
      }
      if (pick(0, flawRate) == 0) {
        switch (pick(0, 3)) {
          case 0:
            units.push_back(static_cast<char16_t>(pick(0xd800, 0xdbff)));
            break;
          case 1:
            units.push_back(static_cast<char16_t>(pick(0xdc00, 0xdfff)));
            break;
          case 2:
            units.push_back(static_cast<char16_t>(pick(0xdc00, 0xdfff)));
            units.push_back(static_cast<char16_t>(pick(0xd800, 0xdbff)));
            break;
          default:
            units.push_back(0);
            break;  // ends the zero-terminated form early
        }
      }
    }
    CheckBothForms(units, static_cast<int>(pick(0, 15)));
    if (HasFatalFailure()) {
      ADD_FAILURE() << "round " << round;
      return;
    }
  }
}

// Texts long enough for the lane counters of the bulk paths to be emptied on the way.
TEST_P(BothPaths, LongTexts) {
  std::mt19937 rng(99);
  for (const uint32_t top : {0x7fu, 0x7ffu, 0xffffu}) {
    std::vector<char16_t> units(300000);
    for (char16_t& u : units) {
      uint32_t cp = std::uniform_int_distribution<uint32_t>(1, top)(rng);
      if (cp >= 0xd800 && cp <= 0xdfff) cp = 0x4e00;
      u = static_cast<char16_t>(cp);
    }
    CheckBothForms(units, 0);
    CheckBothForms(units, 3);
  }
}

TEST(ConvertToUTF8, MemberOfEachWideShape) {
  const char16_t* text = u"\u00c7a \u20ac \U0001F600";
  const std::string expected = ModelText(text);
  EXPECT_EQ(Bytes(ICStringUniqueW(text).ConvertToUTF8()), expected);
  EXPECT_EQ(Bytes(ICStringSharedW(text).ConvertToUTF8()), expected);
  const ICStringViewW view(text);
  EXPECT_EQ(Bytes(view.ConvertToUTF8()), expected);
  EXPECT_FALSE(view.OwnsBlock());
  EXPECT_EQ(ICStringUniqueW().ConvertToUTF8().GetText(), EmptyText<char>());
}

TEST(Utf8TextBuffer, HoldsTheBytesWithTheTerminator) {
  const Utf8TextBuffer buffer(u"a\u00e9\U0001F600");
  ASSERT_NE(buffer.Text, nullptr);
  EXPECT_EQ(buffer.Size, 8);
  EXPECT_EQ(std::string(buffer.Text.get(), 8), std::string("a\xc3\xa9\xf0\x9f\x98\x80\0", 8));
}

TEST(Utf8TextBuffer, ALoneSurrogateGetsTheReplacementCharacter) {
  const char16_t text[] = {'a', 0xd800, 'b', 0};
  const Utf8TextBuffer buffer(text);
  EXPECT_EQ(buffer.Size, 6);
  EXPECT_STREQ(buffer.Text.get(),
               "a\xef\xbf\xbd"
               "b");
}

TEST(Utf8TextBuffer, EmptyAndNullTexts) {
  const Utf8TextBuffer empty(u"");
  ASSERT_NE(empty.Text, nullptr);
  EXPECT_EQ(empty.Size, 1);
  EXPECT_EQ(empty.Text[0], 0);
  const Utf8TextBuffer none(nullptr);
  EXPECT_EQ(none.Text, nullptr);
  EXPECT_EQ(none.Size, 0);
}

}  // namespace
}  // namespace ic
