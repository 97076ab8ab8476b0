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

// Passes every call to a MemoryClipboard, writes one line per call to log, and fails the call
// named in a fail* flag.
class RecordingClipboard final : public ClipboardBackend {
 public:
  ic::platform::internal::MemoryClipboard inner;
  std::vector<std::string> log;
  bool failOpen = false, failEmpty = false, failAlloc = false, failLock = false, failSet = false;

  GlobalHandle GlobalAlloc(uint32_t flags, size_t bytes) noexcept override {
    log.push_back("alloc " + std::to_string(flags) + " " + std::to_string(bytes));
    return failAlloc ? nullptr : inner.GlobalAlloc(flags, bytes);
  }
  void* GlobalLock(GlobalHandle handle) noexcept override {
    log.push_back("lock");
    return failLock ? nullptr : inner.GlobalLock(handle);
  }
  bool GlobalUnlock(GlobalHandle handle) noexcept override {
    log.push_back("unlock");
    return inner.GlobalUnlock(handle);
  }
  size_t GlobalSize(GlobalHandle handle) noexcept override {
    log.push_back("size");
    return inner.GlobalSize(handle);
  }
  GlobalHandle GlobalFree(GlobalHandle handle) noexcept override {
    log.push_back(handle ? "free block" : "free null");
    return inner.GlobalFree(handle);
  }
  bool OpenClipboard(void* owner) noexcept override {
    log.push_back(owner ? "open owner" : "open");
    return !failOpen && inner.OpenClipboard(owner);
  }
  bool EmptyClipboard() noexcept override {
    log.push_back("empty");
    return !failEmpty && inner.EmptyClipboard();
  }
  GlobalHandle SetClipboardData(uint32_t format, GlobalHandle handle) noexcept override {
    log.push_back("set " + std::to_string(format));
    return failSet ? nullptr : inner.SetClipboardData(format, handle);
  }
  GlobalHandle GetClipboardData(uint32_t format) noexcept override {
    log.push_back("get " + std::to_string(format));
    return inner.GetClipboardData(format);
  }
  bool CloseClipboard() noexcept override {
    log.push_back("close");
    return inner.CloseClipboard();
  }
};

using Log = std::vector<std::string>;

class ClipboardTest : public ::testing::Test {
 protected:
  void SetUp() override { _previous = ic::platform::SetClipboardBackend(&board); }
  void TearDown() override { ic::platform::SetClipboardBackend(_previous); }

  // The bytes of the block of `format` on the clipboard (empty if there is none).
  std::string ClipboardBytes(uint32_t format) {
    std::string bytes;
    if (!board.inner.OpenClipboard(nullptr)) return "<cannot open>";
    if (GlobalHandle block = board.inner.GetClipboardData(format)) bytes = BlockBytes(block);
    board.inner.CloseClipboard();
    return bytes;
  }
  std::string BlockBytes(GlobalHandle block) {
    const size_t size = board.inner.GlobalSize(block);
    const char* data = static_cast<const char*>(board.inner.GlobalLock(block));
    std::string bytes = data ? std::string(data, size) : std::string();
    board.inner.GlobalUnlock(block);
    return bytes;
  }
  // Puts `bytes` on the clipboard in `format` directly, as another program would.
  void PutOnClipboard(uint32_t format, const std::string& bytes) {
    ASSERT_TRUE(board.inner.OpenClipboard(nullptr));
    ASSERT_TRUE(board.inner.EmptyClipboard());
    GlobalHandle block = board.inner.GlobalAlloc(0x2000, bytes.size());
    if (!bytes.empty()) {
      std::memcpy(board.inner.GlobalLock(block), bytes.data(), bytes.size());
      board.inner.GlobalUnlock(block);
    }
    ASSERT_EQ(board.inner.SetClipboardData(format, block), block);
    ASSERT_TRUE(board.inner.CloseClipboard());
  }
  // True if the clipboard is closed: another thread can open it.
  bool IsClosed() {
    bool opened = false;
    std::thread([&] {
      opened = board.inner.OpenClipboard(nullptr);
      if (opened) board.inner.CloseClipboard();
    }).join();
    return opened;
  }

  RecordingClipboard board;

 private:
  ClipboardBackend* _previous = nullptr;
};

std::string Bytes(const char16_t* text, size_t units) {
  return std::string(reinterpret_cast<const char*>(text), units * 2);
}

TEST_F(ClipboardTest, NarrowTextGoesWithItsTerminatorInFormatOne) {
  ic::ICStringUnique text("abc");
  ASSERT_TRUE(text.CopyToClipboard());
  EXPECT_EQ(board.log, (Log{"open", "empty", "alloc 8192 4", "lock", "unlock", "set 1", "free null",
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
  ASSERT_TRUE(board.inner.OpenClipboard(nullptr));
  GlobalHandle first = board.inner.GetClipboardData(1);
  ASSERT_TRUE(board.inner.CloseClipboard());
  EXPECT_TRUE(board.inner.IsOnClipboard(first));
  EXPECT_EQ(board.inner.GlobalFree(first), first);  // not the caller's to free
  ASSERT_TRUE(ic::ICStringUnique("two").CopyToClipboard());
  // The first block is gone (its handle may come back for the new block, as on Windows).
  EXPECT_EQ(board.inner.LiveBlocks(), 1u);
  EXPECT_EQ(ClipboardBytes(1), std::string("two\0", 4));
}

TEST_F(ClipboardTest, CopyFailures) {
  struct Case {
    const char* name;
    bool RecordingClipboard::*flag;
    Log expected;
  };
  const Case cases[] = {
      {"open", &RecordingClipboard::failOpen, {"open"}},
      {"empty", &RecordingClipboard::failEmpty, {"open", "empty", "close"}},
      {"alloc", &RecordingClipboard::failAlloc, {"open", "empty", "alloc 8192 3", "close"}},
      {"lock",
       &RecordingClipboard::failLock,
       {"open", "empty", "alloc 8192 3", "lock", "free block", "close"}},
      {"set",
       &RecordingClipboard::failSet,
       {"open", "empty", "alloc 8192 3", "lock", "unlock", "set 1", "free block", "close"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    board.log.clear();
    board.*(c.flag) = true;
    EXPECT_FALSE(ic::ICStringShared("ab").CopyToClipboard());
    board.*(c.flag) = false;
    EXPECT_EQ(board.log, c.expected);
    EXPECT_EQ(board.inner.LiveBlocks(), 0u);  // nothing left behind
    EXPECT_TRUE(IsClosed());
  }
}

TEST_F(ClipboardTest, SetOpenClipboardDataPutsSeveralFormatsInOneGo) {
  ic::ICStringUnique narrow("hello");
  ic::ICStringUniqueW wide(u"hello");
  ASSERT_TRUE(board.inner.OpenClipboard(nullptr));
  ASSERT_TRUE(board.inner.EmptyClipboard());
  EXPECT_TRUE(narrow.SetOpenClipboardData(1, 2));  // a count: that many units, no terminator
  EXPECT_TRUE(wide.SetOpenClipboardData(13, 0));   // 0: everything with the terminator
  EXPECT_EQ(board.log, (Log{"alloc 8192 2", "lock", "unlock", "set 1", "free null", "alloc 8192 12",
                            "lock", "unlock", "set 13", "free null"}));
  ASSERT_TRUE(board.inner.CloseClipboard());
  EXPECT_EQ(ClipboardBytes(1), "he");
  EXPECT_EQ(ClipboardBytes(13), Bytes(u"hello", 6));
}

TEST_F(ClipboardTest, ACountIsNotCheckedAgainstTheLength) {
  // A view of "ab" in a buffer that goes on behind the terminator: seven units are copied.
  static const char16_t buffer[] = u"ab\0defg";
  ic::ICStringViewW wide(buffer);
  ASSERT_EQ(wide.GetLength(), 2);
  ASSERT_TRUE(board.inner.OpenClipboard(nullptr));
  EXPECT_TRUE(wide.SetOpenClipboardData(13, 7));
  ASSERT_TRUE(board.inner.CloseClipboard());
  EXPECT_EQ(board.log.front(), "alloc 8192 14");
  EXPECT_EQ(ClipboardBytes(13), Bytes(buffer, 7));
}

TEST_F(ClipboardTest, SetOpenClipboardDataFailures) {
  ic::ICStringUnique text("xyz");
  ASSERT_TRUE(board.inner.OpenClipboard(nullptr));
  board.failAlloc = true;
  EXPECT_FALSE(text.SetOpenClipboardData(1, 0));
  EXPECT_EQ(board.log, (Log{"alloc 8192 4"}));  // false at once, nothing to free
  board.failAlloc = false;
  board.log.clear();
  board.failLock = true;
  EXPECT_FALSE(text.SetOpenClipboardData(1, 0));
  EXPECT_EQ(board.log, (Log{"alloc 8192 4", "lock", "free block"}));
  board.failLock = false;
  board.log.clear();
  board.failSet = true;
  EXPECT_FALSE(text.SetOpenClipboardData(1, 0));
  EXPECT_EQ(board.log, (Log{"alloc 8192 4", "lock", "unlock", "set 1", "free block"}));
  board.failSet = false;
  EXPECT_EQ(board.inner.LiveBlocks(), 0u);
  ASSERT_TRUE(board.inner.CloseClipboard());
}

TEST_F(ClipboardTest, CopyToGlobalMemoryGivesTheCallerAnUnlockedBlock) {
  ic::ICStringView view("view text");
  GlobalHandle block = view.CopyToGlobalMemory(0);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(board.log, (Log{"alloc 8192 10", "lock", "unlock"}));
  EXPECT_EQ(board.inner.LockCount(block), 0);
  EXPECT_FALSE(board.inner.IsOnClipboard(block));
  EXPECT_EQ(BlockBytes(block), std::string("view text\0", 10));
  GlobalHandle part = view.CopyToGlobalMemory(4);
  EXPECT_EQ(BlockBytes(part), "view");
  EXPECT_EQ(board.inner.GlobalFree(block), nullptr);
  EXPECT_EQ(board.inner.GlobalFree(part), nullptr);

  board.failAlloc = true;
  EXPECT_EQ(view.CopyToGlobalMemory(0), nullptr);
  board.failAlloc = false;
  board.failLock = true;
  board.log.clear();
  EXPECT_EQ(view.CopyToGlobalMemory(0), nullptr);
  EXPECT_EQ(board.log, (Log{"alloc 8192 10", "lock", "free block"}));
  EXPECT_EQ(board.inner.LiveBlocks(), 0u);
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
  this->board.inner.GlobalFree(block);
  ASSERT_TRUE(this->board.inner.OpenClipboard(nullptr));
  EXPECT_TRUE(text.SetOpenClipboardData(7, 0));
  ASSERT_TRUE(this->board.inner.CloseClipboard());
  EXPECT_EQ(this->ClipboardBytes(7), whole);
  EXPECT_EQ(std::basic_string<Unit>(text.GetText()), std::basic_string<Unit>(units));
}

TEST_F(ClipboardTest, PasteReadsTheBlockAndLeavesTheLengthToBeMeasured) {
  PutOnClipboard(1, std::string("h\xC3\xA9llo\0", 7));
  ic::ICStringUnique text("old");
  ASSERT_TRUE(text.PasteFromClipboard());
  EXPECT_EQ(board.log, (Log{"open", "get 1", "size", "lock", "unlock", "close"}));
  EXPECT_EQ(ic::test::LengthWord(text.GetText()), 0x8000);  // not measured yet
  EXPECT_EQ(std::string(text.GetText()), "h\xC3\xA9llo");
  EXPECT_EQ(text.GetLength(), 6);
  EXPECT_GE(text.GetCapacity(), 4 * 7 + 4);  // four times the block, plus four
  EXPECT_TRUE(IsClosed());
  EXPECT_EQ(board.inner.LiveBlocks(), 1u);  // the clipboard's block is not freed
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
  board.failOpen = true;
  EXPECT_FALSE(text.PasteFromClipboard());
  EXPECT_EQ(board.log, (Log{"open"}));
  board.failOpen = false;

  board.log.clear();
  EXPECT_FALSE(text.PasteFromClipboard());  // an empty clipboard
  EXPECT_EQ(board.log, (Log{"open", "get 1", "close"}));

  PutOnClipboard(13, Bytes(u"wide only", 10));
  EXPECT_FALSE(text.PasteFromClipboard());  // no data in format 1

  PutOnClipboard(1, "");
  board.log.clear();
  EXPECT_FALSE(text.PasteFromClipboard());  // a block of size 0
  EXPECT_EQ(board.log, (Log{"open", "get 1", "size", "close"}));

  PutOnClipboard(1, "abc");
  board.failLock = true;
  board.log.clear();
  EXPECT_FALSE(text.PasteFromClipboard());
  EXPECT_EQ(board.log, (Log{"open", "get 1", "size", "lock", "close"}));
  board.failLock = false;

  EXPECT_EQ(std::string(text.GetText()), "keep");
  EXPECT_EQ(text.GetLength(), 4);
  EXPECT_TRUE(IsClosed());
}

TEST_F(ClipboardTest, ReadGlobalMemoryLeavesTheHandleWithTheCaller) {
  GlobalHandle block = ic::ICStringUniqueW(u"handle").CopyToGlobalMemory(0);
  ic::ICStringUniqueW text;
  board.log.clear();
  ASSERT_TRUE(text.ReadGlobalMemory(block));
  EXPECT_EQ(board.log, (Log{"size", "lock", "unlock"}));  // no clipboard calls
  EXPECT_EQ(std::u16string(text.GetText()), u"handle");
  EXPECT_TRUE(board.inner.IsLive(block));
  EXPECT_EQ(board.inner.LockCount(block), 0);
  EXPECT_EQ(board.inner.GlobalFree(block), nullptr);

  ic::ICStringUnique narrow("same");
  EXPECT_FALSE(narrow.ReadGlobalMemory(nullptr));
  GlobalHandle empty = board.inner.GlobalAlloc(0x2000, 0);
  EXPECT_FALSE(narrow.ReadGlobalMemory(empty));
  GlobalHandle some = ic::ICStringUnique("zz").CopyToGlobalMemory(0);
  board.failLock = true;
  EXPECT_FALSE(narrow.ReadGlobalMemory(some));
  board.failLock = false;
  EXPECT_EQ(std::string(narrow.GetText()), "same");
  board.inner.GlobalFree(empty);
  board.inner.GlobalFree(some);
}

TEST_F(ClipboardTest, AnotherThreadCannotOpenTheClipboardWhileItIsOpen) {
  ASSERT_TRUE(board.inner.OpenClipboard(nullptr));
  bool copied = true;
  std::thread([&] { copied = ic::ICStringUnique("x").CopyToClipboard(); }).join();
  EXPECT_FALSE(copied);
  ASSERT_TRUE(board.inner.CloseClipboard());
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
