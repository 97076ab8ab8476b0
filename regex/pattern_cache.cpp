#include <ic/regex/internal/pattern_cache.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ic::internal {
namespace {

thread_local size_t TCapacity = 16;

template <class Unit>
struct CacheEntry {
  std::basic_string<Unit> pattern;
  std::regex_constants::syntax_option_type flags;
  std::shared_ptr<const CompiledRegex<Unit>> compiled;  // null: the pattern does not compile
};

// Most recently used first.
template <class Unit>
std::vector<CacheEntry<Unit>>& ThreadCache() {
  thread_local std::vector<CacheEntry<Unit>> cache;
  return cache;
}

// True if the pattern holds a number of more than nine digits where the engine reads a number:
// a back-reference ("\\" and digits not starting with 0, which is the NUL escape) or a count
// between braces outside a bracket expression. The engine adds such digits up in a `long`
// without a check, which overflows from 19 digits on; every such number is also beyond what a
// pattern can use (no group has that index, no count fits the engine's state limit), so the
// engine would refuse the pattern anyway, and it is refused here before it is parsed.
template <class Unit>
bool HasOversizedNumber(const Unit* pattern, size_t length) noexcept {
  const auto digit = [](Unit u) { return u >= Unit('0') && u <= Unit('9'); };
  bool inBracket = false;
  bool inBraces = false;
  for (size_t i = 0; i < length; ++i) {
    const Unit u = pattern[i];
    bool number = false;
    if (u == Unit('\\') && i + 1 < length) {
      ++i;
      number = digit(pattern[i]) && pattern[i] != Unit('0');
    } else if (inBraces && digit(u)) {
      number = true;
    } else if (u == Unit('[') && !inBraces) {
      inBracket = true;
    } else if (u == Unit(']')) {
      inBracket = false;
    } else if (u == Unit('{') && !inBracket) {
      inBraces = true;
    } else if (u == Unit('}')) {
      inBraces = false;
    }
    if (!number) continue;
    size_t run = 0;
    while (i + run < length && digit(pattern[i + run]))
      ++run;
    if (run > 9) return true;
    i += run - 1;
  }
  return false;
}

template <class Unit>
std::shared_ptr<const CompiledRegex<Unit>> Compile(const Unit* pattern, size_t length,
                                                   std::regex_constants::syntax_option_type flags) {
  using Char = RegexEngineChar<Unit>;
  if (HasOversizedNumber(pattern, length)) return nullptr;
  try {
    if constexpr (sizeof(Unit) == 1) {
      return std::make_shared<const CompiledRegex<Unit>>(pattern, length, flags);
    } else {
      // One wchar_t per UTF-16 unit, whatever the width of wchar_t, and a terminator behind
      // them as a narrow pattern has: the engine's scanner reads one character past the end of
      // some unfinished patterns (such as "(?").
      std::vector<Char> wide(pattern, pattern + length);
      wide.push_back(0);
      return std::make_shared<const CompiledRegex<Unit>>(wide.data(), length, flags);
    }
  } catch (const std::regex_error&) {
    return nullptr;
  }
}

template <class Unit>
void Trim(std::vector<CacheEntry<Unit>>& cache, size_t capacity) {
  if (cache.size() > capacity) cache.resize(capacity);
}

}  // namespace

template <class Unit>
std::shared_ptr<const CompiledRegex<Unit>> CompilePattern(
    const Unit* pattern, size_t length, std::regex_constants::syntax_option_type flags) {
  if (TCapacity == 0) return Compile(pattern, length, flags);
  std::vector<CacheEntry<Unit>>& cache = ThreadCache<Unit>();
  const std::basic_string_view<Unit> key(pattern, length);
  for (auto it = cache.begin(); it != cache.end(); ++it) {
    if (it->flags == flags && it->pattern == key) {
      std::rotate(cache.begin(), it, it + 1);
      return cache.front().compiled;
    }
  }
  std::shared_ptr<const CompiledRegex<Unit>> compiled = Compile(pattern, length, flags);
  Trim(cache, TCapacity - 1);
  cache.insert(cache.begin(), CacheEntry<Unit>{std::basic_string<Unit>(key), flags, compiled});
  return compiled;
}

void SetRegexCacheCapacity(size_t patterns) noexcept {
  TCapacity = patterns;
  Trim(ThreadCache<char>(), patterns);
  Trim(ThreadCache<char16_t>(), patterns);
}

size_t RegexCacheCapacity() noexcept {
  return TCapacity;
}

template std::shared_ptr<const CompiledRegex<char>> CompilePattern<char>(
    const char*, size_t, std::regex_constants::syntax_option_type);
template std::shared_ptr<const CompiledRegex<char16_t>> CompilePattern<char16_t>(
    const char16_t*, size_t, std::regex_constants::syntax_option_type);

}  // namespace ic::internal
