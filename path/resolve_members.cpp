#include <ic/path/resolve_members.h>

#include <ic/path/internal/path_core.h>
#include <ic/path/path_constants.h>
#include <ic/path/path_scheme_handler.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

template <class Unit>
void FlipBackslashes(ICStringUniqueT<Unit>& s) {
  if constexpr (sizeof(Unit) == 1)
    s.Replace(U'\\', U'/');
  else
    s.Replace(u'\\', u'/');
}

// The resolved text of a relative reference, built in a string of its own.
template <class Unit>
ICStringUniqueT<Unit> Resolve(const Unit* reference, const Unit* base, const Unit* fallbackBase,
                              bool removeDots, bool removeDotDots) {
  using Unique = ICStringUniqueT<Unit>;
  if (!internal::IsRelativePathText(reference, false)) return Unique(reference);

  Unique copy(base);
  if (PathSchemeHandlerT<Unit>* handler = GetPathSchemeHandler<Unit>()) handler->PrepareBase(copy);
  if (!copy.IsEmpty()) {
    const Unit* text = copy.GetText();
    const int32_t i = internal::FindLastSeparatorIndex(text, copy.GetLength());
    if (i >= 2 && text[i - 2] == Unit(':') && text[i - 1] == Unit('/') && text[i] == Unit('/')) {
      const Unit slash[] = {Unit('/'), Unit(0)};
      copy.Append(slash, 1);  // "scheme://host" with no path gets its root slash
    } else if (i >= 0) {
      copy.KeepLeft(i + 1);
    }
  }
  if (copy.IsEmpty()) {
    copy = fallbackBase;
    const int32_t n = copy.GetLength();
    if (n > 0 && !IsPathSeparator(copy.GetText()[n - 1])) {
      const Unit backslash[] = {Unit('\\'), Unit(0)};
      copy.Append(backslash, 1);
    }
  }

  if (!IsPathSeparator(reference[0])) {
    copy.Append(reference);
    if (removeDots || removeDotDots) copy.Normalize(removeDots, removeDotDots);
    return copy;
  }

  // A rooted reference replaces the path of the base.
  static constexpr Unit kSchemeEnd[] = {Unit(':'), Unit('/'), Unit('/'), Unit(0)};
  const Unit* text = copy.GetText();
  const int32_t length = copy.GetLength();
  const int32_t k = internal::FindUnits(text, length, kSchemeEnd);
  if (k >= 0) {
    int32_t s = k + 3;
    while (s < length && text[s] != Unit('/'))
      ++s;
    Unique result;
    if (s < length) {
      result.Assign(text, s);
      result.Append(reference);
    } else {
      result.Assign(text, length);
      result.Append(reference + 1);
    }
    FlipBackslashes(result);
    return result;
  }
  int32_t c = 0;
  while (c < length && text[c] != Unit(':'))
    ++c;
  if (c == length) return Unique(reference);
  Unique result(text, c + 1);
  result.Append(reference);
  return result;
}

}  // namespace

template <class Unit, class Storage>
void ICStringResolveMembers<BasicICString<Unit, Storage>>::ResolveRelative(
    Str& out, const Unit* reference, const Unit* base, const Unit* fallbackBase, bool removeDots,
    bool removeDotDots) {
  const ICStringUniqueT<Unit> result =
      Resolve(reference, base, fallbackBase, removeDots, removeDotDots);
  out.Assign(result.GetText(), result.GetLength());
}

template <class Unit, class Storage>
auto ICStringResolveMembers<BasicICString<Unit, Storage>>::ResolveAgainst(
    const Unit* base, const Unit* fallbackBase, bool removeDots, bool removeDotDots) const -> Str {
  Str result;
  ResolveRelative(result, Self().GetText(), base, fallbackBase, removeDots, removeDotDots);
  return result;
}

template <class Unit, class Storage>
auto ICStringResolveMembers<BasicICString<Unit, Storage>>::ResolveAgainstInPlace(
    const Unit* base, const Unit* fallbackBase, bool removeDots, bool removeDotDots) -> Str& {
  Str& self = Self();
  ResolveRelative(self, self.GetText(), base, fallbackBase, removeDots, removeDotDots);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringResolveMembers)

}  // namespace ic
