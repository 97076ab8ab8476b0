// The POSIX side of the system texts: errno messages in the user's locale with an explicit test
// for numbers the C library does not know, and locale information from the POSIX locale data.
#include <errno.h>
#include <locale.h>
#include <stdlib.h>
#include <string.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include <ic/platform/internal/posix_locale_info.h>
#include <ic/platform/system_text.h>
#include <ic/string/ic_string.h>

#include "locale_setup.h"

namespace {

using namespace ic::platform;

std::u16string Text(const ic::ICStringUniqueW& s) {
  return std::u16string(s.GetText(), static_cast<size_t>(s.GetLength()));
}

std::u16string Ascii(const std::string& text) {
  return std::u16string(text.begin(), text.end());
}

// The user's locale is taken from the environment once, at the first call that needs it; so
// the check runs in a fresh process of its own (a death test in the "threadsafe" style, which
// starts the program again), with LC_ALL set before anything asks for the locale.
int CheckGermanUserLocale() {
  setenv("LC_ALL", "de_DE.UTF-8", 1);
  int faults = 0;
  auto expect = [&](bool ok, const char* what) {
    if (!ok) {
      fprintf(stderr, "fault: %s\n", what);
      ++faults;
    }
  };
  ic::ICStringUniqueW text;
  expect(text.SetFromLocaleInfo(LocaleName) && Text(text) == u"de-DE", "locale name");
  expect(text.SetFromLocaleInfo(LocaleDecimalSeparator) && Text(text) == u",", "decimal");
  // The process locale is left alone.
  expect(std::string(setlocale(LC_ALL, nullptr)) == "C", "process locale");
  // The message of ENOENT as the C library gives it in German.
  text.SetFromSystemMessage(ENOENT);
  locale_t german = newlocale(LC_ALL_MASK, "de_DE.UTF-8", static_cast<locale_t>(0));
  ic::ICStringUniqueW fromUtf8;
  fromUtf8.ConvertFromUTF8String(german ? strerror_l(ENOENT, german) : "?", -1);
  if (german) freelocale(german);
  expect(Text(text) == Text(fromUtf8), "ENOENT text");
  return faults;
}

TEST(PosixSystemTextDeathTest, TheUserLocaleComesFromTheEnvironment) {
  std::string why;
  if (!ic::test::EnsureLocale("de_DE", why)) GTEST_SKIP() << why;
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::exit(CheckGermanUserLocale()), ::testing::ExitedWithCode(0), "");
}

// Every number from 0 to 400: the C library's text where it has one, else the fallback; the C
// library's own "Unknown error N" never comes through.
TEST(PosixSystemTextTest, ErrnoTextsAgainstTheCLibrary) {
  locale_t user = newlocale(LC_ALL_MASK, "", static_cast<locale_t>(0));
  if (!user) user = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  int known = 0;
  for (uint32_t number = 0; number <= 400; ++number) {
    ic::ICStringUniqueW text;
    text.SetFromSystemMessage(number);
    const std::string reference = strerror_l(static_cast<int>(number), user);
    // Untranslated, the C library marks a number it does not know by this text.
    const bool unknown =
        std::string(strerror_l(static_cast<int>(number), c)).rfind("Unknown error", 0) == 0;
    EXPECT_EQ(internal::IsKnownErrorNumber(number), !unknown) << number;
    if (unknown) {
      char fallback[32];
      snprintf(fallback, sizeof fallback, "Unknown error 0x%08x", number);
      EXPECT_EQ(Text(text), Ascii(fallback)) << number;
    } else {
      ++known;
      ic::ICStringUniqueW fromUtf8;
      fromUtf8.ConvertFromUTF8String(reference.c_str(), -1);
      EXPECT_EQ(Text(text), Text(fromUtf8)) << number;
    }
  }
  freelocale(user);
  freelocale(c);
  EXPECT_GT(known, 100);
  EXPECT_FALSE(internal::IsKnownErrorNumber(static_cast<uint32_t>(INT_MAX) + 1));
}

TEST(PosixSystemTextTest, FormatMessageTakesOnlyTheSystemForm) {
  char16_t* block = nullptr;
  const uint32_t units = FormatMessageW(0x1300, nullptr, ENOENT, 0x400,
                                        reinterpret_cast<char16_t*>(&block), 0, nullptr);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(units, std::char_traits<char16_t>::length(block));
  EXPECT_EQ(LocalFree(block), nullptr);
  block = nullptr;
  EXPECT_EQ(FormatMessageW(0x1000, nullptr, ENOENT, 0x400, reinterpret_cast<char16_t*>(&block), 0,
                           nullptr),
            0u);
  EXPECT_EQ(block, nullptr);
  EXPECT_EQ(FormatMessageW(0x1300, nullptr, 0x1234, 0x400, reinterpret_cast<char16_t*>(&block), 0,
                           nullptr),
            0u);
  EXPECT_EQ(block, nullptr);
  EXPECT_EQ(LocalFree(nullptr), nullptr);
}

TEST(PosixSystemTextTest, TheCLocaleStandsForTheInvariantLocale) {
  locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  ASSERT_NE(c, static_cast<locale_t>(0));
  freelocale(c);
  // The system default falls back to C.UTF-8 where no LANG is configured; both are invariant
  // unless the machine configures a locale, so only the form of the answer is checked.
  ic::ICStringUniqueW language;
  ASSERT_TRUE(language.SetFromLocaleInfo(LocaleSystemDefault, LocaleIsoLanguageName));
  EXPECT_GE(language.GetLength(), 2);
}

TEST(PosixSystemTextTest, EnglishDatesAreTheCLibrarysPictures) {
  std::string why;
  if (!ic::test::EnsureLocale("en_US", why)) GTEST_SKIP() << why;
  ic::ICStringUniqueW text;
  // glibc writes the month and day with two digits ("%m/%d/%Y"); Windows' picture is "M/d/yyyy".
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0409, LocaleShortDate));
  EXPECT_EQ(Text(text), u"MM/dd/yyyy");
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0409, LocaleTimeFormat));
  EXPECT_EQ(Text(text), u"hh:mm:ss tt");
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0409, LocaleShortTime));
  EXPECT_EQ(Text(text), u"hh:mm tt");
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0409, LocaleGrouping));
  EXPECT_EQ(Text(text), u"3;0");
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0409, LocaleDayName1 + 6));
  EXPECT_EQ(Text(text), u"Sunday");
}

TEST(PosixSystemTextTest, GermanDatesAreTheCLibrarysPictures) {
  std::string why;
  if (!ic::test::EnsureLocale("de_DE", why)) GTEST_SKIP() << why;
  ic::ICStringUniqueW text;
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0407, LocaleShortDate));
  EXPECT_EQ(Text(text), u"dd.MM.yyyy");
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0407, LocaleAbbrevDayName1));
  EXPECT_EQ(Text(text), u"Mo");
  ASSERT_TRUE(text.SetFromLocaleInfo(0x0407, LocaleLongDate));
  EXPECT_EQ(Text(text), u"ddd dd MMM yyyy");  // the date part of glibc's "%a %d %b %Y %T %Z"
}

TEST(PosixSystemTextTest, ALocaleThatIsNotInstalledGivesFalse) {
  // ko-KR is in the table; with no such locale and an empty LOCPATH nothing can open it.
  locale_t korean = newlocale(LC_ALL_MASK, "ko_KR.UTF-8", static_cast<locale_t>(0));
  if (korean) {
    freelocale(korean);
    GTEST_SKIP() << "ko_KR.UTF-8 is installed on this machine";
  }
  ic::ICStringUniqueW text(u"kept");
  EXPECT_FALSE(text.SetFromLocaleInfo(0x0412, LocaleName));
  EXPECT_EQ(Text(text), u"kept");
}

TEST(PosixSystemTextTest, DatePictures) {
  EXPECT_EQ(internal::DatePicture("%d.%m.%Y"), "dd.MM.yyyy");
  EXPECT_EQ(internal::DatePicture("%m/%d/%y"), "MM/dd/yy");
  EXPECT_EQ(internal::DatePicture("%A, %e. %B %Y"), "dddd, d. MMMM yyyy");
  EXPECT_EQ(internal::DatePicture("%Y年%m月%d日"), "yyyy年MM月dd日");
  EXPECT_EQ(internal::DatePicture("%I:%M:%S %p"), "hh:mm:ss tt");
  EXPECT_EQ(internal::DatePicture("%T"), "HH:mm:ss");
  EXPECT_EQ(internal::DatePicture("%-m/%-d/%Y %-H:%M"), "M/d/yyyy H:mm");  // no padding
  EXPECT_EQ(internal::DatePicture("%-d de %B"), "d' de 'MMMM");  // text with letters is quoted
  EXPECT_EQ(internal::DatePicture("%F%Z"), "yyyy-MM-dd");        // no picture for a zone
  EXPECT_EQ(internal::DatePicture(""), "");
}

TEST(PosixSystemTextTest, Groupings) {
  EXPECT_EQ(internal::WindowsGrouping("\3"), "3;0");
  EXPECT_EQ(internal::WindowsGrouping("\3\3"), "3;0");
  EXPECT_EQ(internal::WindowsGrouping("\3\2"), "3;2;0");
  EXPECT_EQ(internal::WindowsGrouping(std::string("\3") + char(CHAR_MAX)), "3");
  EXPECT_EQ(internal::WindowsGrouping(""), "0");
}

TEST(PosixSystemTextTest, LocaleNamesTried) {
  EXPECT_EQ(internal::PosixLocaleName("de-DE", 0), "de_DE.UTF-8");
  EXPECT_EQ(internal::PosixLocaleName("de-DE", 1), "de_DE.utf8");
  EXPECT_EQ(internal::PosixLocaleName("de-DE", 2), "de_DE");
  EXPECT_EQ(internal::PosixLocaleName("de-DE", 3), "");
}

}  // namespace
