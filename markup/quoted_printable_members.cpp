#include <ic/markup/quoted_printable_members.h>

#include <algorithm>
#include <utility>

#include <ic/markup/internal/quoted_printable_core.h>
#include <ic/string/builder.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

// The encoder's sink: a builder whose growth is the output so far plus the input not yet read
// (at least the piece at hand).
struct QuotedPrintableSink {
  ICStringBuilder<ICStringUniqueW> builder;
  void Add(const char16_t* units, int32_t count, int32_t unread) {
    builder.ReserveHint = std::max(unread - count, 1);
    builder.Add(units, count);
  }
  void StepBack() { --builder.Count; }
};

}  // namespace

template <class Unit, class Storage>
auto ICStringQuotedPrintableMembers<BasicICString<Unit, Storage>>::EncodeQuotedPrintable()
    -> Str& requires(IsWideUnique) {
  Str& self = Self();
  const int32_t length = self.GetLength();
  if (length == 0) return self;
  ICStringUniqueW out(length, true, false);
  QuotedPrintableSink sink{{&out, 0, 0, true}};
  internal::EncodeQuotedPrintableTo(self.GetText(), length, sink);
  self = std::move(out);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringQuotedPrintableMembers)

}  // namespace ic
