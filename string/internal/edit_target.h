// A string's write steps behind plain function pointers, so that the body of a writing member
// can be compiled once per width and shared by the three shapes (see replace_core.h).
//
// The pointers are set from the shape's own steps by EditTarget::Of; the core calls them in
// the order a member would: MakeWritable or MakeRoom before it writes into Buffer, SetLength
// after, Adopt to hand the string a block written elsewhere.
#pragma once

#include <cstdint>

#include <ic/string/family_fwd.h>
#include <ic/string/header.h>
#include <ic/string/internal/string_access.h>

namespace ic::internal {

template <class Unit>
struct EditTarget {
  /// The string, passed back to every step.
  void* string;
  /// Its text when the target was made.
  const Unit* text;
  /// True if the string is an object with a buffer of its own (ICStringInline): its block is
  /// never replaced by one written elsewhere.
  bool inlineCapable;
  /// The string's length (GetLength: a string of unknown length is measured by the read).
  int32_t (*getLength)(const void* string);
  /// The string's capacity (GetCapacity).
  int32_t (*getCapacity)(const void* string);
  /// Makes the block writable in place with its capacity (a view becomes owning, a shared block
  /// that others hold is detached) and returns the writable text.
  Unit* (*makeWritable)(void* string);
  /// Makes room for `length` units keeping the text, and returns the writable text.
  Unit* (*makeRoom)(void* string, int32_t length);
  /// Stores the length in the block header (the terminator is the caller's).
  void (*setLength)(void* string, int32_t length);
  /// Writes the terminator at text[length] and stores the length.
  void (*setEnd)(void* string, int32_t length);
  /// Replaces the string's block by the block of `written` (a unique string of this width).
  void (*adopt)(void* string, BasicICString<Unit, ICStringUniqueStorage<Unit>>& written);

  /// The target of a string of any shape of this width.
  template <class Str>
  static EditTarget Of(Str& s) {
    EditTarget t;
    t.string = &s;
    t.text = s.GetText();
    t.inlineCapable = false;
    if constexpr (Str::IsUnique)
      t.inlineCapable = (StringAccess::_GetShareWord(s) & ::ic::InlineCapable) != 0;
    t.getLength = [](const void* p) { return static_cast<const Str*>(p)->GetLength(); };
    t.getCapacity = [](const void* p) { return static_cast<const Str*>(p)->GetCapacity(); };
    t.makeWritable = [](void* p) -> Unit* {
      Str& str = *static_cast<Str*>(p);
      StringAccess::PrepareInPlace(str);
      return StringAccess::_GetBuffer(str);
    };
    t.makeRoom = [](void* p, int32_t length) -> Unit* {
      Str& str = *static_cast<Str*>(p);
      StringAccess::_PrepareGrow(str, length);
      return StringAccess::_GetBuffer(str);
    };
    t.setLength = [](void* p, int32_t length) {
      StringAccess::_SetStoredLength(*static_cast<Str*>(p), length);
    };
    t.setEnd = [](void* p, int32_t length) {
      StringAccess::_SetStringEnd(*static_cast<Str*>(p), length);
    };
    t.adopt = [](void* p, BasicICString<Unit, ICStringUniqueStorage<Unit>>& written) {
      *static_cast<Str*>(p) =
          static_cast<BasicICString<Unit, ICStringUniqueStorage<Unit>>&&>(written);
    };
    return t;
  }
};

}  // namespace ic::internal
