// Sets of Unicode code points as sorted arrays of inclusive ranges.
//
// CodePointRangeSet is the one representation of a set of characters used by the Unicode tables
// and the character classes. It is built once and read many times, so it is a compact array of
// ranges rather than a node structure. Every value is a code point, never a code unit, so narrow
// and wide text share the same sets. Values are not checked: only Complement knows the bound
// 0x10FFFF.
//
// A set built through Add keeps three invariants: the ranges ascend by `first`, never overlap
// and never touch (between two ranges lies at least one code point). AssignRanges takes an array
// as it stands, so a set filled that way holds whatever order the array had.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include <ic/platform/export.h>

namespace ic {

/// An inclusive range of code points; a range whose `last` is below `first` is empty.
struct CodePointRange {
  uint32_t first;  ///< lowest code point of the range
  uint32_t last;   ///< highest code point of the range, inclusive

  friend bool operator==(const CodePointRange&, const CodePointRange&) = default;
};

/// A growable array of CodePointRange: a value type whose copy is a plain copy of the array.
/// It holds at most 0x1FFFFFFF ranges; growing past that throws std::length_error("vector too
/// long"). It grows to 1.5 times its capacity, or to the size needed if that is more.
class IC_API CodePointRangeSet {
 public:
  /// The largest number of ranges a set can hold.
  static constexpr size_t MaxSize = 0x1FFFFFFF;

  /// The empty set; allocates nothing.
  constexpr CodePointRangeSet() noexcept = default;
  /// A copy of the other set's array, with a capacity of exactly its size.
  CodePointRangeSet(const CodePointRangeSet& other);
  /// Takes the other set's array; the other set is left empty.
  CodePointRangeSet(CodePointRangeSet&& other) noexcept;
  /// Replaces the contents by a copy of the other set's array.
  CodePointRangeSet& operator=(const CodePointRangeSet& other);
  /// Frees the contents and takes the other set's array; the other set is left empty.
  CodePointRangeSet& operator=(CodePointRangeSet&& other) noexcept;
  /// Frees the array.
  ~CodePointRangeSet();

  /// Adds [range.first, range.last], merging it with every stored range that it overlaps or
  /// touches. A reversed range adds nothing. With `closeOverCase`, each code point of the range
  /// then also brings in the upper, lower and variant code points of its case record (one level
  /// deep; the folding is not added).
  void Add(CodePointRange range, bool closeOverCase);

  /// Adds a range as Add without case closure and returns the index of the range that now holds
  /// it; a reversed range changes nothing and returns size().
  size_t AddRange(CodePointRange range);

  /// Removes every code point of `other`, which must be sorted and disjoint. An empty set or an
  /// empty `other` is left as it is.
  void Subtract(const CodePointRangeSet& other);

  /// Replaces the set by its complement in 0 to 0x10FFFF: the empty set becomes [0, 0x10FFFF],
  /// a set that ends at 0x10FFFF gets no tail range.
  void Complement();

  /// Discards the contents and copies `count` ranges from `ranges` as they stand, unchecked.
  /// The array is reallocated only when it is too small, and then to exactly `count`. A count of
  /// 0 leaves the set empty.
  void AssignRanges(const CodePointRange* ranges, size_t count);

  /// Makes room for `count` ranges in all: an array too small is reallocated to exactly that.
  /// Throws std::length_error("vector too long") above MaxSize.
  void Reserve(size_t count);

  /// The ranges.
  const CodePointRange* begin() const noexcept { return _begin; }
  const CodePointRange* end() const noexcept { return _end; }
  const CodePointRange* data() const noexcept { return _begin; }
  const CodePointRange& operator[](size_t index) const noexcept { return _begin[index]; }
  /// Number of ranges.
  size_t size() const noexcept { return static_cast<size_t>(_end - _begin); }
  /// Number of ranges the array holds before it must grow.
  size_t capacity() const noexcept { return static_cast<size_t>(_capacityEnd - _begin); }
  /// True when the set holds no range.
  bool empty() const noexcept { return _begin == _end; }

  /// Equal when the two arrays hold the same ranges in the same order.
  friend bool operator==(const CodePointRangeSet& a, const CodePointRangeSet& b) noexcept;

 private:
  void _Reallocate(size_t capacity);
  void _Insert(size_t index, CodePointRange range);
  void _Erase(size_t first, size_t last);
  void _Free() noexcept;

  CodePointRange* _begin = nullptr;
  CodePointRange* _end = nullptr;
  CodePointRange* _capacityEnd = nullptr;
};

/// The lowest code point found in both range arrays, each sorted and disjoint; -1 when they
/// have none in common (or either is empty).
IC_API int64_t FirstCommonCodePoint(std::span<const CodePointRange> first,
                                    std::span<const CodePointRange> second) noexcept;

/// Some code point of the first overlap of the two sorted, disjoint arrays, picked with `seed`;
/// -1 when they have none in common. The last code point of the overlap is chosen only when the
/// overlap is a single code point.
IC_API int64_t PickCommonCodePoint(std::span<const CodePointRange> first,
                                   std::span<const CodePointRange> second, uint32_t seed) noexcept;

}  // namespace ic
