#include <ic/string/utf_members.h>

#include <cstring>
#include <memory>
#include <stdexcept>

#include <ic/platform/code_page.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf_convert.h>

namespace ic {
namespace {

[[noreturn]] void ThrowConversionFailed() {
  // The message text is part of the string core's contract: hosts match it as it stands.
  throw std::runtime_error("ICString::ConvertFromUTF8String failed!");
}

int Utf8ToUtf16(const char* text, int32_t length, char16_t* out, int32_t outSize) noexcept {
  return platform::MultiByteToWideChar(platform::CodePageUTF8, 0, text, length, out, outSize);
}

}  // namespace

template <class Unit, class Storage>
auto ICStringUtfMembers<BasicICString<Unit, Storage>>::ConvertFromUTF8String(const char* text,
                                                                             int32_t length)
    -> Str& {
  auto& self = Self();
  if constexpr (!IsWide) {
    // A narrow string holds UTF-8 already: a plain assignment.
    if (text == nullptr || length == 0) {
      internal::StringAccess::_Clear(self);
    } else if (length < 0) {
      if constexpr (Str::IsView)
        self = text;  // a view of the text
      else
        internal::StringAccess::_AssignText(self, text, internal::MeasureText(text));
    } else {
      internal::StringAccess::_PrepareReplace(self, length);
      if (internal::StringAccess::_GetBuffer(self) != text)
        CopyUnits(internal::StringAccess::_GetBuffer(self), text, static_cast<size_t>(length));
      internal::StringAccess::_SetStringEnd(self, length);
    }
    return self;
  } else {
    if (text == nullptr || length == 0 || (length < 0 && *text == 0)) {
      internal::StringAccess::_Clear(self);
      return self;
    }
    if (length < 0) length = internal::MeasureText(text);
    if constexpr (Str::IsView) internal::StringAccess::_MakeOwned(self);

    // A block of this string's own that may well hold the result gets it directly, with its
    // capacity as the limit: when that succeeds, the text is what measuring, making room (which
    // keeps a block that is large enough) and converting would have given, in one pass. Every
    // UTF-8 byte gives at most one unit and three bytes give at least one, so a capacity below a
    // third of the length cannot hold it and is not tried.
    if (!internal::StringAccess::_IsEmptyData(self) &&
        (!Str::IsShared || internal::StringAccess::_GetShareWord(self) == 0)) {
      const int32_t capacity = self.GetCapacity();
      if (int64_t{capacity} * 3 >= length) {
        const int written =
            Utf8ToUtf16(text, length, internal::StringAccess::_GetBuffer(self), capacity);
        if (written > 0) {
          internal::StringAccess::_SetStringEnd(self, written);
          return self;
        }
      }
    }

    const int needed = Utf8ToUtf16(text, length, nullptr, 0);
    if (needed == 0) ThrowConversionFailed();
    internal::StringAccess::_PrepareReplace(self, needed);
    if (Utf8ToUtf16(text, length, internal::StringAccess::_GetBuffer(self),
                    self.GetCapacity() + 1) == 0)
      ThrowConversionFailed();
    internal::StringAccess::_SetStringEnd(self, needed);
    return self;
  }
}

template <class Unit, class Storage>
auto ICStringUtfMembers<BasicICString<Unit, Storage>>::ConvertFromUTF8String(ICStringRange range)
    -> Str& {
  return ConvertFromUTF8String(range.Text, range.Length);
}

template <class Unit, class Storage>
auto ICStringUtfMembers<BasicICString<Unit, Storage>>::ConvertFromUTF8String(
    const NarrowUnique& text) -> Str& {
  return ConvertFromUTF8String(text.GetText(), text.GetLength());
}

template <class Unit, class Storage>
auto ICStringUtfMembers<BasicICString<Unit, Storage>>::ConvertToUTF8() const -> NarrowUnique
    requires(IsWide) {
  return ic::ConvertToUTF8(Self().GetText());
}

template <class Unit, class Storage>
auto ICStringUtfMembers<BasicICString<Unit, Storage>>::ConvertToUTF8Units()
    -> Str& requires(IsWide) {
  auto& self = Self();
  const char16_t* const text = self.GetText();
  const int size = platform::WideCharToMultiByte(platform::CodePageUTF8, 0, text, -1, nullptr, 0);
  if (size <= 0) return self;
  const std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(size)]);
  if (platform::WideCharToMultiByte(platform::CodePageUTF8, 0, text, -1, bytes.get(), size) != size)
    return self;
  internal::StringAccess::_PrepareReplace(self, size);
  char16_t* const out = internal::StringAccess::_GetBuffer(self);
  int32_t count = 0;
  for (; bytes[count] != 0; ++count)
    out[count] = static_cast<unsigned char>(bytes[count]);
  internal::StringAccess::_SetStringEnd(self, count);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringUtfMembers)

}  // namespace ic
