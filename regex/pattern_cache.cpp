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

template <class Unit>
std::shared_ptr<const CompiledRegex<Unit>> Compile(const Unit* pattern, size_t length,
                                                   std::regex_constants::syntax_option_type flags) {
  using Char = RegexEngineChar<Unit>;
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
