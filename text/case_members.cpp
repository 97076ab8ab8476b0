#include <ic/text/case_members.h>

#include <cstring>
#include <memory>

#include <ic/platform/wide_runtime.h>
#include <ic/string/ic_string.h>
#include <ic/text/case_index.h>
#include <ic/text/case_map_engine.h>
#include <ic/text/case_mapping.h>

namespace ic {
namespace {

// ToLowerCodePoint and ToUpperCodePoint with the table lookup inlined into the passes.
struct LowerMap {
  uint32_t operator()(uint32_t code) const noexcept {
    if (code < 0x80) return (code - 'A' < 26u) ? code + 32 : code;
    const CaseRecord* record = LookupCaseRecord(code);
    return record ? record->lower : code;
  }
};
struct UpperMap {
  uint32_t operator()(uint32_t code) const noexcept {
    if (code < 0x80) return (code - 'a' < 26u) ? code - 32 : code;
    const CaseRecord* record = LookupCaseRecord(code);
    return record ? record->upper : code;
  }
};

// Narrow MakeLower / MakeUpper.
template <class Str, class Map>
void MapNarrow(Str& self, bool fast, Map map) {
  const char* const text = self.GetText();
  const char* const first = textdetail::FindFirstChange(text, map, fast);
  if (first == nullptr) return;
  const int32_t offset = static_cast<int32_t>(first - text);
  const int32_t length = self.GetLength();
  if (fast) {
    self._PrepareGrow(length);  // a shared block detaches, a view takes a block of its own
    textdetail::MapSameSize(self._GetBuffer() + offset, map);
    return;
  }
  // Measure on the text as it is, so that the one preparation below also makes all the room.
  const textdetail::MapMeasure m = textdetail::MeasureMapped(first, map);
  const int64_t needed = offset + m.total;
  self._PrepareGrow(needed > length ? static_cast<int32_t>(needed) : length);
  char* const buffer = self._GetBuffer();
  const char* const end = textdetail::RewriteMapped(buffer + offset, m, map);
  self._SetStoredLength(static_cast<int32_t>(end - buffer));
}

// Wide MakeLower / MakeUpper.
template <class Str>
void MapWide(Str& self, bool fast, bool upper) {
  const char16_t* const text = self.GetText();
  const int32_t length = self.GetLength();
  int32_t first = 0;
  if (fast) {
    const char16_t from = upper ? u'a' : u'A';
    while (first < length && static_cast<char16_t>(text[first] - from) >= 26)
      ++first;
  } else {
    auto map = upper ? platform::towupper : platform::towlower;
    while (first < length && map(text[first]) == text[first])
      ++first;
  }
  if (first == length) return;
  self._PrepareGrow(length);
  char16_t* const buffer = self._GetBuffer();
  if (fast) {
    const char16_t from = upper ? u'a' : u'A';
    const int delta = upper ? -32 : 32;
    for (int32_t i = first; i < length; ++i)
      if (static_cast<char16_t>(buffer[i] - from) < 26)
        buffer[i] = static_cast<char16_t>(buffer[i] + delta);
  } else {
    const size_t size = static_cast<size_t>(self.GetCapacity()) + 1 - static_cast<size_t>(first);
    if (upper)
      platform::_wcsupr_s(buffer + first, size);
    else
      platform::_wcslwr_s(buffer + first, size);
  }
}

template <class Unit>
bool IsBlank(Unit unit) noexcept {
  return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

template <class Str>
void CapitalizeWide(Str& self) {
  const int32_t length = self.GetLength();
  const char16_t* text = self.GetText();
  char16_t* buffer = nullptr;  // set once the string has been prepared for writing
  int32_t i = 0;
  while (i < length) {
    while (i < length && IsBlank(text[i]))
      ++i;
    if (i == length) break;
    const char16_t upper = platform::towupper(text[i]);
    if (upper != text[i]) {
      if (buffer == nullptr) {
        self._PrepareGrow(length);
        text = buffer = self._GetBuffer();
      }
      buffer[i] = upper;
    }
    while (i < length && !IsBlank(text[i]))
      ++i;
  }
  if (buffer != nullptr) self._SetStoredLength(length);
}

template <class Str>
void CapitalizeNarrow(Str& self) {
  const int32_t length = self.GetLength();
  const char* text = self.GetText();
  char* buffer = nullptr;
  const char* p = text;
  const char* const end = text + length;
  while (p < end) {
    while (p < end && IsBlank(*p))
      ++p;
    if (p == end) break;
    const char* start = p;
    bool whole;
    const uint32_t code = textdetail::DecodeCodePoint(p, whole);
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
          const uint32_t c = textdetail::DecodeCodePoint(q, whole);
          if (whole) newLength += GetUTF8CodePointSize(ToUpperCodePoint(c)) - (q - wordStart);
          while (q < end && !IsBlank(*q))
            q += textdetail::StepSize(q);
        }
        const std::unique_ptr<char[]> rest(new char[static_cast<size_t>(newLength - noted) + 1]);
        char* out = rest.get();
        for (const char* q = start; q < end;) {
          while (q < end && IsBlank(*q))
            *out++ = *q++;
          if (q == end) break;
          const char* wordStart = q;
          const uint32_t c = textdetail::DecodeCodePoint(q, whole);
          if (whole)
            EncodeCodePoint(out, ToUpperCodePoint(c));
          else
            while (wordStart != q)
              *out++ = *wordStart++;
          while (q < end && !IsBlank(*q))
            *out++ = *q++;
        }
        const int32_t finalLength = noted + static_cast<int32_t>(out - rest.get());
        self._PrepareGrow(finalLength > length ? finalLength : length);
        std::memcpy(self._GetBuffer() + noted, rest.get(), static_cast<size_t>(out - rest.get()));
        self._SetStringEnd(finalLength);
        return;
      }
      if (buffer == nullptr) {
        const int32_t offset = static_cast<int32_t>(start - text);
        self._PrepareGrow(length);
        buffer = self._GetBuffer();
        p = buffer + (p - text);
        start = buffer + offset;
        text = buffer;
      }
      char* out = buffer + (start - text);
      EncodeCodePoint(out, upper);
    }
    while (p < end && !IsBlank(*p))
      p += textdetail::StepSize(p);
  }
}

}  // namespace

template <class Unit, class Storage>
auto ICStringCaseMembers<BasicICString<Unit, Storage>>::MakeLower(bool fast) -> Str& {
  auto& self = static_cast<Str&>(*this);
  if constexpr (sizeof(Unit) == 1)
    MapNarrow(self, fast, LowerMap{});
  else
    MapWide(self, fast, false);
  return self;
}

template <class Unit, class Storage>
auto ICStringCaseMembers<BasicICString<Unit, Storage>>::MakeUpper(bool fast) -> Str& {
  auto& self = static_cast<Str&>(*this);
  if constexpr (sizeof(Unit) == 1)
    MapNarrow(self, fast, UpperMap{});
  else
    MapWide(self, fast, true);
  return self;
}

template <class Unit, class Storage>
auto ICStringCaseMembers<BasicICString<Unit, Storage>>::Capitalize() noexcept -> Str& {
  auto& self = static_cast<Str&>(*this);
  if (self.GetLength() == 0) return self;
  MakeLower(false);
  if constexpr (sizeof(Unit) == 1)
    CapitalizeNarrow(self);
  else
    CapitalizeWide(self);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringCaseMembers)

}  // namespace ic
