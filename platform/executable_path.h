// Where the running program's executable file lies, for programs that find their files
// relative to their own location (an installed tool finds the module that came with it).
//
// On Windows this is GetModuleFileNameW of the process's executable; elsewhere it is the
// target of /proc/self/exe, which Linux keeps for every process.
#pragma once

#include <string>

#include <ic/platform/export.h>

namespace ic::platform {

/// The absolute path of the running executable as UTF-8, symbolic links resolved where the
/// system resolves them. Empty when the system does not tell (no /proc mounted, a path that
/// does not fit in 32767 units, a failed conversion).
IC_API std::string GetExecutablePath();

}  // namespace ic::platform
