// The path members on every shape in both widths: separators, parts, extensions, root
// prefixes, relative paths, file names, normalisation and comparison.
#include <gtest/gtest.h>

#include <string>

#include <ic/string/ic_string.h>

#include "../string/block_probe.h"
#include "../string/counting_allocator.h"
#include "path_test_util.h"

namespace ic {
namespace {

using namespace pathtest;

template <class S>
class PathMembers : public ::testing::Test {};
TYPED_TEST_SUITE(PathMembers, AllStrings);

// NormalizePath on a copy of the UTF-8 text in the string's width; the result as UTF-8.
template <class S>
std::string Normalized(const char* text, bool removeDots = true, bool removeDotDots = true) {
  S s = Make<S>(text);
  std::basic_string<typename S::UnitType> buffer(s.GetText(), static_cast<size_t>(s.GetLength()));
  const int32_t n = S::NormalizePath(buffer.data(), removeDots, removeDotDots);
  EXPECT_EQ(std::char_traits<typename S::UnitType>::length(buffer.c_str()), static_cast<size_t>(n));
  return Utf8(S(buffer.c_str(), n));
}

template <class S>
std::string Ancestor(const char* text, bool keep, int32_t levels) {
  return Utf8(Make<S>(text).GetAncestorPath(keep, levels));
}

template <class S>
bool Valid(const char* text) {
  return Make<S>(text).IsValidFileName();
}

TYPED_TEST(PathMembers, ConstantsHoldTheirSets) {
  using U = typename TypeParam::UnitType;
  EXPECT_EQ(std::basic_string<U>(TypeParam::PathSeparators),
            (std::basic_string<U>{U('/'), U('\\')}));
  EXPECT_EQ(Utf8(TypeParam(TypeParam::InvalidFileNameChars)), "\\/:*?\"<>|");
  EXPECT_EQ(Utf8(TypeParam(TypeParam::ExtensionStopChars)), " #%;/\\");
  EXPECT_EQ(Utf8(TypeParam(TypeParam::CrLf)), "\r\n");
  EXPECT_EQ(Utf8(TypeParam(TypeParam::Blanks)), " \t\r\n");
  EXPECT_EQ(static_cast<unsigned>(
                static_cast<std::make_unsigned_t<U>>(TypeParam::BlanksAndNoBreakSpace[4])),
            0xA0u);
  EXPECT_EQ(TypeParam::BlanksAndNoBreakSpace[5], U(0));
}

TYPED_TEST(PathMembers, AddTrailingSeparator) {
  TypeParam empty;
  empty.AddTrailingSeparator();
  EXPECT_TRUE(empty.IsEmpty());
  TypeParam blanks = Make<TypeParam>(" \t\r\n");
  blanks.AddTrailingSeparator();
  EXPECT_TRUE(blanks.IsEmpty());
  TypeParam s = Make<TypeParam>("file.txt  ");
  s.AddTrailingSeparator();
  EXPECT_EQ(Utf8(s), "file.txt/");
  EXPECT_EQ(s.GetLength(), 9);
  EXPECT_EQ(Utf8(Make<TypeParam>("dir\\sub").AddTrailingSeparator()), "dir\\sub\\");
  EXPECT_EQ(Utf8(Make<TypeParam>("dir/sub\\x").AddTrailingSeparator()), "dir/sub\\x\\");
  EXPECT_EQ(Utf8(Make<TypeParam>("name").AddTrailingSeparator()), "name/");
  EXPECT_EQ(Utf8(Make<TypeParam>("a/b/").AddTrailingSeparator()), "a/b/");
  EXPECT_EQ(Utf8(Make<TypeParam>("a\\b\\ \n").AddTrailingSeparator()), "a\\b\\");
  const TypeParam source = Make<TypeParam>("x\\y ");
  EXPECT_EQ(Utf8(source.WithTrailingSeparator()), "x\\y\\");
  EXPECT_EQ(Utf8(source), "x\\y ");
}

TYPED_TEST(PathMembers, FindLastSeparator) {
  const TypeParam s = Make<TypeParam>("a/b\\c");
  EXPECT_EQ(s.FindLastSeparator(), s.GetText() + 3);
  EXPECT_EQ(s.FindLastSeparator(true), s.GetText() + 4);
  EXPECT_EQ(Make<TypeParam>("abc").FindLastSeparator(), nullptr);
  EXPECT_EQ(TypeParam().FindLastSeparator(true), nullptr);
}

TYPED_TEST(PathMembers, DirectoryAndFileNameParts) {
  EXPECT_EQ(Utf8(TypeParam().GetDirectoryPart()), "");
  EXPECT_EQ(Utf8(TypeParam().GetFileNamePart()), "");
  EXPECT_EQ(Utf8(Make<TypeParam>("/a").GetDirectoryPart(false)), "");
  EXPECT_EQ(Utf8(Make<TypeParam>("/a").GetDirectoryPart(true)), "/");
  EXPECT_EQ(Utf8(Make<TypeParam>("C:\\d/e\\f.txt").GetDirectoryPart(false)), "C:\\d/e");
  EXPECT_EQ(Utf8(Make<TypeParam>("C:\\d/e\\f.txt").GetDirectoryPart(true)), "C:\\d/e\\");
  EXPECT_EQ(Utf8(Make<TypeParam>("name").GetDirectoryPart(true)), "");
  EXPECT_EQ(Utf8(Make<TypeParam>("C:\\d/e\\f.txt").GetFileNamePart()), "f.txt");
  EXPECT_EQ(Utf8(Make<TypeParam>("name").GetFileNamePart()), "name");
  EXPECT_EQ(Utf8(Make<TypeParam>("dir/").GetFileNamePart()), "");

  TypeParam a = Make<TypeParam>("x/y/z");
  a.RemoveFileNamePart(true);
  EXPECT_EQ(Utf8(a), "x/y/");
  a.RemoveFileNamePart(false);  // the trailing separator is the last one
  EXPECT_EQ(Utf8(a), "x/y");
  a.RemoveFileNamePart();
  EXPECT_EQ(Utf8(a), "x");
  a.RemoveFileNamePart();
  EXPECT_EQ(Utf8(a), "");
  TypeParam b = Make<TypeParam>("x/y\\z");
  b.RemoveDirectoryPart();
  EXPECT_EQ(Utf8(b), "z");
  EXPECT_EQ(b.GetLength(), 1);
  b.RemoveDirectoryPart();
  EXPECT_EQ(Utf8(b), "z");
}

TYPED_TEST(PathMembers, AncestorPath) {
  EXPECT_EQ(Ancestor<TypeParam>("a/b/", false, 1), "a");
  EXPECT_EQ(Ancestor<TypeParam>("a/b", false, 1), "a");
  EXPECT_EQ(Ancestor<TypeParam>("/a", false, 1), "");
  EXPECT_EQ(Ancestor<TypeParam>("/a", true, 1), "/");
  EXPECT_EQ(Ancestor<TypeParam>("a/", false, 1), "");
  EXPECT_EQ(Ancestor<TypeParam>("a/b/c/d", true, 2), "a/b/");
  EXPECT_EQ(Ancestor<TypeParam>("a/b/c/d", false, 3), "a");
  EXPECT_EQ(Ancestor<TypeParam>("a/b/c/d", false, 4), "");
  EXPECT_EQ(Ancestor<TypeParam>("a\\b/c", false, 0), "a\\b");
  EXPECT_EQ(Ancestor<TypeParam>("a\\b/c", false, -5), "a\\b");
  EXPECT_EQ(Ancestor<TypeParam>("/", true, 1), "");
  EXPECT_EQ(Ancestor<TypeParam>("", true, 1), "");
  EXPECT_EQ(Ancestor<TypeParam>("\xE4\xB8\xAD/\xE6\x96\x87", false, 1), "\xE4\xB8\xAD");
}

TYPED_TEST(PathMembers, ExtensionDotAndItsStops) {
  for (const char* none : {"a.b/c", "a.b c", "a.b#1", "a.b%20", "a.b;x", "a.b\\c", "abc", ""})
    EXPECT_EQ(Make<TypeParam>(none).FindExtensionDot(), nullptr) << none;
  const TypeParam s = Make<TypeParam>("dir.x/name.tar.gz");
  EXPECT_EQ(s.FindExtensionDot(), s.GetText() + 14);
  EXPECT_EQ(Utf8(s.GetExtension()), "gz");
  EXPECT_EQ(Utf8(s.GetWithoutExtension()), "dir.x/name.tar");
  EXPECT_EQ(Utf8(Make<TypeParam>("name.").GetExtension()), "");
  EXPECT_EQ(Utf8(Make<TypeParam>("name.").GetWithoutExtension()), "name");
  EXPECT_EQ(Utf8(Make<TypeParam>(".profile").GetExtension()), "profile");
  EXPECT_EQ(Utf8(Make<TypeParam>(".profile").GetWithoutExtension()), "");
  EXPECT_EQ(Utf8(Make<TypeParam>("a.b c").GetWithoutExtension()), "a.b c");
  EXPECT_EQ(Utf8(Make<TypeParam>("a.b c").GetExtension()), "");
  EXPECT_EQ(Utf8(Make<TypeParam>("Photo.JPG").GetExtension(true)), "jpg");
  EXPECT_EQ(Utf8(Make<TypeParam>("Photo.JPG").GetExtension(false)), "JPG");
  TypeParam r = Make<TypeParam>("x/y.txt");
  r.RemoveExtension();
  EXPECT_EQ(Utf8(r), "x/y");
  r.RemoveExtension();
  EXPECT_EQ(Utf8(r), "x/y");
}

TYPED_TEST(PathMembers, RemoveRootPrefix) {
  auto removed = [](const char* text) {
    TypeParam s = Make<TypeParam>(text);
    s.RemoveRootPrefix();
    return Utf8(s);
  };
  EXPECT_EQ(removed("C:\\dir\\f"), "dir\\f");
  EXPECT_EQ(removed("proto://host/x"), "host/x");
  EXPECT_EQ(removed("C:"), "");
  EXPECT_EQ(removed("C:\\/\\"), "");
  EXPECT_EQ(removed("dir\\f"), "dir\\f");
  EXPECT_EQ(removed("a:b:c"), "b:c");
}

TYPED_TEST(PathMembers, IsRelativePath) {
  auto relative = [](const char* text, bool rootedIsAbsolute) {
    return TypeParam::IsRelativePath(Make<TypeParam>(text).GetText(), rootedIsAbsolute);
  };
  EXPECT_FALSE(TypeParam::IsRelativePath(nullptr));
  EXPECT_FALSE(relative("", false));
  EXPECT_FALSE(relative("C:foo", false));
  EXPECT_FALSE(relative("a:b", false));
  EXPECT_FALSE(relative("x/y:", false));
  EXPECT_TRUE(relative("dir\\a b.txt", false));
  EXPECT_TRUE(relative("\\dir", false));
  EXPECT_FALSE(relative("\\dir", true));
  EXPECT_FALSE(relative("/dir", true));
  EXPECT_FALSE(relative("\\\\host", false));
  EXPECT_FALSE(relative("/\\host", false));
  EXPECT_TRUE(relative("a/b", true));
  EXPECT_TRUE(relative("\\", false));
}

TYPED_TEST(PathMembers, ValidFileNames) {
  EXPECT_FALSE(TypeParam::IsValidFileName(nullptr));
  EXPECT_FALSE(TypeParam().IsValidFileName());
  for (const char* bad :
       {"..",  "...", ".",   "CON.",   "COM1",     "com1.log", "con.txt", "LPT9.tar.gz", "con",
        "Prn", "nUl", "aux", "clock$", "CLOCK$.x", "a\rb",     "a\nb",    "a\\b",        "a/b",
        "a:b", "a*",  "a?",  "a\"",    "a<",       "a>",       "a|"})
    EXPECT_FALSE(Valid<TypeParam>(bad)) << bad;
  for (const char* good : {"a.", ".CON", "...CON", "CONX", "COM0", "LPT0", "a b", "a\tb", "a.txt ",
                           "CON1", "CLOCK", "CLOCK$$", "\xE4\xB8\xAD.txt", "x\x01y"})
    EXPECT_TRUE(Valid<TypeParam>(good)) << good;
  // The static form reads a plain text.
  EXPECT_TRUE(TypeParam::IsValidFileName(Make<TypeParam>("ok.txt").GetText()));
}

TYPED_TEST(PathMembers, FileNamesUpTo260CodePoints) {
  std::string name(260, 'a');
  EXPECT_TRUE(Valid<TypeParam>(name.c_str()));
  name += 'a';
  EXPECT_FALSE(Valid<TypeParam>(name.c_str()));
  // Code points, not bytes: 260 three-byte characters pass in both widths.
  std::string wide;
  for (int i = 0; i < 260; ++i)
    wide += "\xE4\xB8\xAD";
  EXPECT_TRUE(Valid<TypeParam>(wide.c_str()));
  wide += "\xE4\xB8\xAD";
  EXPECT_FALSE(Valid<TypeParam>(wide.c_str()));
}

TYPED_TEST(PathMembers, NormalizePathWorkedResults) {
  using S = TypeParam;
  EXPECT_EQ(S::NormalizePath(nullptr), 0);
  EXPECT_EQ(Normalized<S>(""), "");
  EXPECT_EQ(Normalized<S>("C:\\a\\.\\b\\..\\c"), "C:\\a\\c");
  EXPECT_EQ(Normalized<S>("\\\\host\\share\\..\\x"), "\\\\host\\x");
  EXPECT_EQ(Normalized<S>("proto://h/a/../b"), "proto://h/b");
  EXPECT_EQ(Normalized<S>("a/../b"), "a/../b");
  EXPECT_EQ(Normalized<S>("../../a"), "../../a");
  EXPECT_EQ(Normalized<S>("/../a"), "/a");
  EXPECT_EQ(Normalized<S>("./a"), "a");
  EXPECT_EQ(Normalized<S>("/a/.."), "/");
  EXPECT_EQ(Normalized<S>("C:\\a\\.."), "C:\\");
  EXPECT_EQ(Normalized<S>("a/b/.."), "a/");
  EXPECT_EQ(Normalized<S>("a/b/"), "a/b/");
  EXPECT_EQ(Normalized<S>("C:..\\x"), "C:..\\x");
  EXPECT_EQ(Normalized<S>("./"), ".");
  EXPECT_EQ(Normalized<S>(".//"), "/");
  EXPECT_EQ(Normalized<S>("a//b\\\\/c"), "a/b/c");
  EXPECT_EQ(Normalized<S>("a/b/../../c"), "a/../c");
  EXPECT_EQ(Normalized<S>("/a/b/../../c"), "/c");
  EXPECT_EQ(Normalized<S>("a/./../b"), "a/../b");
  EXPECT_EQ(Normalized<S>("a/b/./../c"), "a/c");
  EXPECT_EQ(Normalized<S>("abc"), "abc");
  EXPECT_EQ(Normalized<S>("proto://h"), "proto://h");
  EXPECT_EQ(Normalized<S>("./././x/./y"), "x/y");
}

TYPED_TEST(PathMembers, NormalizePathFlags) {
  using S = TypeParam;
  EXPECT_EQ(Normalized<S>("C:\\a\\.\\b\\..\\c", false, false), "C:\\a\\.\\b\\..\\c");
  EXPECT_EQ(Normalized<S>("C:\\a\\.\\b\\..\\c", true, false), "C:\\a\\b\\..\\c");
  EXPECT_EQ(Normalized<S>("C:\\a\\.\\b\\..\\c", false, true), "C:\\a\\.\\c");
  // A kept "." segment before ".." keeps the "..": the output ends in a dot segment.
  EXPECT_EQ(Normalized<S>("/a/./../b", false, true), "/a/./../b");
  // Leading "./" groups go whatever removeDots says; runs of separators always collapse.
  EXPECT_EQ(Normalized<S>("./a//b", false, false), "a/b");
}

TYPED_TEST(PathMembers, NormalizeStoresTheLength) {
  TypeParam s = Make<TypeParam>("C:\\a\\.\\b\\..\\c");
  s.Normalize();
  EXPECT_EQ(Utf8(s), "C:\\a\\c");
  EXPECT_EQ(s.GetLength(), 6);
  TypeParam keep = Make<TypeParam>("/x/../y");
  keep.Normalize(false, false);
  EXPECT_EQ(Utf8(keep), "/x/../y");
}

TYPED_TEST(PathMembers, NormalizeAbsolute) {
  TypeParam relative = Make<TypeParam>("a/./b/../c");
  relative.NormalizeAbsolute();
  EXPECT_EQ(Utf8(relative), "a/./b/../c");
  TypeParam rooted = Make<TypeParam>("/a/./b/../c");
  rooted.NormalizeAbsolute();
  EXPECT_EQ(Utf8(rooted), "/a/c");
  TypeParam drive = Make<TypeParam>("C:\\x\\..\\y");
  drive.NormalizeAbsolute();
  EXPECT_EQ(Utf8(drive), "C:\\y");
  TypeParam empty;
  empty.NormalizeAbsolute();
  EXPECT_TRUE(empty.IsEmpty());
}

TYPED_TEST(PathMembers, CompareFormAndPathsEqual) {
  TypeParam s = Make<TypeParam>("C:\\Dir\\.\\Sub\\..\\File.TXT");
  s.ToPathCompareForm(true);
  EXPECT_EQ(Utf8(s), "c:/dir/file.txt");
  TypeParam plain = Make<TypeParam>("C:\\Dir\\.\\X");
  plain.ToPathCompareForm(false);
  EXPECT_EQ(Utf8(plain), "c:/dir/./x");
  using U = typename TypeParam::UnitType;
  const std::basic_string<U> a = Make<TypeParam>("C:\\A\\b\\..\\C.txt").GetText();
  const std::basic_string<U> b = Make<TypeParam>("c:/a/c.TXT").GetText();
  EXPECT_TRUE(TypeParam::PathsEqual(a.c_str(), b.c_str(), true));
  EXPECT_FALSE(TypeParam::PathsEqual(a.c_str(), b.c_str(), false));
  EXPECT_TRUE(TypeParam::PathsEqual(nullptr, Make<TypeParam>("").GetText(), true));
  EXPECT_FALSE(TypeParam::PathsEqual(nullptr, b.c_str(), false));
}

TYPED_TEST(PathMembers, EqualIgnoringChars) {
  const TypeParam s = Make<TypeParam>("a-b c");
  EXPECT_TRUE(
      s.EqualIgnoringChars(Make<TypeParam>("abc").GetText(), Make<TypeParam>("- ").GetText()));
  EXPECT_TRUE(s.EqualIgnoringChars(Make<TypeParam>("--a b-c--").GetText(),
                                   Make<TypeParam>("- ").GetText()));
  EXPECT_FALSE(
      s.EqualIgnoringChars(Make<TypeParam>("abcd").GetText(), Make<TypeParam>("- ").GetText()));
  EXPECT_FALSE(s.EqualIgnoringChars(Make<TypeParam>("abc").GetText(), nullptr));
  EXPECT_TRUE(s.EqualIgnoringChars(Make<TypeParam>("a-b c").GetText(), nullptr));
  EXPECT_TRUE(Make<TypeParam>("--").EqualIgnoringChars(nullptr, Make<TypeParam>("-").GetText()));
  EXPECT_TRUE(Make<TypeParam>("x\xC3\xA4y")
                  .EqualIgnoringChars(Make<TypeParam>("\xC3\xA4x\xC3\xA4y").GetText(),
                                      Make<TypeParam>("\xC3\xA4").GetText()));
}

// The narrow form steps over whole code points backwards: the last code point is skipped as a
// whole, so a stray continuation byte behind a final slash hides that slash as well.
TEST(PathMembersNarrow, AncestorSkipsTheWholeLastCodePoint) {
  EXPECT_EQ(Str(ICStringUnique("a/b/\x80").GetAncestorPath(false, 1)), "a");
  EXPECT_EQ(Str(ICStringUniqueW(u"a/b/\u0080").GetAncestorPath(false, 1)), u"a/b");
}

TEST(PathMembersNarrow, CompareFormFoldsNonAsciiOnlyWithNormalize) {
  ICStringUnique fast("\xC3\x84/\xE2\xB1\xA5");  // U+00C4, U+2C65 (lower form is shorter)
  fast.ToPathCompareForm(false);
  EXPECT_EQ(Str(fast), "\xC3\xA4/\xE2\xB1\xA5");
  ICStringUnique full("\xC8\xBA");  // U+023A lowers to the three-byte U+2C65
  full.ToPathCompareForm(true);
  EXPECT_EQ(Str(full), "\xE2\xB1\xA5");
  ICStringUniqueW wide(u"\u00C4B");
  wide.ToPathCompareForm(false);
  EXPECT_EQ(Str(wide), u"\u00C4b");
}

// At the floor one code unit survives: in the narrow form that is the first byte of a longer
// character, in the wide form the whole character.
TEST(PathMembersNarrow, FloorKeepsOneUnit) {
  std::string narrow = "./\xC3\xA4/..";
  EXPECT_EQ(ICStringUnique::NormalizePath(narrow.data()), 1);
  EXPECT_EQ(narrow.c_str(), std::string("\xC3"));
  std::u16string wide = u"./\u00E4/..";
  EXPECT_EQ(ICStringUniqueW::NormalizePath(wide.data()), 1);
  EXPECT_EQ(wide.c_str(), std::u16string(u"\u00E4"));
}

TEST(PathMembersShapes, ViewPartsLeadIntoTheSource) {
  const char* source = "dir/name.Ext";
  const ICStringView view(source);
  const ICStringView name = view.GetFileNamePart();
  EXPECT_EQ(name.GetText(), source + 4);
  EXPECT_FALSE(name.OwnsBlock());
  EXPECT_EQ(name.ViewLength(), -1);
  const ICStringView ext = view.GetExtension();
  EXPECT_EQ(ext.GetText(), source + 9);
  EXPECT_FALSE(ext.OwnsBlock());
  const ICStringView lowered = view.GetExtension(true);
  EXPECT_TRUE(lowered.OwnsBlock());
  EXPECT_STREQ(lowered.GetText(), "ext");
  // The other shapes copy.
  const ICStringShared shared("dir/name.Ext");
  EXPECT_NE(shared.GetFileNamePart().GetText(), shared.GetText() + 4);
}

TEST(PathMembersShapes, InPlaceOnForeignViewCopiesFirst) {
  char source[] = "C:\\a\\..\\b";
  ICStringView view(source);
  view.Normalize();
  EXPECT_STREQ(view.GetText(), "C:\\b");
  EXPECT_TRUE(view.OwnsBlock());
  EXPECT_STREQ(source, "C:\\a\\..\\b");
  char other[] = "x/y.txt";
  ICStringView v2(other);
  v2.RemoveExtension();
  EXPECT_STREQ(v2.GetText(), "x/y");
  EXPECT_STREQ(other, "x/y.txt");
}

TEST(PathMembersShapes, SharedBlockDetachesOnlyWhenSomethingChanges) {
  ICStringShared a("C:\\a\\b");
  ICStringShared b = a;
  b.Normalize();
  EXPECT_EQ(a.GetText(), b.GetText());  // nothing to do: still one block
  b.RemoveExtension();
  EXPECT_EQ(a.GetText(), b.GetText());
  b.AddTrailingSeparator();
  EXPECT_NE(a.GetText(), b.GetText());
  EXPECT_STREQ(a.GetText(), "C:\\a\\b");
  EXPECT_STREQ(b.GetText(), "C:\\a\\b\\");
  ICStringShared c("C:\\a\\..\\b");
  ICStringShared d = c;
  d.Normalize();
  EXPECT_STREQ(c.GetText(), "C:\\a\\..\\b");
  EXPECT_STREQ(d.GetText(), "C:\\b");
}

TEST(PathMembersShapes, NothingToNormalizeAllocatesNothing) {
  ICStringView view("C:\\dir\\file.txt");
  ICStringUnique unique("C:\\dir\\file.txt");
  const char* before = unique.GetText();
  {
    test::AllocationScope scope;
    unique.Normalize();
    unique.RemoveRootPrefix().RemoveExtension();
    EXPECT_EQ(scope.Allocations(), 0);
  }
  EXPECT_EQ(unique.GetText(), before);
  EXPECT_STREQ(unique.GetText(), "dir\\file");
}

}  // namespace
}  // namespace ic
