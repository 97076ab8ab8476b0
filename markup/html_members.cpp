#include <ic/markup/html_members.h>

#include <ic/markup/internal/html_core.h>
#include <ic/string/builder.h>
#include <ic/string/ic_string.h>

namespace ic {

template <class Unit, class Storage>
void ICStringHtmlMembers<BasicICString<Unit, Storage>>::EncodeHtmlInto(Str& out, const Unit* text,
                                                                       bool lineBreakTags) {
  out.KeepLeft(0);
  // The builder grows to the larger of twice the needed length and 1024 units, keeps the
  // terminator written and leaves the length unmeasured.
  ICStringBuilder<Str> builder{&out, 0, 0, true};
  internal::EncodeHtmlTo(text, lineBreakTags, builder);
}

template <class Unit, class Storage>
auto ICStringHtmlMembers<BasicICString<Unit, Storage>>::ToHtml(bool lineBreakTags) -> Str& {
  Str& self = Self();
  const ICStringUniqueT<Unit> copy(self.GetText(), self.GetLength());
  EncodeHtmlInto(self, copy.GetText(), lineBreakTags);
  return self;
}

template <class Unit, class Storage>
auto ICStringHtmlMembers<BasicICString<Unit, Storage>>::HtmlEncoded(const Unit* text,
                                                                    bool lineBreakTags) -> Str {
  Str result;
  EncodeHtmlInto(result, text, lineBreakTags);
  return result;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringHtmlMembers)

}  // namespace ic
