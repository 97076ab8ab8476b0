// The unit-only cores of the character filters (Squeeze, KeepOnly, RemoveAll, Translate,
// RemoveBalanced, ExpandDoubleSpaces, Reverse, CountCode), instantiated for char and char16_t in
// filter_core.cpp.
//
// The rewriting cores read the string's text and write behind the reader in the same block,
// since their output never outruns their input. They take the block lazily: the writer only
// compares what it would write with what stands there until the first difference, and only then
// asks the owner, through `prepare`, for a writable block with the same text (a shared block
// detaches, a view takes a block of its own). A text that needs nothing is therefore only read.
#pragma once

#include <cstdint>
#include <vector>

#include <ic/platform/export.h>
#include <ic/text/search_needle.h>

namespace ic::internal {

/// The owner's side of a lazy rewrite: `prepare` makes the block writable with the text
/// unchanged and returns it.
template <class Unit>
struct LazyBlock {
  void* owner;
  Unit* (*prepare)(void* owner);
};

/// A set of codes (code points in narrow text, units in wide) read from a zero-terminated text,
/// with a bitmap for the ASCII members.
template <class Unit>
class IC_API CodeLookup {
 public:
  explicit CodeLookup(const Unit* set);
  bool IsEmpty() const noexcept { return _needle.IsEmpty(); }
  bool Contains(uint32_t code) const noexcept {
    if (code < 128) return (_ascii[code >> 6] >> (code & 63)) & 1;
    for (const auto* c = _needle.Codes(); *c != 0; ++c)
      if (*c == code) return true;
    return false;
  }
  const SearchNeedle<Unit>& Needle() const noexcept { return _needle; }

 private:
  SearchNeedle<Unit> _needle;
  uint64_t _ascii[2] = {0, 0};
};

/// The set of KeepOnly: single members and inclusive ranges, from a text in which "a..z" (a
/// code point, two points, a code point) stands for a range. Throws std::length_error("list too
/// long") beyond 0xFFFFFFF ranges.
template <class Unit>
class IC_API RangeSpec {
 public:
  explicit RangeSpec(const Unit* spec);
  bool Contains(uint32_t code) const noexcept;

 private:
  std::vector<uint32_t> _singles;
  std::vector<uint32_t> _ranges;  // pairs: first, last
};

/// Each core answers the new length, or -1 when the text needed no change (the block was then
/// not asked for).

/// Squeeze (trimRuns false) and SqueezeTrim (true). `replacement` is one unit.
template <class Unit>
int32_t SqueezeText(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                    const CodeLookup<Unit>& keepSet, Unit replacement,
                    const CodeLookup<Unit>& collapseSet, bool trimRuns);

/// Keeps the codes for which `keep` answers true (member of the lookup, or not with `invert`).
template <class Unit>
int32_t KeepCodes(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                  const CodeLookup<Unit>& set, bool invert);
template <class Unit>
int32_t KeepInSpec(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                   const RangeSpec<Unit>& spec);

/// RemoveBalanced: the delimited stretches cut out, delimiters included. `escape` 0 for none.
template <class Unit>
int32_t RemoveBalancedText(const Unit* text, int32_t length, const LazyBlock<Unit>& block,
                           const Unit* open, const Unit* close, uint32_t escape, bool flat);

/// Translate: the offset of the first code of `from` in the text, or -1.
template <class Unit>
int32_t FirstCodeIn(const Unit* text, int32_t length, const SearchNeedle<Unit>& from) noexcept;
/// True if some code of `to` needs more UTF-8 bytes than the code of `from` at its place.
IC_API bool TranslationGrows(const SearchNeedle<char>& from, const SearchNeedle<char>& to) noexcept;
/// Maps the text of `length` units at `source` from offset `start` on into `out` (from the
/// same offset), and answers the new length. `out` may be `source`, when the text cannot grow.
template <class Unit>
int32_t TranslateInto(const Unit* source, int32_t length, int32_t start, Unit* out,
                      const SearchNeedle<Unit>& from, const SearchNeedle<Unit>& to) noexcept;

/// ExpandDoubleSpaces: the number of spaces that a further space follows.
template <class Unit>
int32_t CountDoubleSpaces(const Unit* text, int32_t length) noexcept;
/// Writes the text with each such space replaced by `insert` (of `insertLength` units) into
/// `out`, and answers the units written.
template <class Unit>
int32_t ExpandDoubleSpacesInto(Unit* out, const Unit* text, int32_t length, const Unit* insert,
                               int32_t insertLength) noexcept;

/// Reverses the units from `first` to `last` (exclusive); in narrow text each multi-byte
/// sequence is then turned back so that its bytes stand in order.
template <class Unit>
void ReverseUnits(Unit* text, int32_t first, int32_t last) noexcept;

/// The number of occurrences of `code` in the text from `offset` on (0 for code 0).
template <class Unit>
int32_t CountCodeIn(const Unit* text, int32_t length, int32_t offset, uint32_t code) noexcept;

}  // namespace ic::internal
