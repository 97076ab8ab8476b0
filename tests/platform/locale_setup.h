// Makes a locale available to the process for the tests of locale information. The build picks
// the source for the platform: locale_setup_posix.cpp generates it with localedef into a
// temporary folder named by LOCPATH; locale_setup_windows.cpp has every locale already.
#pragma once

#include <string>

namespace ic::test {

/// Makes the locale `name` ("de_DE") installed for this process; false, with the reason in
/// `why`, where that cannot be done here.
bool EnsureLocale(const std::string& name, std::string& why);

}  // namespace ic::test
