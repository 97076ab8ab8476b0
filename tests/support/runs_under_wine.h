// Whether a test program runs under wine rather than Windows, for the tests that hold the
// system's calls against the library's own and must tell wine's departures from Windows' answers.
#pragma once

namespace ic::platform {

/// True if this program runs under wine (a Windows build run by wine); false on Windows and on
/// every other platform.
bool RunsUnderWine();

}  // namespace ic::platform
