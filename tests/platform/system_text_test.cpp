// SetFromSystemMessage and SetFromLocaleInfo: the contract that holds on every platform (the
// fallback text, unknown ids and types, the locale information of de-DE).
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include <ic/platform/system_text.h>
#include <ic/string/ic_string.h>

#include "locale_setup.h"

namespace {

using namespace ic::platform;

std::u16string Text(const ic::ICStringUniqueW& s) {
  return std::u16string(s.GetText(), static_cast<size_t>(s.GetLength()));
}

TEST(SystemMessageTest, AnUnknownNumberGetsTheFallbackWithEightDigits) {
  ic::ICStringUniqueW text(u"before");
  EXPECT_EQ(&text.SetFromSystemMessage(0x1234), &text);
  EXPECT_EQ(Text(text), u"Unknown error 0x00001234");
  text.SetFromSystemMessage(0xFFFFFFFF);
  EXPECT_EQ(Text(text), u"Unknown error 0xffffffff");
  text.SetFromSystemMessage(0x7ABCDEF0);
  EXPECT_EQ(Text(text), u"Unknown error 0x7abcdef0");
}

TEST(SystemMessageTest, AKnownNumberGetsTheSystemsText) {
  // 2: ERROR_FILE_NOT_FOUND on Windows, ENOENT elsewhere; both have a message.
  ic::ICStringUniqueW text;
  text.SetFromSystemMessage(2);
  EXPECT_GT(text.GetLength(), 5);
  EXPECT_EQ(Text(text).rfind(u"Unknown error", 0), std::u16string::npos) << "fallback given";
}

TEST(LocaleInfoTest, AnUnknownLocaleOrTypeGivesFalseAndLeavesTheString) {
  ic::ICStringUniqueW text(u"unchanged");
  EXPECT_FALSE(text.SetFromLocaleInfo(0x12345, LocaleDecimalSeparator));
  EXPECT_EQ(Text(text), u"unchanged");
  EXPECT_FALSE(text.SetFromLocaleInfo(0x0407, 0xFFFF));
  EXPECT_FALSE(text.SetFromLocaleInfo(0xFFFF));
  EXPECT_EQ(Text(text), u"unchanged");
}

TEST(LocaleInfoTest, TheUserDefaultIsTheFormWithoutALocale) {
  ic::ICStringUniqueW implicit, explicitly;
  ASSERT_TRUE(implicit.SetFromLocaleInfo(LocaleDecimalSeparator));
  ASSERT_TRUE(explicitly.SetFromLocaleInfo(LocaleUserDefault, LocaleDecimalSeparator));
  EXPECT_EQ(Text(implicit), Text(explicitly));
  EXPECT_EQ(implicit.GetLength(), 1);
  ic::ICStringUniqueW system;
  EXPECT_TRUE(system.SetFromLocaleInfo(LocaleSystemDefault, LocaleDecimalSeparator));
}

TEST(LocaleInfoTest, TheMeasuringCallCountsTheTerminator) {
  std::string why;
  if (!ic::test::EnsureLocale("de_DE", why)) GTEST_SKIP() << why;
  EXPECT_EQ(GetLocaleInfoW(0x0407, LocaleName, nullptr, 0), 6);  // "de-DE" and its terminator
  char16_t small[5] = {u'x', u'x', u'x', u'x', u'x'};
  EXPECT_EQ(GetLocaleInfoW(0x0407, LocaleName, small, 5), 0);  // too small: nothing written
  EXPECT_EQ(small[0], u'x');
  char16_t room[6];
  EXPECT_EQ(GetLocaleInfoW(0x0407, LocaleName, room, 6), 6);
  EXPECT_EQ(std::u16string(room), u"de-DE");
}

// What the locale data of every platform agrees on. The short date and the abbreviated day
// names differ with the data's source (glibc: "dd.MM.yyyy", "Mo"; wine: "d.M.yyyy", "Mo."); the
// POSIX tests check glibc's.
TEST(LocaleInfoTest, GermanLocaleInformation) {
  std::string why;
  if (!ic::test::EnsureLocale("de_DE", why)) GTEST_SKIP() << why;
  const struct {
    uint32_t type;
    std::u16string expected;
  } cases[] = {
      {LocaleDecimalSeparator, u","},
      {LocaleThousandSeparator, u"."},
      {LocaleGrouping, u"3;0"},
      {LocaleCurrencySymbol, u"€"},
      {LocaleIsoLanguageName, u"de"},
      {LocaleIsoCountryName, u"DE"},
      {LocaleName, u"de-DE"},
      {LocaleTimeFormat, u"HH:mm:ss"},
      {LocaleShortTime, u"HH:mm"},
      {LocaleDayName1, u"Montag"},
      {LocaleDayName1 + 6, u"Sonntag"},
      {LocaleMonthName1 + 2, u"März"},
      {LocaleMonthName1 + 11, u"Dezember"},
      {LocaleAbbrevMonthName1, u"Jan"},
  };
  for (const auto& c : cases) {
    ic::ICStringUniqueW text(u"old text");
    EXPECT_TRUE(text.SetFromLocaleInfo(0x0407, c.type)) << std::hex << c.type;
    EXPECT_EQ(Text(text), c.expected) << std::hex << c.type;
  }
}

TEST(LocaleInfoTest, TheTableNamesTheCommonLocales) {
  size_t count = 0;
  const KnownLocaleId* known = KnownLocaleIds(count);
  std::u16string names;
  for (size_t i = 0; i < count; ++i) {
    names += std::u16string(known[i].name,
                            known[i].name + std::char_traits<char>::length(known[i].name)) +
             u" ";
  }
  for (const char16_t* name : {u"en-US ", u"en-GB ", u"de-DE ", u"fr-FR ", u"es-ES ", u"ja-JP ",
                               u"zh-CN ", u"zh-TW ", u"ko-KR "}) {
    EXPECT_NE(names.find(name), std::u16string::npos) << std::u16string(name).size();
  }
}

}  // namespace
