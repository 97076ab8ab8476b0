// Members of every string that convert between UTF-8 and UTF-16 (ConvertFromUTF8String,
// ConvertToUTF8, ConvertToUTF8Units). Mixed into BasicICString.
#pragma once

namespace ic {

template <class Str>
class ICStringUtfMembers {};

}  // namespace ic
