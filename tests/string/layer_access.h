// The test suites' way into the string family's low-level layer.
//
// The block operations are not public; the tests that pin down what they do to a block reach
// them through LayerAccess, a friend of the family, of the mixins with such helpers and of the
// concatenation. Each function forwards to the member of the same name of the object passed
// first. Tests that only need to know whether a string holds the empty data use
// HoldsEmptyData, which reads the public surface.
#pragma once

#include <utility>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/null_data.h>

namespace ic::test {

struct LayerAccess {
  template <class S, class... A>
  static decltype(auto) _AllocateSingleUnit(S& s, A&&... a) {
    return s._AllocateSingleUnit(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _AllocateStorage(S& s, A&&... a) {
    return s._AllocateStorage(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _AssignText(S& s, A&&... a) {
    return s._AssignText(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _Detach(S& s, A&&... a) {
    return s._Detach(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _GetBuffer(S& s, A&&... a) {
    return s._GetBuffer(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _GuardChain(S& s, A&&... a) {
    return s._GuardChain(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _IsTiny(S& s, A&&... a) {
    return s._IsTiny(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _MakeOwned(S& s, A&&... a) {
    return s._MakeOwned(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _OpenGap(S& s, A&&... a) {
    return s._OpenGap(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _PrepareGrow(S& s, A&&... a) {
    return s._PrepareGrow(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _ReallocateDetached(S& s, A&&... a) {
    return s._ReallocateDetached(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _ReleaseStorage(S& s, A&&... a) {
    return s._ReleaseStorage(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _RemoveBefore(S& s, A&&... a) {
    return s._RemoveBefore(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _Reserve(S& s, A&&... a) {
    return s._Reserve(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _SetCodePoint(S& s, A&&... a) {
    return s._SetCodePoint(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _SetStoredLength(S& s, A&&... a) {
    return s._SetStoredLength(std::forward<A>(a)...);
  }
  template <class S, class... A>
  static decltype(auto) _SetStringEnd(S& s, A&&... a) {
    return s._SetStringEnd(std::forward<A>(a)...);
  }
};

/// True if the string's text is the empty data of its width (it holds no block).
template <class S>
bool HoldsEmptyData(const S& s) {
  return s.GetText() == EmptyText<typename S::UnitType>();
}

}  // namespace ic::test
