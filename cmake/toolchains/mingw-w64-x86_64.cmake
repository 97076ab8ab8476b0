# 64-bit Windows (x86-64) with MinGW-w64: see mingw-w64.cmake.
set(IC_MINGW_PROCESSOR x86_64)
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
