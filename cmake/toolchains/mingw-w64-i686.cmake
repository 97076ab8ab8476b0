# 32-bit Windows (i686) with MinGW-w64: see mingw-w64.cmake.
set(IC_MINGW_PROCESSOR i686)
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
