// The clipboard members over a clipboard backend that records every call and fails on request,
// in front of the platform layer's own clipboard; and one round trip through the system's
// clipboard where the test machine has one.
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <ic/platform/clipboard.h>
#include <ic/platform/internal/memory_clipboard.h>
#include <ic/string/ic_string.h>

#include "block_probe.h"

namespace {

using ic::platform::ClipboardBackend;
using ic::platform::GlobalHandle;

// Passes every call to a MemoryClipboard, writes one line per call to Log, and fails the call
// named in a Fail* flag.
class RecordingClipboard final : public ClipboardBackend {
 public:
  ic::platform::internal::MemoryClipboard Inner;
  std::vector<std::string> Log;
  bool FailOpen = false, FailEmpty = false, FailAlloc = false, FailLock = false, FailSet = false;

  GlobalHandle GlobalAlloc(uint32_t flags, size_t bytes) noexcept override {
    Log.push_back("alloc " + std::to_string(flags) + " " + std::to_string(bytes));
    return FailAlloc ? nullptr : Inner.GlobalAlloc(flags, bytes);
  }
  void* GlobalLock(GlobalHandle handle) noexcept override {
    Log.push_back("lock");
    return FailLock ? nullptr : Inner.GlobalLock(handle);
  }
  bool GlobalUnlock(GlobalHandle handle) noexcept override {
    Log.push_back("unlock");
    return Inner.GlobalUnlock(handle);
  }
  size_t GlobalSize(GlobalHandle handle) noexcept override {
    Log.push_back("size");
    return Inner.GlobalSize(handle);
  }
  GlobalHandle GlobalFree(GlobalHandle handle) noexcept override {
    Log.push_back(handle ? "free block" : "free null");
    return Inner.GlobalFree(handle);
  }
  bool OpenClipboard(void* owner) noexcept override {
    Log.push_back(owner ? "open owner" : "open");
    return !FailOpen && Inner.OpenClipboard(owner);
  }
  bool EmptyClipboard() noexcept override {
    Log.push_back("empty");
    return !FailEmpty && Inner.EmptyClipboard();
  }
  GlobalHandle SetClipboardData(uint32_t format, GlobalHandle handle) noexcept override {
    Log.push_back("set " + std::to_string(format));
    return FailSet ? nullptr : Inner.SetClipboardData(format, handle);
  }
  GlobalHandle GetClipboardData(uint32_t format) noexcept override {
    Log.push_back("get " + std::to_string(format));
    return Inner.GetClipboardData(format);
  }
  bool CloseClipboard() noexcept override {
    Log.push_back("close");
    return Inner.CloseClipboard();
  }
};

using Log = std::vector<std::string>;

class ClipboardTest : public ::testing::Test {
 protected:
  void SetUp() override { _previous = ic::platform::SetClipboardBackend(&Board); }
  void TearDown() override { ic::platform::SetClipboardBackend(_previous); }

  // The bytes of the block of `format` on the clipboard (empty if there is none).
  std::string ClipboardBytes(uint32_t format) {
    std::string bytes;
    if (!Board.Inner.OpenClipboard(nullptr)) return "<cannot open>";
    if (GlobalHandle block = Board.Inner.GetClipboardData(format)) bytes = BlockBytes(block);
    Board.Inner.CloseClipboard();
    return bytes;
  }
  std::string BlockBytes(GlobalHandle block) {
    const size_t size = Board.Inner.GlobalSize(block);
    const char* data = static_cast<const char*>(Board.Inner.GlobalLock(block));
    std::string bytes = data ? std::string(data, size) : std::string();
    Board.Inner.GlobalUnlock(block);
    return bytes;
  }
  // Puts `bytes` on the clipboard in `format` directly, as another program would.
  void PutOnClipboard(uint32_t format, const std::string& bytes) {
    ASSERT_TRUE(Board.Inner.OpenClipboard(nullptr));
    ASSERT_TRUE(Board.Inner.EmptyClipboard());
    GlobalHandle block = Board.Inner.GlobalAlloc(0x2000, bytes.size());
    if (!bytes.empty()) {
      std::memcpy(Board.Inner.GlobalLock(block), bytes.data(), bytes.size());
      Board.Inner.GlobalUnlock(block);
    }
    ASSERT_EQ(Board.Inner.SetClipboardData(format, block), block);
    ASSERT_TRUE(Board.Inner.CloseClipboard());
  }
  // True if the clipboard is closed: another thread can open it.
  bool IsClosed() {
    bool opened = false;
    std::thread([&] {
      opened = Board.Inner.OpenClipboard(nullptr);
      if (opened) Board.Inner.CloseClipboard();
    }).join();
    return opened;
  }

  RecordingClipboard Board;

 private:
  ClipboardBackend* _previous = nullptr;
};

std::string Bytes(const char16_t* text, size_t units) {
  return std::string(reinterpret_cast<const char*>(text), units * 2);
}

TEST_F(ClipboardTest, NarrowTextGoesWithItsTerminatorInFormatOne) {
  ic::ICStringUnique text("abc");
  ASSERT_TRUE(text.CopyToClipboard());
  EXPECT_EQ(Board.Log, (Log{"open", "empty", "alloc 8192 4", "lock", "unlock", "set 1", "free null",
                            "close"}));
  EXPECT_EQ(ClipboardBytes(1), std::string("abc\0", 4));
  EXPECT_TRUE(IsClosed());
}

TEST_F(ClipboardTest, WideTextGoesInFormatThirteen) {
  ic::ICStringUniqueW text(u"Жx");
  ASSERT_TRUE(text.CopyToClipboard());
  EXPECT_EQ(ClipboardBytes(13), Bytes(u"Жx", 3));
  EXPECT_EQ(ClipboardBytes(1), "");
}

TEST_F(ClipboardTest, EmptyStringsGoAsTheTerminatorAlone) {
  ASSERT_TRUE(ic::ICStringUnique().CopyToClipboard());
  EXPECT_EQ(ClipboardBytes(1), std::string(1, '\0'));
  ASSERT_TRUE(ic::ICStringUniqueW().CopyToClipboard());
  EXPECT_EQ(ClipboardBytes(13), std::string(2, '\0'));
}

TEST_F(ClipboardTest, AFormatGivenIsUsedAsItIs) {
  ASSERT_TRUE(ic::ICStringUnique("<b/>").CopyToClipboard(49161));
  EXPECT_EQ(ClipboardBytes(49161), std::string("<b/>\0", 5));
  EXPECT_EQ(ClipboardBytes(1), "");
}

TEST_F(ClipboardTest, TheClipboardOwnsTheBlockAndEmptyingFreesTheOldOne) {
  ASSERT_TRUE(ic::ICStringUnique("one").CopyToClipboard());
  ASSERT_TRUE(Board.Inner.OpenClipboard(nullptr));
  GlobalHandle first = Board.Inner.GetClipboardData(1);
  ASSERT_TRUE(Board.Inner.CloseClipboard());
  EXPECT_TRUE(Board.Inner.IsOnClipboard(first));
  EXPECT_EQ(Board.Inner.GlobalFree(first), first);  // not the caller's to free
  ASSERT_TRUE(ic::ICStringUnique("two").CopyToClipboard());
  // The first block is gone (its handle may come back for the new block, as on Windows).
  EXPECT_EQ(Board.Inner.LiveBlocks(), 1u);
  EXPECT_EQ(ClipboardBytes(1), std::string("two\0", 4));
}

TEST_F(ClipboardTest, CopyFailures) {
  struct Case {
    const char* name;
    bool RecordingClipboard::*flag;
    Log expected;
  };
  const Case cases[] = {
      {"open", &RecordingClipboard::FailOpen, {"open"}},
      {"empty", &RecordingClipboard::FailEmpty, {"open", "empty", "close"}},
      {"alloc", &RecordingClipboard::FailAlloc, {"open", "empty", "alloc 8192 3", "close"}},
      {"lock",
       &RecordingClipboard::FailLock,
       {"open", "empty", "alloc 8192 3", "lock", "free block", "close"}},
      {"set",
       &RecordingClipboard::FailSet,
       {"open", "empty", "alloc 8192 3", "lock", "unlock", "set 1", "free block", "close"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Board.Log.clear();
    Board.*(c.flag) = true;
    EXPECT_FALSE(ic::ICStringShared("ab").CopyToClipboard());
    Board.*(c.flag) = false;
    EXPECT_EQ(Board.Log, c.expected);
    EXPECT_EQ(Board.Inner.LiveBlocks(), 0u);  // nothing left behind
    EXPECT_TRUE(IsClosed());
  }
}

TEST_F(ClipboardTest, SetOpenClipboardDataPutsSeveralFormatsInOneGo) {
  ic::ICStringUnique narrow("hello");
  ic::ICStringUniqueW wide(u"hello");
  ASSERT_TRUE(Board.Inner.OpenClipboard(nullptr));
  ASSERT_TRUE(Board.Inner.EmptyClipboard());
  EXPECT_TRUE(narrow.SetOpenClipboardData(1, 2));  // a count: that many units, no terminator
  EXPECT_TRUE(wide.SetOpenClipboardData(13, 0));   // 0: everything with the terminator
  EXPECT_EQ(Board.Log, (Log{"alloc 8192 2", "lock", "unlock", "set 1", "free null", "alloc 8192 12",
                            "lock", "unlock", "set 13", "free null"}));
  ASSERT_TRUE(Board.Inner.CloseClipboard());
  EXPECT_EQ(ClipboardBytes(1), "he");
  EXPECT_EQ(ClipboardBytes(13), Bytes(u"hello", 6));
}

TEST_F(ClipboardTest, ACountIsNotCheckedAgainstTheLength) {
  // A view of "ab" in a buffer that goes on behind the terminator: seven units are copied.
  static const char16_t buffer[] = u"ab\0defg";
  ic::ICStringViewW wide(buffer);
  ASSERT_EQ(wide.GetLength(), 2);
  ASSERT_TRUE(Board.Inner.OpenClipboard(nullptr));
  EXPECT_TRUE(wide.SetOpenClipboardData(13, 7));
  ASSERT_TRUE(Board.Inner.CloseClipboard());
  EXPECT_EQ(Board.Log.front(), "alloc 8192 14");
  EXPECT_EQ(ClipboardBytes(13), Bytes(buffer, 7));
}

TEST_F(ClipboardTest, SetOpenClipboardDataFailures) {
  ic::ICStringUnique text("xyz");
  ASSERT_TRUE(Board.Inner.OpenClipboard(nullptr));
  Board.FailAlloc = true;
  EXPECT_FALSE(text.SetOpenClipboardData(1, 0));
  EXPECT_EQ(Board.Log, (Log{"alloc 8192 4"}));  // false at once, nothing to free
  Board.FailAlloc = false;
  Board.Log.clear();
  Board.FailLock = true;
  EXPECT_FALSE(text.SetOpenClipboardData(1, 0));
  EXPECT_EQ(Board.Log, (Log{"alloc 8192 4", "lock", "free block"}));
  Board.FailLock = false;
  Board.Log.clear();
  Board.FailSet = true;
  EXPECT_FALSE(text.SetOpenClipboardData(1, 0));
  EXPECT_EQ(Board.Log, (Log{"alloc 8192 4", "lock", "unlock", "set 1", "free block"}));
  Board.FailSet = false;
  EXPECT_EQ(Board.Inner.LiveBlocks(), 0u);
  ASSERT_TRUE(Board.Inner.CloseClipboard());
}

TEST_F(ClipboardTest, CopyToGlobalMemoryGivesTheCallerAnUnlockedBlock) {
  ic::ICStringView view("view text");
  GlobalHandle block = view.CopyToGlobalMemory(0);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(Board.Log, (Log{"alloc 8192 10", "lock", "unlock"}));
  EXPECT_EQ(Board.Inner.LockCount(block), 0);
  EXPECT_FALSE(Board.Inner.IsOnClipboard(block));
  EXPECT_EQ(BlockBytes(block), std::string("view text\0", 10));
  GlobalHandle part = view.CopyToGlobalMemory(4);
  EXPECT_EQ(BlockBytes(part), "view");
  EXPECT_EQ(Board.Inner.GlobalFree(block), nullptr);
  EXPECT_EQ(Board.Inner.GlobalFree(part), nullptr);

  Board.FailAlloc = true;
  EXPECT_EQ(view.CopyToGlobalMemory(0), nullptr);
  Board.FailAlloc = false;
  Board.FailLock = true;
  Board.Log.clear();
  EXPECT_EQ(view.CopyToGlobalMemory(0), nullptr);
  EXPECT_EQ(Board.Log, (Log{"alloc 8192 10", "lock", "free block"}));
  EXPECT_EQ(Board.Inner.LiveBlocks(), 0u);
}

// Every write exists for the six strings, and only the length reader differs.
template <class S>
class ClipboardShapesTest : public ClipboardTest {};
using AllShapes = ::testing::Types<ic::ICStringUnique, ic::ICStringUniqueW, ic::ICStringShared,
                                   ic::ICStringSharedW, ic::ICStringView, ic::ICStringViewW>;
TYPED_TEST_SUITE(ClipboardShapesTest, AllShapes);

TYPED_TEST(ClipboardShapesTest, WritesTheWholeTextOrTheCount) {
  using Unit = typename TypeParam::UnitType;
  const Unit units[] = {'t', 'e', 'x', 't', 0};
  TypeParam text(units);
  const uint32_t format = sizeof(Unit) == 1 ? 1 : 13;
  const std::string whole(reinterpret_cast<const char*>(units), sizeof units);
  ASSERT_TRUE(text.CopyToClipboard());
  EXPECT_EQ(this->ClipboardBytes(format), whole);
  ASSERT_TRUE(text.CopyToClipboard(format));
  EXPECT_EQ(this->ClipboardBytes(format), whole);
  GlobalHandle block = text.CopyToGlobalMemory(3);
  EXPECT_EQ(this->BlockBytes(block), whole.substr(0, 3 * sizeof(Unit)));
  this->Board.Inner.GlobalFree(block);
  ASSERT_TRUE(this->Board.Inner.OpenClipboard(nullptr));
  EXPECT_TRUE(text.SetOpenClipboardData(7, 0));
  ASSERT_TRUE(this->Board.Inner.CloseClipboard());
  EXPECT_EQ(this->ClipboardBytes(7), whole);
  EXPECT_EQ(std::basic_string<Unit>(text.GetText()), std::basic_string<Unit>(units));
}

TEST_F(ClipboardTest, PasteReadsTheBlockAndLeavesTheLengthToBeMeasured) {
  PutOnClipboard(1, std::string("h\xC3\xA9llo\0", 7));
  ic::ICStringUnique text("old");
  ASSERT_TRUE(text.PasteFromClipboard());
  EXPECT_EQ(Board.Log, (Log{"open", "get 1", "size", "lock", "unlock", "close"}));
  EXPECT_EQ(ic::test::LengthWord(text.GetText()), 0x8000);  // not measured yet
  EXPECT_EQ(std::string(text.GetText()), "h\xC3\xA9llo");
  EXPECT_EQ(text.GetLength(), 6);
  EXPECT_GE(text.GetCapacity(), 4 * 7 + 4);  // four times the block, plus four
  EXPECT_TRUE(IsClosed());
  EXPECT_EQ(Board.Inner.LiveBlocks(), 1u);  // the clipboard's block is not freed
}

TEST_F(ClipboardTest, WidePasteSizesByTheBlock) {
  PutOnClipboard(13, Bytes(u"Σx", 3));
  ic::ICStringUniqueW text;
  ASSERT_TRUE(text.PasteFromClipboard());
  EXPECT_EQ(std::u16string(text.GetText()), u"Σx");
  EXPECT_EQ(text.GetLength(), 2);
  EXPECT_GE(text.GetCapacity(), 3);  // (6 + 1) / 2
  ic::ICStringUniqueW other;
  ASSERT_TRUE(other.PasteFromClipboard(13));
  EXPECT_EQ(std::u16string(other.GetText()), u"Σx");
}

TEST_F(ClipboardTest, AWideBlockOfThreeBytesGivesTwoUnits) {
  PutOnClipboard(13, std::string("A\0B", 3));
  ic::ICStringUniqueW text(u"previous text");
  ASSERT_TRUE(text.PasteFromClipboard());
  EXPECT_EQ(text.GetLength(), 2);
  EXPECT_EQ(text.GetText()[0], u'A');
  EXPECT_EQ(text.GetText()[1], u'B');  // the third byte is the low byte; the upper one is zero
}

TEST_F(ClipboardTest, ABlockWithoutTerminatorEndsAtItsSize) {
  PutOnClipboard(1, "abc");
  ic::ICStringUnique text;
  ASSERT_TRUE(text.PasteFromClipboard());
  EXPECT_EQ(std::string(text.GetText()), "abc");
  PutOnClipboard(13, Bytes(u"wxyz", 4));
  ic::ICStringUniqueW wide;
  ASSERT_TRUE(wide.PasteFromClipboard());
  EXPECT_EQ(std::u16string(wide.GetText()), u"wxyz");
}

TEST_F(ClipboardTest, TextEndsAtTheFirstZeroUnitOfTheBlock) {
  PutOnClipboard(1, std::string("ab\0cd\0", 6));
  ic::ICStringUnique text;
  ASSERT_TRUE(text.PasteFromClipboard());
  EXPECT_EQ(text.GetLength(), 2);
  EXPECT_EQ(std::string(text.GetText() + 3, 2), "cd");  // in the buffer, unseen
}

TEST_F(ClipboardTest, PasteFailuresLeaveTheStringAsItWas) {
  ic::ICStringUnique text("keep");
  Board.FailOpen = true;
  EXPECT_FALSE(text.PasteFromClipboard());
  EXPECT_EQ(Board.Log, (Log{"open"}));
  Board.FailOpen = false;

  Board.Log.clear();
  EXPECT_FALSE(text.PasteFromClipboard());  // an empty clipboard
  EXPECT_EQ(Board.Log, (Log{"open", "get 1", "close"}));

  PutOnClipboard(13, Bytes(u"wide only", 10));
  EXPECT_FALSE(text.PasteFromClipboard());  // no data in format 1

  PutOnClipboard(1, "");
  Board.Log.clear();
  EXPECT_FALSE(text.PasteFromClipboard());  // a block of size 0
  EXPECT_EQ(Board.Log, (Log{"open", "get 1", "size", "close"}));

  PutOnClipboard(1, "abc");
  Board.FailLock = true;
  Board.Log.clear();
  EXPECT_FALSE(text.PasteFromClipboard());
  EXPECT_EQ(Board.Log, (Log{"open", "get 1", "size", "lock", "close"}));
  Board.FailLock = false;

  EXPECT_EQ(std::string(text.GetText()), "keep");
  EXPECT_EQ(text.GetLength(), 4);
  EXPECT_TRUE(IsClosed());
}

TEST_F(ClipboardTest, ReadGlobalMemoryLeavesTheHandleWithTheCaller) {
  GlobalHandle block = ic::ICStringUniqueW(u"handle").CopyToGlobalMemory(0);
  ic::ICStringUniqueW text;
  Board.Log.clear();
  ASSERT_TRUE(text.ReadGlobalMemory(block));
  EXPECT_EQ(Board.Log, (Log{"size", "lock", "unlock"}));  // no clipboard calls
  EXPECT_EQ(std::u16string(text.GetText()), u"handle");
  EXPECT_TRUE(Board.Inner.IsLive(block));
  EXPECT_EQ(Board.Inner.LockCount(block), 0);
  EXPECT_EQ(Board.Inner.GlobalFree(block), nullptr);

  ic::ICStringUnique narrow("same");
  EXPECT_FALSE(narrow.ReadGlobalMemory(nullptr));
  GlobalHandle empty = Board.Inner.GlobalAlloc(0x2000, 0);
  EXPECT_FALSE(narrow.ReadGlobalMemory(empty));
  GlobalHandle some = ic::ICStringUnique("zz").CopyToGlobalMemory(0);
  Board.FailLock = true;
  EXPECT_FALSE(narrow.ReadGlobalMemory(some));
  Board.FailLock = false;
  EXPECT_EQ(std::string(narrow.GetText()), "same");
  Board.Inner.GlobalFree(empty);
  Board.Inner.GlobalFree(some);
}

TEST_F(ClipboardTest, AnotherThreadCannotOpenTheClipboardWhileItIsOpen) {
  ASSERT_TRUE(Board.Inner.OpenClipboard(nullptr));
  bool copied = true;
  std::thread([&] { copied = ic::ICStringUnique("x").CopyToClipboard(); }).join();
  EXPECT_FALSE(copied);
  ASSERT_TRUE(Board.Inner.CloseClipboard());
  EXPECT_TRUE(ic::ICStringUnique("x").CopyToClipboard());
}

// Random texts of every unit value but zero go to the clipboard and come back unchanged.
TEST_F(ClipboardTest, RoundTripsOfRandomText) {
  std::mt19937 random(15);
  for (int round = 0; round < 300; ++round) {
    const int length = static_cast<int>(random() % 70);
    std::string narrow;
    std::u16string wide;
    for (int i = 0; i < length; ++i) {
      narrow.push_back(static_cast<char>(1 + random() % 255));
      wide.push_back(static_cast<char16_t>(1 + random() % 0xFFFF));
    }
    ASSERT_TRUE(ic::ICStringShared(narrow.c_str()).CopyToClipboard());
    ic::ICStringUnique backNarrow("x");
    ASSERT_TRUE(backNarrow.PasteFromClipboard());
    EXPECT_EQ(std::string(backNarrow.GetText(), backNarrow.GetLength()), narrow);
    ASSERT_TRUE(ic::ICStringViewW(wide.c_str()).CopyToClipboard());
    ic::ICStringUniqueW backWide;
    ASSERT_TRUE(backWide.PasteFromClipboard());
    EXPECT_EQ(std::u16string(backWide.GetText(), backWide.GetLength()), wide);
  }
}

// The system's clipboard: the native one on Windows, the platform layer's own elsewhere. A
// Windows session without a clipboard (a service, a bare wine) cannot open it: skipped then.
TEST(SystemClipboardTest, RoundTrip) {
  ic::ICStringUniqueW text(u"system clipboard ✓");
  if (!text.CopyToClipboard()) GTEST_SKIP() << "the system's clipboard cannot be opened here";
  ic::ICStringUniqueW back;
  ASSERT_TRUE(back.PasteFromClipboard());
  EXPECT_EQ(std::u16string(back.GetText()), u"system clipboard ✓");
}

}  // namespace
