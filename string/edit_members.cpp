#include <ic/string/edit_members.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/positions.h>
#include <ic/string/internal/replace_core.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>

namespace ic {

namespace internal {

TextArgument<char> MakeCodePointArgument(char, uint32_t codePoint) noexcept {
  TextArgument<char> a;
  if (codePoint == 0) return a;
  char* cursor = a.Encoded;
  if (EncodeCodePoint(cursor, codePoint)) a.Length = static_cast<int32_t>(cursor - a.Encoded);
  return a;
}

TextArgument<char16_t> MakeCodePointArgument(char16_t, uint32_t codePoint) noexcept {
  TextArgument<char16_t> a;
  if (codePoint == 0) return a;
  a.Encoded[0] = static_cast<char16_t>(codePoint);
  a.Length = 1;
  return a;
}

}  // namespace internal

namespace {

/// Size of a narrow sequence starting at `p`, cut at `end`; 1 for a wide unit.
template <class Unit>
int32_t GroupSize(const Unit* p, const Unit* end) {
  if constexpr (sizeof(Unit) == 1) {
    const int32_t size = GetUTF8SequenceSize(static_cast<unsigned char>(*p));
    return std::min<int32_t>(size, static_cast<int32_t>(end - p));
  } else {
    return 1;
  }
}

/// Writes `in` to `out` with every line end turned into `lineEnd`; `out` may equal `in` when
/// the line end has one unit. Multi-byte sequences are copied whole. Returns the end of output.
template <class Unit>
Unit* WriteNormalized(Unit* out, const Unit* in, const Unit* end, const Unit* lineEnd,
                      int32_t lineEndLength) {
  while (in < end) {
    const Unit c = *in;
    if (c == Unit('\r') || c == Unit('\n')) {
      ++in;
      if (c == Unit('\r') && in < end && *in == Unit('\n')) ++in;
      for (int32_t i = 0; i < lineEndLength; ++i)
        *out++ = lineEnd[i];
    } else {
      const int32_t size = GroupSize(in, end);
      for (int32_t i = 0; i < size; ++i)
        *out++ = *in++;
    }
  }
  return out;
}

/// Length of the output of WriteNormalized with a line end of two units.
template <class Unit>
int64_t MeasureNormalized(const Unit* in, const Unit* end) {
  int64_t count = 0;
  while (in < end) {
    const Unit c = *in;
    if (c == Unit('\r') || c == Unit('\n')) {
      ++in;
      if (c == Unit('\r') && in < end && *in == Unit('\n')) ++in;
      count += 2;
    } else {
      const int32_t size = GroupSize(in, end);
      in += size;
      count += size;
    }
  }
  return count;
}

}  // namespace

// --- Positions -------------------------------------------------------------------------------

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::_ToUnitsIn(const Unit* text,
                                                                      int32_t position,
                                                                      bool lengthInUnits) noexcept {
  return internal::UnitOffsetOf(text, position, lengthInUnits);
}

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::GetCharCount(
    bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if constexpr (IsNarrow) {
    if (!lengthInUnits) return static_cast<int32_t>(CountCodePoints(self.GetText()));
  }
  return self.GetLength();
}

// --- Reading parts ---------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Left(int32_t count,
                                                             bool lengthInUnits) const noexcept
    -> Str {
  const Str& self = Self();
  if (count < 0) return Str();
  if (count >= GetCharCount(lengthInUnits)) return Str(self);
  const int32_t units =
      internal::CountUnits(self.GetText(), count, lengthInUnits, self.GetLength());
  return Str(self.GetText(), units);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Mid(int32_t position,
                                                            bool lengthInUnits) const noexcept
    -> Str {
  const Str& self = Self();
  if (position <= 0) return Str(self);
  if (position > GetCharCount(lengthInUnits)) return Str();
  const int32_t length = self.GetLength();
  const int32_t offset = std::min(_ToUnitsIn(self.GetText(), position, lengthInUnits), length);
  return Str(self.GetText() + offset, length - offset);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Mid(int32_t position, bool lengthInUnits,
                                                            int32_t count) const noexcept -> Str {
  const Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.Position;
  const int64_t wanted = folded.Count;
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length || wanted < 1) return Str();
  const Unit* const from = self.GetText() + offset;
  const int32_t units =
      internal::CountUnits(from, static_cast<int32_t>(wanted), lengthInUnits, length - offset);
  return Str(from, units);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::GetTailPointer(
    int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  const Str& self = Self();
  if (position < 1) return self.GetText();
  if (position > GetCharCount(lengthInUnits)) return nullptr;
  return self.GetText() + _ToUnitsIn(self.GetText(), position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::GetSpan(int32_t& length, int32_t position,
                                                                bool lengthInUnits,
                                                                int32_t count) const noexcept
    -> const Unit* {
  const Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.Position;
  const int64_t wanted = folded.Count;
  const int32_t total = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= total) return nullptr;
  const Unit* const from = self.GetText() + offset;
  length = internal::CountUnits(from, static_cast<int32_t>(std::max<int64_t>(wanted, 0)),
                                lengthInUnits, total - offset);
  return from;
}

template <class Unit, class Storage>
bool ICStringEditMembers<BasicICString<Unit, Storage>>::GetPositionAt(
    const Unit*& slot, int32_t index, bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if (index < 1) {
    slot = self.GetText();
    return true;
  }
  if (index > GetCharCount(lengthInUnits)) return false;
  slot = self.GetText() + _ToUnitsIn(self.GetText(), index, lengthInUnits);
  return true;
}

template <class Unit, class Storage>
bool ICStringEditMembers<BasicICString<Unit, Storage>>::GetPositionFromEnd(
    const Unit*& slot, int32_t count, bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if (count < 0) return false;
  if (count >= GetCharCount(lengthInUnits)) {
    slot = self.GetText();
    return true;
  }
  const Unit* const end = self.GetEnd();
  if constexpr (IsNarrow) {
    if (!lengthInUnits) {
      slot = internal::StepBackCodePoints(self.GetText(), end, count);
      return true;
    }
  }
  slot = end - count;
  return true;
}

// --- Cutting in place ------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::KeepLeft(int32_t count, bool lengthInUnits)
    -> Str& {
  Str& self = Self();
  if (count <= 0) {
    self._Clear();
    return self;
  }
  const int32_t length = self.GetLength();
  const int32_t units = internal::CountUnits(self.GetText(), count, lengthInUnits, length);
  if (units < length) {
    internal::PrepareInPlace(self);
    self._SetStringEnd(units);
  }
  return self;
}

template <class Unit, class Storage>
void ICStringEditMembers<BasicICString<Unit, Storage>>::_RemoveBefore(const Unit* from) {
  Str& self = Self();
  const ptrdiff_t offset = from - self.GetText();
  if (offset <= 0) return;
  const int32_t length = self.GetLength();
  internal::PrepareInPlace(self);
  Unit* const buffer = self._GetBuffer();
  const int32_t rest = length - static_cast<int32_t>(offset);
  std::memmove(buffer, buffer + offset, (static_cast<size_t>(rest) + 1) * sizeof(Unit));
  self._SetStoredLength(rest);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::KeepFrom(int32_t position,
                                                                 bool lengthInUnits) -> Str& {
  Str& self = Self();
  if (position <= 0) return self;
  if (position > GetCharCount(lengthInUnits)) {
    self._Clear();
    return self;
  }
  _RemoveBefore(self.GetText() + _ToUnitsIn(self.GetText(), position, lengthInUnits));
  return self;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::KeepRange(int32_t position,
                                                                  bool lengthInUnits, int32_t count)
    -> Str& {
  Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.Position;
  const int64_t wanted = folded.Count;
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length) {
    self._Clear();
    return self;
  }
  const int32_t units = internal::CountUnits(self.GetText() + offset,
                                             static_cast<int32_t>(std::max<int64_t>(wanted, 0)),
                                             lengthInUnits, length - offset);
  if (offset == 0 && units == length) return self;  // the whole text: nothing to write
  internal::PrepareInPlace(self);
  Unit* const buffer = self._GetBuffer();
  std::memmove(buffer, buffer + offset, static_cast<size_t>(units) * sizeof(Unit));
  self._SetStringEnd(units);
  return self;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Remove(int32_t position, bool lengthInUnits,
                                                               int32_t count) -> Str& {
  Str& self = Self();
  const internal::FoldedRange folded = internal::FoldNegativePosition(position, count);
  position = folded.Position;
  const int64_t wanted = folded.Count;
  if (wanted < 0) return self;
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length) return self;
  const int32_t units = internal::CountUnits(self.GetText() + offset, static_cast<int32_t>(wanted),
                                             lengthInUnits, length - offset);
  if (units == 0) return self;
  internal::PrepareInPlace(self);
  if (offset + units >= length) {
    self._SetStringEnd(offset);
    return self;
  }
  Unit* const buffer = self._GetBuffer();
  std::memmove(buffer + offset, buffer + offset + units,
               (static_cast<size_t>(length - offset - units) + 1) * sizeof(Unit));
  self._SetStoredLength(length - units);
  return self;
}

// --- Inserting and overwriting ---------------------------------------------------------------

template <class Unit, class Storage>
Unit* ICStringEditMembers<BasicICString<Unit, Storage>>::_OpenGap(int32_t count, int32_t position) {
  Str& self = Self();
  const int32_t length = self.GetLength();
  self._PrepareGrow(length + count);
  Unit* const buffer = self._GetBuffer();
  std::memmove(buffer + position + count, buffer + position,
               (static_cast<size_t>(length - position) + 1) * sizeof(Unit));
  self._SetStoredLength(length + count);
  return buffer + position;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::_InsertUnits(const Unit* text,
                                                                     int32_t length,
                                                                     int32_t position,
                                                                     bool lengthInUnits) -> Str& {
  Str& self = Self();
  if (text == nullptr || length < 1 || position < 0) return self;
  if (position > GetCharCount(lengthInUnits)) return self;
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (internal::PointsInto(text, self.GetText(), self.GetCapacity())) {
    // The source is this string's own text, which the gap moves: insert a copy.
    const ICStringUniqueT<Unit> copy(text, length);
    CopyUnits(_OpenGap(length, offset), copy.GetText(), static_cast<size_t>(length));
    return self;
  }
  CopyUnits(_OpenGap(length, offset), text, static_cast<size_t>(length));
  return self;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Insert(const ICStringChainT<Unit>& source,
                                                               int32_t position, bool lengthInUnits)
    -> Str& {
  const Unit* text = source.GetChainText();
  return _InsertUnits(text, source.GetChainLength(), position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Insert(const Unit* source, int32_t position,
                                                               bool lengthInUnits) -> Str& {
  if (source == nullptr) return Self();
  return _InsertUnits(source, internal::MeasureText(source), position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Insert(char32_t codePoint, int32_t position,
                                                               bool lengthInUnits)
    -> Str& requires(IsNarrow) {
  const auto a = internal::MakeCodePointArgument(Unit{}, codePoint);
  return _InsertUnits(a.Data(), a.Length, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Insert(char16_t unit, int32_t position,
                                                               bool lengthInUnits)
    -> Str& requires(IsWide) {
  return _InsertUnits(&unit, unit != 0 ? 1 : 0, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::SetTail(int32_t position,
                                                                bool lengthInUnits,
                                                                const Unit* text) -> Str& {
  Str& self = Self();
  if (position < 0) position = 0;
  const int32_t length = self.GetLength();
  const int32_t offset = std::min(_ToUnitsIn(self.GetText(), position, lengthInUnits), length);
  if (length <= offset) return self;
  const int32_t size = text ? internal::MeasureText(text) : 0;
  const int32_t newLength = offset + size;
  self._PrepareGrow(newLength);
  CopyUnits(self._GetBuffer() + offset, text, static_cast<size_t>(size));
  self._SetStringEnd(newLength);
  return self;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::SetTail(int32_t position,
                                                                bool lengthInUnits,
                                                                char32_t codePoint) -> Str& {
  const auto a = internal::MakeCodePointArgument(Unit{}, codePoint);
  return SetTail(position, lengthInUnits, a.Data());
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::PutRepeated(const Unit* value,
                                                                    int32_t repeatCount,
                                                                    int32_t position,
                                                                    bool lengthInUnits) -> Str& {
  Str& self = Self();
  const int32_t size = value ? internal::MeasureText(value) : 0;
  if (size == 0 || position < 0 || repeatCount < 1) return self;
  if (position > GetCharCount(lengthInUnits)) return self;
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  const int64_t newLength = offset + int64_t{size} * repeatCount;
  if (newLength > EndOfText) throw std::length_error("ICString::PutRepeated too long");
  self._PrepareGrow(static_cast<int32_t>(newLength));
  Unit* const at = self._GetBuffer() + offset;
  // The first copy, then the written part doubles until the total is reached.
  CopyUnits(at, value, static_cast<size_t>(size));
  int64_t written = size;
  const int64_t total = newLength - offset;
  while (written < total) {
    const int64_t chunk = std::min(written, total - written);
    CopyUnits(at + written, at, static_cast<size_t>(chunk));
    written += chunk;
  }
  self._SetStringEnd(static_cast<int32_t>(newLength));
  return self;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::PutRepeated(Unit value, int32_t repeatCount,
                                                                    int32_t position,
                                                                    bool lengthInUnits) -> Str& {
  const Unit units[2] = {value, 0};
  return PutRepeated(units, repeatCount, position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::PutRepeated(char32_t value,
                                                                    int32_t repeatCount,
                                                                    int32_t position,
                                                                    bool lengthInUnits)
    -> Str& requires(IsNarrow) {
  const auto a = internal::MakeCodePointArgument(Unit{}, value);
  return PutRepeated(a.Data(), repeatCount, position, lengthInUnits);
}

// --- Replacing -------------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::ReplaceRange(int32_t position,
                                                                     bool lengthInUnits,
                                                                     int32_t count,
                                                                     const Unit* text,
                                                                     int32_t textLength) noexcept
    -> Str& {
  Str& self = Self();
  if (text == nullptr) return self;
  const int32_t size = textLength < 0 ? internal::MeasureText(text) : textLength;
  if (size == 0 || position < 0) return self;
  if (position > GetCharCount(lengthInUnits)) return self;
  const int32_t length = self.GetLength();
  const int32_t offset = std::min(_ToUnitsIn(self.GetText(), position, lengthInUnits), length);
  const int32_t units = internal::CountUnits(self.GetText() + offset, std::max(count, 0),
                                             lengthInUnits, length - offset);
  const int32_t newLength = length - units + size;
  if (size <= units) {
    internal::PrepareInPlace(self);
    Unit* const buffer = self._GetBuffer();
    std::memmove(buffer + offset, text, static_cast<size_t>(size) * sizeof(Unit));
    std::memmove(buffer + offset + size, buffer + offset + units,
                 (static_cast<size_t>(length - offset - units) + 1) * sizeof(Unit));
    self._SetStoredLength(newLength);
    return self;
  }
  // A longer text goes to a new block of exactly the new length, which then replaces this
  // string's block: no part of the text is moved twice.
  ICStringUniqueT<Unit> result;
  result._Reserve(newLength, 0);
  Unit* const out = result._GetBuffer();
  const Unit* const in = self.GetText();
  CopyUnits(out, in, static_cast<size_t>(offset));
  CopyUnits(out + offset, text, static_cast<size_t>(size));
  CopyUnits(out + offset + size, in + offset + units,
            static_cast<size_t>(length - offset - units) + 1);
  result._SetStoredLength(newLength);
  self = std::move(result);
  return self;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::ReplaceRange(
    int32_t position, bool lengthInUnits, int32_t count, char32_t codePoint) noexcept -> Str& {
  const auto a = internal::MakeCodePointArgument(Unit{}, codePoint);
  if (a.Length == 0) return Self();
  return ReplaceRange(position, lengthInUnits, count, a.Data(), a.Length);
}

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::ReplaceAll(const Unit* needle,
                                                                      int32_t needleLength,
                                                                      const Unit* text,
                                                                      int32_t textLength,
                                                                      int32_t maxCount) {
  auto target = internal::EditTarget<Unit>::Of(Self());
  return internal::ReplaceAllUnits(target, needle, needleLength, text, textLength, maxCount);
}

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::Replace(char32_t from,
                                                                   char32_t to) requires(IsNarrow) {
  Str& self = Self();
  if (to == 0 || from == 0) return 0;
  if (from < 0x80 && to < 0x80) {
    const int32_t length = self.GetLength();
    const void* hit =
        std::memchr(self.GetText(), static_cast<int>(from), static_cast<size_t>(length));
    if (hit == nullptr) return 0;
    const ptrdiff_t first = static_cast<const char*>(hit) - self.GetText();
    internal::PrepareInPlace(self);
    char* const buffer = self._GetBuffer();
    int32_t count = 0;
    for (int32_t i = static_cast<int32_t>(first); i < length; ++i) {
      if (buffer[i] == static_cast<char>(from)) {
        buffer[i] = static_cast<char>(to);
        ++count;
      }
    }
    return count;
  }
  const auto n = internal::MakeCodePointArgument(char{}, from);
  const auto t = internal::MakeCodePointArgument(char{}, to);
  if (n.Length == 0) return 0;
  return ReplaceAll(n.Data(), n.Length, t.Data(), t.Length, 0);
}

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::Replace(char16_t from,
                                                                   char16_t to) requires(IsWide) {
  Str& self = Self();
  if (to == 0 || from == 0) return 0;
  const int32_t length = self.GetLength();
  const std::u16string_view view(self.GetText(), static_cast<size_t>(length));
  const size_t first = view.find(from);
  if (first == std::u16string_view::npos) return 0;
  internal::PrepareInPlace(self);
  char16_t* const buffer = self._GetBuffer();
  int32_t count = 0;
  for (int32_t i = static_cast<int32_t>(first); i < length; ++i) {
    if (buffer[i] == from) {
      buffer[i] = to;
      ++count;
    }
  }
  return count;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::ReplaceAnyOf(const Unit* set,
                                                                     Unit replacement) -> Str& {
  Str& self = Self();
  if (set == nullptr || set[0] == 0) return self;
  const int32_t length = self.GetLength();
  if constexpr (IsWide) {
    if (replacement == 0) return self;
    const std::u16string_view members(set);
    const std::u16string_view view(self.GetText(), static_cast<size_t>(length));
    const size_t first = view.find_first_of(members);
    if (first == std::u16string_view::npos) return self;
    internal::PrepareInPlace(self);
    char16_t* const buffer = self._GetBuffer();
    for (int32_t i = static_cast<int32_t>(first); i < length; ++i)
      if (members.find(buffer[i]) != std::u16string_view::npos) buffer[i] = replacement;
    return self;
  } else {
    if (static_cast<signed char>(replacement) < 1) return self;  // 1 to 0x7f only
    // The set as code points.
    std::vector<uint32_t> members;
    for (const char* p = set; *p;)
      members.push_back(DecodeUTF8Sequence(p));
    auto inSet = [&members](uint32_t c) {
      return std::find(members.begin(), members.end(), c) != members.end();
    };
    // Decodes the character at `p` without reading past the end of the text.
    const auto decodeAt = [](const char* p, const char* end, int32_t& size) {
      size = GroupSize(p, end);
      if (size < GetUTF8SequenceSize(static_cast<unsigned char>(*p))) return uint32_t{0xffffffff};
      const char* q = p;
      return DecodeUTF8Sequence(q);
    };
    const char* const text = self.GetText();
    const char* const end = text + length;
    const char* p = text;
    int32_t size = 0;
    while (p < end && !inSet(decodeAt(p, end, size)))
      p += size;
    if (p == end) return self;
    const ptrdiff_t first = p - text;
    internal::PrepareInPlace(self);
    char* const buffer = self._GetBuffer();
    char* write = buffer + first;
    const char* read = buffer + first;
    const char* const bufferEnd = buffer + length;
    while (read < bufferEnd) {
      const uint32_t c = decodeAt(read, bufferEnd, size);
      if (inSet(c)) {
        *write++ = replacement;
      } else {
        for (int32_t i = 0; i < size; ++i)
          write[i] = read[i];
        write += size;
      }
      read += size;
    }
    self._SetStringEnd(static_cast<int32_t>(write - buffer));
    return self;
  }
}

// --- Line ends -------------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    const Unit* source, const Unit* lineEnd) noexcept -> Str& {
  Str& self = Self();
  if (lineEnd == nullptr) lineEnd = EmptyText<Unit>();
  const int32_t lineEndLength = internal::MeasureText(lineEnd);
  const bool fromSelf = source == self.GetText();
  if (source == nullptr) source = EmptyText<Unit>();
  const int32_t sourceLength = fromSelf ? self.GetLength() : internal::MeasureText(source);
  const Unit cr = Unit('\r');
  const Unit lf = Unit('\n');

  if (lineEndLength == 1) {
    const Unit end = lineEnd[0];
    if (end != cr && end != lf) return self;
    if (fromSelf) {
      // Only a line end that differs from the target changes anything: a carriage return when
      // the target is a line feed, a line feed (alone or behind a carriage return) otherwise.
      const Unit changing = end == lf ? cr : lf;
      const Unit* const text = self.GetText();
      const Unit* p = text;
      const Unit* const stop = text + sourceLength;
      while (p < stop && *p != changing)
        p += (*p == cr || *p == lf) ? 1 : GroupSize(p, stop);
      if (p == stop) return self;
      // Start at the line end that holds the change (a "\r\n" is rewritten whole).
      if (changing == lf && p > text && p[-1] == cr) --p;
      const ptrdiff_t first = p - text;
      internal::PrepareInPlace(self);
      Unit* const buffer = self._GetBuffer();
      Unit* const out =
          WriteNormalized(buffer + first, buffer + first, buffer + sourceLength, lineEnd, 1);
      self._SetStringEnd(static_cast<int32_t>(out - buffer));
      return self;
    }
    self._PrepareGrow(sourceLength);
    if (self._IsEmptyData()) return self;
    Unit* const buffer = self._GetBuffer();
    Unit* const out = WriteNormalized(buffer, source, source + sourceLength, lineEnd, 1);
    self._SetStringEnd(static_cast<int32_t>(out - buffer));
    return self;
  }

  if (lineEndLength == 2) {
    if (lineEnd[0] != cr && lineEnd[1] != lf) return self;
    const int64_t measured = MeasureNormalized(source, source + sourceLength);
    if (measured == sourceLength) {
      if (!fromSelf) self._AssignText(source, sourceLength);
      return self;
    }
    const int32_t newLength = static_cast<int32_t>(measured);
    if (!fromSelf) {
      self._PrepareReplace(newLength);
      Unit* const buffer = self._GetBuffer();
      WriteNormalized(buffer, source, source + sourceLength, lineEnd, 2);
      self._SetStringEnd(newLength);
      return self;
    }
    ICStringUniqueT<Unit> result;
    result._Reserve(newLength, 0);
    WriteNormalized(result._GetBuffer(), source, source + sourceLength, lineEnd, 2);
    result._SetStringEnd(newLength);
    self = std::move(result);
    return self;
  }
  return self;
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    const Unit* lineEnd) noexcept -> Str& {
  return NormalizeLineEnds(Self().GetText(), lineEnd);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    const Unit* source, ICLineEnd lineEnd) noexcept -> Str& {
  static constexpr Unit kCr[] = {Unit('\r'), 0};
  static constexpr Unit kCrLf[] = {Unit('\r'), Unit('\n'), 0};
  static constexpr Unit kLf[] = {Unit('\n'), 0};
  const Unit* const end = lineEnd == ICLineEnd::CarriageReturn           ? kCr
                          : lineEnd == ICLineEnd::CarriageReturnLineFeed ? kCrLf
                                                                         : kLf;
  return NormalizeLineEnds(source, end);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    ICLineEnd lineEnd) noexcept -> Str& {
  return NormalizeLineEnds(Self().GetText(), lineEnd);
}

template <class Unit, class Storage>
bool ICStringEditMembers<BasicICString<Unit, Storage>>::IsLineEndAt(
    int32_t position, bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if (position < 0) return false;
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= self.GetLength()) return false;
  const Unit c = self.GetText()[offset];
  return c == Unit('\r') || c == Unit('\n');
}

IC_INSTANTIATE_STRING_MIXIN(ICStringEditMembers)

}  // namespace ic
