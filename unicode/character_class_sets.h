// Ready-made character classes for regular expression engines and XML name checks: the
// shorthand escapes of XML Schema patterns, their ECMAScript twins, and the XML productions Char,
// NameStartChar and NameChar.
//
// Each complement is made by copying the positive set and complementing it in 0 to 0x10FFFF, so
// complements hold the surrogates and the noncharacters too. XmlWord alone is the complement of
// its negative (rows P, Z and C). Every set keeps the invariants of sets built through Add.
#pragma once

#include <ic/platform/export.h>
#include <ic/unicode/code_point_range_set.h>

namespace ic {

/// Nineteen character classes, built once by the constructor and then only read; an instance can
/// be shared freely between threads once built. Members are read directly.
class IC_API CharacterClassSets {
 public:
  /// Builds all nineteen sets from UnicodeCategoryTable, which must be loaded (see
  /// LoadUnicodeTables); throws std::logic_error if it is not. If an allocation fails, the sets
  /// built so far are destroyed in the reverse order and std::bad_alloc goes on.
  CharacterClassSets();

  CodePointRangeSet NotLineEnd;        ///< the dot: all but line feed and carriage return
  CodePointRangeSet XmlSpace;          ///< \s of XML Schema: tab, line feed, carriage return, space
  CodePointRangeSet NotXmlSpace;       ///< \S of XML Schema
  CodePointRangeSet NameStartChar;     ///< \i: the XML 1.0 (fifth edition) NameStartChar
  CodePointRangeSet NotNameStartChar;  ///< \I
  CodePointRangeSet NameChar;          ///< \c: NameStartChar, '-', '.', 0-9, U+00B7 and more
  CodePointRangeSet NotNameChar;       ///< \C
  CodePointRangeSet UnicodeDigit;      ///< \d of XML Schema: the category Nd
  CodePointRangeSet NotUnicodeDigit;   ///< \D of XML Schema
  CodePointRangeSet XmlWord;           ///< \w of XML Schema: all but P, Z and C
  CodePointRangeSet NotXmlWord;        ///< \W of XML Schema: the categories P, Z and C
  CodePointRangeSet EcmaSpace;         ///< \s of ECMAScript: Zs and nine more
  CodePointRangeSet NotEcmaSpace;      ///< \S of ECMAScript
  CodePointRangeSet AsciiDigit;        ///< \d of ECMAScript: 0-9
  CodePointRangeSet NotAsciiDigit;     ///< \D of ECMAScript
  CodePointRangeSet EcmaWord;          ///< \w of ECMAScript: '_', 0-9, A-Z, a-z
  CodePointRangeSet NotEcmaWord;       ///< \W of ECMAScript
  CodePointRangeSet VisibleChar;       ///< the categories L, N, P, Z and S
  CodePointRangeSet XmlChar;           ///< the XML production Char
};

}  // namespace ic
