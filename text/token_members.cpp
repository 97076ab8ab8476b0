#include <ic/text/token_members.h>

#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/text/internal/trim_core.h>
#include <ic/text/search_needle.h>

namespace ic {
namespace {

// The token at `position` of `length` units read with `limit`, as a new string of type R.
template <class R, class Unit>
R Token(const Unit* text, int32_t length, int32_t limit, const Unit* delimiter, bool wholeText,
        int32_t& position, const Unit* quotes, bool merge, int32_t skip, bool* atEnd) {
  if (text == nullptr) return R();
  const SearchNeedle<Unit> needle(delimiter, false);
  const SearchNeedle<Unit> quoteNeedle(quotes, false);
  const internal::TokenRules<Unit> rules{&needle, wholeText, &quoteNeedle, merge, skip, atEnd};
  const Unit* begin = nullptr;
  int32_t count = 0;
  if (!internal::NextToken(internal::TokenSource<Unit>{text, length, limit}, position, rules, begin,
                           count))
    return R();
  return R(begin, count);
}

// The receiver form: the limit is the length plus one, so that a position on the terminator is
// still valid.
template <class Str>
Str ReceiverToken(const Str& self, const typename Str::UnitType* delimiter, bool wholeText,
                  int32_t& position, const typename Str::UnitType* quotes, bool merge, int32_t skip,
                  bool* atEnd) {
  const int32_t length = self.GetLength();
  return Token<Str>(self.GetText(), length, length + 1, delimiter, wholeText, position, quotes,
                    merge, skip, atEnd);
}

template <class Str>
typename Str::UnitType* GrowString(void* owner, int32_t capacity, int32_t length) {
  Str& self = *static_cast<Str*>(owner);
  internal::StringAccess::_SetStoredLength(self, length);
  internal::StringAccess::_PrepareGrow(self, capacity);
  return internal::StringAccess::_GetBuffer(self);
}

}  // namespace

template <class Unit, class Storage>
auto ICStringTokenMembers<BasicICString<Unit, Storage>>::ExtractToken(
    const Unit* delimiters, int32_t& position, const Unit* quotes, bool mergeDelimiters,
    int32_t skipCount, bool* atEnd) const -> Str {
  return ReceiverToken(Self(), delimiters, false, position, quotes, mergeDelimiters, skipCount,
                       atEnd);
}

template <class Unit, class Storage>
auto ICStringTokenMembers<BasicICString<Unit, Storage>>::ExtractToken(
    Code delimiter, int32_t& position, const Unit* quotes, bool mergeDelimiters, int32_t skipCount,
    bool* atEnd) const -> Str {
  const auto one = internal::MakeCodePointArgument(Unit{}, static_cast<uint32_t>(delimiter));
  return ExtractToken(one.Data(), position, quotes, mergeDelimiters, skipCount, atEnd);
}

template <class Unit, class Storage>
auto ICStringTokenMembers<BasicICString<Unit, Storage>>::ExtractTokenText(
    const Unit* delimiter, int32_t& position, const Unit* quotes, bool mergeDelimiters,
    int32_t skipCount, bool* atEnd) const -> Str {
  return ReceiverToken(Self(), delimiter, true, position, quotes, mergeDelimiters, skipCount,
                       atEnd);
}

template <class Unit, class Storage>
auto ICStringTokenMembers<BasicICString<Unit, Storage>>::FirstLines(
    int32_t maxLines, bool skipEmptyLines, bool trimLines, const Unit* moreMarker) const noexcept
    -> Str {
  const Str& self = Self();
  ICStringUniqueT<Unit> result;
  internal::GrowableText<Unit> out{internal::StringAccess::_GetBuffer(result), 0, 0, &result,
                                   &GrowString<ICStringUniqueT<Unit>>};
  internal::FirstLinesOf(out, self.GetText(), self.GetEnd(), maxLines, skipEmptyLines, trimLines,
                         moreMarker);
  if (out.length > 0) internal::StringAccess::_SetStringEnd(result, out.length);
  return Str(std::move(result));
}

IC_INSTANTIATE_STRING_MIXIN(ICStringTokenMembers)

ICStringUnique ExtractToken(const char* text, int32_t length, const char* delimiters,
                            int32_t& position, const char* quotes, bool mergeDelimiters,
                            int32_t skipCount, bool* atEnd) {
  return Token<ICStringUnique>(text, length, length, delimiters, false, position, quotes,
                               mergeDelimiters, skipCount, atEnd);
}
ICStringUniqueW ExtractToken(const char16_t* text, int32_t length, const char16_t* delimiters,
                             int32_t& position, const char16_t* quotes, bool mergeDelimiters,
                             int32_t skipCount, bool* atEnd) {
  return Token<ICStringUniqueW>(text, length, length, delimiters, false, position, quotes,
                                mergeDelimiters, skipCount, atEnd);
}
ICStringUnique ExtractToken(const char* text, int32_t length, char32_t delimiter, int32_t& position,
                            const char* quotes, bool mergeDelimiters, int32_t skipCount,
                            bool* atEnd) {
  const auto one = internal::MakeCodePointArgument(char{}, delimiter);
  return ExtractToken(text, length, one.Data(), position, quotes, mergeDelimiters, skipCount,
                      atEnd);
}
ICStringUniqueW ExtractToken(const char16_t* text, int32_t length, char16_t delimiter,
                             int32_t& position, const char16_t* quotes, bool mergeDelimiters,
                             int32_t skipCount, bool* atEnd) {
  const auto one = internal::MakeCodePointArgument(char16_t{}, delimiter);
  return ExtractToken(text, length, one.Data(), position, quotes, mergeDelimiters, skipCount,
                      atEnd);
}

ICStringUnique ExtractTokenText(const char* text, int32_t length, const char* delimiter,
                                int32_t& position, const char* quotes, bool mergeDelimiters,
                                int32_t skipCount, bool* atEnd) {
  return Token<ICStringUnique>(text, length, length, delimiter, true, position, quotes,
                               mergeDelimiters, skipCount, atEnd);
}
ICStringUniqueW ExtractTokenText(const char16_t* text, int32_t length, const char16_t* delimiter,
                                 int32_t& position, const char16_t* quotes, bool mergeDelimiters,
                                 int32_t skipCount, bool* atEnd) {
  return Token<ICStringUniqueW>(text, length, length, delimiter, true, position, quotes,
                                mergeDelimiters, skipCount, atEnd);
}

}  // namespace ic
