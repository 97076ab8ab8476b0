// Compiled by message_key_check.cmake once per case: the right spelling must compile, and each
// wrong use of a key's parameters must be refused by the compiler.
#include <string>

#include <ic/msg/msg.h>
#include <ic/msg/xml.h>

using namespace ic::resources::literals;

std::u16string Shown(const char16_t* text) {
#if defined(IC_CASE_RIGHT)
  return ic::resources::Substitute(ic::msg::xml::wfc_GIMatch, text, "etag"_param = u"b",
                                   "stag"_param = u"a");
#elif defined(IC_CASE_MISSPELT)
  return ic::resources::Substitute(ic::msg::xml::wfc_GIMatch, text, "etag"_param = u"b",
                                   "stga"_param = u"a");
#elif defined(IC_CASE_MISSING)
  return ic::resources::Substitute(ic::msg::xml::wfc_GIMatch, text, "etag"_param = u"b");
#elif defined(IC_CASE_TWICE)
  return ic::resources::Substitute(ic::msg::xml::wfc_GIMatch, text, "etag"_param = u"b",
                                   "stag"_param = u"a", "etag"_param = u"c");
#elif defined(IC_CASE_NO_PARAMETERS)
  return ic::resources::Substitute(ic::msg::msg::Error, text, "etag"_param = u"b");
#else
#error "no case chosen"
#endif
}
