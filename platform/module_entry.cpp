// The entry point of the language module on Windows. The run-time's start-up stub runs the
// module's static initialisers (resources/module_startup.cpp) on process attach and the exit
// actions on detach. Thread attach and detach calls are turned off, since the module keeps no
// per-thread state. Elsewhere the loader runs the same lists without an entry point, and this
// file compiles to nothing.
#if defined(_WIN32)
#include <ic/platform/internal/windows_api.h>

#if defined(__GLIBCXX__)
// The module carries its own copy of the C++ run-time, which sets aside a pool for exceptions
// thrown when memory runs out (about 73 KB of the C run-time's heap) when the module loads, and
// keeps it to the end of the process. This gives it back.
namespace __gnu_cxx {
void __freeres() noexcept;
}
#endif

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(module);
#if defined(__GLIBCXX__)
  // Unloaded by FreeLibrary (not at process exit, where the heap goes anyway): without this each
  // load and unload would leave the pool behind.
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) __gnu_cxx::__freeres();
#else
  (void)reserved;
#endif
  return TRUE;
}
#endif
