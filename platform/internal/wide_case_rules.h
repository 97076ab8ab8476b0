// The bounded in-place mapping and the case-blind comparison of the wide run-time functions,
// over any one-unit case mapping. Off Windows, _wcslwr_s, _wcsupr_s and _wcsicmp are these over
// the library's Unicode mapping; on Windows the run-time has its own, and the tests run these
// over the run-time's unit mapping to check that both keep the same contract.
#pragma once

#include <cerrno>
#include <cstddef>

namespace ic::platform::internal {

/// Maps the zero-terminated `text` of a `size`-unit buffer in place. EINVAL for a null text, and
/// when no terminator lies within `size` units, a size of 0 included: the text is then made
/// empty (its first unit becomes 0, as the Windows run-time does even for a size of 0) and
/// nothing is mapped. 0 otherwise.
template <class Map>
int MapUnitsInPlace(char16_t* text, size_t size, Map map) noexcept {
  if (!text) return EINVAL;
  size_t length = 0;
  while (length < size && text[length] != 0)
    ++length;
  if (length == size) {
    text[0] = 0;
    return EINVAL;
  }
  for (size_t i = 0; i < length; ++i)
    text[i] = map(text[i]);
  return 0;
}

/// Compares two zero-terminated texts unit by unit after mapping each unit with `lower`: the
/// difference of the first two mapped units that differ, or 0. `nullResult` if either is null.
template <class Map>
int CompareMappedUnits(const char16_t* left, const char16_t* right, Map lower,
                       int nullResult) noexcept {
  if (!left || !right) return nullResult;
  for (;; ++left, ++right) {
    const int a = lower(*left);
    const int b = lower(*right);
    if (a != b || a == 0) return a - b;
  }
}

}  // namespace ic::platform::internal
