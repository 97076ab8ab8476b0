// The clipboard: OpenClipboard, EmptyClipboard, SetClipboardData, GetClipboardData,
// CloseClipboard, and the backend that carries them with the global memory calls.
//
// On Windows the backend in force at start is the system's (the ten native calls). Elsewhere it
// is the platform layer's own: one clipboard for the process, with an open or closed state, the
// thread that holds it open, an owner, and one block per format, which becomes the clipboard's
// on SetClipboardData. A host connects its own desktop clipboard, and a test injects failures, by
// putting another ClipboardBackend in force with SetClipboardBackend.
#pragma once

#include <cstddef>
#include <cstdint>

#include <ic/platform/export.h>
#include <ic/platform/global_memory.h>

namespace ic::platform {

/// The standard clipboard formats of text: narrow (CF_TEXT) and UTF-16 (CF_UNICODETEXT).
inline constexpr uint32_t ClipboardTextFormat = 1;
inline constexpr uint32_t ClipboardUnicodeTextFormat = 13;

/// The ten calls behind the clipboard and the global memory blocks, with the contracts of the
/// free functions of the same names (below and in global_memory.h).
class IC_API ClipboardBackend {
 public:
  virtual ~ClipboardBackend() = default;

  virtual GlobalHandle GlobalAlloc(uint32_t flags, size_t bytes) noexcept = 0;
  virtual void* GlobalLock(GlobalHandle handle) noexcept = 0;
  virtual bool GlobalUnlock(GlobalHandle handle) noexcept = 0;
  virtual size_t GlobalSize(GlobalHandle handle) noexcept = 0;
  virtual GlobalHandle GlobalFree(GlobalHandle handle) noexcept = 0;

  virtual bool OpenClipboard(void* owner) noexcept = 0;
  virtual bool EmptyClipboard() noexcept = 0;
  virtual GlobalHandle SetClipboardData(uint32_t format, GlobalHandle handle) noexcept = 0;
  virtual GlobalHandle GetClipboardData(uint32_t format) noexcept = 0;
  virtual bool CloseClipboard() noexcept = 0;
};

/// The system's backend: the native calls on Windows, the process-wide clipboard and block
/// allocator of the platform layer elsewhere. It lives as long as the process.
IC_API ClipboardBackend& SystemClipboardBackend() noexcept;

/// Puts `backend` in force for every later call (null puts the system's back) and returns the
/// one that was in force. The caller keeps `backend` alive while it is in force. Not synchronised
/// with calls in flight: set it before other threads use the clipboard.
IC_API ClipboardBackend* SetClipboardBackend(ClipboardBackend* backend) noexcept;

/// The backend in force.
IC_API ClipboardBackend& CurrentClipboardBackend() noexcept;

/// Opens the clipboard for this thread, `owner` being the window that owns it (null: none).
/// False if it is open elsewhere (another thread, or another process on Windows).
IC_API bool OpenClipboard(void* owner) noexcept;
/// Frees every block on the open clipboard and makes the opener its owner; false if not open.
IC_API bool EmptyClipboard() noexcept;
/// Puts `handle` on the open clipboard under `format`, replacing (and freeing) the block that
/// was there; the block then belongs to the clipboard. Returns the handle, or null on failure
/// (clipboard not open, null or unknown handle), in which case the caller still owns the block.
IC_API GlobalHandle SetClipboardData(uint32_t format, GlobalHandle handle) noexcept;
/// The block of `format` on the open clipboard, still the clipboard's; null if the clipboard is
/// not open or holds nothing in that format.
IC_API GlobalHandle GetClipboardData(uint32_t format) noexcept;
/// Closes the clipboard; false if it was not open.
IC_API bool CloseClipboard() noexcept;

}  // namespace ic::platform
