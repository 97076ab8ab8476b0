// Paths, file: URLs, percent escaping and XML escaping on narrow and wide text. The members
// that take a text pointer get a copy in a block of its exact size; the members that change a
// string get a string of their own. Checks: percent-encoding and then decoding gives the text
// back, and so does XML escaping and then unescaping well-formed UTF-8; an encoded text is
// ASCII.
#include <cstdint>
#include <string>

#include <ic/string/ic_string.h>

#include "fuzz_input.h"
#include "input_contract.h"
#include "utf_reference.h"

namespace {

using ic::fuzz::ExactText;

// A narrow set of characters (EqualIgnoringChars' `ignored`, EscapeXml's `alsoEscape`) is
// searched by FindCodePoint, which walks it by lead byte: the set may be used only when that
// walk stays inside it. Wide sets are searched by unit.
template <class Unit>
bool SetWalkStaysInside(const std::basic_string<Unit>& set) {
  if constexpr (sizeof(Unit) == 1)
    return !ic::fuzz::Utf8WalkStepsOverTerminator(set);
  else
    return true;
}

template <class S>
std::basic_string<typename S::UnitType> TextOf(const S& s) {
  return std::basic_string<typename S::UnitType>(s.GetText(), static_cast<size_t>(s.GetLength()));
}

// S: the string that edits; V: the view of the same width, which reads the exact copy itself.
template <class S, class V>
void Paths(const std::basic_string<typename S::UnitType>& text,
           const std::basic_string<typename S::UnitType>& other, int mode) {
  using Unit = typename S::UnitType;
  const ExactText<Unit> exact(text);
  const ExactText<Unit> exactOther(other);
  const V s(exact.Get());
  (void)s.WithTrailingSeparator();
  (void)s.FindLastSeparator(mode & 1);
  (void)s.GetDirectoryPart(mode & 2);
  (void)s.GetFileNamePart();
  (void)s.GetAncestorPath(mode & 1, mode % 4);
  (void)s.FindExtensionDot();
  (void)s.GetExtension(mode & 2);
  (void)s.GetWithoutExtension();
  (void)V::IsRelativePath(exact.Get(), mode & 4);
  (void)S::IsValidFileName(exact.Get());
  (void)S::PathsEqual(exact.Get(), exactOther.Get(), mode & 8);
  if (SetWalkStaysInside(other)) (void)s.EqualIgnoringChars(exactOther.Get(), exactOther.Get());
  (void)s.ResolveAgainst(exactOther.Get(), nullptr, mode & 1);
  (void)s.MakeRelativeTo(exactOther.Get());
  (void)S::PathToFileUrl(exact.Get());
  (void)S::FileUrlToPath(exact.Get());
  S edited(exact.Get());
  edited.Normalize(mode & 1, mode & 2);
  S other2(exact.Get());
  other2.NormalizeAbsolute();
  S compare(exact.Get());
  compare.ToPathCompareForm(mode & 4);
  S url(exact.Get());
  url.ToFileUrl().ToFilePath();
  S stripped(exact.Get());
  stripped.RemoveRootPrefix().RemoveExtension().AddTrailingSeparator().RemoveDirectoryPart();
}

template <class S>
void Escapes(const std::basic_string<typename S::UnitType>& text, int mode) {
  using Unit = typename S::UnitType;
  const ExactText<Unit> exact(text);
  S encoded(exact.Get());
  encoded.PercentEncode(mode % 4);
  for (Unit u : TextOf(encoded))
    IC_FUZZ_CHECK(static_cast<uint32_t>(u) < 0x80);
  S decoded(encoded);
  decoded.PercentDecode();
  S raw(exact.Get());
  raw.PercentDecode();
  if (SetWalkStaysInside(text))
    (void)S::EscapedXml(exact.Get(), mode & 1, mode & 2 ? exact.Get() : nullptr);
  S xml(exact.Get());
  xml.EscapeXml(mode & 1);
  S back(xml);
  back.UnescapeXml();
  S unescaped(exact.Get());
  unescaped.UnescapeXml(mode & 1, mode & 2);
  if constexpr (sizeof(Unit) == 1) {
    IC_FUZZ_CHECK(TextOf(decoded) == text);
    if (ic::fuzz::DecodeWellFormedUtf8(text)) IC_FUZZ_CHECK(TextOf(back) == text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  const int mode = input.Byte();
  const bool wide = input.Bool();
  std::string other = input.Text(64);
  std::string text = input.Rest();
  // The members read zero-terminated text: the texts end at their first zero.
  other = other.substr(0, other.find('\0'));
  text = text.substr(0, text.find('\0'));
  if (!wide) {
    Paths<ic::ICStringUnique, ic::ICStringView>(text, other, mode);
    Escapes<ic::ICStringUnique>(text, mode);
  } else {
    std::u16string t = ic::fuzz::FuzzInput::Units(text);
    std::u16string o = ic::fuzz::FuzzInput::Units(other);
    t = t.substr(0, t.find(u'\0'));
    o = o.substr(0, o.find(u'\0'));
    Paths<ic::ICStringUniqueW, ic::ICStringViewW>(t, o, mode);
    Escapes<ic::ICStringUniqueW>(t, mode);
  }
  return 0;
}
