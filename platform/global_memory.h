// Movable global memory blocks: GlobalAlloc, GlobalLock, GlobalUnlock, GlobalSize, GlobalFree.
//
// On Windows these are the system's calls. Elsewhere the platform layer keeps the blocks itself
// (handles, lock counts, sizes), so that the clipboard members behave the same everywhere. Every
// call goes through the clipboard backend in force (clipboard.h), which a host or a test may
// replace.
#pragma once

#include <cstddef>
#include <cstdint>

#include <ic/platform/export.h>

namespace ic::platform {

/// A global memory block handle (HGLOBAL); null is no block.
using GlobalHandle = void*;

/// GlobalAlloc's flag for blocks that go to the clipboard (GMEM_DDESHARE, 0x2000). Blocks are
/// movable: a handle, not an address, until locked.
inline constexpr uint32_t GlobalShareFlag = 0x2000;

/// Allocates a block of `bytes` bytes; null if that fails. A block of 0 bytes may be allocated,
/// but it cannot be locked.
IC_API GlobalHandle GlobalAlloc(uint32_t flags, size_t bytes) noexcept;
/// Locks the block and returns its address; null for a null, unknown or empty block.
IC_API void* GlobalLock(GlobalHandle handle) noexcept;
/// Undoes one GlobalLock; true while the block stays locked, false once it is unlocked (or for a
/// block that was not locked).
IC_API bool GlobalUnlock(GlobalHandle handle) noexcept;
/// The size of the block in bytes; 0 for a null or unknown handle.
IC_API size_t GlobalSize(GlobalHandle handle) noexcept;
/// Frees the block: null on success (and for a null handle), the handle itself on failure.
IC_API GlobalHandle GlobalFree(GlobalHandle handle) noexcept;

}  // namespace ic::platform
