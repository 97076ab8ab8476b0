// The bodies of the replacing members that depend on the width only, compiled once per width
// and shared by the three shapes through an EditTarget.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/string/internal/edit_target.h>

namespace ic::internal {

/// ReplaceAll on the target: every occurrence of `needle` (`needleLength` units, negative:
/// measured) replaced by `text` (`textLength` units, negative: measured; null: nothing), at
/// most `maxCount` of them (0 or below: all). Returns the number of replacements. Throws
/// std::length_error("ICString::ReplaceAll too long") if the result would exceed 0x7fffffff
/// units.
IC_API int32_t ReplaceAllUnits(EditTarget<char>& target, const char* needle, int32_t needleLength,
                               const char* text, int32_t textLength, int32_t maxCount);
IC_API int32_t ReplaceAllUnits(EditTarget<char16_t>& target, const char16_t* needle,
                               int32_t needleLength, const char16_t* text, int32_t textLength,
                               int32_t maxCount);

}  // namespace ic::internal
