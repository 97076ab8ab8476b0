// The platform layer's own clipboard: blocks in the C++ heap behind handles, one clipboard for
// the process, guarded by one mutex.
#include <ic/platform/internal/memory_clipboard.h>

#include <new>

namespace ic::platform::internal {

GlobalHandle MemoryClipboard::GlobalAlloc(uint32_t /*flags*/, size_t bytes) noexcept {
  // Every block is movable and may be shared, so the flags change nothing here.
  auto block = std::unique_ptr<Block>(new (std::nothrow) Block());
  if (!block) return nullptr;
  if (bytes > 0) {
    block->bytes.reset(new (std::nothrow) unsigned char[bytes]());
    if (!block->bytes) return nullptr;
  }
  block->size = bytes;
  GlobalHandle handle = block.get();
  std::lock_guard<std::mutex> lock(_mutex);
  try {
    _blocks.emplace(handle, std::move(block));
  } catch (...) {
    return nullptr;
  }
  return handle;
}

void* MemoryClipboard::GlobalLock(GlobalHandle handle) noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  auto found = _blocks.find(handle);
  // A block of no bytes has no address to give, as a discarded block on Windows.
  if (found == _blocks.end() || found->second->size == 0) return nullptr;
  ++found->second->locks;
  return found->second->bytes.get();
}

bool MemoryClipboard::GlobalUnlock(GlobalHandle handle) noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  auto found = _blocks.find(handle);
  if (found == _blocks.end() || found->second->locks == 0) return false;
  return --found->second->locks > 0;
}

size_t MemoryClipboard::GlobalSize(GlobalHandle handle) noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  auto found = _blocks.find(handle);
  return found == _blocks.end() ? 0 : found->second->size;
}

GlobalHandle MemoryClipboard::GlobalFree(GlobalHandle handle) noexcept {
  if (!handle) return nullptr;
  std::lock_guard<std::mutex> lock(_mutex);
  auto found = _blocks.find(handle);
  // A block on the clipboard is the clipboard's to free.
  if (found == _blocks.end() || found->second->onClipboard) return handle;
  _blocks.erase(found);
  return nullptr;
}

bool MemoryClipboard::_HeldByThisThread() const noexcept {
  return _open && _holder == std::this_thread::get_id();
}

void MemoryClipboard::_Release(GlobalHandle handle) noexcept {
  _blocks.erase(handle);
}

bool MemoryClipboard::OpenClipboard(void* owner) noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  // The thread that holds it may open it again; any other waits for CloseClipboard.
  if (_open && _holder != std::this_thread::get_id()) return false;
  _open = true;
  _holder = std::this_thread::get_id();
  _openedBy = owner;
  return true;
}

bool MemoryClipboard::EmptyClipboard() noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  if (!_HeldByThisThread()) return false;
  for (const auto& [format, handle] : _formats)
    _Release(handle);
  _formats.clear();
  _owner = _openedBy;
  return true;
}

GlobalHandle MemoryClipboard::SetClipboardData(uint32_t format, GlobalHandle handle) noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  if (!_HeldByThisThread()) return nullptr;
  auto found = _blocks.find(handle);
  if (found == _blocks.end()) return nullptr;
  auto previous = _formats.find(format);
  try {
    if (previous == _formats.end()) {
      _formats.emplace(format, handle);
    } else if (previous->second != handle) {
      _Release(previous->second);
      previous->second = handle;
    }
  } catch (...) {
    return nullptr;
  }
  found->second->onClipboard = true;
  return handle;
}

GlobalHandle MemoryClipboard::GetClipboardData(uint32_t format) noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  if (!_HeldByThisThread()) return nullptr;
  auto found = _formats.find(format);
  return found == _formats.end() ? nullptr : found->second;
}

bool MemoryClipboard::CloseClipboard() noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  if (!_HeldByThisThread()) return false;
  _open = false;
  _holder = std::thread::id();
  return true;
}

int MemoryClipboard::LockCount(GlobalHandle handle) const noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  auto found = _blocks.find(handle);
  return found == _blocks.end() ? 0 : found->second->locks;
}

bool MemoryClipboard::IsLive(GlobalHandle handle) const noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  return _blocks.count(handle) != 0;
}

bool MemoryClipboard::IsOnClipboard(GlobalHandle handle) const noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  auto found = _blocks.find(handle);
  return found != _blocks.end() && found->second->onClipboard;
}

void* MemoryClipboard::Owner() const noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  return _owner;
}

size_t MemoryClipboard::LiveBlocks() const noexcept {
  std::lock_guard<std::mutex> lock(_mutex);
  return _blocks.size();
}

}  // namespace ic::platform::internal
