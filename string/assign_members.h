// Members of every string that replace its text: the Assign family.
// Mixed into BasicICString.
#pragma once

namespace ic {

template <class Str>
class ICStringAssignMembers {};

}  // namespace ic
