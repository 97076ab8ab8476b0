// file: URLs and relative paths on every shape in both widths.
#include <gtest/gtest.h>

#include <string>

#include <ic/string/ic_string.h>

#include "path_test_util.h"

namespace ic {
namespace {

using namespace pathtest;

template <class S>
class FileUrl : public ::testing::Test {};
TYPED_TEST_SUITE(FileUrl, AllStrings);

template <class S>
std::string ToUrl(const char* text) {
  S s = Make<S>(text);
  s.ToFileUrl();
  const std::string inPlace = Utf8(s);
  EXPECT_EQ(Utf8(S::PathToFileUrl(Make<S>(text).GetText())), inPlace) << text;
  return inPlace;
}

template <class S>
std::string ToPath(const char* text) {
  S s = Make<S>(text);
  s.ToFilePath();
  const std::string inPlace = Utf8(s);
  EXPECT_EQ(Utf8(S::FileUrlToPath(Make<S>(text).GetText())), inPlace) << text;
  return inPlace;
}

template <class S>
std::string Relative(const char* path, const char* base, const char* fallback, bool parentSteps,
                     bool isDirectory) {
  const S p = Make<S>(path);
  const S b = Make<S>(base ? base : "");
  const S f = Make<S>(fallback ? fallback : "");
  S out;
  S::MakeRelative(out, p, base ? b.GetText() : nullptr, fallback ? f.GetText() : nullptr,
                  parentSteps, isDirectory);
  const auto* bt = base ? b.GetText() : nullptr;
  const auto* ft = fallback ? f.GetText() : nullptr;
  EXPECT_EQ(Utf8(p.MakeRelativeTo(bt, ft, parentSteps, isDirectory)), Utf8(out));
  S inPlace = Make<S>(path);
  inPlace.MakeRelativeToInPlace(bt, ft, parentSteps, isDirectory);
  EXPECT_EQ(Utf8(inPlace), Utf8(out));
  return Utf8(out);
}

TYPED_TEST(FileUrl, ToFileUrlEdgeCases) {
  EXPECT_EQ(ToUrl<TypeParam>("  C:\\a b\\c.txt"), "file:///C:/a%20b/c.txt");
  EXPECT_EQ(ToUrl<TypeParam>("\\\\host\\share\\a"), "file://host/share/a");
  EXPECT_EQ(ToUrl<TypeParam>("\\\\host"), "file://host/");
  EXPECT_EQ(ToUrl<TypeParam>("dir\\a b.txt"), "dir/a%20b.txt");
  EXPECT_EQ(ToUrl<TypeParam>("a%20b.txt"), "a%20b.txt");
  EXPECT_EQ(ToUrl<TypeParam>("C:\\a%20b.txt"), "file:///C:/a%2520b.txt");
  EXPECT_EQ(ToUrl<TypeParam>("proto://host/a b"), "proto://host/a%20b");
  EXPECT_EQ(ToUrl<TypeParam>("FILE:x y"), "FILE:x%20y");
  EXPECT_EQ(ToUrl<TypeParam>("file:///C:/a%20b"), "file:///C:/a%20b");
  EXPECT_EQ(ToUrl<TypeParam>("//host/x"), "file://///host/x");
  EXPECT_EQ(ToUrl<TypeParam>("c:\\X"), "file:///c:/X");
  EXPECT_EQ(ToUrl<TypeParam>(""), "");
  EXPECT_EQ(ToUrl<TypeParam>(" \t\r\n"), "");
  EXPECT_EQ(ToUrl<TypeParam>("C:\\a b "), "file:///C:/a%20b%20");
}

TYPED_TEST(FileUrl, ToFilePathEdgeCases) {
  EXPECT_EQ(ToPath<TypeParam>("file:///C:/x"), "C:\\x");
  EXPECT_EQ(ToPath<TypeParam>("file://C:/x"), "C:\\x");
  EXPECT_EQ(ToPath<TypeParam>("file://\\\\host\\x"), "\\\\host\\x");
  EXPECT_EQ(ToPath<TypeParam>("file://\\C:/x"), "C:\\x");
  EXPECT_EQ(ToPath<TypeParam>("file://host/share"), "\\\\host\\share");
  EXPECT_EQ(ToPath<TypeParam>("FILE:///x"), "FILE:///x");
  EXPECT_EQ(ToPath<TypeParam>("file:x"), "x");
  EXPECT_EQ(ToPath<TypeParam>("file:/x"), "\\x");
  EXPECT_EQ(ToPath<TypeParam>("file:"), "");
  EXPECT_EQ(ToPath<TypeParam>("file:///"), "");
  EXPECT_EQ(ToPath<TypeParam>("file:////host/x"), "\\host\\x");
  EXPECT_EQ(ToPath<TypeParam>("  file:///c:/a%20b/c.txt"), "c:\\a b\\c.txt");
  EXPECT_EQ(ToPath<TypeParam>("  no/url"), "no/url");
  EXPECT_EQ(ToPath<TypeParam>("file://"), "\\\\");
}

TYPED_TEST(FileUrl, RoundTripKeepsDriveCaseAndLosesLeadingSpace) {
  const std::string url = ToUrl<TypeParam>(" c:\\Dir\\x y.txt");
  EXPECT_EQ(url, "file:///c:/Dir/x%20y.txt");
  EXPECT_EQ(ToPath<TypeParam>((" " + url).c_str()), "c:\\Dir\\x y.txt");
}

TEST(FileUrlWide, NonAsciiBecomesEscapedUtf8AndComesBack) {
  ICStringUniqueW s(u"C:\\\u4E2D\u6587\\\u00E9.txt");
  s.ToFileUrl();
  EXPECT_EQ(Str(s), u"file:///C:/%E4%B8%AD%E6%96%87/%C3%A9.txt");
  for (char16_t u : Str(s))
    EXPECT_LT(u, 0x80);
  s.ToFilePath();
  EXPECT_EQ(Str(s), u"C:\\\u4E2D\u6587\\\u00E9.txt");
}

// The road of a path: a narrow unique string with a Windows path, leading blanks removed,
// tested as absolute, prefixed, escaped through its UTF-8 bytes and flipped.
TEST(FileUrlNarrow, RoadOfAPath) {
  ICStringUnique path("  C:\\Users\\\xE5\xBC\xA0\\My Files\\100%.txt");
  path.ToFileUrl();
  EXPECT_STREQ(path.GetText(), "file:///C:/Users/%E5%BC%A0/My%20Files/100%25.txt");
  EXPECT_EQ(path.GetLength(), 48);
  path.ToFilePath();
  EXPECT_STREQ(path.GetText(), "C:\\Users\\\xE5\xBC\xA0\\My Files\\100%.txt");
}

TYPED_TEST(FileUrl, MakeRelativeEdgeCases) {
  using S = TypeParam;
  EXPECT_EQ(Relative<S>("C:\\A\\b.txt", "c:/a/x.txt", nullptr, false, false), "b.txt");
  EXPECT_EQ(Relative<S>("C:\\a\\b\\c.txt", "C:\\a\\x\\y.txt", nullptr, true, false),
            "..\\b\\c.txt");
  EXPECT_EQ(Relative<S>("C:\\a\\b\\c.txt", "C:\\a\\x\\y.txt", nullptr, false, false),
            "C:\\a\\b\\c.txt");
  EXPECT_EQ(Relative<S>("C:\\a", "C:\\a\\f.txt", nullptr, false, true), ".");
  EXPECT_EQ(Relative<S>("C:\\a", "C:\\a\\f.txt", nullptr, true, false), "..\\a");
  EXPECT_EQ(Relative<S>("D:\\x", "C:\\y\\z", nullptr, true, false), "D:\\x");
  EXPECT_EQ(Relative<S>("proto://h/a/b", "proto://h/a/c", nullptr, true, false), "b");
  EXPECT_EQ(Relative<S>("proto://h/x", "proto://h/a/c", nullptr, true, false), "proto://h/x");
  EXPECT_EQ(Relative<S>("C:\\p", "", "", true, false), "C:\\p");
  EXPECT_EQ(Relative<S>("", "", "", true, true), ".");
  EXPECT_EQ(Relative<S>("", "", "", true, false), "");
  EXPECT_EQ(Relative<S>("C:\\d\\p", "name.txt", "C:\\d", true, false), "C:\\d\\p");
  EXPECT_EQ(Relative<S>("C:\\d\\p", nullptr, "C:\\d", true, false), "p");
  EXPECT_EQ(Relative<S>("C:\\d\\p", "", "C:\\d  ", true, false), "p");
  EXPECT_EQ(Relative<S>("/a/b", "/a/c/f", nullptr, true, false), "/a/b");
  EXPECT_EQ(Relative<S>("C:/a/b/c", "C:\\x\\y\\z\\f", nullptr, true, false), "..\\..\\..\\a/b/c");
  EXPECT_EQ(Relative<S>("C:\\a\\b", "C:\\a\\b\\c\\f", nullptr, true, true), "..\\");
}

TEST(FileUrlNarrow, MakeRelativeFoldsByWidth) {
  const ICStringUnique path("C:\\\xC3\x84\\f.txt");
  EXPECT_STREQ(path.MakeRelativeTo("C:\\\xC3\xA4\\g.txt").GetText(), "f.txt");
  const ICStringUniqueW wide(u"C:\\\u00C4\\f.txt");
  EXPECT_EQ(Str(wide.MakeRelativeTo(u"C:\\\u00E4\\g.txt")), u"C:\\\u00C4\\f.txt");
  EXPECT_EQ(Str(wide.MakeRelativeTo(u"C:\\\u00E4\\g.txt", nullptr, true)), u"..\\\u00C4\\f.txt");
}

}  // namespace
}  // namespace ic
