// The pseudo-locale: message texts made to look translated, so that a host shows at a glance
// which texts come from the catalogue, which were cut short and which bypass it.
#pragma once

#include <string>
#include <string_view>

namespace ic::rescomp {

// Opening and closing marker of a pseudo-locale text.
inline constexpr char16_t kPseudoOpen = u'\u27E6';   // ⟦
inline constexpr char16_t kPseudoClose = u'\u27E7';  // ⟧
// The unit that lengthens a pseudo-locale text.
inline constexpr char16_t kPseudoPad = u'~';

// The accented look-alike of an ASCII letter, or the unit itself for anything else.
char16_t PseudoLetter(char16_t unit);

// The pseudo-locale form of a decoded message text: kPseudoOpen, the text with every ASCII
// letter outside its {name} parameters replaced by its look-alike (parameters, escaped braces
// and all other characters as they are), ceil(30 % of the text's length in code points) pad
// units, and kPseudoClose. An empty text gives the two markers alone.
std::u16string PseudoLocalise(std::u16string_view text);

}  // namespace ic::rescomp
