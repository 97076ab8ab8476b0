#include <ic/markup/xml_members.h>

#include <string>
#include <utility>

#include <ic/markup/internal/xml_escape_core.h>
#include <ic/string/builder.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/write_steps.h>

namespace ic {
namespace {

// The builder in writing mode as the escaper's sink: it grows to the larger of twice the needed
// length and 1024 units, keeps the terminator written and leaves the length unmeasured.
template <class Str>
struct BuilderSink {
  ICStringBuilder<Str> builder;
  void Add(const typename Str::UnitType* text, int32_t length) { builder.Add(text, length); }
};

template <class Str>
bool EscapeInto(const typename Str::UnitType* source, int32_t length, Str& out, bool escapeQuotes,
                const typename Str::UnitType* alsoEscape) {
  if (source == nullptr) return false;
  const auto* first = internal::FindXmlEscape(source, length, escapeQuotes, alsoEscape);
  if (first == nullptr) return false;
  BuilderSink<Str> sink{{&out, out.GetLength(), 0, true}};
  internal::EscapeXmlFrom(source, length, first, escapeQuotes, alsoEscape, sink);
  return true;
}

}  // namespace

template <class Unit, class Storage>
bool ICStringXmlMembers<BasicICString<Unit, Storage>>::EscapeXmlInto(const Unit* source, Str& out,
                                                                     bool escapeQuotes,
                                                                     const Unit* alsoEscape) {
  if (source == nullptr) return false;
  return EscapeInto(source, static_cast<int32_t>(std::char_traits<Unit>::length(source)), out,
                    escapeQuotes, alsoEscape);
}

template <class Unit, class Storage>
auto ICStringXmlMembers<BasicICString<Unit, Storage>>::EscapeXml(bool escapeQuotes,
                                                                 const Unit* alsoEscape) -> Str& {
  Str& self = Self();
  ICStringUniqueT<Unit> fresh;
  if (EscapeInto(self.GetText(), self.GetLength(), fresh, escapeQuotes, alsoEscape))
    self = std::move(fresh);
  return self;
}

template <class Unit, class Storage>
auto ICStringXmlMembers<BasicICString<Unit, Storage>>::EscapedXml(const Unit* text,
                                                                  bool escapeQuotes,
                                                                  const Unit* alsoEscape) -> Str {
  Str result;
  if (!EscapeXmlInto(text, result, escapeQuotes, alsoEscape)) result = ICStringUniqueT<Unit>(text);
  return result;
}

template <class Unit, class Storage>
auto ICStringXmlMembers<BasicICString<Unit, Storage>>::UnescapeXml(bool decodeCharRefs,
                                                                   bool decodeEntities) -> Str& {
  Str& self = Self();
  const int32_t length = self.GetLength();
  if (!std::char_traits<Unit>::find(self.GetText(), static_cast<size_t>(length), Unit('&')))
    return self;
  internal::StringAccess::PrepareInPlace(self);
  const int32_t n = internal::UnescapeXmlUnits(internal::StringAccess::_GetBuffer(self), length,
                                               decodeCharRefs, decodeEntities);
  self.KeepLeft(n);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringXmlMembers)

}  // namespace ic
