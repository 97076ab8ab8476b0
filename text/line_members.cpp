#include <ic/text/line_members.h>

#include <cstdint>

#include <ic/platform/bounded_format.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/text/internal/line_core.h>

namespace ic {

const char* FindForeignLineEnd(const char* text, const char* lineEnd) noexcept {
  return internal::FindForeignLineEndIn(text, lineEnd);
}
const char16_t* FindForeignLineEnd(const char16_t* text, const char16_t* lineEnd) noexcept {
  return internal::FindForeignLineEndIn(text, lineEnd);
}

template <class Unit, class Storage>
auto ICStringLineMembers<BasicICString<Unit, Storage>>::FirstLineEnd(const Unit* fallback) const
    -> Str {
  const Str& self = Self();
  const Unit* const text = self.GetText();
  for (const Unit* p = text; *p != 0; ++p) {
    if (*p == Unit('\r')) return p[1] == Unit('\n') ? Str(LineEndCRLF<Unit>) : Str(char('\r'));
    if (*p == Unit('\n')) return Str(char('\n'));
  }
  return fallback == nullptr ? Str() : Str(fallback);
}

template <class Unit, class Storage>
auto ICStringLineMembers<BasicICString<Unit, Storage>>::EnsureLineEnds(const Unit* source,
                                                                       const Unit* lineEnd) noexcept
    -> const Unit* {
  Str& self = Self();
  if (internal::FindForeignLineEndIn(source, lineEnd) == nullptr) return source;
  self.NormalizeLineEnds(source, lineEnd);
  return self.GetText();
}

template <class Unit, class Storage>
bool ICStringLineMembers<BasicICString<Unit, Storage>>::LineColumnAt(
    int32_t offset, int32_t& line, int32_t& column) const noexcept {
  return internal::LineColumnOf(Self().GetText(), offset, line, column);
}

template <class Unit, class Storage>
bool ICStringLineMembers<BasicICString<Unit, Storage>>::OffsetAt(int32_t line, int32_t column,
                                                                 int32_t& offset) const noexcept {
  return internal::OffsetOf(Self().GetText(), line, column, offset);
}

template <class Unit, class Storage>
auto ICStringLineMembers<BasicICString<Unit, Storage>>::Format(const Unit* format, ...) -> Str& {
  va_list arguments;
  va_start(arguments, format);
  Str& self = FormatV(format, arguments);
  va_end(arguments);
  return self;
}

template <class Unit, class Storage>
auto ICStringLineMembers<BasicICString<Unit, Storage>>::FormatV(const Unit* format,
                                                                va_list arguments) -> Str& {
  static const Unit kEmpty[1] = {0};
  if (format == nullptr) format = kEmpty;
  // The text is written into a unique block, which can be reserved exactly at the end, and
  // then handed to the string: its old block, shared or not, is let go of.
  ICStringUniqueT<Unit> text;
  int32_t capacity = 1024;
  int written;
  for (;;) {
    internal::StringAccess::_PrepareReplace(text, capacity);
    internal::StringAccess::_SetStoredLength(text, 0);
    internal::StringAccess::_GetBuffer(text)[0] = 0;
    va_list attempt;
    va_copy(attempt, arguments);
    written = platform::BoundedFormatV(internal::StringAccess::_GetBuffer(text),
                                       static_cast<size_t>(capacity), format, attempt);
    va_end(attempt);
    if (written >= 0) break;
    // Every failure is taken for truncation and retried with more room, until allocation fails.
    if (capacity > INT32_MAX - 1024) internal::StringAccess::_ReportOutOfMemory<Str>();
    capacity += 1024;
  }
  internal::StringAccess::_SetStringEnd(text, written);
  internal::StringAccess::_Reserve(text, written, ReserveExact | ReserveKeepText);
  Str& self = Self();
  self = std::move(text);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringLineMembers)

}  // namespace ic
