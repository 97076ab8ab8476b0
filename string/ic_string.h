// The ICString family: UTF-8 (char) and UTF-16 (char16_t) strings in three shapes.
//
//   ICStringUnique / ICStringUniqueW   one owner, deep copy
//   ICStringShared / ICStringSharedW   reference-counted block, copy on write
//   ICStringView   / ICStringViewW     may view foreign zero-terminated text; copies on write
//   ICStringInline<N> / ICStringInlineW<N> (inline.h): a unique string with a buffer inside
//
// All shapes share one block layout (header.h) and offer the same members, which are written
// once in BasicICString over the shape's storage class; a shape differs only in how it owns its
// block and in the first step of a write (_PrepareGrow, _PrepareReplace, _Clear).
//
// Members of later concerns (UTF conversion, numbers, editing, search, ...) live in mixins of
// their own headers, each a template over the complete string type derived from StringMixin, so
// that every member is written once for all six instantiations and each concern stays in its own
// files. string_mixin.h shows how to add a concern's members. The dependency runs one way: this
// header assembles the mixins; a mixin header includes the forward declarations (family_fwd.h)
// and what its declarations need, never this header.
#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

#include <ic/markup/html_members.h>
#include <ic/markup/quoted_printable_members.h>
#include <ic/markup/xml_members.h>
#include <ic/number/double_members.h>
#include <ic/number/number_members.h>
#include <ic/number/numbering_members.h>
#include <ic/path/file_url_members.h>
#include <ic/path/path_members.h>
#include <ic/path/percent_members.h>
#include <ic/path/relative_members.h>
#include <ic/path/resolve_members.h>
#include <ic/platform/clipboard_members.h>
#include <ic/platform/export.h>
#include <ic/platform/system_text_members.h>
#include <ic/regex/regex_members.h>
#include <ic/string/append_members.h>
#include <ic/string/assign_members.h>
#include <ic/string/cut_members.h>
#include <ic/string/line_end_members.h>
#include <ic/string/range.h>
#include <ic/string/replace_members.h>
#include <ic/string/shared_storage.h>
#include <ic/string/unique_storage.h>
#include <ic/string/utf_members.h>
#include <ic/string/view_storage.h>
#include <ic/text/case_members.h>
#include <ic/text/filter_members.h>
#include <ic/text/line_members.h>
#include <ic/text/qualified_name_members.h>
#include <ic/text/search_members.h>
#include <ic/text/token_members.h>
#include <ic/text/trim_members.h>

namespace ic {

template <class Unit, class Storage>
class BasicICString;
template <class Unit>
class ICStringChainT;

template <class Unit>
using ICStringUniqueT = BasicICString<Unit, ICStringUniqueStorage<Unit>>;
template <class Unit>
using ICStringSharedT = BasicICString<Unit, ICStringSharedStorage<Unit>>;
template <class Unit>
using ICStringViewT = BasicICString<Unit, ICStringViewStorage<Unit>>;

using ICStringUnique = ICStringUniqueT<char>;
using ICStringUniqueW = ICStringUniqueT<char16_t>;
using ICStringShared = ICStringSharedT<char>;
using ICStringSharedW = ICStringSharedT<char16_t>;
using ICStringView = ICStringViewT<char>;
using ICStringViewW = ICStringViewT<char16_t>;

template <class Unit, class Storage>
class BasicICString : public Storage,
                      public ICStringUtfMembers<BasicICString<Unit, Storage>>,
                      public ICStringNumberMembers<BasicICString<Unit, Storage>>,
                      public ICStringAssignMembers<BasicICString<Unit, Storage>>,
                      public ICStringAppendMembers<BasicICString<Unit, Storage>>,
                      public ICStringCutMembers<BasicICString<Unit, Storage>>,
                      public ICStringReplaceMembers<BasicICString<Unit, Storage>>,
                      public ICStringLineEndMembers<BasicICString<Unit, Storage>>,
                      public ICStringSearchMembers<BasicICString<Unit, Storage>>,
                      public ICStringCaseMembers<BasicICString<Unit, Storage>>,
                      public ICStringRegexMembers<BasicICString<Unit, Storage>>,
                      public ICStringPathMembers<BasicICString<Unit, Storage>>,
                      public ICStringPercentMembers<BasicICString<Unit, Storage>>,
                      public ICStringResolveMembers<BasicICString<Unit, Storage>>,
                      public ICStringFileUrlMembers<BasicICString<Unit, Storage>>,
                      public ICStringRelativeMembers<BasicICString<Unit, Storage>>,
                      public ICStringXmlMembers<BasicICString<Unit, Storage>>,
                      public ICStringHtmlMembers<BasicICString<Unit, Storage>>,
                      public ICStringQuotedPrintableMembers<BasicICString<Unit, Storage>>,
                      public ICStringDoubleMembers<BasicICString<Unit, Storage>>,
                      public ICStringNumberingMembers<BasicICString<Unit, Storage>>,
                      public ICStringTrimMembers<BasicICString<Unit, Storage>>,
                      public ICStringTokenMembers<BasicICString<Unit, Storage>>,
                      public ICStringFilterMembers<BasicICString<Unit, Storage>>,
                      public ICStringLineMembers<BasicICString<Unit, Storage>>,
                      public ICStringQualifiedNameMembers<BasicICString<Unit, Storage>>,
                      public ICStringClipboardMembers<BasicICString<Unit, Storage>>,
                      public ICStringSystemTextMembers<BasicICString<Unit, Storage>> {
 public:
  using UnitType = Unit;
  using StorageType = Storage;
  static constexpr bool IsUnique = std::is_same_v<Storage, ICStringUniqueStorage<Unit>>;
  static constexpr bool IsShared = std::is_same_v<Storage, ICStringSharedStorage<Unit>>;
  static constexpr bool IsView = std::is_same_v<Storage, ICStringViewStorage<Unit>>;

  /// @name Construction
  /// @{

  /// The empty string: the empty data of its width, no allocation.
  BasicICString() noexcept = default;

  /// Copy: unique deep-copies (an empty source gives the empty data); shared adds an owner
  /// (the 65537th owner gets a block of its own); a view copies an owning view deeply and
  /// shares the foreign text of a non-owning one (a tiny view gets its own TinyText).
  BasicICString(const BasicICString& other);

  /// Move: the block changes hands and the source takes the empty data. A unique source with
  /// a buffer of its own (ICStringInline) is copied instead and keeps its text; an owning view
  /// hands its block over and is left viewing the same text without owning it.
  BasicICString(BasicICString&& other) noexcept(!IsUnique);

  /// Copy from another shape: a deep copy (a view gets a block of its own).
  template <class OtherStorage>
  BasicICString(const BasicICString<Unit, OtherStorage>& other) {
    this->_CopyFrom(other.GetText(), other.GetLength());
  }

  /// Move from another shape: the source's block is taken when nothing else can reach it
  /// (unique from an unshared shared block; shared from a unique block without a buffer of its
  /// own; a view from any unique heap block); otherwise the text is copied.
  template <class OtherStorage>
  BasicICString(BasicICString<Unit, OtherStorage>&& other) {
    if (!_TakeBlock(other)) this->_CopyFrom(other.GetText(), other.GetLength());
  }

  /// From a zero-terminated text: unique and shared copy it (null or "" gives the empty
  /// data); a view views it without copying (null gives the owning empty data).
  BasicICString(const Unit* text);

  /// From `length` units of `text` (or characters, for a narrow string with lengthInUnits
  /// false; EndOfText is taken as it stands). Null text or a length below 1 gives the empty
  /// data. The text is copied as it stands, even across zero units. A view copies too.
  BasicICString(const Unit* text, int32_t length, bool lengthInUnits = true);

  /// From the units between `begin` and `end`: a block of exactly end - begin units. A null
  /// pointer, or an end that is not above begin, gives the empty data.
  BasicICString(const Unit* begin, const Unit* end);

  /// From a range: a negative length means up to the terminator (a view then views the text).
  explicit BasicICString(ICStringRangeT<Unit> range);

  /// From one 8-bit character. Narrow: below 0x80 a block of capacity 1 (zero gives an empty
  /// text in that block, not the empty data); 0x80 and above is a Latin-1 code point stored as
  /// two UTF-8 bytes in a block of capacity 2. Wide: the value AND 255 as one unit. A view holds
  /// the character in its TinyText without allocating.
  explicit BasicICString(char ch);

  /// From one 16-bit unit (wide strings): a block of capacity 1; a view uses TinyText.
  explicit BasicICString(char16_t unit) requires(std::is_same_v<Unit, char16_t>);

  /// From a code point (narrow strings): a block of exactly its UTF-8 size. A value that cannot
  /// be encoded (a surrogate, above U+10FFFF) leaves length 0 and no terminator written.
  explicit BasicICString(char32_t codePoint) requires(std::is_same_v<Unit, char>);

  /// Room for `capacity` units (characters for a narrow string with lengthInUnits false: four
  /// bytes each), with an empty text; with zeroFill all capacity + 1 units are zero. A capacity
  /// below 1 gives the empty data.
  BasicICString(int32_t capacity, bool lengthInUnits, bool zeroFill);

  /// The text of a concatenation, written once into a block of exactly its length (the empty
  /// data for an empty result).
  BasicICString(const ICStringChainT<Unit>& chain);

  ~BasicICString() = default;
  /// @}

  /// @name Assignment
  /// @{

  /// Copy of the same shape: unique copies the text into the block it has (growing exactly if
  /// needed); shared lets go of its block and shares the other's; a view lets go of its block
  /// and becomes a copy as by the copy constructor. Self-assignment changes nothing.
  BasicICString& operator=(const BasicICString& other);
  /// Move of the same shape, by the rules of the move constructor.
  BasicICString& operator=(BasicICString&& other) noexcept(!IsUnique);
  /// Copy from another shape: the other's text and length (see _AssignText).
  template <class OtherStorage>
  BasicICString& operator=(const BasicICString<Unit, OtherStorage>& other) {
    _AssignText(other.GetText(), other.GetLength());
    return *this;
  }
  /// Move from another shape: the block is taken where the move constructor takes it, after
  /// this string has let go of its own; otherwise the text is copied.
  template <class OtherStorage>
  BasicICString& operator=(BasicICString<Unit, OtherStorage>&& other) {
    if (_CanTakeBlock(other)) {
      this->_LetGo();
      _TakeBlock(other);
    } else if (IsUnique && other._IsEmptyData()) {
      this->_LetGo();  // an empty shared source leaves the empty data here
    } else {
      _AssignText(other.GetText(), other.GetLength());
    }
    return *this;
  }
  /// A zero-terminated text: copied (null clears); a view becomes a view of it (null gives the
  /// owning empty data).
  BasicICString& operator=(const Unit* text);
  /// The text of a concatenation (see Assign).
  BasicICString& operator=(const ICStringChainT<Unit>& chain);

  /// @}

  /// @name Reading
  /// @{

  /// True if the length is 0.
  bool IsEmpty() const noexcept { return this->GetLength() == 0; }
  /// Pointer behind the last unit: the text plus GetLength().
  const Unit* GetEnd() const noexcept { return this->_text + this->GetLength(); }
  /// Fills `range` with the text pointer and GetLength(), and returns it.
  ICStringRangeT<Unit>& GetRange(ICStringRangeT<Unit>& range) const noexcept {
    range.Text = this->_text;
    range.Length = this->GetLength();
    return range;
  }
  /// A new array of length + 1 units holding the text and its terminator; the caller owns it
  /// (delete[]).
  Unit* DuplicateText() const;
  /// A new heap ICStringUnique with a deep copy of the text, or null if the allocation of the
  /// object fails; the caller owns it. If the copy of the text cannot get its block, the error
  /// of the allocation is thrown and the object is freed. Offered by unique strings only.
  ICStringUniqueT<Unit>* Clone() const requires(IsUnique);
  /// @}

 private:
  template <class, class>
  friend class BasicICString;
  template <class, int>
  friend class BasicICStringInline;
  // Mixins whose inline templates write into strings of other shapes.
  template <class>
  friend class ICStringAssignMembers;
  template <class>
  friend class ICStringCutMembers;
  friend struct internal::StringAccess;
  friend struct test::LayerAccess;
  /// Replaces the text by `length` units at `text`. If `text` is the string's own text pointer,
  /// nothing changes (whatever the length). Otherwise room is made (a view becomes owning
  /// first, a shared block is left to its other owners), the units are copied and the end set.
  /// `length` must not be negative; `text` must not point into the string's own block.
  void _AssignText(const Unit* text, int32_t length);

  template <class OtherStorage>
  bool _CanTakeBlock(const BasicICString<Unit, OtherStorage>& other) const noexcept;
  template <class OtherStorage>
  bool _TakeBlock(BasicICString<Unit, OtherStorage>& other) noexcept;
  void _FromUnits(const Unit* units, int32_t length, int32_t capacity);
};

// ---------------------------------------------------------------------------------------------
// Implementation details of the cross-shape moves.

template <class Unit, class Storage>
template <class OtherStorage>
bool BasicICString<Unit, Storage>::_CanTakeBlock(
    const BasicICString<Unit, OtherStorage>& other) const noexcept {
  using Other = BasicICString<Unit, OtherStorage>;
  if constexpr (IsUnique && Other::IsShared) {
    return !other._IsEmptyData() && !(this->_GetShareWord() & InlineCapable) &&
           other._GetShareWord() == 0;
  } else if constexpr (IsShared && Other::IsUnique) {
    return !(other._GetShareWord() & InlineCapable);
  } else if constexpr (IsView && Other::IsUnique) {
    // The view takes any heap block; the object's own buffer of an ICStringInline cannot leave
    // the object, so that one is copied.
    return !(other._GetShareWord() & InlineBlock);
  } else {
    return false;
  }
}

template <class Unit, class Storage>
template <class OtherStorage>
bool BasicICString<Unit, Storage>::_TakeBlock(BasicICString<Unit, OtherStorage>& other) noexcept {
  if (!_CanTakeBlock(other)) return false;
  this->_text = other._text;
  other._text = EmptyText<Unit>();
  if constexpr (IsView) {
    this->_ownsBlock = true;
    if (!this->_IsEmptyData()) internal::SetShareWord(this->_text, 0);
  }
  return true;
}

#define IC_EXTERN_STRING_(Unit, StorageTemplate, Unused) \
  extern template class IC_API BasicICString<Unit, StorageTemplate<Unit>>;
IC_FOR_EACH_STRING_TYPE(IC_EXTERN_STRING_, ~)
#undef IC_EXTERN_STRING_

static_assert(sizeof(ICStringUnique) == sizeof(char*) && sizeof(ICStringSharedW) == sizeof(char*),
              "the mixins of members add no data");

}  // namespace ic
