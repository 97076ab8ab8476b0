// Members of every string that put its text on the clipboard or in a global memory block, and
// of the unique strings that read it back. Mixed into BasicICString.
//
// Sizes, in bytes: a count given (non-zero) is taken as it stands, count units of the string's
// width from the first unit, without a look at the length; count 0 (and the forms without a
// count) means the whole text with its terminator, (length + 1) units. Narrow text goes under
// format 1 (CF_TEXT), wide text under 13 (CF_UNICODETEXT) unless a format is given. Every call
// goes through the clipboard backend in force (platform/clipboard.h): the system's clipboard on
// Windows, the platform layer's own process-wide clipboard elsewhere.
//
// Blocks: after a successful SetClipboardData the block is the clipboard's; a block read from
// the clipboard is never freed here; the block of CopyToGlobalMemory is the caller's. Failures
// answer false (or null) and leave the string as it was.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/platform/global_memory.h>
#include <ic/string/family_fwd.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringClipboardMembers;

template <class Unit, class Storage>
class ICStringClipboardMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringClipboardMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringClipboardMembers);

 public:
  /// @name Clipboard and global memory
  /// @{

  /// The clipboard format of the string's width: 1 (CF_TEXT) narrow, 13 (CF_UNICODETEXT) wide.
  static constexpr uint32_t ClipboardFormat = IsNarrow ? 1 : 13;

  /// Empties the clipboard and puts the whole text, terminator included, on it in the format of
  /// the string's width (an empty string goes as a block of one unit, the terminator). Opens the
  /// clipboard with no owner and closes it again. True on success.
  bool CopyToClipboard() const noexcept;
  /// The same in `format`.
  bool CopyToClipboard(uint32_t format) const noexcept;
  /// Puts `count` units (0: the whole text with its terminator) on the clipboard in `format`,
  /// which the caller has opened and emptied and closes afterwards; for several formats in one
  /// go. True on success; on failure the block made for it is freed.
  bool SetOpenClipboardData(uint32_t format, int32_t count) const noexcept;
  /// A new unlocked global memory block (flag 0x2000) holding `count` units (0: the whole text
  /// with its terminator), now the caller's; null if allocation or locking fails.
  platform::GlobalHandle CopyToGlobalMemory(int32_t count) const noexcept;

  /// Replaces the text with the clipboard's block in the format of the string's width. The
  /// room is sized by the block: 4 * S + 4 bytes narrow, (S + 1) / 2 units wide, for a block of
  /// S bytes; the text ends at the block's first zero unit (a zero is put behind the copy), and
  /// its length is measured on the next read. False, with the string unchanged, if the
  /// clipboard cannot be opened or holds nothing (or an empty or unlockable block) in the format.
  /// An exception from allocating the room passes through with the clipboard left open.
  bool PasteFromClipboard() requires IsUnique;
  /// The same from `format`.
  bool PasteFromClipboard(uint32_t format) requires IsUnique;
  /// The same from the block `handle`, with no clipboard calls; the caller keeps the handle.
  /// False, with the string unchanged, for a null, empty or unlockable block.
  bool ReadGlobalMemory(platform::GlobalHandle handle) requires IsUnique;
  /// @}

 private:
  bool _ReadLockedBlock(platform::GlobalHandle handle, size_t size,
                        const void* bytes) requires IsUnique;
};

IC_EXTERN_STRING_MIXIN(ICStringClipboardMembers)

}  // namespace ic
