// A host's PathSchemeHandler in both widths: which members ask which hook, and when they don't.
#include <gtest/gtest.h>

#include <string>

#include <ic/path/path_scheme_handler.h>
#include <ic/string/ic_string.h>

#include "path_test_util.h"

namespace ic {
namespace {

using namespace pathtest;

// Treats "mem:" texts as remote, gives ".zip" files inside archives ("a.zip!b.txt") the
// extension of the inner file, and rewrites bases that start with "~" to a home directory.
template <class Unit>
class TestHost : public PathSchemeHandlerT<Unit> {
 public:
  using String = typename PathSchemeHandlerT<Unit>::String;
  int localAsked = 0;
  int extensionAsked = 0;
  int baseAsked = 0;

  bool IsLocalPath(const Unit* text) override {
    ++localAsked;
    return !(text[0] == Unit('m') && text[1] == Unit('e') && text[2] == Unit('m'));
  }
  bool ExtractExtension(const Unit* text, String& out) override {
    ++extensionAsked;
    const std::basic_string<Unit> s(text);
    const size_t bang = s.find(Unit('!'));
    if (bang == std::basic_string<Unit>::npos) return false;
    const size_t dot = s.rfind(Unit('.'));
    out.Assign(s.c_str() + dot + 1);
    return true;
  }
  void PrepareBase(String& base) override {
    ++baseAsked;
    if (base.GetLength() > 0 && base.GetText()[0] == Unit('~')) {
      String home = Make<String>("C:\\home");
      home.Append(base.GetText() + 1);
      base = home;
    }
  }
};

template <class S>
class SchemeHandler : public ::testing::Test {
 protected:
  using Unit = typename S::UnitType;
  TestHost<Unit> host;
  void SetUp() override { EXPECT_EQ(SetPathSchemeHandler(&host), &host); }
  void TearDown() override {
    SetPathSchemeHandler(static_cast<PathSchemeHandlerT<Unit>*>(nullptr));
    EXPECT_EQ(GetPathSchemeHandler<Unit>(), nullptr);
  }
};
TYPED_TEST_SUITE(SchemeHandler, AllStrings);

TYPED_TEST(SchemeHandler, SlotsStartNullAndAreSetPerWidth) {
  using Unit = typename TypeParam::UnitType;
  EXPECT_EQ(GetPathSchemeHandler<Unit>(), &this->host);
  if constexpr (sizeof(Unit) == 1)
    EXPECT_EQ(GetPathSchemeHandler<char16_t>(), nullptr);
  else
    EXPECT_EQ(GetPathSchemeHandler<char>(), nullptr);
}

TYPED_TEST(SchemeHandler, IsLocalPathIsAskedForAbsoluteTextsOnly) {
  TypeParam url = Make<TypeParam>("mem:/a b");
  url.ToFileUrl();
  EXPECT_EQ(Utf8(url), "mem:/a%20b");  // not local: no prefix, decoded and escaped
  EXPECT_EQ(this->host.localAsked, 1);
  TypeParam local = Make<TypeParam>("proto://x y");
  local.ToFileUrl();
  EXPECT_EQ(Utf8(local), "file:///proto://x%20y");  // the host says local despite "://"
  EXPECT_EQ(this->host.localAsked, 2);
  TypeParam relative = Make<TypeParam>("dir\\x y");
  relative.ToFileUrl();
  TypeParam empty = Make<TypeParam>("   ");
  empty.ToFileUrl();
  EXPECT_EQ(this->host.localAsked, 2);
  TypeParam path = Make<TypeParam>("file:///C:/x");
  path.ToFilePath();
  EXPECT_EQ(this->host.localAsked, 2);
}

TYPED_TEST(SchemeHandler, ExtractExtensionIsAskedByGetExtensionOnly) {
  const TypeParam archived = Make<TypeParam>("a.zip!Inner.TXT");
  EXPECT_EQ(Utf8(archived.GetExtension()), "TXT");
  EXPECT_EQ(Utf8(archived.GetExtension(true)), "txt");
  EXPECT_EQ(this->host.extensionAsked, 2);
  const TypeParam plain = Make<TypeParam>("b.Doc");
  EXPECT_EQ(Utf8(plain.GetExtension(true)), "doc");  // the host says false: the own rule
  EXPECT_EQ(this->host.extensionAsked, 3);
  EXPECT_EQ(Utf8(archived.GetWithoutExtension()), "a.zip!Inner");
  TypeParam removed = archived;
  removed.RemoveExtension();
  EXPECT_NE(archived.FindExtensionDot(), nullptr);
  EXPECT_EQ(this->host.extensionAsked, 3);
}

TYPED_TEST(SchemeHandler, PrepareBaseIsAskedForRelativeReferencesOnly) {
  const TypeParam base = Make<TypeParam>("~\\docs\\a.txt");
  EXPECT_EQ(Utf8(Make<TypeParam>("b.txt").ResolveAgainst(base.GetText())), "C:\\home\\docs\\b.txt");
  EXPECT_EQ(this->host.baseAsked, 1);
  EXPECT_EQ(Utf8(Make<TypeParam>("C:\\abs").ResolveAgainst(base.GetText())), "C:\\abs");
  EXPECT_EQ(Utf8(Make<TypeParam>("").ResolveAgainst(base.GetText())), "");
  EXPECT_EQ(this->host.baseAsked, 1);
  EXPECT_EQ(Utf8(Make<TypeParam>("/r").ResolveAgainst(base.GetText())), "C:/r");
  EXPECT_EQ(this->host.baseAsked, 2);
}

}  // namespace
}  // namespace ic
