#include <ic/path/path_members.h>

#include <ic/path/internal/path_core.h>
#include <ic/path/path_scheme_handler.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/write_steps.h>
#include <ic/text/internal/trim_core.h>

namespace ic {
namespace {

template <class Str>
Str Prefix(const Str& self, int32_t units) {
  return units > 0 ? Str(self.GetText(), units) : Str();
}

// The text from `offset` on: a view views the source, the other shapes copy.
template <class Str>
Str Tail(const Str& self, int32_t offset) {
  if constexpr (Str::IsView)
    return Str(self.GetText() + offset);
  else
    return Str(self.GetText() + offset, self.GetLength() - offset);
}

template <class Str>
void NormalizeText(Str& self, bool removeDots, bool removeDotDots) {
  using Unit = typename Str::UnitType;
  const int32_t length = self.GetLength();
  if (length == 0) return;
  if (internal::IsWritableInPlace(self)) {
    const int32_t n = internal::NormalizePathText(internal::StringAccess::_GetBuffer(self),
                                                  removeDots, removeDotDots);
    if (n < length) self.KeepLeft(n);  // the text is cut already; this stores the length
    return;
  }
  // Text that others hold is normalised in a copy, which is taken only when something changed.
  ICStringUniqueT<Unit> copy(self.GetText(), length);
  const int32_t n = internal::NormalizePathText(internal::StringAccess::_GetBuffer(copy),
                                                removeDots, removeDotDots);
  if (n < length) self.Assign(copy.GetText(), n);
}

}  // namespace

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::AddTrailingSeparator() -> Str& {
  Str& self = Self();
  const Unit* text = self.GetText();
  const int32_t length =
      static_cast<int32_t>(internal::TrimEndInSet(text, text + self.GetLength(),
                                                  internal::TrimSet<Unit>::DefaultBlanks()) -
                           text);
  self.KeepLeft(length);
  if (length == 0 || IsPathSeparator(self.GetText()[length - 1])) return self;
  const bool backslash = internal::ContainsUnit(self.GetText(), length, Unit('\\'));
  const Unit separator[] = {backslash ? Unit('\\') : Unit('/'), Unit(0)};
  return self.Append(separator, 1);
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::WithTrailingSeparator() const -> Str {
  const Str& self = Self();
  Str copy(self.GetText(), self.GetLength());
  copy.AddTrailingSeparator();
  return copy;
}

template <class Unit, class Storage>
const Unit* ICStringPathMembers<BasicICString<Unit, Storage>>::FindLastSeparator(
    bool afterSeparator) const noexcept {
  const Str& self = Self();
  const int32_t i = internal::FindLastSeparatorIndex(self.GetText(), self.GetLength());
  if (i < 0) return nullptr;
  return self.GetText() + i + (afterSeparator ? 1 : 0);
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::GetDirectoryPart(bool keepSeparator) const
    -> Str {
  const Str& self = Self();
  const int32_t i = internal::FindLastSeparatorIndex(self.GetText(), self.GetLength());
  return i < 0 ? Str() : Prefix(self, i + (keepSeparator ? 1 : 0));
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::RemoveFileNamePart(bool keepSeparator)
    -> Str& {
  Str& self = Self();
  const int32_t i = internal::FindLastSeparatorIndex(self.GetText(), self.GetLength());
  return self.KeepLeft(i < 0 ? 0 : i + (keepSeparator ? 1 : 0));
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::GetFileNamePart() const -> Str {
  const Str& self = Self();
  return Tail(self, internal::FindLastSeparatorIndex(self.GetText(), self.GetLength()) + 1);
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::RemoveDirectoryPart() -> Str& {
  Str& self = Self();
  const int32_t i = internal::FindLastSeparatorIndex(self.GetText(), self.GetLength());
  return i < 0 ? self : self.KeepFrom(i + 1);
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::GetAncestorPath(bool keepSeparator,
                                                                        int32_t levels) const
    -> Str {
  const Str& self = Self();
  const int32_t i = internal::FindAncestorSeparator(self.GetText(), self.GetLength(), levels);
  return i < 0 ? Str() : Prefix(self, i + (keepSeparator ? 1 : 0));
}

template <class Unit, class Storage>
const Unit* ICStringPathMembers<BasicICString<Unit, Storage>>::FindExtensionDot() const noexcept {
  const Str& self = Self();
  const int32_t i = internal::FindExtensionDotIndex(self.GetText(), self.GetLength());
  return i < 0 ? nullptr : self.GetText() + i;
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::GetExtension(bool lowerCase) const -> Str {
  const Str& self = Self();
  Str result;
  bool fromHandler = false;
  if (PathSchemeHandlerT<Unit>* handler = GetPathSchemeHandler<Unit>()) {
    ICStringUniqueT<Unit> out;
    fromHandler = handler->ExtractExtension(self.GetText(), out);
    if (fromHandler) result = Str(out.GetText(), out.GetLength());
  }
  if (!fromHandler) {
    const int32_t i = internal::FindExtensionDotIndex(self.GetText(), self.GetLength());
    if (i >= 0) {
      if (lowerCase)
        result = Str(self.GetText() + i + 1, self.GetLength() - i - 1);
      else
        result = Tail(self, i + 1);
    }
  }
  if (lowerCase) result.MakeLower(false);
  return result;
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::GetWithoutExtension() const -> Str {
  const Str& self = Self();
  const int32_t i = internal::FindExtensionDotIndex(self.GetText(), self.GetLength());
  return i < 0 ? Str(self.GetText(), self.GetLength()) : Prefix(self, i);
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::RemoveExtension() -> Str& {
  Str& self = Self();
  const int32_t i = internal::FindExtensionDotIndex(self.GetText(), self.GetLength());
  return i < 0 ? self : self.KeepLeft(i);
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::RemoveRootPrefix() -> Str& {
  Str& self = Self();
  const int32_t n = internal::RootPrefixLength(self.GetText(), self.GetLength());
  return n == 0 ? self : self.KeepFrom(n);
}

template <class Unit, class Storage>
bool ICStringPathMembers<BasicICString<Unit, Storage>>::IsRelativePath(
    const Unit* text, bool rootedIsAbsolute) noexcept {
  return internal::IsRelativePathText(text, rootedIsAbsolute);
}

template <class Unit, class Storage>
bool ICStringPathMembers<BasicICString<Unit, Storage>>::IsValidFileName(const Unit* text) {
  return internal::IsValidFileNameText(text);
}

template <class Unit, class Storage>
bool ICStringPathMembers<BasicICString<Unit, Storage>>::IsValidFileName() const {
  return internal::IsValidFileNameText(Self().GetText());
}

template <class Unit, class Storage>
int32_t ICStringPathMembers<BasicICString<Unit, Storage>>::NormalizePath(
    Unit* text, bool removeDots, bool removeDotDots) noexcept {
  return internal::NormalizePathText(text, removeDots, removeDotDots);
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::Normalize(bool removeDots,
                                                                  bool removeDotDots) -> Str& {
  Str& self = Self();
  NormalizeText(self, removeDots, removeDotDots);
  return self;
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::NormalizeAbsolute() -> Str& {
  Str& self = Self();
  const Unit* text = self.GetText();
  const int32_t length = self.GetLength();
  if (length > 0 && !internal::ContainsUnit(text, length, Unit(':')) && !IsPathSeparator(text[0]))
    return self;
  NormalizeText(self, true, true);
  return self;
}

template <class Unit, class Storage>
auto ICStringPathMembers<BasicICString<Unit, Storage>>::ToPathCompareForm(bool normalize) -> Str& {
  Str& self = Self();
  self.MakeLower(!normalize);
  if constexpr (sizeof(Unit) == 1)
    self.Replace(U'\\', U'/');
  else
    self.Replace(u'\\', u'/');
  if (normalize) NormalizeText(self, true, true);
  return self;
}

template <class Unit, class Storage>
bool ICStringPathMembers<BasicICString<Unit, Storage>>::PathsEqual(const Unit* first,
                                                                   const Unit* second,
                                                                   bool normalize) {
  ICStringUniqueT<Unit> a(first);
  ICStringUniqueT<Unit> b(second);
  a.ToPathCompareForm(normalize);
  b.ToPathCompareForm(normalize);
  return a.GetLength() == b.GetLength() &&
         std::char_traits<Unit>::compare(a.GetText(), b.GetText(),
                                         static_cast<size_t>(a.GetLength())) == 0;
}

template <class Unit, class Storage>
bool ICStringPathMembers<BasicICString<Unit, Storage>>::EqualIgnoringChars(
    const Unit* other, const Unit* ignored) const noexcept {
  return internal::EqualIgnoringCharsText(Self().GetText(), other, ignored);
}

IC_INSTANTIATE_STRING_MIXIN(ICStringPathMembers)

}  // namespace ic
