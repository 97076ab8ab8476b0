// The unit-only cores of the line members: foreign line ends, and offsets against lines and
// columns. Instantiated for char and char16_t in line_core.cpp.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>

namespace ic::internal {

/// The first line end of `text` (null counts as empty) that differs from `lineEnd`, which must
/// be exactly "\r", "\n" or "\r\n" (anything else answers null); for a "\r\n" in the text the
/// carriage return is answered.
template <class Unit>
const Unit* FindForeignLineEndIn(const Unit* text, const Unit* lineEnd) noexcept;

/// Line and column (from 0) of `offset` units into the zero-terminated `text`; true if the walk
/// stopped exactly there.
template <class Unit>
bool LineColumnOf(const Unit* text, int32_t offset, int32_t& line, int32_t& column) noexcept;

/// The offset of `line` and `column`; false (and the offset of the line end) if the column lies
/// beyond the end of its line.
template <class Unit>
bool OffsetOf(const Unit* text, int32_t line, int32_t column, int32_t& offset) noexcept;

extern template IC_API const char* FindForeignLineEndIn(const char*, const char*) noexcept;
extern template IC_API const char16_t* FindForeignLineEndIn(const char16_t*,
                                                            const char16_t*) noexcept;
extern template IC_API bool LineColumnOf(const char*, int32_t, int32_t&, int32_t&) noexcept;
extern template IC_API bool LineColumnOf(const char16_t*, int32_t, int32_t&, int32_t&) noexcept;
extern template IC_API bool OffsetOf(const char*, int32_t, int32_t, int32_t&) noexcept;
extern template IC_API bool OffsetOf(const char16_t*, int32_t, int32_t, int32_t&) noexcept;

}  // namespace ic::internal
