#include <ic/text/case_members.h>

#include <array>
#include <cstring>
#include <memory>

#include <ic/platform/internal/ascii_case.h>
#include <ic/platform/internal/wide_case_memo.h>
#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/edit_target.h>
#include <ic/text/case_mapping.h>
#include <ic/text/internal/case_index.h>
#include <ic/text/internal/case_map_engine.h>

namespace ic {
namespace {

// ToLowerCodePoint and ToUpperCodePoint with the table lookup inlined into the passes.
struct LowerRule {
  uint32_t operator()(uint32_t code) const noexcept {
    if (code < 0x80) return (code - 'A' < 26u) ? code + 32 : code;
    const CaseRecord* record = LookupCaseRecord(code);
    return record ? record->lower : code;
  }
};
struct UpperRule {
  uint32_t operator()(uint32_t code) const noexcept {
    if (code < 0x80) return (code - 'a' < 26u) ? code - 32 : code;
    const CaseRecord* record = LookupCaseRecord(code);
    return record ? record->upper : code;
  }
};

// The code points of one and two UTF-8 bytes, where the Latin, Greek and Cyrillic letters lie:
// their mapping by the rule, made once on first use, so that a letter costs one load.
constexpr uint32_t SmallCodes = 0x800;

template <class Rule>
const uint32_t* SmallCodeMapping() {
  static const auto mapping = [] {
    std::array<uint32_t, SmallCodes> table{};
    for (uint32_t code = 0; code < SmallCodes; ++code)
      table[code] = Rule{}(code);
    return table;
  }();
  return mapping.data();
}

// The rule, through the mapping of the small code points.
template <class Rule>
struct SmallFirstMap {
  const uint32_t* small = SmallCodeMapping<Rule>();
  uint32_t operator()(uint32_t code) const noexcept {
    return code < SmallCodes ? small[code] : Rule{}(code);
  }
};
using LowerMap = SmallFirstMap<LowerRule>;
using UpperMap = SmallFirstMap<UpperRule>;

// Narrow MakeLower / MakeUpper.
template <class Map>
void MapNarrow(internal::EditTarget<char>& self, bool fast, Map map, bool upper) {
  const char* const text = self.text;
  const char* const first = internal::FindFirstChange(text, map, fast);
  if (first == nullptr) return;
  const int32_t offset = static_cast<int32_t>(first - text);
  const int32_t length = self.getLength(self.string);
  if (fast) {
    // A shared block detaches, a view takes a block of its own.
    internal::MapSameSize(self.makeRoom(self.string, length) + offset, map);
    return;
  }
  // In place while every code point keeps its byte length, runs of ASCII by the vector kernels;
  // from the first that does not, measure the rest (still as it was) and rewrite it.
  char* const buffer = self.makeRoom(self.string, length);
  const auto asciiRun = [upper](char* p, size_t n) {
    return platform::internal::MapAsciiCaseRun(p, n, upper);
  };
  const char* const stop =
      internal::MapWhileSameSize(buffer + offset, buffer + length, map, asciiRun);
  const auto at = static_cast<int32_t>(stop - buffer);
  if (at == length) {
    self.setLength(self.string, length);
    return;
  }
  const internal::MapMeasure m = internal::MeasureMapped(stop, map);
  const int64_t needed = at + m.total;
  char* const grown =
      self.makeRoom(self.string, needed > length ? static_cast<int32_t>(needed) : length);
  const char* const end = internal::RewriteMapped(grown + at, m, map);
  self.setLength(self.string, static_cast<int32_t>(end - grown));
}

// Wide MakeLower / MakeUpper.
void MapWide(internal::EditTarget<char16_t>& self, bool fast, bool upper) {
  const char16_t* const text = self.text;
  const int32_t length = self.getLength(self.string);
  int32_t first = 0;
  if (fast) {
    const char16_t from = upper ? u'a' : u'A';
    while (first < length && static_cast<char16_t>(text[first] - from) >= 26)
      ++first;
  } else {
    first = static_cast<int32_t>(
        platform::internal::FindFirstWideCaseChange(text, static_cast<size_t>(length), upper));
  }
  if (first == length) return;
  char16_t* const buffer = self.makeRoom(self.string, length);
  if (fast) {
    const char16_t from = upper ? u'a' : u'A';
    const int delta = upper ? -32 : 32;
    for (int32_t i = first; i < length; ++i)
      if (static_cast<char16_t>(buffer[i] - from) < 26)
        buffer[i] = static_cast<char16_t>(buffer[i] + delta);
  } else {
    // Up to the first zero unit, as _wcsupr_s and _wcslwr_s map.
    platform::internal::MapWideCase(buffer + first, static_cast<size_t>(length - first), upper);
  }
}

template <class Unit>
bool IsBlank(Unit unit) noexcept {
  return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

void CapitalizeWide(internal::EditTarget<char16_t>& self) {
  const int32_t length = self.getLength(self.string);
  const char16_t* text = self.text;
  char16_t* buffer = nullptr;  // set once the string has been prepared for writing
  int32_t i = 0;
  while (i < length) {
    while (i < length && IsBlank(text[i]))
      ++i;
    if (i == length) break;
    const char16_t upper = platform::towupper(text[i]);
    if (upper != text[i]) {
      if (buffer == nullptr) text = buffer = self.makeRoom(self.string, length);
      buffer[i] = upper;
    }
    while (i < length && !IsBlank(text[i]))
      ++i;
  }
  if (buffer != nullptr) self.setLength(self.string, length);
}

void CapitalizeNarrow(internal::EditTarget<char>& self) {
  const int32_t length = self.getLength(self.string);
  const char* text = self.text;
  char* buffer = nullptr;
  const char* p = text;
  const char* const end = text + length;
  while (p < end) {
    while (p < end && IsBlank(*p))
      ++p;
    if (p == end) break;
    const char* start = p;
    bool whole;
    const uint32_t code = internal::DecodeCodePoint(p, whole);
    const uint32_t upper = ToUpperCodePoint(code);
    if (whole && upper != code) {
      if (GetUTF8CodePointSize(upper) != p - start) {
        // From here on the text changes its length: rewrite the rest into a new buffer.
        const int32_t noted = static_cast<int32_t>(start - text);
        int64_t newLength = length;
        for (const char* q = start; q < end;) {
          while (q < end && IsBlank(*q))
            ++q;
          if (q == end) break;
          const char* wordStart = q;
          const uint32_t c = internal::DecodeCodePoint(q, whole);
          if (whole) newLength += GetUTF8CodePointSize(ToUpperCodePoint(c)) - (q - wordStart);
          while (q < end && !IsBlank(*q))
            q += internal::StepSize(q);
        }
        const std::unique_ptr<char[]> rest(new char[static_cast<size_t>(newLength - noted) + 1]);
        char* out = rest.get();
        for (const char* q = start; q < end;) {
          while (q < end && IsBlank(*q))
            *out++ = *q++;
          if (q == end) break;
          const char* wordStart = q;
          const uint32_t c = internal::DecodeCodePoint(q, whole);
          if (whole)
            EncodeCodePoint(out, ToUpperCodePoint(c));
          else
            while (wordStart != q)
              *out++ = *wordStart++;
          // The rest of the word is stepped as the measuring walk above steps it: a lead byte
          // whose sequence takes a blank with it keeps the word going, so both walks see the
          // same words and the buffer holds exactly what was measured.
          while (q < end && !IsBlank(*q)) {
            const char* const next = q + internal::StepSize(q);
            while (q < next && q < end)
              *out++ = *q++;
          }
        }
        const int32_t finalLength = noted + static_cast<int32_t>(out - rest.get());
        char* const written =
            self.makeRoom(self.string, finalLength > length ? finalLength : length);
        std::memcpy(written + noted, rest.get(), static_cast<size_t>(out - rest.get()));
        self.setEnd(self.string, finalLength);
        return;
      }
      if (buffer == nullptr) {
        const int32_t offset = static_cast<int32_t>(start - text);
        buffer = self.makeRoom(self.string, length);
        p = buffer + (p - text);
        start = buffer + offset;
        text = buffer;
      }
      char* out = buffer + (start - text);
      EncodeCodePoint(out, upper);
    }
    while (p < end && !IsBlank(*p))
      p += internal::StepSize(p);
  }
}

}  // namespace

template <class Unit, class Storage>
auto ICStringCaseMembers<BasicICString<Unit, Storage>>::MakeLower(bool fast) -> Str& {
  auto& self = Self();
  auto target = internal::EditTarget<Unit>::Of(self);
  if constexpr (sizeof(Unit) == 1)
    MapNarrow(target, fast, LowerMap{}, false);
  else
    MapWide(target, fast, false);
  return self;
}

template <class Unit, class Storage>
auto ICStringCaseMembers<BasicICString<Unit, Storage>>::MakeUpper(bool fast) -> Str& {
  auto& self = Self();
  auto target = internal::EditTarget<Unit>::Of(self);
  if constexpr (sizeof(Unit) == 1)
    MapNarrow(target, fast, UpperMap{}, true);
  else
    MapWide(target, fast, true);
  return self;
}

template <class Unit, class Storage>
auto ICStringCaseMembers<BasicICString<Unit, Storage>>::Capitalize() noexcept -> Str& {
  auto& self = Self();
  if (self.GetLength() == 0) return self;
  MakeLower(false);
  auto target = internal::EditTarget<Unit>::Of(self);
  if constexpr (sizeof(Unit) == 1)
    CapitalizeNarrow(target);
  else
    CapitalizeWide(target);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringCaseMembers)

}  // namespace ic
