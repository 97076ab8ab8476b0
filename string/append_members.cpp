#include <ic/string/append_members.h>

#include <ic/string/builder.h>
#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>

namespace ic {

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Append(const Unit* text, int32_t length)
    -> Str& {
  Str& self = Self();
  if (text == nullptr || length < 1) return self;
  const int32_t oldLength = self.GetLength();
  // A source inside the string's own text survives the growth at the same offset of the new
  // block (every write step keeps the text), so it is read from there.
  const Unit* const oldText = self.GetText();
  const bool own = internal::PointsInto(text, oldText, oldLength);
  const ptrdiff_t offset = text - oldText;
  internal::StringAccess::_PrepareGrow(self, oldLength + length);
  Unit* const buffer = internal::StringAccess::_GetBuffer(self);
  if (own)
    std::memmove(buffer + oldLength, buffer + offset, static_cast<size_t>(length) * sizeof(Unit));
  else
    CopyUnits(buffer + oldLength, text, static_cast<size_t>(length));
  internal::StringAccess::_SetStringEnd(self, oldLength + length);
  return self;
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Append(const Unit* text) -> Str& {
  if (text == nullptr) return Self();
  return Append(text, internal::MeasureText(text));
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Append(char ch) -> Str& {
  Str& self = Self();
  const unsigned char byte = static_cast<unsigned char>(ch);
  if (byte == 0) return self;
  if constexpr (IsNarrow) {
    if (byte >= 0x80) {
      const int32_t oldLength = self.GetLength();
      internal::StringAccess::_PrepareGrow(self, oldLength + 2);
      char* cursor = internal::StringAccess::_GetBuffer(self) + oldLength;
      EncodeCodePoint(cursor, byte);
      internal::StringAccess::_SetStringEnd(self, oldLength + 2);
      return self;
    }
  }
  const Unit unit = static_cast<Unit>(byte);
  return Append(&unit, 1);
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Append(char16_t unit)
    -> Str& requires(IsWide) {
  if (unit == 0) return Self();
  return Append(&unit, 1);
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Append(char32_t codePoint)
    -> Str& requires(IsNarrow) {
  Str& self = Self();
  if (codePoint == 0) return self;
  const int32_t oldLength = self.GetLength();
  const int32_t newLength = oldLength + GetUTF8CodePointSize(codePoint);
  internal::StringAccess::_PrepareGrow(self, newLength);
  char* cursor = internal::StringAccess::_GetBuffer(self) + oldLength;
  EncodeCodePoint(cursor, codePoint);  // a refused value still raises the length: callers check
  internal::StringAccess::_SetStringEnd(self, newLength);
  return self;
}

template <class Unit, class Storage>
void ICStringAppendMembers<BasicICString<Unit, Storage>>::_AppendChainCore(
    const internal::PieceRun<Unit>* run, int32_t length, const Unit* written) {
  Str& self = Self();
  const int32_t oldLength = self.GetLength();
  internal::StringAccess::_PrepareGrow(self, oldLength + length);
  if (internal::StringAccess::_IsEmptyData(self)) return;  // nothing added to nothing
  Unit* const at = internal::StringAccess::_GetBuffer(self) + oldLength;
  if (written != nullptr)
    CopyUnits(at, written, static_cast<size_t>(length) + 1);
  else
    internal::WritePieceRun(at, *run);
  internal::StringAccess::_SetStoredLength(self, oldLength + length);
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Append(const ICStringChainT<Unit>& chain)
    -> Str& {
  Str& self = Self();
  internal::PieceRun<Unit> run;
  int32_t length;
  const Unit* written = internal::StringAccess::_ReadForWrite(chain, &self, run, length);
  _AppendChainCore(&run, length, written);
  return self;
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::AppendPieces(const Piece* first) -> Str& {
  Str& self = Self();
  const internal::PieceRun<Unit> run(first);
  if (run.sum == 0) return self;  // also a null list
  _AppendChainCore(&run, static_cast<int32_t>(run.sum), nullptr);
  return self;
}

template <class Unit, class Storage>
void ICStringAppendMembers<BasicICString<Unit, Storage>>::PutAtCursor(const Unit* text,
                                                                      int32_t length,
                                                                      uint32_t& cursor,
                                                                      int32_t reserveHint) {
  Str& self = Self();
  if (text == nullptr)
    length = 0;
  else if (length < 0)
    length = internal::MeasureText(text);
  const int32_t at = static_cast<int32_t>(cursor);
  const int32_t needed = at + length;
  const Unit* const oldText = self.GetText();
  const bool own = length > 0 && internal::PointsInto(text, oldText, self.GetCapacity());
  const ptrdiff_t offset = text - oldText;
  internal::StringAccess::PrepareRoomKeep(self, needed,
                                          internal::GrowthCapacity(needed, reserveHint));
  Unit* const buffer = internal::StringAccess::_GetBuffer(self);
  if (own)
    std::memmove(buffer + at, buffer + offset, static_cast<size_t>(length) * sizeof(Unit));
  else
    CopyUnits(buffer + at, text, static_cast<size_t>(length));
  // The terminator goes behind the new text and the length is left to be measured when asked
  // for. On the empty data (nothing to add, no room) this writes the zero it already holds and
  // marks its length unknown, which the next GetLength turns back into 0.
  buffer[needed] = 0;
  internal::SetLengthWord(buffer, UnknownLength);
  cursor = static_cast<uint32_t>(needed);
}

template <class Unit, class Storage>
void ICStringAppendMembers<BasicICString<Unit, Storage>>::PutAtCursor(Unit unit, uint32_t& cursor,
                                                                      int32_t reserveHint) {
  PutAtCursor(&unit, 1, cursor, reserveHint);
}

template <class Unit, class Storage>
void ICStringAppendMembers<BasicICString<Unit, Storage>>::PutAtCursor(
    bool doWrite, const Unit* text, int32_t length, uint32_t& cursor, int32_t reserveHint) {
  if (doWrite) {
    PutAtCursor(text, length, cursor, reserveHint);
    return;
  }
  if (text == nullptr)
    length = 0;
  else if (length < 0)
    length = internal::MeasureText(text);
  cursor += static_cast<uint32_t>(length);
}

template <class Unit, class Storage>
void ICStringAppendMembers<BasicICString<Unit, Storage>>::PutAtCursor(bool doWrite, Unit unit,
                                                                      uint32_t& cursor,
                                                                      int32_t reserveHint) {
  PutAtCursor(doWrite, &unit, 1, cursor, reserveHint);
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Join(const UniqueStr* elements,
                                                               size_t count, const Unit* separator)
    -> Str& {
  Str& self = Self();
  const Unit* const sep = separator ? separator : EmptyText<Unit>();
  const int32_t sepLength = internal::MeasureText(sep);
  internal::StringAccess::_Clear(self);
  ICStringBuilder<Str> builder{&self, self.GetLength(), 0, false};
  const int32_t start = builder.Count;
  for (size_t i = 0; i < count; ++i) {
    if (i != 0) builder.Add(sep, sepLength);
    builder.Add(elements[i]);
  }
  // One exact reservation between the passes; the writing pass then never grows.
  if (builder.Count > self.GetCapacity()) internal::StringAccess::_PrepareGrow(self, builder.Count);
  builder.Count = start;
  builder.Writing = true;
  for (size_t i = 0; i < count; ++i) {
    if (i != 0) builder.Add(sep, sepLength);
    builder.Add(elements[i]);
  }
  return self;
}

template <class Unit, class Storage>
auto ICStringAppendMembers<BasicICString<Unit, Storage>>::Join(const UniqueStr* elements,
                                                               size_t count, char32_t separator)
    -> Str& {
  Unit buffer[5] = {};
  if constexpr (IsNarrow) {
    char* cursor = buffer;
    if (separator != 0 && EncodeCodePoint(cursor, separator)) *cursor = 0;
  } else {
    buffer[0] = static_cast<Unit>(separator);
  }
  return Join(elements, count, buffer);
}

IC_INSTANTIATE_STRING_MIXIN(ICStringAppendMembers)

}  // namespace ic
