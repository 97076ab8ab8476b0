// The base of every member mixin of the string family.
//
// A concern's members (assign, append, search, ...) are a class template over the complete
// string type, specialised on BasicICString<Unit, Storage>; the string derives from all of them.
// StringMixin gives each of them, in one place, the string type, the width and shape flags and
// Self(), the string the members work on. It is keyed on the concern as well, so that the
// string's bases are all of different types and the mixins stay without data (the string is the
// size of one pointer).
//
// How a concern adds its members:
//
//   template <class Str>
//   class ICStringFooMembers;
//
//   template <class Unit, class Storage>
//   class ICStringFooMembers<BasicICString<Unit, Storage>>
//       : public StringMixin<ICStringFooMembers, Unit, Storage> {
//     IC_STRING_MIXIN_NAMES(ICStringFooMembers);
//    public:
//     Str& Foo(int32_t count);  // defined in foo_members.cpp
//   };
//   IC_EXTERN_STRING_MIXIN(ICStringFooMembers)
//
// and in foo_members.cpp, after including <ic/string/ic_string.h>:
//
//   template <class Unit, class Storage>
//   auto ICStringFooMembers<BasicICString<Unit, Storage>>::Foo(int32_t count) -> Str& {
//     Str& self = Self();
//     ...
//     return self;
//   }
//   IC_INSTANTIATE_STRING_MIXIN(ICStringFooMembers)
//
// then add the mixin to the base list of BasicICString in ic_string.h.
#pragma once

#include <type_traits>

#include <ic/string/family_fwd.h>

namespace ic {

template <template <class> class Concern, class Unit, class Storage>
class StringMixin {
 public:
  /// The complete string type the members belong to.
  using Str = BasicICString<Unit, Storage>;
  /// The unique string of the same width (what copies out of a view or a shared string become).
  using UniqueStr = BasicICString<Unit, ICStringUniqueStorage<Unit>>;

  /// Width: UTF-8 bytes (narrow) or UTF-16 units (wide).
  static constexpr bool IsNarrow = std::is_same_v<Unit, char>;
  static constexpr bool IsWide = std::is_same_v<Unit, char16_t>;
  /// Shape: one owner, a reference-counted block, or a view of foreign text.
  static constexpr bool IsUnique = std::is_same_v<Storage, ICStringUniqueStorage<Unit>>;
  static constexpr bool IsShared = std::is_same_v<Storage, ICStringSharedStorage<Unit>>;
  static constexpr bool IsView = std::is_same_v<Storage, ICStringViewStorage<Unit>>;

 protected:
  /// The string these members belong to.
  Str& Self() noexcept { return static_cast<Str&>(*this); }
  const Str& Self() const noexcept { return static_cast<const Str&>(*this); }
};

}  // namespace ic

/// Brings the names of StringMixin into a concern's class (its base is dependent, so they are
/// not found otherwise). Write it first in the class, with the concern's template name.
#define IC_STRING_MIXIN_NAMES(Concern)                         \
  using MixinBase = ::ic::StringMixin<Concern, Unit, Storage>; \
  using typename MixinBase::Str;                               \
  using typename MixinBase::UniqueStr;                         \
  using MixinBase::IsNarrow;                                   \
  using MixinBase::IsWide;                                     \
  using MixinBase::IsUnique;                                   \
  using MixinBase::IsShared;                                   \
  using MixinBase::IsView;                                     \
  using MixinBase::Self
