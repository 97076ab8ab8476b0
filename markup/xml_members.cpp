#include <ic/markup/xml_members.h>

#include <string>
#include <utility>

#include <ic/markup/internal/xml_escape_core.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/move_units.h>
#include <ic/string/write_steps.h>

namespace ic {
namespace {

// The escaper's sink. It copies straight into `out`'s block while the block has room; a piece
// that does not fit (and the first piece, which makes a shared block or a view writable) goes
// through PutAtCursor, which grows the block to the larger of twice the needed length and 1024
// units. Finish leaves the terminator written and the length unmeasured, as the builder does.
template <class Str>
class DirectSink {
 public:
  using Unit = typename Str::UnitType;

  explicit DirectSink(Str& out) : out_(out), count_(out.GetLength()) {}

  void Add(const Unit* text, int32_t length) {
    if (length <= room_) {
      MoveUnits(buffer_ + count_, text, static_cast<size_t>(length));
      count_ += length;
      room_ -= length;
      return;
    }
    AddGrowing(text, length);
  }

  void Finish() {
    if (buffer_ == nullptr) return;
    buffer_[count_] = 0;
    internal::SetLengthWord(buffer_, UnknownLength);
  }

 private:
  void AddGrowing(const Unit* text, int32_t length) {
    Finish();  // PutAtCursor keeps the text up to its terminator
    uint32_t cursor = static_cast<uint32_t>(count_);
    out_.PutAtCursor(text, length, cursor, 0);
    buffer_ = internal::StringAccess::_GetBuffer(out_);
    count_ = static_cast<int32_t>(cursor);
    room_ = out_.GetCapacity() - count_;
  }

  Str& out_;
  Unit* buffer_ = nullptr;
  int32_t count_;
  int32_t room_ = -1;  // no room known before the first piece
};

template <class Str>
bool EscapeInto(const typename Str::UnitType* source, int32_t length, Str& out, bool escapeQuotes,
                const typename Str::UnitType* alsoEscape) {
  if (source == nullptr) return false;
  const auto* first = internal::FindXmlEscape(source, length, escapeQuotes, alsoEscape);
  if (first == nullptr) return false;
  DirectSink<Str> sink(out);
  internal::EscapeXmlFrom(source, length, first, escapeQuotes, alsoEscape, sink);
  sink.Finish();
  return true;
}

}  // namespace

template <class Unit, class Storage>
bool ICStringXmlMembers<BasicICString<Unit, Storage>>::EscapeXmlInto(const Unit* source, Str& out,
                                                                     bool escapeQuotes,
                                                                     const Unit* alsoEscape) {
  if (source == nullptr) return false;
  return EscapeInto(source, static_cast<int32_t>(std::char_traits<Unit>::length(source)), out,
                    escapeQuotes, alsoEscape);
}

template <class Unit, class Storage>
auto ICStringXmlMembers<BasicICString<Unit, Storage>>::EscapeXml(bool escapeQuotes,
                                                                 const Unit* alsoEscape) -> Str& {
  Str& self = Self();
  ICStringUniqueT<Unit> fresh;
  if (EscapeInto(self.GetText(), self.GetLength(), fresh, escapeQuotes, alsoEscape))
    self = std::move(fresh);
  return self;
}

template <class Unit, class Storage>
auto ICStringXmlMembers<BasicICString<Unit, Storage>>::EscapedXml(const Unit* text,
                                                                  bool escapeQuotes,
                                                                  const Unit* alsoEscape) -> Str {
  Str result;
  if (!EscapeXmlInto(text, result, escapeQuotes, alsoEscape)) result = ICStringUniqueT<Unit>(text);
  return result;
}

template <class Unit, class Storage>
auto ICStringXmlMembers<BasicICString<Unit, Storage>>::UnescapeXml(bool decodeCharRefs,
                                                                   bool decodeEntities) -> Str& {
  Str& self = Self();
  const int32_t length = self.GetLength();
  if (!std::char_traits<Unit>::find(self.GetText(), static_cast<size_t>(length), Unit('&')))
    return self;
  internal::StringAccess::PrepareInPlace(self);
  const int32_t n = internal::UnescapeXmlUnits(internal::StringAccess::_GetBuffer(self), length,
                                               decodeCharRefs, decodeEntities);
  self.KeepLeft(n);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringXmlMembers)

}  // namespace ic
