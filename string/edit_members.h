// Members of every string that cut, insert, remove and replace text, and normalise line ends.
// Mixed into BasicICString.
#pragma once

namespace ic {

template <class Str>
class ICStringEditMembers {};

}  // namespace ic
