// The Windows API for the platform layer's own sources, and only for them: windows.h without its
// min and max macros (which would break std::min, std::max and numeric_limits<>::max in any file
// that includes it) and without the rarely used parts. No public header includes this.
#pragma once

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#endif
