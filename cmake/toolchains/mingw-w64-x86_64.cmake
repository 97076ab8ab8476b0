# Cross compiling for Windows (x86_64) with the MinGW-w64 GCC of the build machine (Debian:
# g++-mingw-w64-x86-64-posix). The generators and the resource compiler cannot run from
# this build: give the host build's folder as IC_HOST_TOOLS_DIR (see README, "Building for
# Windows"). Test programs run through CMAKE_CROSSCOMPILING_EMULATOR (wine) when it is set.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(_ic_triple x86_64-w64-mingw32)
# The posix thread model: the standard library's threads and mutexes need it with GCC 12.
find_program(CMAKE_CXX_COMPILER NAMES ${_ic_triple}-g++-posix ${_ic_triple}-g++ REQUIRED)
find_program(CMAKE_C_COMPILER NAMES ${_ic_triple}-gcc-posix ${_ic_triple}-gcc)
find_program(CMAKE_RC_COMPILER NAMES ${_ic_triple}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${_ic_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
