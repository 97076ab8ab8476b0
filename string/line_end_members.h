// Members of every string that normalise line ends and read them. Mixed into BasicICString.
//
// Positions and counts are code units, or for a narrow string with lengthInUnits false
// characters (code points), turned into units with GetUTF8Offset; EndOfText is taken as it
// stands, and wide strings ignore the flag (string/internal/positions.h tells which members
// default to which). Out-of-range arguments are no errors: each member says what it does with
// them, which is mostly nothing.
//
// Every write scans first and prepares the block only when something changes: a shared block
// that others hold is detached, a view becomes owning, through the string's write steps
// (_PrepareGrow, _PrepareReplace, _Clear).
// NormalizeLineEnds builds the new text in a temporary and does not let exceptions escape.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

/// The fixed line ends of NormalizeLineEnds.
enum class ICLineEnd {
  CarriageReturn,          ///< "\r"
  CarriageReturnLineFeed,  ///< "\r\n"
  LineFeed,                ///< "\n"
};

template <class Str>
class ICStringLineEndMembers;

template <class Unit, class Storage>
class ICStringLineEndMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringLineEndMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringLineEndMembers);

 public:
  /// @name Line ends
  /// @{

  /// Replaces the text by `source` (null stands for "") with each carriage return, line feed or
  /// pair of the two turned into `lineEnd` (a line feed followed by a carriage return is two
  /// ends). A line end of one unit must be a carriage return or a line feed; one of two units
  /// must start with a carriage return or end with a line feed; any other line end does nothing.
  /// The source may be the string's own text. The new text is built in a temporary; noexcept by
  /// contract: a failed allocation ends the process.
  Str& NormalizeLineEnds(const Unit* source, const Unit* lineEnd) noexcept;
  /// The same with the string itself as the source.
  Str& NormalizeLineEnds(const Unit* lineEnd) noexcept;
  /// The same with a fixed line end.
  Str& NormalizeLineEnds(const Unit* source, ICLineEnd lineEnd) noexcept;
  Str& NormalizeLineEnds(ICLineEnd lineEnd) noexcept;

  /// True if the unit at `position` is a carriage return or a line feed.
  bool IsLineEndAt(int32_t position, bool lengthInUnits = true) const noexcept;
  /// @}
};

IC_EXTERN_STRING_MIXIN(ICStringLineEndMembers)

}  // namespace ic
