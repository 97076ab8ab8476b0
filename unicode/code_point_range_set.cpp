#include <ic/unicode/code_point_range_set.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

#include <ic/text/case_mapping.h>
#include <ic/unicode/internal/range_growth.h>

namespace ic {

namespace internal {

size_t GrowRangeCapacity(size_t capacity, size_t needed) {
  constexpr size_t max = CodePointRangeSet::MaxSize;
  if (needed > max) throw std::length_error("vector too long");
  if (capacity > max - capacity / 2) return max;
  const size_t geometric = capacity + capacity / 2;
  return geometric < needed ? needed : geometric;
}

}  // namespace internal

namespace {

CodePointRange* AllocateRanges(size_t count) {
  return static_cast<CodePointRange*>(::operator new(count * sizeof(CodePointRange)));
}

}  // namespace

CodePointRangeSet::CodePointRangeSet(const CodePointRangeSet& other) {
  AssignRanges(other._begin, other.size());
}

CodePointRangeSet::CodePointRangeSet(CodePointRangeSet&& other) noexcept
    : _begin(other._begin), _end(other._end), _capacityEnd(other._capacityEnd) {
  other._begin = other._end = other._capacityEnd = nullptr;
}

CodePointRangeSet& CodePointRangeSet::operator=(const CodePointRangeSet& other) {
  if (this != &other) AssignRanges(other._begin, other.size());
  return *this;
}

CodePointRangeSet& CodePointRangeSet::operator=(CodePointRangeSet&& other) noexcept {
  if (this != &other) {
    _Free();
    _begin = other._begin;
    _end = other._end;
    _capacityEnd = other._capacityEnd;
    other._begin = other._end = other._capacityEnd = nullptr;
  }
  return *this;
}

CodePointRangeSet::~CodePointRangeSet() {
  _Free();
}

void CodePointRangeSet::_Free() noexcept {
  ::operator delete(_begin);
  _begin = _end = _capacityEnd = nullptr;
}

void CodePointRangeSet::_Reallocate(size_t capacity) {
  CodePointRange* const fresh = AllocateRanges(capacity);
  const size_t count = size();
  if (count != 0) std::memcpy(fresh, _begin, count * sizeof(CodePointRange));
  ::operator delete(_begin);
  _begin = fresh;
  _end = fresh + count;
  _capacityEnd = fresh + capacity;
}

void CodePointRangeSet::_Insert(size_t index, CodePointRange range) {
  const size_t count = size();
  if (_end == _capacityEnd) _Reallocate(internal::GrowRangeCapacity(capacity(), count + 1));
  std::memmove(_begin + index + 1, _begin + index, (count - index) * sizeof(CodePointRange));
  _begin[index] = range;
  ++_end;
}

void CodePointRangeSet::_Erase(size_t first, size_t last) {
  std::memmove(_begin + first, _begin + last, (size() - last) * sizeof(CodePointRange));
  _end -= last - first;
}

void CodePointRangeSet::Reserve(size_t count) {
  if (count > MaxSize) throw std::length_error("vector too long");
  if (count > capacity()) _Reallocate(count);
}

void CodePointRangeSet::AssignRanges(const CodePointRange* ranges, size_t count) {
  if (count > MaxSize) throw std::length_error("vector too long");
  if (count > capacity()) {
    CodePointRange* const fresh = AllocateRanges(count);
    _Free();
    _begin = fresh;
    _capacityEnd = fresh + count;
  }
  if (count != 0) std::memmove(_begin, ranges, count * sizeof(CodePointRange));
  _end = _begin + count;
}

size_t CodePointRangeSet::AddRange(CodePointRange range) {
  const uint32_t a = range.first;
  const uint32_t b = range.last;
  if (b < a) return size();
  // The first range that ends at or after a - 1 may touch or overlap [a, b]; for a = 0 the
  // bound is 0 so that it does not wrap.
  const uint32_t low = a == 0 ? 0 : a - 1;
  CodePointRange* const from = std::lower_bound(
      _begin, _end, low, [](const CodePointRange& r, uint32_t bound) { return r.last < bound; });
  // The first range that starts beyond b + 1 is clear of it (computed wide: b may be the
  // largest 32-bit value).
  const uint64_t high = uint64_t{b} + 1;
  CodePointRange* const to = std::upper_bound(
      from, _end, high, [](uint64_t bound, const CodePointRange& r) { return bound < r.first; });
  const size_t index = static_cast<size_t>(from - _begin);
  if (from == to) {
    _Insert(index, range);
    return index;
  }
  // Every range in [from, to) overlaps or touches [a, b]: the last of them takes the union and
  // one move closes the gap, so that the merged range stands at `from`.
  CodePointRange* const lastMerged = to - 1;
  *lastMerged = {std::min(a, from->first), std::max(b, lastMerged->last)};
  _Erase(index, static_cast<size_t>(lastMerged - _begin));
  return index;
}

void CodePointRangeSet::Add(CodePointRange range, bool closeOverCase) {
  if (range.last < range.first) return;
  AddRange(range);
  if (!closeOverCase) return;
  // Each code point brings in its record's upper and lower, then the variants up to the first
  // zero. Adding them straight to this set gives the same union as collecting them first.
  for (uint64_t c = range.first; c <= range.last; ++c) {
    const CaseRecord* record = FindCaseRecord(static_cast<uint32_t>(c));
    if (record == nullptr) continue;
    AddRange({record->upper, record->upper});
    AddRange({record->lower, record->lower});
    if (record->variantA == 0) continue;
    AddRange({record->variantA, record->variantA});
    if (record->variantB == 0) continue;
    AddRange({record->variantB, record->variantB});
  }
}

void CodePointRangeSet::Subtract(const CodePointRangeSet& other) {
  if (empty()) return;
  size_t i = 0;
  size_t j = 0;
  while (i < size() && j < other.size()) {
    const CodePointRange r = _begin[i];
    const CodePointRange o = other._begin[j];
    if (r.last < o.first) {
      ++i;
    } else if (r.first > o.last) {
      ++j;
    } else if (r.first < o.first) {
      // Keep the piece below o; a piece beyond o comes next and is checked against o again.
      _begin[i].last = o.first - 1;
      ++i;
      if (r.last > o.last) _Insert(i, {o.last + 1, r.last});
    } else if (r.last > o.last) {
      _begin[i].first = o.last + 1;
      ++j;
    } else {
      _Erase(i, i + 1);
    }
  }
}

void CodePointRangeSet::Complement() {
  uint64_t start = 0;
  size_t kept = 0;
  for (const CodePointRange* r = _begin; r != _end; ++r) {
    const CodePointRange stored = *r;
    if (start < stored.first) _begin[kept++] = {static_cast<uint32_t>(start), stored.first - 1};
    start = uint64_t{stored.last} + 1;
  }
  _end = _begin + kept;
  if (start <= 0x10FFFF) _Insert(kept, {static_cast<uint32_t>(start), 0x10FFFF});
}

bool operator==(const CodePointRangeSet& a, const CodePointRangeSet& b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

namespace {

// Walks both arrays until a range of the first overlaps a range of the second; returns false
// when there is none.
bool FindFirstOverlap(std::span<const CodePointRange> first, std::span<const CodePointRange> second,
                      CodePointRange& a, CodePointRange& b) noexcept {
  size_t i = 0;
  size_t j = 0;
  while (i < first.size() && j < second.size()) {
    if (first[i].last < second[j].first) {
      ++i;
    } else if (first[i].first > second[j].last) {
      ++j;
    } else {
      a = first[i];
      b = second[j];
      return true;
    }
  }
  return false;
}

}  // namespace

int64_t FirstCommonCodePoint(std::span<const CodePointRange> first,
                             std::span<const CodePointRange> second) noexcept {
  CodePointRange a, b;
  if (!FindFirstOverlap(first, second, a, b)) return -1;
  return std::max(a.first, b.first);
}

int64_t PickCommonCodePoint(std::span<const CodePointRange> first,
                            std::span<const CodePointRange> second, uint32_t seed) noexcept {
  CodePointRange a, b;
  if (!FindFirstOverlap(first, second, a, b)) return -1;
  if (a.first <= b.first) {
    uint64_t width = uint64_t{b.last} - b.first;
    if (width == 0) width = 1;
    const uint64_t m = seed % width + b.first;
    if (m >= a.last) return b.first;
    return m < b.last ? static_cast<int64_t>(m) : b.first;
  }
  uint64_t width = uint64_t{a.last} - a.first;
  if (width == 0) width = 1;
  const uint64_t m = seed % width + a.first;
  if (m >= a.last || m >= b.last) return a.first;
  return static_cast<int64_t>(m);
}

}  // namespace ic
