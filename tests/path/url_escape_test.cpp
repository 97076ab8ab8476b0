// Percent escaping and the resolution of relative references, on every shape in both widths.
#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>

#include <ic/string/ic_string.h>

#include "../string/counting_allocator.h"
#include "path_test_util.h"

namespace ic {
namespace {

using namespace pathtest;

template <class S>
class UrlEscape : public ::testing::Test {};
TYPED_TEST_SUITE(UrlEscape, AllStrings);

template <class S>
std::string Encoded(const char* text, int mode) {
  S s = Make<S>(text);
  s.PercentEncode(mode);
  return Utf8(s);
}

template <class S>
std::string Decoded(const char* text) {
  S s = Make<S>(text);
  s.PercentDecode();
  return Utf8(s);
}

// ResolveRelative with texts given in UTF-8.
template <class S>
std::string Resolved(const char* reference, const char* base, const char* fallback = nullptr,
                     bool removeDots = true, bool removeDotDots = true) {
  const S r = Make<S>(reference);
  const S b = Make<S>(base);
  const S f = Make<S>(fallback ? fallback : "");
  S out;
  S::ResolveRelative(out, r.GetText(), b.GetText(), fallback ? f.GetText() : nullptr, removeDots,
                     removeDotDots);
  return Utf8(out);
}

TYPED_TEST(UrlEscape, EncodeUnsafeOnly) {
  EXPECT_EQ(Encoded<TypeParam>("a b", 0), "a%20b");
  EXPECT_EQ(Encoded<TypeParam>("a/b?c=d", 0), "a/b?c=d");
  EXPECT_EQ(Encoded<TypeParam>("50%", 0), "50%25");
  EXPECT_EQ(Encoded<TypeParam>("{x}", 0), "%7Bx%7D");
  EXPECT_EQ(Encoded<TypeParam>("\\", 0), "\\");
  EXPECT_EQ(Encoded<TypeParam>("\"<>^`|\x7f\t", 0), "%22%3C%3E%5E%60%7C%7F%09");
  EXPECT_EQ(Encoded<TypeParam>("[]!'()*-._~", 0), "[]!'()*-._~");
  EXPECT_EQ(Encoded<TypeParam>("", 0), "");
  EXPECT_EQ(Encoded<TypeParam>("\xE4\xB8\xAD", 0), "%E4%B8%AD");
  // A mode other than 0, 1 or 2 acts as 0.
  EXPECT_EQ(Encoded<TypeParam>("a/b\\ c", 7), "a/b\\%20c");
  EXPECT_EQ(Encoded<TypeParam>("a/b\\ c", -1), "a/b\\%20c");
}

TYPED_TEST(UrlEscape, EncodeReservedModes) {
  EXPECT_EQ(Encoded<TypeParam>("a/b", 1), "a%2Fb");
  EXPECT_EQ(Encoded<TypeParam>("\\", 1), "\\");
  EXPECT_EQ(Encoded<TypeParam>("\\", 2), "%5C");
  EXPECT_EQ(Encoded<TypeParam>("#;/?:@&=+$,", 1), "%23%3B%2F%3F%3A%40%26%3D%2B%24%2C");
  EXPECT_EQ(Encoded<TypeParam>("#;/?:@&=+$,\\", 2), "%23%3B%2F%3F%3A%40%26%3D%2B%24%2C%5C");
}

TYPED_TEST(UrlEscape, EncodeReservesThreeTimesTheLength) {
  TypeParam s = Make<TypeParam>("abc");
  s.PercentEncode(0);
  EXPECT_EQ(s.GetCapacity(), 9);
  EXPECT_EQ(s.GetLength(), 3);
}

TYPED_TEST(UrlEscape, Decode) {
  EXPECT_EQ(Decoded<TypeParam>("100%"), "100%");
  EXPECT_EQ(Decoded<TypeParam>("%%"), "%");
  EXPECT_EQ(Decoded<TypeParam>("%41%zz!"), "Az!");
  EXPECT_EQ(Decoded<TypeParam>("%4z!"), "!");
  EXPECT_EQ(Decoded<TypeParam>("a%4"), "a");
  EXPECT_EQ(Decoded<TypeParam>("a%2fb%2F"), "a/b/");
  EXPECT_EQ(Decoded<TypeParam>("plain"), "plain");
  EXPECT_EQ(Decoded<TypeParam>(""), "");
  EXPECT_EQ(Decoded<TypeParam>("%"), "%");
  EXPECT_EQ(Decoded<TypeParam>("%E4%B8%AD"), "\xE4\xB8\xAD");
}

// The decoding rules written out one by one: "%%" is a percent sign, a lone percent sign at the
// end stays, a percent sign and a non-digit are both lost, "%X" at the end is lost and ends the
// text, "%X?" with a non-digit ? is lost whole.
std::string ReferenceDecode(const std::string& in) {
  const auto hex = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  };
  const auto value = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
  std::string out;
  size_t i = 0;
  while (i < in.size()) {
    if (in[i] != '%') {
      out += in[i++];
    } else if (i + 1 == in.size()) {
      out += '%';
      break;
    } else if (in[i + 1] == '%') {
      out += '%';
      i += 2;
    } else if (!hex(in[i + 1])) {
      i += 2;
    } else if (i + 2 == in.size()) {
      break;
    } else {
      if (hex(in[i + 2])) out += static_cast<char>(value(in[i + 1]) * 16 + value(in[i + 2]));
      i += 3;
    }
  }
  return out;
}

// Random texts of plain runs of every length and escapes good and bad, so that every escape
// form falls at every position of the narrow decoder's eight-byte moves and of its blocks.
TYPED_TEST(UrlEscape, DecodeMatchesAReferenceOnRandomTexts) {
  static const char* const kPieces[] = {"%",   "%%",  "%4", "%41", "%7e", "%2F",  "%zz",
                                        "%G1", "%3g", "a",  "b/c", " ",   "xyzzy"};
  std::mt19937 rng(1234);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    // Every tenth text is long enough to span several of the decoder's blocks of 1024 bytes.
    const int pieces = static_cast<int>(rng() % (round % 10 == 0 ? 400 : 24));
    for (int p = 0; p < pieces; ++p) {
      if (rng() % 3 == 0)
        text.append(rng() % 20, static_cast<char>('A' + rng() % 26));
      else
        text += kPieces[rng() % std::size(kPieces)];
    }
    // Wide strings take the decoded bytes as UTF-8, so a decoded byte that does not form a
    // character there is expected as it converts.
    const std::string bytes = ReferenceDecode(text);
    const std::string expected =
        sizeof(typename TypeParam::UnitType) == 2 ? Utf8(Make<TypeParam>(bytes.c_str())) : bytes;
    ASSERT_EQ(Decoded<TypeParam>(text.c_str()), expected) << text;
  }
}

TEST(UrlEscapeNarrow, DecodeKeepsBytesAsTheyCome) {
  ICStringUnique s("%C3x%FF");
  s.PercentDecode();
  EXPECT_EQ(Str(s), "\xC3x\xFF");
}

TEST(UrlEscapeNarrow, DecodeInPlaceNeverAllocates) {
  ICStringUnique s("a%20b%41%zz");
  const char* block = s.GetText();
  {
    test::AllocationScope scope;
    s.PercentDecode();
    EXPECT_EQ(scope.Allocations(), 0);
  }
  EXPECT_EQ(s.GetText(), block);
  EXPECT_EQ(Str(s), "a bAz");
}

TEST(UrlEscapeNarrow, NothingToDecodeLeavesTheBlockShared) {
  ICStringShared a("no escapes");
  ICStringShared b = a;
  b.PercentDecode();
  EXPECT_EQ(a.GetText(), b.GetText());
  char foreign[] = "x%41";
  ICStringView v(foreign);
  v.PercentDecode();
  EXPECT_STREQ(v.GetText(), "xA");
  EXPECT_STREQ(foreign, "x%41");
}

TEST(UrlEscapeWide, DecodeGoesThroughUtf8) {
  ICStringUniqueW s(u"%E4%B8%AD");
  s.PercentDecode();
  EXPECT_EQ(Str(s), u"\u4E2D");
  ICStringUniqueW bad(u"%C3");
  bad.PercentDecode();
  EXPECT_EQ(Str(bad), u"\uFFFD");
  // Units above 0xFF outside an escape are lost once there is an escape to decode.
  ICStringUniqueW mixed(u"\u4E2D%41\u00E9");
  mixed.PercentDecode();
  EXPECT_EQ(Str(mixed), u"A\uFFFD");
  ICStringUniqueW plain(u"\u4E2D");
  plain.PercentDecode();
  EXPECT_EQ(Str(plain), u"\u4E2D");
  ICStringUniqueW gone(u"%z");
  gone.PercentDecode();
  EXPECT_TRUE(gone.IsEmpty());
}

TEST(UrlEscapeWide, EncodeEscapesUtf8Bytes) {
  ICStringUniqueW s(u"\u4E2D \U0001F600");
  s.PercentEncode(0);
  EXPECT_EQ(Str(s), u"%E4%B8%AD%20%F0%9F%98%80");
  ICStringUniqueW lone(u"a\xD800");
  lone.PercentEncode(0);
  EXPECT_EQ(Str(lone), u"a%EF%BF%BD");
}

TYPED_TEST(UrlEscape, ResolveRelativeEdgeCases) {
  EXPECT_EQ(Resolved<TypeParam>("b.html", "proto://h/d/a.html"), "proto://h/d/b.html");
  EXPECT_EQ(Resolved<TypeParam>("b.html", "proto://h"), "proto://h/b.html");
  EXPECT_EQ(Resolved<TypeParam>("/x", "proto://h/d/a.html"), "proto://h/x");
  EXPECT_EQ(Resolved<TypeParam>("/x", "C:\\d\\a.txt"), "C:/x");
  EXPECT_EQ(Resolved<TypeParam>("/x", "d\\a.txt"), "/x");
  EXPECT_EQ(Resolved<TypeParam>("..\\c", "C:\\a\\b\\f.txt"), "C:\\a\\c");
  EXPECT_EQ(Resolved<TypeParam>("..\\c", "C:\\a\\b\\f.txt", nullptr, false, false),
            "C:\\a\\b\\..\\c");
  EXPECT_EQ(Resolved<TypeParam>("x", "", "C:\\d"), "C:\\d\\x");
  EXPECT_EQ(Resolved<TypeParam>("x", "", "C:/d/"), "C:/d/x");
  EXPECT_EQ(Resolved<TypeParam>("C:\\y", "proto://h/d/a.html"), "C:\\y");
  EXPECT_EQ(Resolved<TypeParam>("x", "page.html"), "page.htmlx");
  EXPECT_EQ(Resolved<TypeParam>("", "proto://h/d/a.html"), "");
  EXPECT_EQ(Resolved<TypeParam>("\\\\host\\x", "C:\\a\\b"), "\\\\host\\x");
  EXPECT_EQ(Resolved<TypeParam>("x", "", nullptr), "x");
  // Separators are not unified for a relative reference.
  EXPECT_EQ(Resolved<TypeParam>("e/f", "C:\\d\\a.txt", nullptr, false, false), "C:\\d\\e/f");
  // The rooted reference on a "scheme://host" base with no slash: the reference less its first
  // character, and every backslash becomes a slash.
  EXPECT_EQ(Resolved<TypeParam>("\\x\\y", "proto://h"), "proto://h/x/y");
  // The base is cut behind its last separator, a backslash here; only a slash ends the
  // authority, so the whole copy stays in front.
  EXPECT_EQ(Resolved<TypeParam>("\\x\\y", "proto://h\\z"), "proto://h/x/y");
  // A rooted reference is never normalised.
  EXPECT_EQ(Resolved<TypeParam>("/a/../b", "C:\\d\\a.txt"), "C:/a/../b");
}

TYPED_TEST(UrlEscape, ResolveMemberForms) {
  const TypeParam base = Make<TypeParam>("C:\\a\\b\\f.txt");
  const TypeParam ref = Make<TypeParam>("..\\c");
  EXPECT_EQ(Utf8(ref.ResolveAgainst(base.GetText())), "C:\\a\\c");
  EXPECT_EQ(Utf8(ref), "..\\c");
  TypeParam inPlace = Make<TypeParam>("g\\h.txt");
  inPlace.ResolveAgainstInPlace(base.GetText());
  EXPECT_EQ(Utf8(inPlace), "C:\\a\\b\\g\\h.txt");
  // out may be the reference itself.
  TypeParam self = Make<TypeParam>("x");
  TypeParam::ResolveRelative(self, self.GetText(), base.GetText(), nullptr);
  EXPECT_EQ(Utf8(self), "C:\\a\\b\\x");
}

}  // namespace
}  // namespace ic
