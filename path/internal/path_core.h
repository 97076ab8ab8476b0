// The text work of the path members, over plain units: pointers and lengths in code units, no
// string object. Defined in path_core.cpp for char (UTF-8) and char16_t (UTF-16).
//
// Backward scans of narrow text step over whole code points (continuation bytes are passed,
// the lead byte is compared); forward scans decode UTF-8. Wide text is scanned by unit, with no
// special handling of surrogates.
#pragma once

#include <cstdint>

namespace ic::internal {

/// Index of the last slash or backslash of the `length` units at `text`, or -1.
template <class Unit>
int32_t FindLastSeparatorIndex(const Unit* text, int32_t length) noexcept;

/// The separator at which GetAncestorPath cuts for `levels` levels: the scan starts at the last
/// code point but one and goes backwards, each separator counting one level; the index of the
/// separator where fewer than one level is left, or -1 when the start is reached first.
template <class Unit>
int32_t FindAncestorSeparator(const Unit* text, int32_t length, int32_t levels) noexcept;

/// Index of the dot that opens the extension, or -1: the last dot, when no character of
/// ExtensionStopChars follows it.
template <class Unit>
int32_t FindExtensionDotIndex(const Unit* text, int32_t length) noexcept;

/// Units in front of the text that RemoveRootPrefix drops: through the first colon and every
/// separator directly behind it; 0 without a colon.
template <class Unit>
int32_t RootPrefixLength(const Unit* text, int32_t length) noexcept;

/// IsRelativePath on a zero-terminated text (null: false).
template <class Unit>
bool IsRelativePathText(const Unit* text, bool rootedIsAbsolute) noexcept;

/// IsValidFileName on a zero-terminated text (null: false).
template <class Unit>
bool IsValidFileNameText(const Unit* text);

/// NormalizePath on a zero-terminated writable text (null: 0): rewrites it in place, writes the
/// terminator and returns the new length. The result is never longer than the text, and the
/// text changes exactly when the length returned is below the old length.
template <class Unit>
int32_t NormalizePathText(Unit* text, bool removeDots, bool removeDotDots) noexcept;

/// EqualIgnoringChars on zero-terminated texts; null stands for the empty text.
template <class Unit>
bool EqualIgnoringCharsText(const Unit* first, const Unit* second, const Unit* ignored) noexcept;

/// True if the unit occurs among the `length` units at `text`.
template <class Unit>
bool ContainsUnit(const Unit* text, int32_t length, Unit unit) noexcept;

/// Index of the first occurrence of the zero-terminated `needle` in the `length` units at
/// `text`, or -1. An empty needle is found at 0.
template <class Unit>
int32_t FindUnits(const Unit* text, int32_t length, const Unit* needle) noexcept;

}  // namespace ic::internal
