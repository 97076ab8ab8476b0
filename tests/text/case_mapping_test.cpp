// Case mapping of code points and of plain UTF-8 text: FindCaseRecord, ToLowerCodePoint,
// ToUpperCodePoint, MapCodePointsInPlace and MapCodePoints.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <ic/text/case_mapping.h>

namespace ic {
namespace {

TEST(FindCaseRecord, FindsEveryRecordOfTheTableAndNothingElse) {
  for (int32_t i = 0; i < CaseTableSize; ++i) {
    const CaseRecord* found = FindCaseRecord(CaseTable[i].code);
    ASSERT_EQ(found, &CaseTable[i]) << std::hex << CaseTable[i].code;
  }
  int32_t next = 0;
  for (uint32_t code = 0; code <= 0x10FFFF + 2; ++code) {
    const bool inTable = next < CaseTableSize && CaseTable[next].code == code;
    ASSERT_EQ(FindCaseRecord(code) != nullptr, inTable) << std::hex << code;
    if (inTable) ++next;
  }
  EXPECT_EQ(next, CaseTableSize);
}

TEST(FindCaseRecord, CodePointsWithoutCase) {
  EXPECT_EQ(FindCaseRecord(0), nullptr);
  EXPECT_EQ(FindCaseRecord('1'), nullptr);
  EXPECT_EQ(FindCaseRecord(0x4E2D), nullptr);  // a CJK ideograph
  EXPECT_EQ(FindCaseRecord(0x1E944), nullptr);
  ASSERT_NE(FindCaseRecord(0x1E943), nullptr);
}

TEST(CodePointMappers, AsciiByArithmetic) {
  for (uint32_t c = 0; c < 0x80; ++c) {
    const uint32_t lower = (c >= 'A' && c <= 'Z') ? c + 32 : c;
    const uint32_t upper = (c >= 'a' && c <= 'z') ? c - 32 : c;
    EXPECT_EQ(ToLowerCodePoint(c), lower) << c;
    EXPECT_EQ(ToUpperCodePoint(c), upper) << c;
  }
}

TEST(CodePointMappers, AgreeWithTheTableForEveryCodePoint) {
  for (uint32_t code = 0x80; code <= 0x10FFFF; ++code) {
    const CaseRecord* record = FindCaseRecord(code);
    ASSERT_EQ(ToLowerCodePoint(code), record ? record->lower : code) << std::hex << code;
    ASSERT_EQ(ToUpperCodePoint(code), record ? record->upper : code) << std::hex << code;
  }
}

TEST(CodePointMappers, SimpleMappingsOnly) {
  EXPECT_EQ(ToUpperCodePoint(0xDF), 0xDFu);      // no special casing: sharp s stays
  EXPECT_EQ(ToLowerCodePoint(0x130), 0x69u);     // dotted capital I lowers to i
  EXPECT_EQ(ToUpperCodePoint(0x131), 0x49u);     // dotless i uppers to I
  EXPECT_EQ(ToUpperCodePoint(0x2C65), 0x23Au);   // three bytes up to two
  EXPECT_EQ(ToLowerCodePoint(0x23A), 0x2C65u);   // two bytes down to three
  EXPECT_EQ(ToUpperCodePoint(0xAB70), 0x13A0u);  // Cherokee small letters are in
  EXPECT_EQ(ToLowerCodePoint(0x10A0), 0x2D00u);  // Georgian capital to small
  EXPECT_EQ(ToUpperCodePoint(0x10D0), 0x10D0u);  // no Mtavruli capitals in this version
}

uint32_t Lower(uint32_t c) {
  return ToLowerCodePoint(c);
}
uint32_t Upper(uint32_t c) {
  return ToUpperCodePoint(c);
}
uint32_t ToSurrogate(uint32_t c) {
  return c == 'x' ? 0xD800 : c == 'y' ? 0x110000 : c;
}

TEST(MapCodePointsInPlace, ChangesOnlyWhatKeepsItsSize) {
  char text[] = "A\u00C9\u0130\u0131z\u2C65\u0412";  // A É İ ı z ⱥ В
  MapCodePointsInPlace(text, Upper);
  EXPECT_STREQ(text, "A\u00C9\u0130\u0131Z\u2C65\u0412");  // ı and ⱥ would change size
  MapCodePointsInPlace(text, Lower);
  EXPECT_STREQ(text, "a\u00E9\u0130\u0131z\u2C65\u0432");  // İ would shrink
}

TEST(MapCodePointsInPlace, NullAndEmptyAreLeftAlone) {
  MapCodePointsInPlace(nullptr, Upper);
  char empty[] = "";
  MapCodePointsInPlace(empty, Upper);
  EXPECT_STREQ(empty, "");
}

TEST(MapCodePoints, InvalidArguments) {
  char text[] = "abc";
  EXPECT_EQ(MapCodePoints(nullptr, 10, Upper), 22);
  EXPECT_EQ(MapCodePoints(text, 0, Upper), 22);
  EXPECT_STREQ(text, "abc");
}

TEST(MapCodePoints, ReportsTheSizeNeededAndLeavesTheText) {
  char text[8] = "a\u023A";  // 3 bytes; lower case needs 4
  EXPECT_EQ(MapCodePoints(text, 4, Lower), 5);
  EXPECT_STREQ(text, "a\u023A");
  EXPECT_EQ(MapCodePoints(text, 5, Lower), 0);
  EXPECT_STREQ(text, "a\u2C65");
}

TEST(MapCodePoints, ExactFitIsStillTooSmallWithoutRoomForTheTerminator) {
  char text[8] = "abc";
  EXPECT_EQ(MapCodePoints(text, 3, Upper), 4);
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(MapCodePoints(text, 4, Upper), 0);
  EXPECT_STREQ(text, "ABC");
}

TEST(MapCodePoints, ShrinkingMovesTheRestLeft) {
  char text[] = "\u0130x\u0130y";
  EXPECT_EQ(MapCodePoints(text, sizeof text, Lower), 0);
  EXPECT_STREQ(text, "ixiy");
}

TEST(MapCodePoints, GrowingGoesThroughATemporary) {
  char text[32] = "\u023A\u023Ez";  // Ⱥ Ⱦ z: each grows from 2 to 3 bytes
  EXPECT_EQ(MapCodePoints(text, sizeof text, Lower), 0);
  EXPECT_STREQ(text, "\u2C65\u2C66z");
}

TEST(MapCodePoints, ResultsThatCannotBeEncodedAreDropped) {
  // The dropped values still count in the measured size: 1 + 3 + 1 + 4 + 1 bytes.
  char text[16] = "axbyc";
  EXPECT_EQ(MapCodePoints(text, 6, ToSurrogate), 11);
  EXPECT_STREQ(text, "axbyc");
  EXPECT_EQ(MapCodePoints(text, sizeof text, ToSurrogate), 0);
  EXPECT_STREQ(text, "abc");
}

TEST(MapCodePoints, ASequenceCutShortByTheTerminatorIsKept) {
  char text[] = "ab\xE2\x82";  // a three-byte lead with only one continuation byte
  EXPECT_EQ(MapCodePoints(text, sizeof text, Upper), 0);
  EXPECT_STREQ(text, "AB\xE2\x82");
}

}  // namespace
}  // namespace ic
