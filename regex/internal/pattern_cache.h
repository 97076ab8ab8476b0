// The compiled patterns of the regex members, kept per thread.
//
// Compiling a pattern costs far more than most searches, so each thread keeps its most recently
// used compiled expressions, keyed by the pattern text, the width and the flags. A pattern that
// does not compile is remembered as such. Results are the same as compiling on every call: the
// engine's compiled form does not depend on anything but the key.
#pragma once

#include <cstddef>
#include <memory>
#include <regex>

#include <ic/platform/export.h>

namespace ic::internal {

/// The engine's character type for a code unit: char for UTF-8, wchar_t for UTF-16.
template <class Unit>
using RegexEngineChar = std::conditional_t<sizeof(Unit) == 1, char, wchar_t>;

/// The compiled form of a pattern of `Unit`.
template <class Unit>
using CompiledRegex = std::basic_regex<RegexEngineChar<Unit>>;

/// The compiled expression of the `length` units of `pattern` with `flags`, from this thread's
/// cache or compiled now (and then kept); null if the pattern does not compile. Throws what the
/// engine throws other than std::regex_error (std::bad_alloc), and then keeps nothing.
template <class Unit>
std::shared_ptr<const CompiledRegex<Unit>> CompilePattern(
    const Unit* pattern, size_t length, std::regex_constants::syntax_option_type flags);

/// The number of patterns that this thread keeps for each width (16 at first). 0 turns the
/// cache off: every call compiles. Lowering it drops the least recently used patterns.
IC_API void SetRegexCacheCapacity(size_t patterns) noexcept;

/// This thread's capacity.
IC_API size_t RegexCacheCapacity() noexcept;

}  // namespace ic::internal
