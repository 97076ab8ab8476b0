// Members of every string that compare and search: Find and its relatives, StartsWith, Equals, ...
// Mixed into BasicICString.
//
// Positions and results: in narrow strings a position counts code points, or code units when
// `lengthInUnits` is true, and a result is counted the same way; wide strings always count
// units. EndOfText (range.h) means the end of the text and is never converted. Not found is -1 for
// an index and null for a pointer. A null or empty needle or set never matches.
//
// Plain searches go straight to the run-time's byte search (narrow) or to the linear unit search
// of wide_search.h; text is decoded only for code points of 128 and above, for sets and for
// case-insensitive matching. Case-insensitive searching maps both sides to upper case
// (SearchNeedle); StartsWith, EndsWith and the comparisons map to lower case, so the two can
// disagree on a code point whose upper and lower forms do not pair up. Wide text is mapped by the
// platform's wide run-time: on Windows the C run-time's, ASCII letters only in its default locale
// (platform/wide_runtime.h).
//
// The mixin is specialised on BasicICString<Unit, Storage>, so that width and shape are known
// from the template arguments alone; the members are defined once in search_members.cpp and
// instantiated there for the six strings.
#pragma once

#include <cstdint>
#include <type_traits>

#include <ic/platform/export.h>
#include <ic/string/family_fwd.h>
#include <ic/string/range.h>
#include <ic/string/string_mixin.h>

namespace ic {

template <class Str>
class ICStringSearchMembers;

template <class Unit, class Storage>
class ICStringSearchMembers<BasicICString<Unit, Storage>>
    : public StringMixin<ICStringSearchMembers, Unit, Storage> {
  IC_STRING_MIXIN_NAMES(ICStringSearchMembers);

 public:
  /// A single character to search for: a code point in narrow strings, a unit in wide ones.
  using CodeType = std::conditional_t<IsWide, char16_t, char32_t>;
  /// The position that stands for the end of the text.
  static constexpr int32_t EndOfText = ::ic::EndOfText;
  /// The break set of FindWord when none is given: space , . ; : ! ? CR LF " < > ( ) [ ]
  static constexpr const Unit* DefaultWordBreaks() noexcept {
    if constexpr (IsWide)
      return u" ,.;:!?\r\n\"<>()[]";
    else
      return " ,.;:!?\r\n\"<>()[]";
  }

  /// @name First occurrence
  /// Index (or pointer) of the first occurrence that begins at or behind `position`. A negative
  /// position searches from the start; a position equal to the length searches the empty end,
  /// where only code point 0 is found (the terminator, whose index is the length). An ICString
  /// needle converts to its text pointer.
  /// @{
  int32_t Find(const Unit* needle, int32_t position = 0, bool lengthInUnits = false) const noexcept;
  int32_t Find(CodeType code, int32_t position = 0, bool lengthInUnits = false) const noexcept;
  const Unit* FindPointer(const Unit* needle, int32_t position = 0,
                          bool lengthInUnits = false) const noexcept;
  const Unit* FindPointer(CodeType code, int32_t position = 0,
                          bool lengthInUnits = false) const noexcept;
  int32_t IndexOf(const Unit* needle, int32_t position = 0,
                  bool lengthInUnits = false) const noexcept;
  int32_t IndexOf(CodeType code, int32_t position = 0, bool lengthInUnits = false) const noexcept;
  const Unit* IndexOfPointer(const Unit* needle, int32_t position = 0,
                             bool lengthInUnits = false) const noexcept;
  const Unit* IndexOfPointer(CodeType code, int32_t position = 0,
                             bool lengthInUnits = false) const noexcept;
  /// Case-insensitive: both sides mapped to upper case (narrow by the case table, wide by the
  /// run-time's towupper), stepping through the text by whole code points (units when wide).
  int32_t FindNoCase(const Unit* needle, int32_t position = 0,
                     bool lengthInUnits = false) const noexcept;
  const Unit* FindNoCasePointer(const Unit* needle, int32_t position = 0,
                                bool lengthInUnits = false) const noexcept;
  /// @}

  /// @name Last occurrence
  /// The last occurrence that ends at or before `position` (an exclusive end; 0 or below finds
  /// nothing). A needle longer in units than the text, or than `position` as given, is not
  /// found, even where `position` counts code points.
  /// @{
  int32_t FindLast(const Unit* needle, int32_t position = EndOfText,
                   bool lengthInUnits = false) const noexcept;
  int32_t FindLast(CodeType code, int32_t position = EndOfText,
                   bool lengthInUnits = false) const noexcept;
  const Unit* FindLastPointer(const Unit* needle, int32_t position = EndOfText,
                              bool lengthInUnits = false) const noexcept;
  const Unit* FindLastPointer(CodeType code, int32_t position = EndOfText,
                              bool lengthInUnits = false) const noexcept;
  int32_t LastIndexOf(const Unit* needle, int32_t position = EndOfText,
                      bool lengthInUnits = false) const noexcept;
  int32_t LastIndexOf(CodeType code, int32_t position = EndOfText,
                      bool lengthInUnits = false) const noexcept;
  const Unit* LastIndexOfPointer(const Unit* needle, int32_t position = EndOfText,
                                 bool lengthInUnits = false) const noexcept;
  const Unit* LastIndexOfPointer(CodeType code, int32_t position = EndOfText,
                                 bool lengthInUnits = false) const noexcept;
  /// @}

  /// @name Sets
  /// The first code point at or behind `position`, or the last one before `position`, that is
  /// (Of) or is not (NotOf) in the zero-terminated `set`.
  /// @{
  int32_t FindFirstOf(const Unit* set, int32_t position = 0,
                      bool lengthInUnits = false) const noexcept;
  int32_t FindFirstNotOf(const Unit* set, int32_t position = 0,
                         bool lengthInUnits = false) const noexcept;
  int32_t FindLastOf(const Unit* set, int32_t position = EndOfText,
                     bool lengthInUnits = false) const noexcept;
  int32_t FindLastNotOf(const Unit* set, int32_t position = EndOfText,
                        bool lengthInUnits = false) const noexcept;
  const Unit* FindFirstOfPointer(const Unit* set, int32_t position = 0,
                                 bool lengthInUnits = false) const noexcept;
  const Unit* FindFirstNotOfPointer(const Unit* set, int32_t position = 0,
                                    bool lengthInUnits = false) const noexcept;
  const Unit* FindLastOfPointer(const Unit* set, int32_t position = EndOfText,
                                bool lengthInUnits = false) const noexcept;
  const Unit* FindLastNotOfPointer(const Unit* set, int32_t position = EndOfText,
                                   bool lengthInUnits = false) const noexcept;
  /// @}

  /// @name Words and nesting
  /// @{

  /// The first (or with `reverse`, the last) occurrence of `needle` whose neighbours are the
  /// ends of the text or code points in `breakSet`. The result is always in code units, also
  /// when `position` counts code points.
  int32_t FindWord(const Unit* needle, const Unit* breakSet, int32_t position = 0,
                   bool lengthInUnits = false, bool reverse = false) const noexcept;
  /// The same with DefaultWordBreaks().
  int32_t FindWord(const Unit* needle, int32_t position = 0, bool lengthInUnits = false,
                   bool reverse = false) const noexcept;

  /// The index of the delimiter that closes a nesting, starting at `depth` (0: an opening
  /// delimiter is looked for first; 1: one has been passed). With `flat`, nesting does not
  /// deepen beyond 1. When `open` and `close` are the same, they toggle between depth 0 and 1.
  int32_t FindBalanced(const Unit* open, const Unit* close, bool flat = false, int32_t position = 0,
                       bool lengthInUnits = false, int32_t depth = 0) const;
  /// The same with single characters, and an escape character (0 for none) that makes the
  /// character behind it plain text.
  int32_t FindBalanced(CodeType open, CodeType close, CodeType escape, bool flat = false,
                       int32_t position = 0, bool lengthInUnits = false, int32_t depth = 0) const;
  /// Single characters without an escape character, from the start at depth 0, with nesting.
  int32_t FindBalanced(CodeType open, CodeType close) const {
    return FindBalanced(open, close, CodeType(0));
  }
  /// @}

  /// @name The text around an occurrence
  /// Fallback (may be null) is the answer when the needle does not occur in the whole text.
  /// The string forms return the receiver's shape: unique and shared strings copy; a view
  /// returns a view of its own tail, or of the fallback, without copying. BeforeFirst and
  /// BeforeLast copy the text ahead of the occurrence. A null fallback gives the empty string.
  /// Noexcept by contract: a failed allocation ends the process.
  /// @{
  const Unit* AfterFirstPointer(const Unit* needle, const Unit* fallback) const noexcept;
  const Unit* AfterFirstPointer(CodeType code, const Unit* fallback) const noexcept;
  const Unit* AfterLastPointer(const Unit* needle, const Unit* fallback) const noexcept;
  const Unit* AfterLastPointer(CodeType code, const Unit* fallback) const noexcept;
  Str AfterFirst(const Unit* needle, const Unit* fallback = nullptr) const noexcept;
  Str AfterFirst(CodeType code, const Unit* fallback = nullptr) const noexcept;
  Str AfterLast(const Unit* needle, const Unit* fallback = nullptr) const noexcept;
  Str AfterLast(CodeType code, const Unit* fallback = nullptr) const noexcept;
  Str BeforeFirst(const Unit* needle, const Unit* fallback = nullptr) const noexcept;
  Str BeforeFirst(CodeType code, const Unit* fallback = nullptr) const noexcept;
  Str BeforeLast(const Unit* needle, const Unit* fallback = nullptr) const noexcept;
  Str BeforeLast(CodeType code, const Unit* fallback = nullptr) const noexcept;
  /// @}

  /// @name Comparing
  /// @{

  /// With `exact`, the same units as `other` (null counts as empty); without, equal regardless
  /// of case (narrow: CompareNoCase; wide: the run-time's _wcsicmp).
  bool Equals(const Unit* other, bool exact = true) const noexcept;
  /// The text begins with `prefix` (an empty or null prefix gives false).
  bool StartsWith(const Unit* prefix, bool ignoreCase = false) const noexcept;
  /// The text at `position` begins with `prefix`; a negative position or one beyond the length
  /// gives false.
  bool StartsWithAt(const Unit* prefix, int32_t position, bool lengthInUnits = false,
                    bool ignoreCase = false) const noexcept;
  /// StartsWith with ignoreCase set (wide strings).
  bool StartsWithNoCase(const Unit* prefix) const noexcept requires(IsWide);
  /// The text ends with `suffix` (null counts as empty). An empty suffix, or a text shorter in
  /// units than the suffix, gives false.
  bool EndsWith(const Unit* suffix) const noexcept;
  /// The last code point (unit, when wide) is `code`.
  bool EndsWith(CodeType code) const noexcept;
  /// EndsWith regardless of case: narrow code points by ToLowerCodePoint, wide units by towlower.
  bool EndsWithNoCase(const Unit* suffix) const noexcept;
  /// @}
};

IC_EXTERN_STRING_MIXIN(ICStringSearchMembers)

}  // namespace ic
