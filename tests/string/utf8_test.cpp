// UTF-8 stepping, encoding and searching over plain narrow text.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>

#include <ic/string/utf8.h>

namespace ic {
namespace {

TEST(Utf8SequenceSize, EveryLeadByteByTheTable) {
  for (int b = 0; b < 256; ++b) {
    int expected;
    if (b < 0x80)
      expected = 1;
    else if (b < 0xa0)
      expected = 4;  // continuation bytes used as leads
    else if (b < 0xb0)
      expected = 3;
    else if (b < 0xc0)
      expected = 4;
    else if (b < 0xe0)
      expected = 2;
    else if (b < 0xf0)
      expected = 3;
    else
      expected = 4;  // 0xf8 and above are not rejected
    EXPECT_EQ(GetUTF8SequenceSize(static_cast<unsigned char>(b)), expected) << b;
  }
}

TEST(Utf8CodePointSize, Boundaries) {
  EXPECT_EQ(GetUTF8CodePointSize(0), 1);
  EXPECT_EQ(GetUTF8CodePointSize(0x7f), 1);
  EXPECT_EQ(GetUTF8CodePointSize(0x80), 2);
  EXPECT_EQ(GetUTF8CodePointSize(0x7ff), 2);
  EXPECT_EQ(GetUTF8CodePointSize(0x800), 3);
  EXPECT_EQ(GetUTF8CodePointSize(0xd800), 3);  // surrogates are not tested
  EXPECT_EQ(GetUTF8CodePointSize(0xffff), 3);
  EXPECT_EQ(GetUTF8CodePointSize(0x10000), 4);
  EXPECT_EQ(GetUTF8CodePointSize(0x10ffff), 4);
  EXPECT_EQ(GetUTF8CodePointSize(0x7fffffff), 4);  // nor the upper limit
}

TEST(EncodeCodePoint, RefusesSurrogatesAndValuesBeyondUnicode) {
  for (uint32_t cp : {0xd800u, 0xdbffu, 0xdc00u, 0xdfffu, 0x110000u, 0xffffffffu}) {
    char buffer[6] = {'#', '#', '#', '#', '#', 0};
    char* cursor = buffer;
    EXPECT_FALSE(EncodeCodePoint(cursor, cp)) << cp;
    EXPECT_EQ(cursor, buffer);
    EXPECT_STREQ(buffer, "#####");
  }
}

TEST(EncodeCodePoint, WritesEachLength) {
  struct Case {
    uint32_t cp;
    const char* bytes;
  } cases[] = {{0x41, "A"},
               {0x7f, "\x7f"},
               {0x80, "\xc2\x80"},
               {0xe9, "\xc3\xa9"},
               {0x7ff, "\xdf\xbf"},
               {0x800, "\xe0\xa0\x80"},
               {0x20ac, "\xe2\x82\xac"},
               {0xd7ff, "\xed\x9f\xbf"},
               {0xe000, "\xee\x80\x80"},
               {0xffff, "\xef\xbf\xbf"},
               {0x10000, "\xf0\x90\x80\x80"},
               {0x1f600, "\xf0\x9f\x98\x80"},
               {0x10ffff, "\xf4\x8f\xbf\xbf"}};
  for (const Case& c : cases) {
    char buffer[8] = {};
    char* cursor = buffer;
    EXPECT_TRUE(EncodeCodePoint(cursor, c.cp));
    EXPECT_EQ(cursor - buffer, static_cast<ptrdiff_t>(std::strlen(c.bytes)));
    EXPECT_STREQ(buffer, c.bytes);
    EXPECT_EQ(cursor - buffer, GetUTF8CodePointSize(c.cp));
  }
  char zero[2] = {'z', 'z'};
  char* cursor = zero;
  EXPECT_TRUE(EncodeCodePoint(cursor, 0));
  EXPECT_EQ(cursor, zero + 1);
  EXPECT_EQ(zero[0], 0);
}

TEST(DecodeUTF8Sequence, ReadsWhatEncodeCodePointWrote) {
  std::mt19937 rng(11);
  for (int i = 0; i < 20000; ++i) {
    uint32_t cp = std::uniform_int_distribution<uint32_t>(1, 0x10ffff)(rng);
    if (cp >= 0xd800 && cp <= 0xdfff) continue;
    char buffer[5] = {};
    char* end = buffer;
    ASSERT_TRUE(EncodeCodePoint(end, cp));
    const char* cursor = buffer;
    ASSERT_EQ(DecodeUTF8Sequence(cursor), cp);
    ASSERT_EQ(cursor, end);
  }
}

TEST(DecodeUTF8Sequence, DoesNotValidate) {
  const char overlong[] = "\xc1\x81";  // an overlong 'A'
  const char* cursor = overlong;
  EXPECT_EQ(DecodeUTF8Sequence(cursor), 0x41u);
  EXPECT_EQ(cursor, overlong + 2);
  const char surrogate[] = "\xed\xa0\x80";
  cursor = surrogate;
  EXPECT_EQ(DecodeUTF8Sequence(cursor), 0xd800u);
  // A continuation byte as lead steps four bytes; the bytes behind are taken whatever they are.
  const char stray[] =
      "\x80"
      "abc";
  cursor = stray;
  EXPECT_EQ(DecodeUTF8Sequence(cursor),
            ((0u << 18) | (('a' & 63u) << 12) | (('b' & 63u) << 6) | ('c' & 63u)));
  EXPECT_EQ(cursor, stray + 4);
  // A terminator inside a sequence is consumed like any other byte.
  const char cut[] = "\xe4\0\0\0";
  cursor = cut;
  EXPECT_EQ(DecodeUTF8Sequence(cursor), 0x4000u);
  EXPECT_EQ(cursor, cut + 3);
}

TEST(CountCodePoints, CountsSequences) {
  EXPECT_EQ(CountCodePoints(""), 0u);
  EXPECT_EQ(CountCodePoints("abc"), 3u);
  EXPECT_EQ(CountCodePoints("a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80z"), 5u);
}

TEST(CountCodePoints, ATruncatedSequenceStepsOverTheTerminator) {
  // 'a', then a 3-byte lead that jumps over the terminator and 'b' onto 'c', then the real end.
  const char text[] = {'a', '\xe4', 0, 'b', 'c', 0};
  EXPECT_EQ(CountCodePoints(text), 3u);
}

TEST(GetUTF8Offset, CountsSequencesAndStopsAtTheTerminator) {
  EXPECT_EQ(GetUTF8Offset("abc", 5), 3);
  EXPECT_EQ(GetUTF8Offset("abc", 0), 0);
  EXPECT_EQ(GetUTF8Offset("abc", 2), 2);
  const char* text = "\xc3\xa9x\xe2\x82\xac\xf0\x9f\x98\x80";
  EXPECT_EQ(GetUTF8Offset(text, 1), 2);
  EXPECT_EQ(GetUTF8Offset(text, 2), 3);
  EXPECT_EQ(GetUTF8Offset(text, 3), 6);
  EXPECT_EQ(GetUTF8Offset(text, 4), 10);
  EXPECT_EQ(GetUTF8Offset(text, 100), 10);
  // Only a zero lead byte stops: a truncated sequence steps over the terminator.
  const char cut[] = {'\xe4', 0, 'b', 'c', 0};
  EXPECT_EQ(GetUTF8Offset(cut, 1), 3);
  EXPECT_EQ(GetUTF8Offset(cut, 9), 4);
}

TEST(FindCodePoint, AsciiIsAByteSearch) {
  const char* text = "h\xc3\xa9llo";
  EXPECT_EQ(FindCodePoint(text, 'l'), text + 3);
  EXPECT_EQ(FindCodePoint(text, 'z'), nullptr);
  EXPECT_EQ(FindCodePoint(text, 0), text + 6);  // the terminator
}

TEST(FindCodePoint, OtherValuesWalkTheSequences) {
  const char* text = "a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xe2\x82\xac";
  EXPECT_EQ(FindCodePoint(text, 0xe9), text + 1);
  EXPECT_EQ(FindCodePoint(text, 0x20ac), text + 3);
  EXPECT_EQ(FindCodePoint(text, 0x1f600), text + 6);
  EXPECT_EQ(FindCodePoint(text, 0x1f601), nullptr);
  EXPECT_EQ(FindCodePoint(text, 0xa9), nullptr);  // no match inside a sequence
  // Overlong forms decode to their value and are found.
  const char overlong[] = "x\xe0\x82\x80";
  EXPECT_EQ(FindCodePoint(overlong, 0x80), overlong + 1);
}

}  // namespace
}  // namespace ic
