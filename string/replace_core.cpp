#include <ic/string/internal/replace_core.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/write_steps.h>

namespace ic::internal {
namespace {

/// Finds `needle` in text[from, length); -1 if absent.
template <class Unit>
int64_t FindUnits(std::basic_string_view<Unit> text, std::basic_string_view<Unit> needle,
                  int64_t from) {
  const size_t at = text.find(needle, static_cast<size_t>(from));
  return at == std::basic_string_view<Unit>::npos ? -1 : static_cast<int64_t>(at);
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

template <class Unit>
int32_t ReplaceAllIn(EditTarget<Unit>& target, const Unit* needle, int32_t needleLength,
                     const Unit* text, int32_t textLength, int32_t maxCount) {
  if (needle == nullptr) return 0;
  if (needleLength < 0) needleLength = MeasureText(needle);
  if (needleLength == 0) return 0;
  if (text == nullptr) {
    text = EmptyText<Unit>();
    textLength = 0;
  } else if (textLength < 0) {
    textLength = MeasureText(text);
  }
  if (maxCount <= 0) maxCount = EndOfText;

  const int32_t length = target.getLength(target.string);
  if (length < needleLength) return 0;
  // Arguments that lie in this string's own block would move under the write: use copies.
  std::basic_string<Unit> needleCopy, textCopy;
  const int32_t oldCapacity = target.getCapacity(target.string);
  const int64_t capacity = std::max(oldCapacity, length);
  if (PointsInto(needle, target.text, capacity)) {
    needleCopy.assign(needle, static_cast<size_t>(needleLength));
    needle = needleCopy.c_str();
  }
  if (PointsInto(text, target.text, capacity)) {
    textCopy.assign(text, static_cast<size_t>(textLength));
    text = textCopy.c_str();
  }
  const std::basic_string_view<Unit> pattern(needle, static_cast<size_t>(needleLength));

  const int64_t first =
      FindUnits(std::basic_string_view<Unit>(target.text, static_cast<size_t>(length)), pattern, 0);
  if (first < 0) return 0;

  if (textLength == needleLength) {
    // In place, no list: the text behind each match is still the old text.
    Unit* const buffer = target.makeWritable(target.string);
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
    Unit* const buffer = target.makeWritable(target.string);
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
    target.setLength(target.string, static_cast<int32_t>(write + (length - read)));
    return count;
  }

  // Growing: all matches first (over the old text), then the new text in room of exactly the
  // new length: written forward into a new block when the old one is too small, else moved
  // backward within the block. Either way each part of the text moves once.
  OffsetList offsets;
  {
    const std::basic_string_view<Unit> view(target.text, static_cast<size_t>(length));
    for (int64_t at = first; at >= 0;) {
      offsets.Add(at);
      if (offsets.Size() == static_cast<size_t>(maxCount)) break;
      at = FindUnits(view, pattern, at + needleLength);
    }
  }
  const int64_t n = static_cast<int64_t>(offsets.Size());
  const int64_t newLength = length + n * (textLength - needleLength);
  if (newLength > EndOfText) throw std::length_error("ICString::ReplaceAll too long");
  if (newLength > oldCapacity && !target.inlineCapable) {
    // The block must grow anyway: the new text is written once, forward, into a block of
    // exactly the new length, which then replaces the old one (as the growth would have).
    ICStringUniqueT<Unit> result;
    internal::StringAccess::_Reserve(result, static_cast<int32_t>(newLength), 0);
    Unit* out = internal::StringAccess::_GetBuffer(result);
    const Unit* const in = target.text;
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
    internal::StringAccess::_SetStoredLength(result, static_cast<int32_t>(newLength));
    target.adopt(target.string, result);
    return static_cast<int32_t>(n);
  }
  // Room is there: one backward pass moves each part of the text once.
  Unit* const buffer = target.makeRoom(target.string, static_cast<int32_t>(newLength));
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
  target.setLength(target.string, static_cast<int32_t>(newLength));
  return static_cast<int32_t>(n);
}

}  // namespace

int32_t ReplaceAllUnits(EditTarget<char>& target, const char* needle, int32_t needleLength,
                        const char* text, int32_t textLength, int32_t maxCount) {
  return ReplaceAllIn(target, needle, needleLength, text, textLength, maxCount);
}

int32_t ReplaceAllUnits(EditTarget<char16_t>& target, const char16_t* needle, int32_t needleLength,
                        const char16_t* text, int32_t textLength, int32_t maxCount) {
  return ReplaceAllIn(target, needle, needleLength, text, textLength, maxCount);
}

}  // namespace ic::internal
