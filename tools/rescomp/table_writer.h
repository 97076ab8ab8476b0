// Writes the C++ tables of one module: a header that declares the catalogue and a source that
// holds its texts and keys as UTF-16 string literals.
#pragma once

#include <string>
#include <string_view>

#include "source_reader.h"

namespace ic::rescomp {

// The characters between the quotes of a u"..." literal whose value is `units`. Printable
// ASCII stands as it is, with '"', '\' and the second '?' of "??" escaped; control characters
// (U+0000..U+001F, U+007F..U+009F) become three-digit octal escapes, so that no digit after
// them can join the escape; other BMP characters become \uXXXX and a surrogate pair becomes
// one \UXXXXXXXX. Throws std::invalid_argument for a lone surrogate, which no literal can
// spell with a universal character name.
std::string EncodeLiteral(std::u16string_view units);

// The generated header. `sourceName` is named in its first comment.
std::string GenerateHeader(const Module& module, std::string_view sourceName);

// The generated source, which includes the header by `headerInclude` (a path relative to the
// source's directory).
std::string GenerateSource(const Module& module, std::string_view sourceName,
                           std::string_view headerInclude);

}  // namespace ic::rescomp
