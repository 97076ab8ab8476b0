// Members of every string that lengthen it: the Append family, PutAtCursor, chains and pieces.
// Mixed into BasicICString.
#pragma once

namespace ic {

template <class Str>
class ICStringAppendMembers {};

}  // namespace ic
