#include <ic/string/edit_members.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
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

constexpr int32_t kWholeText = 0x7fffffff;

/// Units of `count` characters from `text`, for a narrow text in characters; otherwise the count
/// itself. Never more than `available`, never negative.
template <class Unit>
int32_t CountUnits(const Unit* text, int32_t count, bool lengthInUnits, int32_t available) {
  if (count <= 0) return 0;
  if constexpr (sizeof(Unit) == 1) {
    if (!lengthInUnits && count != kWholeText)
      count = GetUTF8Offset(text, static_cast<uint32_t>(count));
  }
  return std::min(count, available);
}

/// The backward walk over UTF-8: one byte at a time, each byte that is not a continuation byte
/// (top bits 10) ends one code point; stops after n of them or at the start.
const char* StepBackCodePoints(const char* start, const char* end, int32_t n) {
  const char* p = end;
  while (n > 0 && p > start) {
    --p;
    if ((static_cast<unsigned char>(*p) & 0xc0) != 0x80) --n;
  }
  return p;
}

/// Finds `needle` in text[from, length); -1 if absent.
template <class Unit>
int64_t FindUnits(std::basic_string_view<Unit> text, std::basic_string_view<Unit> needle,
                  int64_t from) {
  const size_t at = text.find(needle, static_cast<size_t>(from));
  return at == std::basic_string_view<Unit>::npos ? -1 : static_cast<int64_t>(at);
}

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

template <class Unit>
const Unit* EmptyUnits() {
  static const Unit empty[1] = {0};
  return empty;
}

/// A small list of match offsets that keeps the first entries on the stack.
class OffsetList {
 public:
  void Add(int64_t offset) {
    if (_size == kMaxEntries) throw std::length_error("list too long");
    if (_size < kLocal)
      _local[_size] = offset;
    else
      _heap.push_back(offset);
    ++_size;
  }
  int64_t operator[](size_t i) const { return i < kLocal ? _local[i] : _heap[i - kLocal]; }
  size_t Size() const { return _size; }

 private:
  static constexpr size_t kLocal = 64;
  static constexpr size_t kMaxEntries = 0x15555555;
  int64_t _local[kLocal];
  std::vector<int64_t> _heap;
  size_t _size = 0;
};

}  // namespace

// --- Positions -------------------------------------------------------------------------------

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::_ToUnitsIn(const Unit* text,
                                                                      int32_t position,
                                                                      bool lengthInUnits) noexcept {
  if constexpr (IsNarrow) {
    if (!lengthInUnits && position > 0 && position != kWholeText)
      return GetUTF8Offset(text, static_cast<uint32_t>(position));
  }
  return position;
}

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::GetCharCount(
    bool lengthInUnits) const noexcept {
  const Str& self = static_cast<const Str&>(*this);
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
  const Str& self = static_cast<const Str&>(*this);
  if (count < 0) return Str();
  if (count >= GetCharCount(lengthInUnits)) return Str(self);
  const int32_t units = CountUnits(self.GetText(), count, lengthInUnits, self.GetLength());
  return Str(self.GetText(), units);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Mid(int32_t position,
                                                            bool lengthInUnits) const noexcept
    -> Str {
  const Str& self = static_cast<const Str&>(*this);
  if (position <= 0) return Str(self);
  if (position > GetCharCount(lengthInUnits)) return Str();
  const int32_t length = self.GetLength();
  const int32_t offset = std::min(_ToUnitsIn(self.GetText(), position, lengthInUnits), length);
  return Str(self.GetText() + offset, length - offset);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::Mid(int32_t position, bool lengthInUnits,
                                                            int32_t count) const noexcept -> Str {
  const Str& self = static_cast<const Str&>(*this);
  int64_t wanted = count;
  if (position < 0) {
    wanted += position;
    position = 0;
  }
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length || wanted < 1) return Str();
  const Unit* const from = self.GetText() + offset;
  const int32_t units =
      CountUnits(from, static_cast<int32_t>(wanted), lengthInUnits, length - offset);
  return Str(from, units);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::GetTailPointer(
    int32_t position, bool lengthInUnits) const noexcept -> const Unit* {
  const Str& self = static_cast<const Str&>(*this);
  if (position < 1) return self.GetText();
  if (position > GetCharCount(lengthInUnits)) return nullptr;
  return self.GetText() + _ToUnitsIn(self.GetText(), position, lengthInUnits);
}

template <class Unit, class Storage>
auto ICStringEditMembers<BasicICString<Unit, Storage>>::GetSpan(int32_t& length, int32_t position,
                                                                bool lengthInUnits,
                                                                int32_t count) const noexcept
    -> const Unit* {
  const Str& self = static_cast<const Str&>(*this);
  int64_t wanted = count;
  if (position < 0) {
    wanted += position;
    position = 0;
  }
  const int32_t total = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= total) return nullptr;
  const Unit* const from = self.GetText() + offset;
  length = CountUnits(from, static_cast<int32_t>(std::max<int64_t>(wanted, 0)), lengthInUnits,
                      total - offset);
  return from;
}

template <class Unit, class Storage>
bool ICStringEditMembers<BasicICString<Unit, Storage>>::GetPositionAt(
    const Unit*& slot, int32_t index, bool lengthInUnits) const noexcept {
  const Str& self = static_cast<const Str&>(*this);
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
  const Str& self = static_cast<const Str&>(*this);
  if (count < 0) return false;
  if (count >= GetCharCount(lengthInUnits)) {
    slot = self.GetText();
    return true;
  }
  const Unit* const end = self.GetEnd();
  if constexpr (IsNarrow) {
    if (!lengthInUnits) {
      slot = StepBackCodePoints(self.GetText(), end, count);
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
  Str& self = static_cast<Str&>(*this);
  if (count <= 0) {
    self._Clear();
    return self;
  }
  const int32_t length = self.GetLength();
  const int32_t units = CountUnits(self.GetText(), count, lengthInUnits, length);
  if (units < length) {
    internal::PrepareInPlace(self);
    self._SetStringEnd(units);
  }
  return self;
}

template <class Unit, class Storage>
void ICStringEditMembers<BasicICString<Unit, Storage>>::_RemoveBefore(const Unit* from) {
  Str& self = static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
  int64_t wanted = count;
  if (position < 0) {
    wanted += position;
    position = 0;
  }
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length) {
    self._Clear();
    return self;
  }
  const int32_t units =
      CountUnits(self.GetText() + offset, static_cast<int32_t>(std::max<int64_t>(wanted, 0)),
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
  Str& self = static_cast<Str&>(*this);
  int64_t wanted = count;
  if (position < 0) {
    wanted += position;
    position = 0;
  }
  if (wanted < 0) return self;
  const int32_t length = self.GetLength();
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= length) return self;
  const int32_t units = CountUnits(self.GetText() + offset, static_cast<int32_t>(wanted),
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
  Str& self = static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
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
  if (source == nullptr) return static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
  const int32_t size = value ? internal::MeasureText(value) : 0;
  if (size == 0 || position < 0 || repeatCount < 1) return self;
  if (position > GetCharCount(lengthInUnits)) return self;
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  const int64_t newLength = offset + int64_t{size} * repeatCount;
  if (newLength > kWholeText) throw std::length_error("ICString::PutRepeated too long");
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
  Str& self = static_cast<Str&>(*this);
  if (text == nullptr) return self;
  const int32_t size = textLength < 0 ? internal::MeasureText(text) : textLength;
  if (size == 0 || position < 0) return self;
  if (position > GetCharCount(lengthInUnits)) return self;
  const int32_t length = self.GetLength();
  const int32_t offset = std::min(_ToUnitsIn(self.GetText(), position, lengthInUnits), length);
  const int32_t units =
      CountUnits(self.GetText() + offset, std::max(count, 0), lengthInUnits, length - offset);
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
  if (a.Length == 0) return static_cast<Str&>(*this);
  return ReplaceRange(position, lengthInUnits, count, a.Data(), a.Length);
}

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::ReplaceAll(const Unit* needle,
                                                                      int32_t needleLength,
                                                                      const Unit* text,
                                                                      int32_t textLength,
                                                                      int32_t maxCount) {
  Str& self = static_cast<Str&>(*this);
  if (needle == nullptr) return 0;
  if (needleLength < 0) needleLength = internal::MeasureText(needle);
  if (needleLength == 0) return 0;
  if (text == nullptr) {
    text = EmptyUnits<Unit>();
    textLength = 0;
  } else if (textLength < 0) {
    textLength = internal::MeasureText(text);
  }
  if (maxCount <= 0) maxCount = kWholeText;

  const int32_t length = self.GetLength();
  if (length < needleLength) return 0;
  // Arguments that lie in this string's own block would move under the write: use copies.
  std::basic_string<Unit> needleCopy, textCopy;
  const int64_t capacity = std::max(self.GetCapacity(), length);
  if (internal::PointsInto(needle, self.GetText(), capacity)) {
    needleCopy.assign(needle, static_cast<size_t>(needleLength));
    needle = needleCopy.c_str();
  }
  if (internal::PointsInto(text, self.GetText(), capacity)) {
    textCopy.assign(text, static_cast<size_t>(textLength));
    text = textCopy.c_str();
  }
  const std::basic_string_view<Unit> pattern(needle, static_cast<size_t>(needleLength));

  const int64_t first = FindUnits(
      std::basic_string_view<Unit>(self.GetText(), static_cast<size_t>(length)), pattern, 0);
  if (first < 0) return 0;

  if (textLength == needleLength) {
    // In place, no list: the text behind each match is still the old text.
    internal::PrepareInPlace(self);
    Unit* const buffer = self._GetBuffer();
    const std::basic_string_view<Unit> view(buffer, static_cast<size_t>(length));
    int32_t count = 0;
    for (int64_t at = first; at >= 0;) {
      CopyUnits(buffer + at, text, static_cast<size_t>(textLength));
      if (++count == maxCount) break;
      at = FindUnits(view, pattern, at + needleLength);
    }
    return count;
  }

  if (textLength < needleLength) {
    // Shrinking: one forward pass that searches ahead of the write position, over text that
    // has not been written yet, and compacts behind it.
    internal::PrepareInPlace(self);
    Unit* const buffer = self._GetBuffer();
    const std::basic_string_view<Unit> view(buffer, static_cast<size_t>(length));
    int64_t write = first;
    int64_t read = first;
    int32_t count = 0;
    for (int64_t at = first; at >= 0;) {
      if (at > read) {
        std::memmove(buffer + write, buffer + read, static_cast<size_t>(at - read) * sizeof(Unit));
        write += at - read;
      }
      CopyUnits(buffer + write, text, static_cast<size_t>(textLength));
      write += textLength;
      read = at + needleLength;
      if (++count == maxCount) break;
      at = FindUnits(view, pattern, read);
    }
    std::memmove(buffer + write, buffer + read,
                 (static_cast<size_t>(length - read) + 1) * sizeof(Unit));
    self._SetStoredLength(static_cast<int32_t>(write + (length - read)));
    return count;
  }

  // Growing: all matches first (over the old text), then the new text in room of exactly the
  // new length: written forward into a new block when the old one is too small, else moved
  // backward within the block. Either way each part of the text moves once.
  OffsetList offsets;
  {
    const std::basic_string_view<Unit> view(self.GetText(), static_cast<size_t>(length));
    for (int64_t at = first; at >= 0;) {
      offsets.Add(at);
      if (offsets.Size() == static_cast<size_t>(maxCount)) break;
      at = FindUnits(view, pattern, at + needleLength);
    }
  }
  const int64_t n = static_cast<int64_t>(offsets.Size());
  const int64_t newLength = length + n * (textLength - needleLength);
  if (newLength > kWholeText) throw std::length_error("ICString::ReplaceAll too long");
  bool inlineCapable = false;
  if constexpr (Str::IsUnique) inlineCapable = (self._GetShareWord() & InlineCapable) != 0;
  if (newLength > self.GetCapacity() && !inlineCapable) {
    // The block must grow anyway: the new text is written once, forward, into a block of
    // exactly the new length, which then replaces the old one (as the growth would have).
    ICStringUniqueT<Unit> result;
    result._Reserve(static_cast<int32_t>(newLength), 0);
    Unit* out = result._GetBuffer();
    const Unit* const in = self.GetText();
    int64_t read = 0;
    for (size_t i = 0; i < offsets.Size(); ++i) {
      const int64_t at = offsets[i];
      CopyUnits(out, in + read, static_cast<size_t>(at - read));
      out += at - read;
      CopyUnits(out, text, static_cast<size_t>(textLength));
      out += textLength;
      read = at + needleLength;
    }
    CopyUnits(out, in + read, static_cast<size_t>(length - read) + 1);
    result._SetStoredLength(static_cast<int32_t>(newLength));
    self = std::move(result);
    return static_cast<int32_t>(n);
  }
  // Room is there: one backward pass moves each part of the text once.
  self._PrepareGrow(static_cast<int32_t>(newLength));
  Unit* const buffer = self._GetBuffer();
  int64_t readEnd = length + 1;  // the terminator moves with the last part
  int64_t writeEnd = newLength + 1;
  for (int64_t i = n - 1; i >= 0; --i) {
    const int64_t tail = offsets[static_cast<size_t>(i)] + needleLength;
    const int64_t part = readEnd - tail;
    writeEnd -= part;
    std::memmove(buffer + writeEnd, buffer + tail, static_cast<size_t>(part) * sizeof(Unit));
    writeEnd -= textLength;
    CopyUnits(buffer + writeEnd, text, static_cast<size_t>(textLength));
    readEnd = offsets[static_cast<size_t>(i)];
  }
  self._SetStoredLength(static_cast<int32_t>(newLength));
  return static_cast<int32_t>(n);
}

template <class Unit, class Storage>
int32_t ICStringEditMembers<BasicICString<Unit, Storage>>::Replace(char32_t from,
                                                                   char32_t to) requires(IsNarrow) {
  Str& self = static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
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
  Str& self = static_cast<Str&>(*this);
  if (lineEnd == nullptr) lineEnd = EmptyUnits<Unit>();
  const int32_t lineEndLength = internal::MeasureText(lineEnd);
  const bool fromSelf = source == self.GetText();
  if (source == nullptr) source = EmptyUnits<Unit>();
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
  return NormalizeLineEnds(static_cast<Str&>(*this).GetText(), lineEnd);
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
  return NormalizeLineEnds(static_cast<Str&>(*this).GetText(), lineEnd);
}

template <class Unit, class Storage>
bool ICStringEditMembers<BasicICString<Unit, Storage>>::IsLineEndAt(
    int32_t position, bool lengthInUnits) const noexcept {
  const Str& self = static_cast<const Str&>(*this);
  if (position < 0) return false;
  const int32_t offset = _ToUnitsIn(self.GetText(), position, lengthInUnits);
  if (offset >= self.GetLength()) return false;
  const Unit c = self.GetText()[offset];
  return c == Unit('\r') || c == Unit('\n');
}

IC_INSTANTIATE_STRING_MIXIN(ICStringEditMembers)

}  // namespace ic
