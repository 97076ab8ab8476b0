#include <ic/string/assign_members.h>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/positions.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>

namespace ic {

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(const Unit* text) -> Str& {
  Str& self = Self();
  self = text;
  return self;
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(const Unit* begin, const Unit* end)
    -> Str& {
  Str& self = Self();
  if (begin != nullptr && end != nullptr && begin <= end)
    internal::StringAccess::_AssignText(self, begin, static_cast<int32_t>(end - begin));
  else
    internal::StringAccess::_Clear(self);
  return self;
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(const Unit* text, int32_t length,
                                                                 bool lengthInUnits) -> Str& {
  Str& self = Self();
  if (length < 1) {
    internal::StringAccess::_Clear(self);
    return self;
  }
  if (text == nullptr) {
    // "" has nothing to copy: the converted length is 0, for which room is made and no more.
    length = 0;
  } else {
    length = internal::UnitOffsetOf(text, length, lengthInUnits);
  }
  internal::StringAccess::_PrepareReplace(self, length);
  if (length > 0) {
    CopyUnits(internal::StringAccess::_GetBuffer(self), text, static_cast<size_t>(length));
    internal::StringAccess::_SetStringEnd(self, length);
  }
  return self;
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(const Unit* text, int32_t length)
    -> Str& {
  Str& self = Self();
  if (text == nullptr) {
    internal::StringAccess::_Clear(self);
  } else if (length < 0) {
    self = text;  // measured; a view views the text
  } else if (length == 0) {
    internal::StringAccess::_Clear(self);
  } else {
    internal::StringAccess::_PrepareReplace(self, length);
    CopyUnits(internal::StringAccess::_GetBuffer(self), text, static_cast<size_t>(length));
    internal::StringAccess::_SetStringEnd(self, length);
  }
  return self;
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(ICStringRangeT<Unit> range)
    -> Str& {
  return Assign(range.Text, range.Length);
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(const char* utf8, int32_t length)
    -> Str& requires(IsWide) {
  return Self().ConvertFromUTF8String(utf8, length);
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(ICStringRange utf8)
    -> Str& requires(IsWide) {
  return Self().ConvertFromUTF8String(utf8);
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(char ch) -> Str& {
  Str& self = Self();
  const unsigned char byte = static_cast<unsigned char>(ch);
  if constexpr (IsNarrow) {
    if (byte >= 0x80) {
      internal::StringAccess::_PrepareReplace(self, 2);
      self._SetCodePoint(byte);
      return self;
    }
  }
  internal::StringAccess::_PrepareReplace(self, 1);
  Unit* text = internal::StringAccess::_GetBuffer(self);
  text[0] = static_cast<Unit>(byte);
  internal::StringAccess::_SetStringEnd(self, byte != 0 ? 1 : 0);
  return self;
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(char16_t unit)
    -> Str& requires(IsWide) {
  Str& self = Self();
  internal::StringAccess::_PrepareReplace(self, 1);
  Unit* text = internal::StringAccess::_GetBuffer(self);
  text[0] = unit;
  internal::StringAccess::_SetStringEnd(self, unit != 0 ? 1 : 0);
  return self;
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(char32_t codePoint)
    -> Str& requires(IsNarrow) {
  Str& self = Self();
  internal::StringAccess::_PrepareReplace(self, GetUTF8CodePointSize(codePoint));
  self._SetCodePoint(codePoint);
  return self;
}

template <class Unit, class Storage>
void ICStringAssignMembers<BasicICString<Unit, Storage>>::_SetCodePoint(
    uint32_t codePoint) requires(IsNarrow) {
  Str& self = Self();
  char* const text = internal::StringAccess::_GetBuffer(self);
  if (codePoint == 0) {
    text[0] = 0;
    internal::StringAccess::_SetStoredLength(self, 0);
    return;
  }
  char* cursor = text;
  if (EncodeCodePoint(cursor, codePoint)) {
    *cursor = 0;
    internal::StringAccess::_SetStoredLength(self, static_cast<int32_t>(cursor - text));
  } else {
    internal::StringAccess::_SetStoredLength(self, 0);
  }
}

template <class Unit, class Storage>
void ICStringAssignMembers<BasicICString<Unit, Storage>>::_AssignChainCore(
    const internal::PieceRun<Unit>* run, int32_t length, const Unit* written) {
  Str& self = Self();
  internal::StringAccess::_PrepareReplace(self, length);
  // An empty result on the empty data needs no write: its terminator and length are zero.
  if (internal::StringAccess::_IsEmptyData(self)) return;
  Unit* const text = internal::StringAccess::_GetBuffer(self);
  if (written != nullptr)
    CopyUnits(text, written, static_cast<size_t>(length) + 1);
  else
    internal::WritePieceRun(text, *run);
  internal::StringAccess::_SetStoredLength(self, length);
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::Assign(const ICStringChainT<Unit>& chain)
    -> Str& {
  Str& self = Self();
  internal::PieceRun<Unit> run;
  int32_t length;
  const Unit* written = internal::StringAccess::_ReadForWrite(chain, &self, run, length);
  _AssignChainCore(&run, length, written);
  return self;
}

template <class Unit, class Storage>
auto ICStringAssignMembers<BasicICString<Unit, Storage>>::AssignPieces(const Piece* first) -> Str& {
  Str& self = Self();
  const internal::PieceRun<Unit> run(first);
  if (run.sum == 0) return self;  // also a null list
  _AssignChainCore(&run, static_cast<int32_t>(run.sum), nullptr);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringAssignMembers)

}  // namespace ic
