// HtmlEntityTable: the named HTML entities of the values below 256, as the HTML encoder writes
// them. Entries are names without '&' and ';', null where a value has no name; the narrow and
// wide tables hold the same 66 names: quot, amp, lt, gt and the Latin-1 letters 0xC0-0xFF apart
// from 0xD7 and 0xF7.
#pragma once

#include <array>

#include <ic/platform/export.h>

namespace ic {

/// Narrow entity names by value (0-255); null for values without one.
IC_API extern const std::array<const char*, 256> HtmlEntityTable;
/// Wide entity names by value (0-255); null for values without one.
IC_API extern const std::array<const char16_t*, 256> HtmlEntityTableW;

}  // namespace ic
