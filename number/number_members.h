// Members of every string that format numbers into it (AssignNumber, AppendNumber).
// Mixed into BasicICString.
#pragma once

namespace ic {

template <class Str>
class ICStringNumberMembers {};

}  // namespace ic
