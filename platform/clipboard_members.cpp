#include <ic/platform/clipboard_members.h>

#include <algorithm>
#include <cstring>

#include <ic/platform/clipboard.h>
#include <ic/string/header.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>

namespace ic {
namespace {

// Bytes of a write: `count` units as given, or with 0 the text and its terminator. A negative
// count gives a size no allocation can meet.
template <class Unit>
size_t WriteSize(int32_t count, int32_t length) {
  const int64_t units = count != 0 ? int64_t{count} : int64_t{length} + 1;
  if (units < 0) return SIZE_MAX;
  return static_cast<size_t>(units) * sizeof(Unit);
}

// The block for a write, filled and unlocked; null if allocation or locking failed (a block
// that could not be locked is freed first).
platform::GlobalHandle FillNewBlock(const void* text, size_t size) noexcept {
  platform::GlobalHandle block = platform::GlobalAlloc(platform::GlobalShareFlag, size);
  if (!block) return nullptr;
  void* target = platform::GlobalLock(block);
  if (!target) {
    platform::GlobalFree(block);
    return nullptr;
  }
  std::memcpy(target, text, size);
  platform::GlobalUnlock(block);
  return block;
}

// Hands the block to the clipboard; the block is freed unless the clipboard took it (the free
// call is made either way, with null after success, where it does nothing).
bool SetBlock(uint32_t format, platform::GlobalHandle block) noexcept {
  bool done = false;
  if (platform::SetClipboardData(format, block)) {
    block = nullptr;
    done = true;
  }
  platform::GlobalFree(block);
  return done;
}

}  // namespace

template <class Unit, class Storage>
bool ICStringClipboardMembers<BasicICString<Unit, Storage>>::CopyToClipboard() const noexcept {
  return CopyToClipboard(ClipboardFormat);
}

template <class Unit, class Storage>
bool ICStringClipboardMembers<BasicICString<Unit, Storage>>::CopyToClipboard(
    uint32_t format) const noexcept {
  if (!platform::OpenClipboard(nullptr)) return false;
  bool done = false;
  if (platform::EmptyClipboard()) {
    const Str& self = Self();
    const size_t size = WriteSize<Unit>(0, self.GetLength());
    platform::GlobalHandle block = platform::GlobalAlloc(platform::GlobalShareFlag, size);
    if (block) {
      void* target = platform::GlobalLock(block);
      if (target) {
        std::memcpy(target, self.GetText(), size);
        platform::GlobalUnlock(block);
        done = SetBlock(format, block);
      } else {
        platform::GlobalFree(block);
      }
    }
  }
  platform::CloseClipboard();
  return done;
}

template <class Unit, class Storage>
bool ICStringClipboardMembers<BasicICString<Unit, Storage>>::SetOpenClipboardData(
    uint32_t format, int32_t count) const noexcept {
  const Str& self = Self();
  const size_t size = WriteSize<Unit>(count, count != 0 ? 0 : self.GetLength());
  platform::GlobalHandle block = platform::GlobalAlloc(platform::GlobalShareFlag, size);
  if (!block) return false;
  void* target = platform::GlobalLock(block);
  if (!target) {
    platform::GlobalFree(block);
    return false;
  }
  std::memcpy(target, self.GetText(), size);
  platform::GlobalUnlock(block);
  return SetBlock(format, block);
}

template <class Unit, class Storage>
platform::GlobalHandle ICStringClipboardMembers<BasicICString<Unit, Storage>>::CopyToGlobalMemory(
    int32_t count) const noexcept {
  const Str& self = Self();
  const size_t size = WriteSize<Unit>(count, count != 0 ? 0 : self.GetLength());
  return FillNewBlock(self.GetText(), size);
}

template <class Unit, class Storage>
bool ICStringClipboardMembers<BasicICString<Unit, Storage>>::PasteFromClipboard() requires
    IsUnique {
  return PasteFromClipboard(ClipboardFormat);
}

template <class Unit, class Storage>
bool ICStringClipboardMembers<BasicICString<Unit, Storage>>::PasteFromClipboard(
    uint32_t format) requires IsUnique {
  if (!platform::OpenClipboard(nullptr)) return false;
  platform::GlobalHandle handle = platform::GetClipboardData(format);
  const size_t size = handle ? platform::GlobalSize(handle) : 0;
  const void* bytes = size ? platform::GlobalLock(handle) : nullptr;
  if (!bytes) {
    platform::CloseClipboard();
    return false;
  }
  _ReadLockedBlock(handle, size, bytes);
  platform::CloseClipboard();
  return true;
}

template <class Unit, class Storage>
bool ICStringClipboardMembers<BasicICString<Unit, Storage>>::ReadGlobalMemory(
    platform::GlobalHandle handle) requires IsUnique {
  const size_t size = handle ? platform::GlobalSize(handle) : 0;
  const void* bytes = size ? platform::GlobalLock(handle) : nullptr;
  if (!bytes) return false;
  return _ReadLockedBlock(handle, size, bytes);
}

// Copies the locked block of `size` bytes into the text and unlocks it. The room is made first;
// the end of the room that the copy fills gets two zero units, so that a block without a
// terminator (or a wide block of odd size, whose last unit lacks its upper byte) still ends.
template <class Unit, class Storage>
bool ICStringClipboardMembers<BasicICString<Unit, Storage>>::_ReadLockedBlock(
    platform::GlobalHandle handle, size_t size, const void* bytes) requires IsUnique {
  Str& self = Self();
  const int64_t wanted = IsNarrow ? int64_t(std::min<size_t>(size, INT32_MAX)) * 4 + 4
                                  : int64_t(std::min<size_t>(size, INT32_MAX) + 1) / 2;
  internal::StringAccess::_Reserve(self, static_cast<int32_t>(std::min<int64_t>(wanted, INT32_MAX)),
                                   0);
  Unit* text = internal::StringAccess::_GetBuffer(self);
  text[0] = 0;
  internal::StringAccess::_SetStoredLength(self, 0);
  internal::SetLengthWord(text, UnknownLength);
  if constexpr (IsNarrow) {
    text[size + 1] = 0;
    internal::SetLengthWord(text, UnknownLength);
    text[size] = 0;
  } else {
    const size_t end = (size + 1) / 2;
    text[end] = 0;
    internal::SetLengthWord(text, UnknownLength);
    text[end - 1] = 0;
  }
  internal::SetLengthWord(text, UnknownLength);
  std::memcpy(text, bytes, size);
  platform::GlobalUnlock(handle);
  return true;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringClipboardMembers)

}  // namespace ic
