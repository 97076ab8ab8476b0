// Code point range sets: Add (with and without case closure), AddRange, Subtract, Complement,
// copies and AssignRanges, coded in the input, against a plain list of ranges that is sorted
// and merged after each step; FirstCommonCodePoint and PickCommonCodePoint against the
// intersection of the plain lists.
#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include <ic/unicode/code_point_range_set.h>

#include "fuzz_input.h"

namespace {

using ic::CodePointRange;
using ic::CodePointRangeSet;
using Ranges = std::vector<CodePointRange>;

constexpr uint32_t kMax = 0x10ffff;

// Sorted, disjoint, with touching ranges merged.
Ranges Normalized(Ranges ranges) {
  std::sort(ranges.begin(), ranges.end(),
            [](const CodePointRange& a, const CodePointRange& b) { return a.first < b.first; });
  Ranges out;
  for (const CodePointRange& r : ranges) {
    if (r.last < r.first) continue;
    if (!out.empty() && static_cast<uint64_t>(out.back().last) + 1 >= r.first) {
      out.back().last = std::max(out.back().last, r.last);
    } else {
      out.push_back(r);
    }
  }
  return out;
}

Ranges Subtracted(const Ranges& set, const Ranges& remove) {
  Ranges out;
  for (CodePointRange r : set) {
    for (const CodePointRange& cut : remove) {
      if (cut.last < r.first || cut.first > r.last) continue;
      if (cut.first > r.first) out.push_back({r.first, cut.first - 1});
      if (cut.last >= r.last) {
        r.first = 1;
        r.last = 0;
        break;
      }
      r.first = cut.last + 1;
    }
    if (r.first <= r.last) out.push_back(r);
  }
  return out;
}

Ranges Complemented(const Ranges& set) {
  Ranges out;
  uint32_t next = 0;
  bool done = false;
  for (const CodePointRange& r : set) {
    if (r.first > next) out.push_back({next, r.first - 1});
    if (r.last >= kMax) {
      done = true;
      break;
    }
    next = r.last + 1;
  }
  if (!done) out.push_back({next, kMax});
  return out;
}

Ranges Intersection(const Ranges& a, const Ranges& b) {
  Ranges out;
  for (const CodePointRange& x : a)
    for (const CodePointRange& y : b)
      if (std::max(x.first, y.first) <= std::min(x.last, y.last))
        out.push_back({std::max(x.first, y.first), std::min(x.last, y.last)});
  return Normalized(out);
}

Ranges Of(const CodePointRangeSet& set) {
  return Ranges(set.begin(), set.end());
}

bool Contains(const Ranges& outer, const Ranges& inner) {
  return Subtracted(inner, outer).empty();
}

CodePointRange ReadRange(ic::fuzz::FuzzInput& input) {
  // Mostly small code points, where the case records are; sometimes anywhere up to 0x10ffff.
  // Now and then a reversed range, which adds nothing.
  const uint8_t shape = input.Byte();
  const uint32_t scale = (shape & 6) == 0 ? 17 : 1;
  const uint32_t first = std::min(static_cast<uint32_t>(input.Int(0, 0xffff)) * scale, kMax);
  const uint32_t span = static_cast<uint32_t>(input.Int(0, 0x3ff)) * scale;
  if ((shape & 1) != 0 && first > 0) return {first, first - 1};
  return {first, std::min(first + span, kMax)};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  CodePointRangeSet sets[2];
  Ranges model[2];
  for (int step = 0; step < 32 && !input.Empty(); ++step) {
    const int op = input.Int(0, 6);
    const int which = input.Int(0, 1);
    CodePointRangeSet& set = sets[which];
    Ranges& ranges = model[which];
    switch (op) {
      case 0:
      case 1: {
        const CodePointRange r = ReadRange(input);
        const size_t index = set.AddRange(r);
        ranges = Normalized(ranges.empty() ? Ranges{r} : [&] {
          Ranges all = ranges;
          all.push_back(r);
          return all;
        }());
        if (r.last >= r.first) {
          IC_FUZZ_CHECK(index < set.size() && set[index].first <= r.first &&
                        set[index].last >= r.last);
        } else {
          IC_FUZZ_CHECK(index == set.size());
        }
        break;
      }
      case 2: {
        const CodePointRange r = ReadRange(input);
        set.Add(r, true);
        Ranges plain = ranges;
        plain.push_back(r);
        ranges = Of(set);
        IC_FUZZ_CHECK(Contains(ranges, Normalized(plain)));
        break;
      }
      case 3:
        set.Subtract(sets[1 - which]);
        ranges = Subtracted(ranges, model[1 - which]);
        break;
      case 4:
        set.Complement();
        ranges = Complemented(ranges);
        break;
      case 5:
        set = sets[1 - which];
        ranges = model[1 - which];
        break;
      default: {
        CodePointRangeSet copy;
        copy.AssignRanges(set.data(), set.size());
        IC_FUZZ_CHECK(copy == set);
        break;
      }
    }
    IC_FUZZ_CHECK(Of(set) == ranges);
  }
  const Ranges common = Intersection(model[0], model[1]);
  const std::span<const CodePointRange> a(sets[0].data(), sets[0].size());
  const std::span<const CodePointRange> b(sets[1].data(), sets[1].size());
  const int64_t lowest = common.empty() ? int64_t{-1} : int64_t{common[0].first};
  IC_FUZZ_CHECK(ic::FirstCommonCodePoint(a, b) == lowest);
  const int64_t picked = ic::PickCommonCodePoint(a, b, static_cast<uint32_t>(size));
  if (common.empty()) {
    IC_FUZZ_CHECK(picked == -1);
  } else {
    IC_FUZZ_CHECK(picked >= common[0].first && picked <= common[0].last);
  }
  return 0;
}
