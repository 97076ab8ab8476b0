#include <ic/string/builder.h>

#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>

namespace ic {

template <class Str>
void ICStringBuilder<Str>::_AddSlow(const Unit* text, int32_t length) {
  uint32_t cursor = static_cast<uint32_t>(Count);
  Target->PutAtCursor(text, length, cursor, ReserveHint);
  Count = static_cast<int32_t>(cursor);
}

template <class Str>
ICStringBuilder<Str>& ICStringBuilder<Str>::Add(char ch) {
  const unsigned char byte = static_cast<unsigned char>(ch);
  Unit units[2] = {static_cast<Unit>(byte), 0};
  int32_t count = byte != 0 ? 1 : 0;
  if constexpr (sizeof(Unit) == 1) {
    if (byte >= 0x80) {
      char* cursor = units;
      EncodeCodePoint(cursor, byte);  // Latin-1: always two bytes
      count = 2;
    }
  }
  Add(units, count);
  return *this;
}

template <class Str>
ICStringBuilder<Str>& ICStringBuilder<Str>::Add(char32_t codePoint) requires(
    std::is_same_v<Unit, char>) {
  if (codePoint == 0) {
    Add(EmptyText<Unit>(), 0);
    return *this;
  }
  if (!Writing) {
    Count += GetUTF8CodePointSize(codePoint);
    return *this;
  }
  char units[4];
  char* cursor = units;
  EncodeCodePoint(cursor, codePoint);  // a refused value adds nothing, though it was measured
  Add(units, static_cast<int32_t>(cursor - units));
  return *this;
}

template <class Str>
ICStringBuilder<Str>& ICStringBuilder<Str>::Add(char16_t unit) requires(
    std::is_same_v<Unit, char16_t>) {
  Add(&unit, unit != 0 ? 1 : 0);
  return *this;
}

template struct ICStringBuilder<ICStringUnique>;
template struct ICStringBuilder<ICStringUniqueW>;
template struct ICStringBuilder<ICStringShared>;
template struct ICStringBuilder<ICStringSharedW>;
template struct ICStringBuilder<ICStringView>;
template struct ICStringBuilder<ICStringViewW>;

}  // namespace ic
