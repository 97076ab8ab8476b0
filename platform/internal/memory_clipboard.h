// The platform layer's own clipboard and global memory blocks, for systems without the Windows
// calls: the system's clipboard backend there. Tests may also make one of their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>

#include <ic/platform/clipboard.h>

namespace ic::platform::internal {

class MemoryClipboard final : public ClipboardBackend {
 public:
  MemoryClipboard() = default;
  ~MemoryClipboard() override = default;

  GlobalHandle GlobalAlloc(uint32_t flags, size_t bytes) noexcept override;
  void* GlobalLock(GlobalHandle handle) noexcept override;
  bool GlobalUnlock(GlobalHandle handle) noexcept override;
  size_t GlobalSize(GlobalHandle handle) noexcept override;
  GlobalHandle GlobalFree(GlobalHandle handle) noexcept override;

  bool OpenClipboard(void* owner) noexcept override;
  bool EmptyClipboard() noexcept override;
  GlobalHandle SetClipboardData(uint32_t format, GlobalHandle handle) noexcept override;
  GlobalHandle GetClipboardData(uint32_t format) noexcept override;
  bool CloseClipboard() noexcept override;

  /// Lock count of a block (0 for an unknown handle).
  int LockCount(GlobalHandle handle) const noexcept;
  /// True if the handle names a block that is allocated and not freed.
  bool IsLive(GlobalHandle handle) const noexcept;
  /// True if the block belongs to the clipboard.
  bool IsOnClipboard(GlobalHandle handle) const noexcept;
  /// The owner given by the opener at the last EmptyClipboard.
  void* Owner() const noexcept;
  /// Blocks allocated and not yet freed.
  size_t LiveBlocks() const noexcept;

 private:
  struct Block {
    std::unique_ptr<unsigned char[]> bytes;
    size_t size = 0;
    int locks = 0;
    bool onClipboard = false;
  };

  bool _HeldByThisThread() const noexcept;
  void _Release(GlobalHandle handle) noexcept;

  mutable std::mutex _mutex;
  // A handle is the address of its Block, which stays put while the bytes are its own.
  std::unordered_map<GlobalHandle, std::unique_ptr<Block>> _blocks;
  bool _open = false;
  std::thread::id _holder;
  void* _openedBy = nullptr;
  void* _owner = nullptr;
  std::map<uint32_t, GlobalHandle> _formats;
};

}  // namespace ic::platform::internal
