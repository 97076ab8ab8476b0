// Forward declarations of the string family, and the six instantiations of a member mixin.
//
// Every concern's members (assign, append, edit, search, case, ...) are a mixin template over
// the complete string type, defined in the concern's .cpp. Its header declares the six
// instantiations with IC_EXTERN_STRING_MIXIN, and its .cpp defines them with
// IC_INSTANTIATE_STRING_MIXIN, so hosts do not compile the member bodies again.
#pragma once

#include <ic/platform/export.h>

namespace ic {

template <class Unit, class Storage>
class BasicICString;
template <class Unit>
class ICStringUniqueStorage;
template <class Unit>
class ICStringSharedStorage;
template <class Unit>
class ICStringViewStorage;
template <class Unit>
class ICStringChainT;

}  // namespace ic

/// Applies MACRO(StringType) to each of the six strings (three shapes in two widths).
#define IC_FOR_EACH_STRING_TYPE(MACRO)                                        \
  MACRO(::ic::BasicICString<char, ::ic::ICStringUniqueStorage<char>>)         \
  MACRO(::ic::BasicICString<char16_t, ::ic::ICStringUniqueStorage<char16_t>>) \
  MACRO(::ic::BasicICString<char, ::ic::ICStringSharedStorage<char>>)         \
  MACRO(::ic::BasicICString<char16_t, ::ic::ICStringSharedStorage<char16_t>>) \
  MACRO(::ic::BasicICString<char, ::ic::ICStringViewStorage<char>>)           \
  MACRO(::ic::BasicICString<char16_t, ::ic::ICStringViewStorage<char16_t>>)

/// Declares, at namespace ic scope, that the mixin is instantiated for the six strings elsewhere.
#define IC_EXTERN_STRING_MIXIN(Mixin)                                                             \
  extern template class IC_API                                                                    \
      Mixin<::ic::BasicICString<char, ::ic::ICStringUniqueStorage<char>>>;                        \
  extern template class IC_API                                                                    \
      Mixin<::ic::BasicICString<char16_t, ::ic::ICStringUniqueStorage<char16_t>>>;                \
  extern template class IC_API                                                                    \
      Mixin<::ic::BasicICString<char, ::ic::ICStringSharedStorage<char>>>;                        \
  extern template class IC_API                                                                    \
      Mixin<::ic::BasicICString<char16_t, ::ic::ICStringSharedStorage<char16_t>>>;                \
  extern template class IC_API Mixin<::ic::BasicICString<char, ::ic::ICStringViewStorage<char>>>; \
  extern template class IC_API                                                                    \
      Mixin<::ic::BasicICString<char16_t, ::ic::ICStringViewStorage<char16_t>>>;

/// Instantiates the mixin for the six strings (in its .cpp, at namespace ic scope).
#define IC_INSTANTIATE_STRING_MIXIN(Mixin)                                                    \
  template class Mixin<::ic::BasicICString<char, ::ic::ICStringUniqueStorage<char>>>;         \
  template class Mixin<::ic::BasicICString<char16_t, ::ic::ICStringUniqueStorage<char16_t>>>; \
  template class Mixin<::ic::BasicICString<char, ::ic::ICStringSharedStorage<char>>>;         \
  template class Mixin<::ic::BasicICString<char16_t, ::ic::ICStringSharedStorage<char16_t>>>; \
  template class Mixin<::ic::BasicICString<char, ::ic::ICStringViewStorage<char>>>;           \
  template class Mixin<::ic::BasicICString<char16_t, ::ic::ICStringViewStorage<char16_t>>>;
