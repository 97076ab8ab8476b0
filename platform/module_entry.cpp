// The entry point of the language module on Windows. It does nothing of its own: the run-time's
// start-up stub runs the module's static initialisers (resources/module_startup.cpp) on process
// attach and the exit actions on detach. Thread attach and detach calls are turned off, since the
// module keeps no per-thread state. Elsewhere the loader runs the same lists without an entry
// point, and this file compiles to nothing.
#if defined(_WIN32)
#include <ic/platform/internal/windows_api.h>

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(module);
  return TRUE;
}
#endif
