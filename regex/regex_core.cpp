#include <ic/regex/internal/regex_core.h>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <regex>
#include <vector>

#include <ic/regex/internal/pattern_cache.h>
#include <ic/text/internal/search_core.h>

namespace ic::internal {
namespace {

// The pattern is compiled with the ECMAScript grammar and no other flag: case matters, and the
// engine keeps its marked sub-expressions.
constexpr std::regex_constants::syntax_option_type PatternFlags = std::regex_constants::ECMAScript;

// The units that the engine sees: from `begin` up to the first zero unit, not past `limit`.
template <class Unit>
struct Subject {
  const Unit* begin;
  const Unit* end;
};

template <class Unit>
const Unit* FirstZero(const Unit* p, const Unit* limit) noexcept {
  while (p < limit && *p != 0)
    ++p;
  return p;
}

// The subject of a search: the text itself, or with the mask on a copy of the `length` units and
// the terminator in which each LeadUnit and the unit after it are overwritten by Pair. The copy
// has the same length, so an offset in it holds in the text. A LeadUnit as the last unit is
// outside the mask's contract: its pair takes the terminator, and the subject then runs to the
// end of the copy, never beyond it.
template <class Unit>
Subject<Unit> SubjectOf(const Unit* text, int32_t length, RegexSubjectMaskT<Unit>* mask) {
  if (mask == nullptr || mask->Pair == nullptr) {
    const size_t units = internal::TextLength(text);
    return {text, text + units};
  }
  const size_t size = static_cast<size_t>(length) + 1;
  Unit* const copy = static_cast<Unit*>(std::malloc(size * sizeof(Unit)));
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, text, size * sizeof(Unit));
  mask->MaskedCopy = copy;
  const Unit* const limit = copy + size;
  Unit* p = copy;
  while (p < limit && *p != 0) {
    if (*p == mask->LeadUnit) {
      p[0] = mask->Pair[0];
      if (p + 1 == limit) break;
      p[1] = mask->Pair[1];
      p += 2;
    } else {
      ++p;
    }
  }
  return {copy, FirstZero<Unit>(copy, limit)};
}

// The subject as the engine's characters: narrow units as they are, wide units widened one to
// one into a buffer of this thread that is reused from call to call.
template <class Unit>
struct EngineText {
  const RegexEngineChar<Unit>* begin;
  const RegexEngineChar<Unit>* end;
};

template <class Unit>
EngineText<Unit> ToEngine(Subject<Unit> subject) {
  if constexpr (sizeof(Unit) == 1) {
    return {subject.begin, subject.end};
  } else {
    thread_local std::vector<wchar_t> buffer;
    buffer.assign(subject.begin, subject.end);
    buffer.push_back(0);  // a terminator behind the subject, as the text itself has
    return {buffer.data(), buffer.data() + buffer.size() - 1};
  }
}

template <class Unit>
std::shared_ptr<const CompiledRegex<Unit>> CompileZeroTerminated(const Unit* pattern) {
  return CompilePattern(pattern, internal::TextLength(pattern), PatternFlags);
}

}  // namespace

template <class Unit>
const Unit* RegexSearchUnits(const Unit* text, int32_t length, const Unit* pattern, int32_t start,
                             bool lengthInUnits, RegexSubjectMaskT<Unit>* mask) {
  if (pattern == nullptr || *pattern == 0) return nullptr;
  // The start is a gate only: it must lie within the text, and the search runs from the first
  // unit whatever its value.
  if (start > 0 && internal::ForwardOffset(text, length, start, lengthInUnits) < 0)
    return nullptr;
  try {
    const auto compiled = CompileZeroTerminated(pattern);
    if (compiled == nullptr) return nullptr;
    const Subject<Unit> subject = SubjectOf(text, length, mask);
    const EngineText<Unit> engine = ToEngine(subject);
    std::match_results<const RegexEngineChar<Unit>*> match;
    if (!std::regex_search(engine.begin, engine.end, match, *compiled)) return nullptr;
    return text + match.position(0);
  } catch (const std::exception&) {
    return nullptr;
  }
}

template <class Unit>
bool RegexMatchesUnits(const Unit* text, int32_t length, const Unit* pattern,
                       RegexSubjectMaskT<Unit>* mask) {
  if (pattern == nullptr || *pattern == 0) return false;
  try {
    const auto compiled = CompileZeroTerminated(pattern);
    if (compiled == nullptr) return false;
    const EngineText<Unit> engine = ToEngine(SubjectOf(text, length, mask));
    return std::regex_match(engine.begin, engine.end, *compiled);
  } catch (const std::exception&) {
    return false;
  }
}

template <class Unit>
int32_t RegexIndexOf(const Unit* text, const Unit* match, bool lengthInUnits) noexcept {
  return internal::IndexOf(text, match, lengthInUnits);
}

template const char* RegexSearchUnits<char>(const char*, int32_t, const char*, int32_t, bool,
                                            RegexSubjectMaskT<char>*);
template const char16_t* RegexSearchUnits<char16_t>(const char16_t*, int32_t, const char16_t*,
                                                    int32_t, bool, RegexSubjectMaskT<char16_t>*);
template bool RegexMatchesUnits<char>(const char*, int32_t, const char*, RegexSubjectMaskT<char>*);
template bool RegexMatchesUnits<char16_t>(const char16_t*, int32_t, const char16_t*,
                                          RegexSubjectMaskT<char16_t>*);
template int32_t RegexIndexOf<char>(const char*, const char*, bool) noexcept;
template int32_t RegexIndexOf<char16_t>(const char16_t*, const char16_t*, bool) noexcept;

}  // namespace ic::internal
