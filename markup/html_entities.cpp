#include <ic/markup/html_entities.h>

#include <cstddef>
#include <iterator>

namespace ic {
namespace {

// The names in value order; X(value, name).
#define IC_HTML_ENTITIES(X)                                                                        \
  X(0x22, "quot")                                                                                  \
  X(0x26, "amp")                                                                                   \
  X(0x3C, "lt")                                                                                    \
  X(0x3E, "gt") X(0xC0, "Agrave") X(0xC1, "Aacute") X(0xC2, "Acirc") X(0xC3, "Atilde")             \
      X(0xC4, "Auml") X(0xC5, "Aring") X(0xC6, "AElig") X(0xC7, "Ccedil") X(0xC8, "Egrave") X(     \
          0xC9, "Eacute") X(0xCA, "Ecirc") X(0xCB, "Euml") X(0xCC, "Igrave") X(0xCD, "Iacute")     \
          X(0xCE, "Icirc") X(0xCF, "Iuml") X(0xD0, "ETH") X(0xD1, "Ntilde") X(0xD2, "Ograve") X(   \
              0xD3, "Oacute") X(0xD4, "Ocirc") X(0xD5, "Otilde") X(0xD6, "Ouml") X(0xD8, "Oslash") \
              X(0xD9, "Ugrave") X(0xDA, "Uacute") X(0xDB, "Ucirc") X(0xDC, "Uuml")                 \
                  X(0xDD, "Yacute") X(0xDE, "THORN") X(0xDF, "szlig") X(0xE0, "agrave")            \
                      X(0xE1, "aacute") X(0xE2, "acirc") X(0xE3, "atilde") X(0xE4, "auml")         \
                          X(0xE5, "aring") X(0xE6, "aelig") X(0xE7, "ccedil") X(0xE8, "egrave")    \
                              X(0xE9, "eacute") X(0xEA, "ecirc") X(0xEB, "euml") X(0xEC, "igrave") \
                                  X(0xED, "iacute") X(0xEE, "icirc") X(0xEF, "iuml")               \
                                      X(0xF0, "eth") X(0xF1, "ntilde") X(0xF2, "ograve")           \
                                          X(0xF3, "oacute") X(0xF4, "ocirc") X(0xF5, "otilde")     \
                                              X(0xF6, "ouml") X(0xF8, "oslash") X(0xF9, "ugrave")  \
                                                  X(0xFA, "uacute") X(0xFB, "ucirc")               \
                                                      X(0xFC, "uuml") X(0xFD, "yacute")            \
                                                          X(0xFE, "thorn") X(0xFF, "yuml")

template <class Unit>
struct EntityRow {
  int value;
  const Unit* name;
};

#define IC_NARROW_ROW(value, name) {value, name},
#define IC_WIDE_ROW(value, name) {value, u"" name},
constexpr EntityRow<char> kNarrowRows[] = {IC_HTML_ENTITIES(IC_NARROW_ROW)};
constexpr EntityRow<char16_t> kWideRows[] = {IC_HTML_ENTITIES(IC_WIDE_ROW)};
#undef IC_NARROW_ROW
#undef IC_WIDE_ROW
#undef IC_HTML_ENTITIES

static_assert(std::size(kNarrowRows) == 66 && std::size(kWideRows) == 66);

template <class Unit, size_t N>
constexpr std::array<const Unit*, 256> MakeTable(const EntityRow<Unit> (&rows)[N]) {
  std::array<const Unit*, 256> table{};
  for (const EntityRow<Unit>& row : rows)
    table[static_cast<size_t>(row.value)] = row.name;
  return table;
}

}  // namespace

const std::array<const char*, 256> HtmlEntityTable = MakeTable(kNarrowRows);
const std::array<const char16_t*, 256> HtmlEntityTableW = MakeTable(kWideRows);

}  // namespace ic
