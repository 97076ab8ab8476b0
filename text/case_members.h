// Members of every string that map case: MakeLower, MakeUpper, Capitalize.
// Mixed into BasicICString.
#pragma once

namespace ic {

template <class Str>
class ICStringCaseMembers {};

}  // namespace ic
