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

namespace internal {
/// The library's access to the low-level layer (string/internal/string_access.h).
struct StringAccess;
}  // namespace internal

namespace test {
/// The test suites' access to the low-level layer (tests/string/layer_access.h).
struct LayerAccess;
}  // namespace test

}  // namespace ic

/// The one list of the six strings (three shapes in two widths): applies
/// MACRO(Unit, StorageTemplate, ARG) to each of them; IC_STRING_TYPE(Unit, StorageTemplate)
/// names the string. ARG is passed through, so that a macro can carry a mixin's name.
#define IC_FOR_EACH_STRING_TYPE(MACRO, ARG)   \
  MACRO(char, ICStringUniqueStorage, ARG)     \
  MACRO(char16_t, ICStringUniqueStorage, ARG) \
  MACRO(char, ICStringSharedStorage, ARG)     \
  MACRO(char16_t, ICStringSharedStorage, ARG) \
  MACRO(char, ICStringViewStorage, ARG)       \
  MACRO(char16_t, ICStringViewStorage, ARG)

/// The string of one row of IC_FOR_EACH_STRING_TYPE.
#define IC_STRING_TYPE(Unit, StorageTemplate) ::ic::BasicICString<Unit, ::ic::StorageTemplate<Unit>>

/// Declares, at namespace ic scope, that the mixin is instantiated for the six strings elsewhere.
#define IC_EXTERN_STRING_MIXIN(Mixin) IC_FOR_EACH_STRING_TYPE(IC_EXTERN_STRING_MIXIN_ONE_, Mixin)

/// Instantiates the mixin for the six strings (in its .cpp, at namespace ic scope).
#define IC_INSTANTIATE_STRING_MIXIN(Mixin) \
  IC_FOR_EACH_STRING_TYPE(IC_INSTANTIATE_STRING_MIXIN_ONE_, Mixin)

#define IC_EXTERN_STRING_MIXIN_ONE_(Unit, StorageTemplate, Mixin) \
  extern template class IC_API Mixin<IC_STRING_TYPE(Unit, StorageTemplate)>;
#define IC_INSTANTIATE_STRING_MIXIN_ONE_(Unit, StorageTemplate, Mixin) \
  template class Mixin<IC_STRING_TYPE(Unit, StorageTemplate)>;
