// A view of text in read-only memory: every writing member takes storage of its own before it
// writes, so the viewed text is never touched (a write into it would fault). ClearText is the one
// storage operation that writes through a foreign view's pointer by contract; it is not a member
// that hosts call for editing, and the members below that clear go through _MakeOwned first.
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

// Static const arrays of char live in the read-only data of the program.
static const char kNarrow[] = "Hello World\r\nabc abc \xC3\xA9t\xC3\xA9";
static const char16_t kWide[] = u"Hello World\r\nabc abc \u00E9t\u00E9";

template <class Unit>
struct Sample;
template <>
struct Sample<char> {
  static const char* Text() { return kNarrow; }
  static constexpr size_t Size = sizeof(kNarrow);
};
template <>
struct Sample<char16_t> {
  static const char16_t* Text() { return kWide; }
  static constexpr size_t Size = sizeof(kWide);
};

template <class Unit>
using Edit = std::function<void(ICStringViewT<Unit>&)>;

template <class Unit>
std::vector<std::pair<const char*, Edit<Unit>>> WritingMembers() {
  using View = ICStringViewT<Unit>;
  using Unique = ICStringUniqueT<Unit>;
  static const Unit kAbc[] = {'a', 'b', 'c', 0};
  static const Unit kX[] = {'X', 0};
  static const Unit kXy[] = {'X', 'Y', 0};
  static const Unit kCrLf[] = {'\r', '\n', 0};
  static const Unit kO[] = {'o', 0};
  std::vector<std::pair<const char*, Edit<Unit>>> m = {
      {"Assign(text, length)", [](View& v) { v.Assign(kAbc, 2); }},
      {"Assign(text, length, inUnits)", [](View& v) { v.Assign(kAbc, 2, true); }},
      {"Assign(begin, end)", [](View& v) { v.Assign(kAbc, kAbc + 1); }},
      {"Assign(null, 0)", [](View& v) { v.Assign(static_cast<const Unit*>(nullptr), 0); }},
      {"Assign(char)", [](View& v) { v.Assign('q'); }},
      {"Assign(other)", [](View& v) { v.Assign(Unique(kXy)); }},
      {"AssignPieces", [](View& v) { v.AssignPieces(kAbc, kX, 7); }},
      {"AssignNumber", [](View& v) { v.AssignNumber(42); }},
      {"AppendNumber", [](View& v) { v.AppendNumber(42); }},
      {"Append(text)", [](View& v) { v.Append(kAbc); }},
      {"Append(text, length)", [](View& v) { v.Append(kAbc, 1); }},
      {"Append(char)", [](View& v) { v.Append('q'); }},
      {"AppendPieces", [](View& v) { v.AppendPieces(kX, kAbc); }},
      {"PutAtCursor",
       [](View& v) {
         uint32_t cursor = static_cast<uint32_t>(v.GetLength());
         v.PutAtCursor(kAbc, 3, cursor, 0);
       }},
      {"Join",
       [](View& v) {
         const std::vector<Unique> parts = {Unique(kAbc), Unique(kX)};
         v.Join(parts, kX);
       }},
      {"KeepLeft", [](View& v) { v.KeepLeft(3); }},
      {"KeepLeft(0)", [](View& v) { v.KeepLeft(0); }},
      {"KeepFrom", [](View& v) { v.KeepFrom(2); }},
      {"KeepRange", [](View& v) { v.KeepRange(1, true, 3); }},
      {"Remove", [](View& v) { v.Remove(0, true, 2); }},
      {"Remove(tail)", [](View& v) { v.Remove(3, true, 1000); }},
      {"Insert(text)", [](View& v) { v.Insert(kAbc, 1); }},
      {"Insert(string)", [](View& v) { v.Insert(Unique(kX), 0); }},
      {"SetTail", [](View& v) { v.SetTail(2, true, kX); }},
      {"PutRepeated", [](View& v) { v.PutRepeated(kX, 3, 1); }},
      {"PutRepeated(unit)", [](View& v) { v.PutRepeated(Unit('z'), 3, 0); }},
      {"ReplaceRange", [](View& v) { v.ReplaceRange(0, true, 5, kX, 1); }},
      {"ReplaceAll(same size)", [](View& v) { v.ReplaceAll(kAbc, -1, kXy, -1, 0); }},
      {"ReplaceAll(shorter)", [](View& v) { v.ReplaceAll(kAbc, -1, kX, -1, 0); }},
      {"ReplaceAll(longer)", [](View& v) { v.ReplaceAll(kO, -1, kAbc, -1, 0); }},
      {"ReplaceAll(first only)", [](View& v) { v.ReplaceAll(kO, 1, kCrLf, -1, 1); }},
      {"Replace(text, text)", [](View& v) { v.Replace(kAbc, kXy, 0); }},
      {"ReplaceAnyOf", [](View& v) { v.ReplaceAnyOf(kAbc, Unit('-')); }},
      {"NormalizeLineEnds(CR)", [](View& v) { v.NormalizeLineEnds(ICLineEnd::CarriageReturn); }},
      {"NormalizeLineEnds(CRLF)",
       [](View& v) { v.NormalizeLineEnds(ICLineEnd::CarriageReturnLineFeed); }},
      {"MakeLower", [](View& v) { v.MakeLower(false); }},
      {"MakeLower(fast)", [](View& v) { v.MakeLower(true); }},
      {"MakeUpper", [](View& v) { v.MakeUpper(false); }},
      {"MakeUpper(fast)", [](View& v) { v.MakeUpper(true); }},
      {"Capitalize", [](View& v) { v.Capitalize(); }},
      {"operator=(unique)", [](View& v) { v = Unique(kAbc); }},
      {"operator=(chain)", [](View& v) { v = Unique(kAbc) + kX; }},
      {"Append(chain)", [](View& v) { v.Append(Unique(kAbc) + kX); }},
  };
  if constexpr (std::is_same_v<Unit, char>) {
    m.push_back({"Replace(code, code)", [](View& v) { v.Replace(U'l', U'L'); }});
    m.push_back({"Insert(code point)", [](View& v) { v.Insert(U'\u00E9', 1); }});
    m.push_back({"Assign(code point)", [](View& v) { v.Assign(U'\u00E9'); }});
  } else {
    m.push_back({"Replace(unit, unit)", [](View& v) { v.Replace(u'l', u'L'); }});
    m.push_back({"ConvertFromUTF8String", [](View& v) { v.ConvertFromUTF8String("xyz"); }});
  }
  return m;
}

template <class Unit>
void CheckEveryWritingMember() {
  const Unit* const text = Sample<Unit>::Text();
  const std::basic_string<Unit> before(text);
  for (const auto& [name, edit] : WritingMembers<Unit>()) {
    SCOPED_TRACE(name);
    ICStringViewT<Unit> view(text);
    ASSERT_FALSE(view.OwnsBlock());
    edit(view);
    // Either the view took storage of its own, or it had nothing to write and still views.
    EXPECT_TRUE(view.OwnsBlock() || view.GetText() == text);
    EXPECT_EQ(std::basic_string<Unit>(text), before);
  }
}

TEST(ViewOfReadOnlyText, NarrowWritingMembersNeverWriteIntoIt) {
  CheckEveryWritingMember<char>();
}

TEST(ViewOfReadOnlyText, WideWritingMembersNeverWriteIntoIt) {
  CheckEveryWritingMember<char16_t>();
}

}  // namespace
}  // namespace ic
