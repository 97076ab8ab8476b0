// Members of every string that compare and search: Find and its relatives, StartsWith, Equals, ...
// Mixed into BasicICString.
#pragma once

namespace ic {

template <class Str>
class ICStringSearchMembers {};

}  // namespace ic
