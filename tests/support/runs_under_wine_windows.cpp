#include "runs_under_wine.h"

#include <windows.h>

namespace ic::platform {

// Wine's ntdll exports its version; Windows' does not.
bool RunsUnderWine() {
  const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

}  // namespace ic::platform
