#include <ic/string/replace_members.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/positions.h>
#include <ic/string/internal/replace_core.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>

namespace ic {

namespace internal {

TextArgument<char> MakeCodePointArgument(char, uint32_t codePoint) noexcept {
  TextArgument<char> a;
  if (codePoint == 0) return a;
  char* cursor = a.encoded;
  if (EncodeCodePoint(cursor, codePoint)) a.length = static_cast<int32_t>(cursor - a.encoded);
  return a;
}

TextArgument<char16_t> MakeCodePointArgument(char16_t, uint32_t codePoint) noexcept {
  TextArgument<char16_t> a;
  if (codePoint == 0) return a;
  a.encoded[0] = static_cast<char16_t>(codePoint);
  a.length = 1;
  return a;
}

}  // namespace internal

// --- Replacing -------------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringReplaceMembers<BasicICString<Unit, Storage>>::ReplaceRange(int32_t position,
                                                                        bool lengthInUnits,
                                                                        int32_t count,
                                                                        const Unit* text,
                                                                        int32_t textLength) noexcept
    -> Str& {
  Str& self = Self();
  if (text == nullptr) return self;
  const int32_t size = textLength < 0 ? internal::MeasureText(text) : textLength;
  if (size == 0 || position < 0) return self;
  if (position > self.GetCharCount(lengthInUnits)) return self;
  const int32_t length = self.GetLength();
  const int32_t offset =
      std::min(internal::UnitOffsetOf(self.GetText(), position, lengthInUnits), length);
  const int32_t units = internal::CountUnits(self.GetText() + offset, std::max(count, 0),
                                             lengthInUnits, length - offset);
  const int32_t newLength = length - units + size;
  if (size <= units) {
    internal::StringAccess::PrepareInPlace(self);
    Unit* const buffer = internal::StringAccess::_GetBuffer(self);
    std::memmove(buffer + offset, text, static_cast<size_t>(size) * sizeof(Unit));
    std::memmove(buffer + offset + size, buffer + offset + units,
                 (static_cast<size_t>(length - offset - units) + 1) * sizeof(Unit));
    internal::StringAccess::_SetStoredLength(self, newLength);
    return self;
  }
  // A longer text goes to a new block of exactly the new length, which then replaces this
  // string's block: no part of the text is moved twice.
  ICStringUniqueT<Unit> result;
  internal::StringAccess::_Reserve(result, newLength, 0);
  Unit* const out = internal::StringAccess::_GetBuffer(result);
  const Unit* const in = self.GetText();
  CopyUnits(out, in, static_cast<size_t>(offset));
  CopyUnits(out + offset, text, static_cast<size_t>(size));
  CopyUnits(out + offset + size, in + offset + units,
            static_cast<size_t>(length - offset - units) + 1);
  internal::StringAccess::_SetStoredLength(result, newLength);
  self = std::move(result);
  return self;
}

template <class Unit, class Storage>
auto ICStringReplaceMembers<BasicICString<Unit, Storage>>::ReplaceRange(
    int32_t position, bool lengthInUnits, int32_t count, char32_t codePoint) noexcept -> Str& {
  const auto a = internal::MakeCodePointArgument(Unit{}, codePoint);
  if (a.length == 0) return Self();
  return ReplaceRange(position, lengthInUnits, count, a.Data(), a.length);
}

template <class Unit, class Storage>
int32_t ICStringReplaceMembers<BasicICString<Unit, Storage>>::ReplaceAll(const Unit* needle,
                                                                         int32_t needleLength,
                                                                         const Unit* text,
                                                                         int32_t textLength,
                                                                         int32_t maxCount) {
  auto target = internal::EditTarget<Unit>::Of(Self());
  return internal::ReplaceAllUnits(target, needle, needleLength, text, textLength, maxCount);
}

template <class Unit, class Storage>
int32_t ICStringReplaceMembers<BasicICString<Unit, Storage>>::Replace(
    char32_t from, char32_t to) requires(IsNarrow) {
  Str& self = Self();
  if (to == 0 || from == 0) return 0;
  if (from < 0x80 && to < 0x80) {
    const int32_t length = self.GetLength();
    const void* hit =
        std::memchr(self.GetText(), static_cast<int>(from), static_cast<size_t>(length));
    if (hit == nullptr) return 0;
    const ptrdiff_t first = static_cast<const char*>(hit) - self.GetText();
    internal::StringAccess::PrepareInPlace(self);
    char* const buffer = internal::StringAccess::_GetBuffer(self);
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
  if (n.length == 0) return 0;
  return ReplaceAll(n.Data(), n.length, t.Data(), t.length, 0);
}

template <class Unit, class Storage>
int32_t ICStringReplaceMembers<BasicICString<Unit, Storage>>::Replace(
    char16_t from, char16_t to) requires(IsWide) {
  Str& self = Self();
  if (to == 0 || from == 0) return 0;
  const int32_t length = self.GetLength();
  const std::u16string_view view(self.GetText(), static_cast<size_t>(length));
  const size_t first = view.find(from);
  if (first == std::u16string_view::npos) return 0;
  internal::StringAccess::PrepareInPlace(self);
  char16_t* const buffer = internal::StringAccess::_GetBuffer(self);
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
auto ICStringReplaceMembers<BasicICString<Unit, Storage>>::ReplaceAnyOf(const Unit* set,
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
    internal::StringAccess::PrepareInPlace(self);
    char16_t* const buffer = internal::StringAccess::_GetBuffer(self);
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
      size = internal::SequenceSizeWithin(p, end);
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
    internal::StringAccess::PrepareInPlace(self);
    char* const buffer = internal::StringAccess::_GetBuffer(self);
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
    internal::StringAccess::_SetStringEnd(self, static_cast<int32_t>(write - buffer));
    return self;
  }
}

IC_INSTANTIATE_STRING_MIXIN(ICStringReplaceMembers)

}  // namespace ic
