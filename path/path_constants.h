// The character sets of the path operations, and the row of short text constants that the
// string family offers at class level (ICStringUnique::PathSeparators, ...), one row per width
// with equal contents.
#pragma once

namespace ic {

/// Short zero-terminated texts of one width. Each string type of the family inherits them, so
/// they read as ICStringUnique::Tab or ICStringUniqueW::PathSeparators.
template <class Unit>
struct ICStringTextConstants {
  /// Carriage return and line feed.
  static constexpr Unit CrLf[] = {Unit('\r'), Unit('\n'), Unit(0)};
  /// A lone carriage return.
  static constexpr Unit Cr[] = {Unit('\r'), Unit(0)};
  /// A lone line feed.
  static constexpr Unit Lf[] = {Unit('\n'), Unit(0)};
  /// A tab.
  static constexpr Unit Tab[] = {Unit('\t'), Unit(0)};
  /// The blanks: space, tab, carriage return, line feed.
  static constexpr Unit Blanks[] = {Unit(' '), Unit('\t'), Unit('\r'), Unit('\n'), Unit(0)};
  /// The blanks and the no-break space. The narrow row holds the single byte 0xA0 (not its UTF-8
  /// form), which as a set member matches the byte 0xA0 wherever a set is compared by unit.
  static constexpr Unit BlanksAndNoBreakSpace[] = {Unit(' '),  Unit('\t'), Unit('\r'),
                                                   Unit('\n'), Unit(0xA0), Unit(0)};
  /// The two path separators: slash, then backslash.
  static constexpr Unit PathSeparators[] = {Unit('/'), Unit('\\'), Unit(0)};
  /// Characters that no file name may hold: \ / : * ? " < > |
  static constexpr Unit InvalidFileNameChars[] = {Unit('\\'), Unit('/'), Unit(':'), Unit('*'),
                                                  Unit('?'),  Unit('"'), Unit('<'), Unit('>'),
                                                  Unit('|'),  Unit(0)};
  /// Characters that may not follow the last dot of an extension: space # % ; / backslash.
  static constexpr Unit ExtensionStopChars[] = {Unit(' '), Unit('#'),  Unit('%'), Unit(';'),
                                                Unit('/'), Unit('\\'), Unit(0)};
};

/// True for slash and backslash.
template <class Unit>
constexpr bool IsPathSeparator(Unit unit) noexcept {
  return unit == Unit('/') || unit == Unit('\\');
}

}  // namespace ic
