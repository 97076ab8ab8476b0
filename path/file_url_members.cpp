#include <ic/path/file_url_members.h>

#include <utility>

#include <ic/path/internal/path_core.h>
#include <ic/path/path_constants.h>
#include <ic/path/path_scheme_handler.h>
#include <ic/path/percent_members.h>
#include <ic/string/ic_string.h>
#include <ic/text/internal/trim_core.h>

namespace ic {
namespace {

template <class Unit>
bool StartsWithFileScheme(const Unit* text, bool ignoreCase) noexcept {
  static constexpr char kScheme[] = "file:";
  for (int i = 0; i < 5; ++i) {
    uint32_t c = static_cast<uint32_t>(static_cast<std::make_unsigned_t<Unit>>(text[i]));
    if (ignoreCase && c - 'A' < 26u) c += 32;
    if (c != static_cast<uint32_t>(kScheme[i])) return false;
  }
  return true;
}

template <class Unit>
bool IsLocal(const Unit* text, int32_t length) {
  if (PathSchemeHandlerT<Unit>* handler = GetPathSchemeHandler<Unit>())
    return handler->IsLocalPath(text);
  static constexpr Unit kSchemeEnd[] = {Unit(':'), Unit('/'), Unit('/'), Unit(0)};
  return internal::FindUnits(text, length, kSchemeEnd) < 0;
}

template <class Str>
void CutLeadingBlanks(Str& self) {
  const typename Str::UnitType* text = self.GetText();
  const int32_t n = static_cast<int32_t>(
      internal::SkipInSet(text, text + self.GetLength(),
                          internal::TrimSet<typename Str::UnitType>::DefaultBlanks()) -
      text);
  if (n > 0) self.KeepFrom(n);
}

template <class Unit>
void ReplaceUnit(ICStringUniqueT<Unit>& s, char from, char to) {
  if constexpr (sizeof(Unit) == 1)
    s.Replace(static_cast<char32_t>(from), static_cast<char32_t>(to));
  else
    s.Replace(static_cast<char16_t>(from), static_cast<char16_t>(to));
}

}  // namespace

template <class Unit, class Storage>
auto ICStringFileUrlMembers<BasicICString<Unit, Storage>>::ToFileUrl() -> Str& {
  using Unique = ICStringUniqueT<Unit>;
  Str& self = Self();
  CutLeadingBlanks(self);
  const Unit* text = self.GetText();
  const int32_t length = self.GetLength();
  if (length == 0) return self;

  Unique work;
  const bool escapedAlready = internal::IsRelativePathText(text, false) || !IsLocal(text, length) ||
                              StartsWithFileScheme(text, true);
  if (escapedAlready) {
    work.Assign(text, length);
    work.PercentDecode();
  } else if (text[0] == Unit('\\') && text[1] == Unit('\\')) {
    static constexpr Unit kUncHead[] = {Unit('f'), Unit('i'), Unit('l'), Unit('e'),
                                        Unit(':'), Unit('/'), Unit('/'), Unit(0)};
    work.Assign(kUncHead);
    work.Append(text + 2, length - 2);
    const Unit* host = work.GetText() + 7;
    const int32_t hostLength = work.GetLength() - 7;
    if (!internal::ContainsUnit(host, hostLength, Unit('/')) &&
        !internal::ContainsUnit(host, hostLength, Unit('\\'))) {
      const Unit slash[] = {Unit('/'), Unit(0)};
      work.Append(slash, 1);
    }
  } else {
    static constexpr Unit kLocalHead[] = {Unit('f'), Unit('i'), Unit('l'), Unit('e'), Unit(':'),
                                          Unit('/'), Unit('/'), Unit('/'), Unit(0)};
    work.Assign(kLocalHead);
    work.Append(text, length);
  }
  work.PercentEncode(EscapeUnsafe);
  ReplaceUnit(work, '\\', '/');
  self = std::move(work);
  return self;
}

template <class Unit, class Storage>
auto ICStringFileUrlMembers<BasicICString<Unit, Storage>>::PathToFileUrl(const Unit* text) -> Str {
  Str result = ICStringUniqueT<Unit>(text);
  result.ToFileUrl();
  return result;
}

template <class Unit, class Storage>
auto ICStringFileUrlMembers<BasicICString<Unit, Storage>>::ToFilePath() -> Str& {
  Str& self = Self();
  CutLeadingBlanks(self);
  const Unit* text = self.GetText();
  if (self.GetLength() < 5 || !StartsWithFileScheme(text, false)) return self;
  int32_t drop = 5;
  if (text[5] == Unit('/') && text[6] == Unit('/')) {
    const Unit c = text[7];
    if (c == Unit('/'))
      drop = 8;  // 'file:///C:/x'
    else if (c != 0 && text[8] == Unit(':'))
      drop = 7;  // 'file://C:/x'
    else if (c == Unit('\\'))
      drop = text[8] == Unit('\\') ? 7 : 8;  // 'file://\\host\x', 'file://\C:/x'
    // otherwise the two slashes stay and become the UNC head
  }
  self.KeepFrom(drop);
  self.PercentDecode();
  if constexpr (sizeof(Unit) == 1)
    self.Replace(U'/', U'\\');
  else
    self.Replace(u'/', u'\\');
  return self;
}

template <class Unit, class Storage>
auto ICStringFileUrlMembers<BasicICString<Unit, Storage>>::FileUrlToPath(const Unit* text) -> Str {
  Str result = ICStringUniqueT<Unit>(text);
  result.ToFilePath();
  return result;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringFileUrlMembers)

}  // namespace ic
