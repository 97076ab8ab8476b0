// Messages named at compile time, and the substitution of their parameters by name.
//
// The build generates one header per catalogue, <ic/msg/CATALOGUE.h>, with a constant per key:
//
//   #include <ic/msg/xml.h>
//   using namespace ic::resources::literals;
//   const char16_t* text = ic::resources::FindMessageText(first, ic::msg::xml::wfc_GIMatch);
//   std::u16string shown = ic::resources::Substitute(ic::msg::xml::wfc_GIMatch, text,
//                                                    "etag"_param = u"b", "stag"_param = u"a");
//
// Each key carries its catalogue's name, its own and the names of its parameters as template
// arguments, so Substitute refuses to compile when a parameter is missing, misspelt or given
// twice. At run time the text is the module's: a parameter of the text that has no value
// (a text of another version of the catalogue) is left as it is written, "{name}".
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include <ic/resources/internal/message_scan.h>
#include <ic/resources/library.h>

namespace ic::resources {

/// An ASCII name fixed at compile time, usable as a template argument: a catalogue name, a key
/// or a parameter name. Holds the name in narrow and in wide units.
template <std::size_t N>
struct MessageName {
  char narrow[N]{};
  char16_t wide[N]{};

  /// From a string literal; a non-ASCII character does not compile.
  consteval MessageName(const char (&text)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
      if (static_cast<unsigned char>(text[i]) > 0x7F) throw "a message name is ASCII";
      narrow[i] = text[i];
      wide[i] = static_cast<char16_t>(text[i]);
    }
  }

  /// The name without its terminator.
  constexpr std::string_view View() const noexcept { return {narrow, N - 1}; }
  /// The name in UTF-16, without its terminator.
  constexpr std::u16string_view WideView() const noexcept { return {wide, N - 1}; }
};

/// What a key tells at run time: catalogue, key and parameter names (each once, in the order
/// of their first use in the catalogue source).
struct MessageKeyInfo {
  std::string_view catalogue;
  std::string_view key;
  std::span<const std::string_view> parameters;
};

/// The compile-time name of one message: catalogue, key and parameter names.
template <MessageName Catalogue, MessageName Key, MessageName... Parameters>
struct MessageKey {
  static constexpr std::string_view CatalogueName = Catalogue.View();
  static constexpr std::string_view KeyName = Key.View();
  static constexpr std::u16string_view WideCatalogueName = Catalogue.WideView();
  static constexpr std::u16string_view WideKeyName = Key.WideView();
  static constexpr std::array<std::string_view, sizeof...(Parameters)> ParameterNames{
      Parameters.View()...};
  static constexpr MessageKeyInfo Info{CatalogueName, KeyName, ParameterNames};
};

/// The value of one parameter, named at compile time. It views the text it was made from, so
/// make it in the call to Substitute, where that text lives long enough.
template <MessageName Name, class Unit>
struct NamedValue {
  std::basic_string_view<Unit> value;
};

/// A parameter name; `name = text` makes the named value of a substitution.
template <MessageName Name>
struct ParameterName {
  constexpr NamedValue<Name, char> operator=(std::string_view value) const noexcept {
    return {value};
  }
  constexpr NamedValue<Name, char16_t> operator=(std::u16string_view value) const noexcept {
    return {value};
  }
};

/// A parameter name as a variable: Param<"etag"> = u"b".
template <MessageName Name>
inline constexpr ParameterName<Name> Param{};

namespace literals {
/// A parameter name as a literal: "etag"_param = u"b".
template <MessageName Name>
consteval ParameterName<Name> operator""_param() noexcept {
  return {};
}
}  // namespace literals

namespace internal {

/// How often `Name` stands among `Names`.
template <MessageName Name, MessageName... Names>
consteval std::size_t CountName() noexcept {
  return ((Name.View() == Names.View() ? std::size_t{1} : std::size_t{0}) + ... + std::size_t{0});
}

// One check per name, so that the compiler's message names the parameter concerned.
template <MessageName Given, bool IsParameter>
struct NoSuchParameterInThisMessage {
  static_assert(IsParameter, "a value is given for a name that is no parameter of this message");
  static constexpr bool Ok = IsParameter;
};
template <MessageName Parameter, bool HasValue>
struct ParameterOfThisMessageHasNoValue {
  static_assert(HasValue, "a parameter of this message is given no value");
  static constexpr bool Ok = HasValue;
};
template <MessageName Given, bool Once>
struct ParameterGivenTwice {
  static_assert(Once, "a parameter is given more than one value");
  static constexpr bool Ok = Once;
};

/// True when `name` (units of a text) equals the ASCII `wanted`.
template <class Unit>
constexpr bool SameName(std::basic_string_view<Unit> name, std::string_view wanted) noexcept {
  if (name.size() != wanted.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] != static_cast<Unit>(wanted[i])) return false;
  }
  return true;
}

/// Replaces the parameters of `text` that have a value in `names`/`values` (parallel arrays)
/// and writes escaped braces as braces; a parameter without a value stays as it is written.
template <class Unit, std::size_t Count>
std::basic_string<Unit> SubstituteNamed(
    std::basic_string_view<Unit> text, const std::array<std::string_view, Count>& names,
    const std::array<std::basic_string_view<Unit>, Count>& values) {
  std::basic_string<Unit> out;
  out.reserve(text.size());
  ::ic::internal::ScanMessage(
      text, [&](::ic::internal::MessagePiece kind, std::basic_string_view<Unit> span) {
        if (kind == ::ic::internal::MessagePiece::EscapedBrace) {
          out += span[1];
          return;
        }
        if (kind == ::ic::internal::MessagePiece::Parameter) {
          const std::basic_string_view<Unit> name = ::ic::internal::ParameterName(span);
          for (std::size_t i = 0; i < Count; ++i) {
            if (SameName(name, names[i])) {
              out += values[i];
              return;
            }
          }
        }
        out += span;
      });
  return out;
}

template <class Unit, MessageName Catalogue, MessageName Key, MessageName... Parameters,
          MessageName... Given>
std::basic_string<Unit> Substitute(std::basic_string_view<Unit> text,
                                   const NamedValue<Given, Unit>&... values) {
  static_assert(
      (NoSuchParameterInThisMessage<Given, CountName<Given, Parameters...>() == 1>::Ok && ...));
  static_assert(
      (ParameterOfThisMessageHasNoValue<Parameters, CountName<Parameters, Given...>() != 0>::Ok &&
       ...));
  static_assert((ParameterGivenTwice<Given, CountName<Given, Given...>() == 1>::Ok && ...));
  return SubstituteNamed<Unit, sizeof...(Given)>(text, {Given.View()...}, {values.value...});
}

}  // namespace internal

/// The message `text` (UTF-16, as the module holds it) with each parameter replaced by the value
/// given for it and "\{", "\}" written as braces. Every parameter of `key` needs exactly one
/// value and every value a parameter of `key`, else the call does not compile. A null `text`
/// gives the empty string.
template <MessageName Catalogue, MessageName Key, MessageName... Parameters, MessageName... Given>
std::u16string Substitute(MessageKey<Catalogue, Key, Parameters...>, const char16_t* text,
                          const NamedValue<Given, char16_t>&... values) {
  return internal::Substitute<char16_t, Catalogue, Key, Parameters...>(
      text ? std::u16string_view(text) : std::u16string_view(), values...);
}

/// The same for a UTF-16 text given as a view.
template <MessageName Catalogue, MessageName Key, MessageName... Parameters, MessageName... Given>
std::u16string Substitute(MessageKey<Catalogue, Key, Parameters...>, std::u16string_view text,
                          const NamedValue<Given, char16_t>&... values) {
  return internal::Substitute<char16_t, Catalogue, Key, Parameters...>(text, values...);
}

/// The same for a UTF-8 text and UTF-8 values.
template <MessageName Catalogue, MessageName Key, MessageName... Parameters, MessageName... Given>
std::string Substitute(MessageKey<Catalogue, Key, Parameters...>, std::string_view text,
                       const NamedValue<Given, char>&... values) {
  return internal::Substitute<char, Catalogue, Key, Parameters...>(text, values...);
}

/// The text of `key` in the chain that starts at `first` (from GetFirstResourceStringLibrary):
/// the first record named as the key's catalogue, the first row with the key's name. Null if
/// either is absent or `first` is null. Walks the keys, builds no index and takes no lock.
template <MessageName Catalogue, MessageName Key, MessageName... Parameters>
const char16_t* FindMessageText(const ResourceStringLibrary* first,
                                MessageKey<Catalogue, Key, Parameters...>) {
  for (const ResourceStringLibrary* record = first; record; record = record->Next) {
    if (!record->Name || std::u16string_view(record->Name) != Catalogue.WideView()) continue;
    if (!record->GetKey || !record->GetText) return nullptr;
    for (int32_t row = 0; row < record->Count; ++row) {
      const char16_t* key = record->GetKey(record, row);
      if (key && std::u16string_view(key) == Key.WideView()) return record->GetText(record, row);
    }
    return nullptr;
  }
  return nullptr;
}

}  // namespace ic::resources
