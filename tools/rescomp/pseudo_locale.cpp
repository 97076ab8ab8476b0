#include "pseudo_locale.h"

#include <ic/resources/internal/message_scan.h>

namespace ic::rescomp {

namespace {

// Look-alikes of 'a' to 'z' and of 'A' to 'Z', all in the Basic Multilingual Plane.
constexpr char16_t kLower[26] = {u'à', u'ƀ', u'ç', u'ð', u'é', u'ƒ', u'ĝ', u'ĥ', u'î',
                                 u'ĵ', u'ķ', u'ļ', u'ɱ', u'ñ', u'ö', u'þ', u'ǫ', u'ŕ',
                                 u'š', u'ţ', u'û', u'ṽ', u'ŵ', u'ẋ', u'ý', u'ž'};
constexpr char16_t kUpper[26] = {u'Å', u'Ɓ', u'Ç', u'Ð', u'É', u'Ƒ', u'Ĝ', u'Ĥ', u'Î',
                                 u'Ĵ', u'Ķ', u'Ļ', u'Ṁ', u'Ñ', u'Ö', u'Þ', u'Ǫ', u'Ŕ',
                                 u'Š', u'Ţ', u'Û', u'Ṽ', u'Ŵ', u'Ẋ', u'Ý', u'Ž'};

bool IsLowSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

char16_t PseudoLetter(char16_t unit) {
  if (unit >= u'a' && unit <= u'z') return kLower[unit - u'a'];
  if (unit >= u'A' && unit <= u'Z') return kUpper[unit - u'A'];
  return unit;
}

std::u16string PseudoLocalise(std::u16string_view text) {
  std::size_t codePoints = 0;
  for (char16_t unit : text) {
    if (!IsLowSurrogate(unit)) ++codePoints;  // a pair counts once, at its high half
  }
  const std::size_t pad = (codePoints * 3 + 9) / 10;
  std::u16string out;
  out.reserve(text.size() + pad + 2);
  out += kPseudoOpen;
  ic::internal::ScanMessage(text,
                            [&out](ic::internal::MessagePiece kind, std::u16string_view span) {
                              if (kind != ic::internal::MessagePiece::Text) {
                                out += span;
                                return;
                              }
                              for (char16_t unit : span)
                                out += PseudoLetter(unit);
                            });
  out.append(pad, kPseudoPad);
  out += kPseudoClose;
  return out;
}

}  // namespace ic::rescomp
