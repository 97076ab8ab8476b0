// The clipboard and global memory calls, each passed to the backend in force, and the system's
// backend: the native calls on Windows, the platform layer's own clipboard elsewhere
// (internal/memory_clipboard.h).
#include <ic/platform/clipboard.h>

#include <atomic>

#if defined(_WIN32)
#include <ic/platform/internal/windows_api.h>
#else
#include <ic/platform/internal/memory_clipboard.h>
#endif

namespace ic::platform {

namespace {

#if defined(_WIN32)

// The ten native calls. HGLOBAL and HWND are pointers, so handles pass through unchanged.
class NativeClipboard final : public ClipboardBackend {
 public:
  GlobalHandle GlobalAlloc(uint32_t flags, size_t bytes) noexcept override {
    return ::GlobalAlloc(flags, bytes);
  }
  void* GlobalLock(GlobalHandle handle) noexcept override { return ::GlobalLock(handle); }
  bool GlobalUnlock(GlobalHandle handle) noexcept override { return ::GlobalUnlock(handle) != 0; }
  size_t GlobalSize(GlobalHandle handle) noexcept override { return ::GlobalSize(handle); }
  GlobalHandle GlobalFree(GlobalHandle handle) noexcept override { return ::GlobalFree(handle); }

  bool OpenClipboard(void* owner) noexcept override {
    return ::OpenClipboard(static_cast<HWND>(owner)) != 0;
  }
  bool EmptyClipboard() noexcept override { return ::EmptyClipboard() != 0; }
  GlobalHandle SetClipboardData(uint32_t format, GlobalHandle handle) noexcept override {
    return ::SetClipboardData(format, handle);
  }
  GlobalHandle GetClipboardData(uint32_t format) noexcept override {
    return ::GetClipboardData(format);
  }
  bool CloseClipboard() noexcept override { return ::CloseClipboard() != 0; }
};

using SystemBackend = NativeClipboard;

#else

using SystemBackend = internal::MemoryClipboard;

#endif

std::atomic<ClipboardBackend*> g_backend{nullptr};

}  // namespace

ClipboardBackend& SystemClipboardBackend() noexcept {
  // Never destroyed: blocks handed out may be freed by exit actions of other modules.
  static SystemBackend* const backend = new SystemBackend();
  return *backend;
}

ClipboardBackend* SetClipboardBackend(ClipboardBackend* backend) noexcept {
  ClipboardBackend* previous = g_backend.exchange(backend);
  return previous ? previous : &SystemClipboardBackend();
}

ClipboardBackend& CurrentClipboardBackend() noexcept {
  ClipboardBackend* backend = g_backend.load();
  return backend ? *backend : SystemClipboardBackend();
}

GlobalHandle GlobalAlloc(uint32_t flags, size_t bytes) noexcept {
  return CurrentClipboardBackend().GlobalAlloc(flags, bytes);
}
void* GlobalLock(GlobalHandle handle) noexcept {
  return CurrentClipboardBackend().GlobalLock(handle);
}
bool GlobalUnlock(GlobalHandle handle) noexcept {
  return CurrentClipboardBackend().GlobalUnlock(handle);
}
size_t GlobalSize(GlobalHandle handle) noexcept {
  return CurrentClipboardBackend().GlobalSize(handle);
}
GlobalHandle GlobalFree(GlobalHandle handle) noexcept {
  return CurrentClipboardBackend().GlobalFree(handle);
}
bool OpenClipboard(void* owner) noexcept {
  return CurrentClipboardBackend().OpenClipboard(owner);
}
bool EmptyClipboard() noexcept {
  return CurrentClipboardBackend().EmptyClipboard();
}
GlobalHandle SetClipboardData(uint32_t format, GlobalHandle handle) noexcept {
  return CurrentClipboardBackend().SetClipboardData(format, handle);
}
GlobalHandle GetClipboardData(uint32_t format) noexcept {
  return CurrentClipboardBackend().GetClipboardData(format);
}
bool CloseClipboard() noexcept {
  return CurrentClipboardBackend().CloseClipboard();
}

}  // namespace ic::platform
