// The library's one way into the low-level layer of the string family.
//
// The storages' block operations (_GetBuffer, _SetStringEnd, _PrepareGrow, _MakeOwned, ...), the
// family's _AssignText and the helpers the member mixins share (_OpenGap, _ReadForWrite, ...) are
// not public: a host sees only the documented members. The library's own mixins and cores reach
// them through the static functions below, each forwarding to the member of the same name of
// the object passed first. StringAccess is a friend of the family, of the mixins with such
// helpers and of the chain and piece types; only the library's sources include this header.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/string/family_fwd.h>
#include <ic/string/header.h>

namespace ic::internal {

struct StringAccess {
  /// @name Reading the block
  /// @{

  /// True if the string holds no block: its text is the empty data of its width.
  template <class S>
  static bool _IsEmptyData(const S& s) noexcept {
    return s._IsEmptyData();
  }
  /// The writable text pointer; writes only after one of the write preparations below.
  template <class S>
  static auto* _GetBuffer(const S& s) noexcept {
    return s._GetBuffer();
  }
  /// The block's ShareWord (flags of a unique block, further owners of a shared one).
  template <class S>
  static uint16_t _GetShareWord(const S& s) noexcept {
    return s._GetShareWord();
  }
  /// @}

  /// @name Preparing a write
  /// @{

  /// Room for `newLength` units, keeping the text (a view becomes owning, a shared block that
  /// others hold is detached).
  template <class S>
  static void _PrepareGrow(S& s, int32_t newLength) {
    s._PrepareGrow(newLength);
  }
  /// Room for a new text of `newLength` units; the old text need not survive.
  template <class S>
  static void _PrepareReplace(S& s, int32_t newLength) {
    s._PrepareReplace(newLength);
  }
  /// Copies a foreign or tiny view into a block of its own (views only).
  template <class S>
  static void _MakeOwned(S& s) {
    s._MakeOwned();
  }
  /// Room for `capacity` units with the Reserve* options (call _MakeOwned first on a view).
  template <class S>
  static void _Reserve(S& s, int32_t capacity, unsigned options) {
    s._Reserve(capacity, options);
  }
  /// A new block of `capacity` units with nothing written; what the handle held is not freed.
  template <class S>
  static void _AllocateStorage(S& s, uint32_t capacity) {
    s._AllocateStorage(capacity);
  }
  /// Empties the string: a unique one keeps its block, a shared one lets go of a block others
  /// hold, a view becomes owning first.
  template <class S>
  static void _Clear(S& s) {
    s._Clear();
  }
  /// Throws the out-of-memory error of the string core, as a failed block allocation does.
  template <class S>
  [[noreturn]] static void _ReportOutOfMemory() {
    S::_ReportOutOfMemory();
  }
  /// @}

  /// @name Ending a write
  /// @{

  /// Writes the terminator at text[length] and stores the length.
  template <class S, class End>
  static void _SetStringEnd(S& s, End end) {
    s._SetStringEnd(end);
  }
  /// Stores a length in the block header without writing a terminator.
  template <class S>
  static void _SetStoredLength(const S& s, int32_t length) noexcept {
    s._SetStoredLength(length);
  }
  /// @}

  /// @name Helpers of the family and its mixins
  /// @{

  /// Replaces the text by `length` units at `text` (nothing if it is the string's own text).
  template <class S, class Unit>
  static void _AssignText(S& s, const Unit* text, int32_t length) {
    s._AssignText(text, length);
  }
  /// Opens a gap of `count` units at unit offset `position` and returns it (the cut mixin).
  template <class S>
  static auto* _OpenGap(S& s, int32_t count, int32_t position) {
    return s._OpenGap(count, position);
  }
  /// Moves the text from `from` on to the front (the cut mixin).
  template <class S, class Unit>
  static void _RemoveBefore(S& s, const Unit* from) {
    s._RemoveBefore(from);
  }
  /// A concatenation's text for writing into `target` (see ICStringChainT).
  template <class Chain, class Target, class Run>
  static auto* _ReadForWrite(const Chain& chain, const Target* target, Run& run, int32_t& length) {
    return chain._ReadForWrite(target, run, length);
  }
  /// The text pointer of a text piece of a concatenation.
  template <class Piece>
  static auto* _TextPointer(const Piece& piece) noexcept {
    return piece._TextPointer();
  }
  /// @}

  /// @name Write preparations shared by the mixins
  /// @{

  /// Makes the block writable in place, keeping its capacity: a view becomes owning, a shared
  /// block that others hold is detached (unique strings have nothing to do).
  template <class S>
  static void PrepareInPlace(S& s) {
    if constexpr (S::IsView) s._MakeOwned();
    s._PrepareGrow(s.GetCapacity());
  }
  /// Makes the block writable with room for `needed` units, keeping the text; when it has to
  /// grow, it grows to `growTo` (at least `needed`). A shared block grows straight into a block
  /// of its own, without a detach first.
  template <class S>
  static void PrepareRoomKeep(S& s, int32_t needed, int32_t growTo) {
    if constexpr (S::IsView) s._MakeOwned();
    const int32_t capacity = s.GetCapacity();
    s._PrepareGrow(needed > capacity ? growTo : capacity);
  }
  /// @}
};

}  // namespace ic::internal
