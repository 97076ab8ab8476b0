#include <ic/path/relative_members.h>

#include <string>

#include <ic/path/internal/path_core.h>
#include <ic/string/ic_string.h>

namespace ic {
namespace {

// The form in which paths are compared: lowered with `fast` (narrow: every code point whose
// lower-case form has the same size; wide: only 'A' to 'Z'), backslashes as slashes.
template <class Unit>
void Fold(ICStringUniqueT<Unit>& s) {
  s.MakeLower(true);
  if constexpr (sizeof(Unit) == 1)
    s.Replace(U'\\', U'/');
  else
    s.Replace(u'\\', u'/');
}

// The units of `path` as the result: MakeRelative's answer, as an offset to start the copy at
// and the number of "..\" steps in front; `keep` when the path comes back unchanged.
struct Relation {
  bool keep = true;
  bool dot = false;
  int32_t steps = 0;
  int32_t from = 0;
};

template <class Unit>
Relation Relate(const Unit* path, int32_t pathLength, const Unit* base,
                const Unit* fallbackDirectory, bool allowParentSteps, bool pathIsDirectory) {
  using Unique = ICStringUniqueT<Unit>;
  Unique d(base);
  if (!d.IsEmpty()) {
    const int32_t i = internal::FindLastSeparatorIndex(d.GetText(), d.GetLength());
    d.KeepLeft(i + 1);
  } else {
    d = fallbackDirectory;
    d.AddTrailingSeparator();
  }
  Fold(d);
  Unique p(path, pathLength);
  if (pathIsDirectory) p.AddTrailingSeparator();
  Fold(p);

  Relation r;
  const Unit* D = d.GetText();
  const Unit* P = p.GetText();
  const int32_t dLength = d.GetLength();
  if (p.GetLength() >= dLength &&
      std::char_traits<Unit>::compare(P, D, static_cast<size_t>(dLength)) == 0) {
    r.keep = false;
    if (pathIsDirectory && dLength >= pathLength)
      r.dot = true;
    else
      r.from = dLength;
    return r;
  }
  if (!allowParentSteps || P[0] != D[0]) return r;

  int32_t anchor = -1;
  bool colonSeen = false;
  int32_t codePoints = 0;  // index of the current unit in code points (narrow) or units
  for (int32_t i = 0; P[i] != 0 && P[i] == D[i]; ++i) {
    const Unit c = P[i];
    const bool continuation = sizeof(Unit) == 1 && (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    if (!colonSeen && c == Unit(':')) {
      if (codePoints != 1) return r;  // no drive letter: a scheme never climbs
      anchor = i;
      colonSeen = true;
    } else if (colonSeen && c == Unit('/')) {
      anchor = i;
    }
    if (!continuation) ++codePoints;
  }
  if (anchor < 0) return r;
  r.keep = false;
  r.from = anchor + 1;
  for (int32_t i = r.from; i < dLength; ++i)
    if (D[i] == Unit('/')) ++r.steps;
  return r;
}

}  // namespace

template <class Unit, class Storage>
void ICStringRelativeMembers<BasicICString<Unit, Storage>>::MakeRelative(
    Str& out, const Str& path, const Unit* base, const Unit* fallbackDirectory,
    bool allowParentSteps, bool pathIsDirectory) {
  const int32_t length = path.GetLength();
  const Relation r =
      Relate(path.GetText(), length, base, fallbackDirectory, allowParentSteps, pathIsDirectory);
  if (r.keep) {
    if (&out != &path) out.Assign(path.GetText(), length);
    return;
  }
  if (r.dot) {
    const Unit dot[] = {Unit('.'), Unit(0)};
    out.Assign(dot, 1);
    return;
  }
  ICStringUniqueT<Unit> result;
  static constexpr Unit kStep[] = {Unit('.'), Unit('.'), Unit('\\'), Unit(0)};
  for (int32_t i = 0; i < r.steps; ++i)
    result.Append(kStep, 3);
  if (r.from < length) result.Append(path.GetText() + r.from, length - r.from);
  out.Assign(result.GetText(), result.GetLength());
}

template <class Unit, class Storage>
auto ICStringRelativeMembers<BasicICString<Unit, Storage>>::MakeRelativeTo(
    const Unit* base, const Unit* fallbackDirectory, bool allowParentSteps,
    bool pathIsDirectory) const -> Str {
  Str result;
  MakeRelative(result, Self(), base, fallbackDirectory, allowParentSteps, pathIsDirectory);
  return result;
}

template <class Unit, class Storage>
auto ICStringRelativeMembers<BasicICString<Unit, Storage>>::MakeRelativeToInPlace(
    const Unit* base, const Unit* fallbackDirectory, bool allowParentSteps, bool pathIsDirectory)
    -> Str& {
  Str& self = Self();
  MakeRelative(self, self, base, fallbackDirectory, allowParentSteps, pathIsDirectory);
  return self;
}

IC_INSTANTIATE_STRING_MIXIN(ICStringRelativeMembers)

}  // namespace ic
