#include <ic/string/line_end_members.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/internal/positions.h>
#include <ic/string/internal/string_access.h>
#include <ic/string/utf8.h>
#include <ic/string/write_steps.h>

namespace ic {

namespace {

/// Writes `in` to `out` with every line end turned into `lineEnd`; `out` may equal `in` when
/// the line end has one unit. Multi-byte sequences are copied whole. Returns the end of output.
template <class Unit>
Unit* WriteNormalized(Unit* out, const Unit* in, const Unit* end, const Unit* lineEnd,
                      int32_t lineEndLength) {
  while (in < end) {
    const Unit c = *in;
    if (c == Unit('\r') || c == Unit('\n')) {
      ++in;
      if (c == Unit('\r') && in < end && *in == Unit('\n')) ++in;
      for (int32_t i = 0; i < lineEndLength; ++i)
        *out++ = lineEnd[i];
    } else {
      const int32_t size = internal::SequenceSizeWithin(in, end);
      for (int32_t i = 0; i < size; ++i)
        *out++ = *in++;
    }
  }
  return out;
}

/// Length of the output of WriteNormalized with a line end of two units.
template <class Unit>
int64_t MeasureNormalized(const Unit* in, const Unit* end) {
  int64_t count = 0;
  while (in < end) {
    const Unit c = *in;
    if (c == Unit('\r') || c == Unit('\n')) {
      ++in;
      if (c == Unit('\r') && in < end && *in == Unit('\n')) ++in;
      count += 2;
    } else {
      const int32_t size = internal::SequenceSizeWithin(in, end);
      in += size;
      count += size;
    }
  }
  return count;
}

}  // namespace

// --- Line ends -------------------------------------------------------------------------------

template <class Unit, class Storage>
auto ICStringLineEndMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    const Unit* source, const Unit* lineEnd) noexcept -> Str& {
  Str& self = Self();
  if (lineEnd == nullptr) lineEnd = EmptyText<Unit>();
  const int32_t lineEndLength = internal::MeasureText(lineEnd);
  const bool fromSelf = source == self.GetText();
  if (source == nullptr) source = EmptyText<Unit>();
  const int32_t sourceLength = fromSelf ? self.GetLength() : internal::MeasureText(source);
  const Unit cr = Unit('\r');
  const Unit lf = Unit('\n');

  if (lineEndLength == 1) {
    const Unit end = lineEnd[0];
    if (end != cr && end != lf) return self;
    if (fromSelf) {
      // Only a line end that differs from the target changes anything: a carriage return when
      // the target is a line feed, a line feed (alone or behind a carriage return) otherwise.
      const Unit changing = end == lf ? cr : lf;
      const Unit* const text = self.GetText();
      const Unit* p = text;
      const Unit* const stop = text + sourceLength;
      while (p < stop && *p != changing)
        p += (*p == cr || *p == lf) ? 1 : internal::SequenceSizeWithin(p, stop);
      if (p == stop) return self;
      // Start at the line end that holds the change (a "\r\n" is rewritten whole).
      if (changing == lf && p > text && p[-1] == cr) --p;
      const ptrdiff_t first = p - text;
      internal::StringAccess::PrepareInPlace(self);
      Unit* const buffer = internal::StringAccess::_GetBuffer(self);
      Unit* const out =
          WriteNormalized(buffer + first, buffer + first, buffer + sourceLength, lineEnd, 1);
      internal::StringAccess::_SetStringEnd(self, static_cast<int32_t>(out - buffer));
      return self;
    }
    internal::StringAccess::_PrepareGrow(self, sourceLength);
    if (internal::StringAccess::_IsEmptyData(self)) return self;
    Unit* const buffer = internal::StringAccess::_GetBuffer(self);
    Unit* const out = WriteNormalized(buffer, source, source + sourceLength, lineEnd, 1);
    internal::StringAccess::_SetStringEnd(self, static_cast<int32_t>(out - buffer));
    return self;
  }

  if (lineEndLength == 2) {
    if (lineEnd[0] != cr && lineEnd[1] != lf) return self;
    const int64_t measured = MeasureNormalized(source, source + sourceLength);
    if (measured == sourceLength) {
      if (!fromSelf) internal::StringAccess::_AssignText(self, source, sourceLength);
      return self;
    }
    const int32_t newLength = static_cast<int32_t>(measured);
    if (!fromSelf) {
      internal::StringAccess::_PrepareReplace(self, newLength);
      Unit* const buffer = internal::StringAccess::_GetBuffer(self);
      WriteNormalized(buffer, source, source + sourceLength, lineEnd, 2);
      internal::StringAccess::_SetStringEnd(self, newLength);
      return self;
    }
    ICStringUniqueT<Unit> result;
    internal::StringAccess::_Reserve(result, newLength, 0);
    WriteNormalized(internal::StringAccess::_GetBuffer(result), source, source + sourceLength,
                    lineEnd, 2);
    internal::StringAccess::_SetStringEnd(result, newLength);
    self = std::move(result);
    return self;
  }
  return self;
}

template <class Unit, class Storage>
auto ICStringLineEndMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    const Unit* lineEnd) noexcept -> Str& {
  return NormalizeLineEnds(Self().GetText(), lineEnd);
}

template <class Unit, class Storage>
auto ICStringLineEndMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    const Unit* source, ICLineEnd lineEnd) noexcept -> Str& {
  static constexpr Unit kCr[] = {Unit('\r'), 0};
  static constexpr Unit kCrLf[] = {Unit('\r'), Unit('\n'), 0};
  static constexpr Unit kLf[] = {Unit('\n'), 0};
  const Unit* const end = lineEnd == ICLineEnd::CarriageReturn           ? kCr
                          : lineEnd == ICLineEnd::CarriageReturnLineFeed ? kCrLf
                                                                         : kLf;
  return NormalizeLineEnds(source, end);
}

template <class Unit, class Storage>
auto ICStringLineEndMembers<BasicICString<Unit, Storage>>::NormalizeLineEnds(
    ICLineEnd lineEnd) noexcept -> Str& {
  return NormalizeLineEnds(Self().GetText(), lineEnd);
}

template <class Unit, class Storage>
bool ICStringLineEndMembers<BasicICString<Unit, Storage>>::IsLineEndAt(
    int32_t position, bool lengthInUnits) const noexcept {
  const Str& self = Self();
  if (position < 0) return false;
  const int32_t offset = internal::UnitOffsetOf(self.GetText(), position, lengthInUnits);
  if (offset >= self.GetLength()) return false;
  const Unit c = self.GetText()[offset];
  return c == Unit('\r') || c == Unit('\n');
}

IC_INSTANTIATE_STRING_MIXIN(ICStringLineEndMembers)

}  // namespace ic
