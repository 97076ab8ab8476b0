# The part of the MinGW-w64 toolchain files that does not depend on the processor; they set
# IC_MINGW_PROCESSOR (x86_64 or i686) and include this file.
#
# Cross compiling for Windows with the MinGW-w64 GCC of the build machine (Debian:
# g++-mingw-w64-x86-64-posix, g++-mingw-w64-i686-posix). The generators and the resource compiler
# cannot run from this build: give the host build's folder as IC_HOST_TOOLS_DIR (README,
# "Building for Windows"). Test programs run through CMAKE_CROSSCOMPILING_EMULATOR (wine).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${IC_MINGW_PROCESSOR})

set(_ic_triple ${IC_MINGW_PROCESSOR}-w64-mingw32)
# The posix thread model: the standard library's threads and mutexes need it with GCC 12.
find_program(CMAKE_CXX_COMPILER NAMES ${_ic_triple}-g++-posix ${_ic_triple}-g++ REQUIRED)
find_program(CMAKE_C_COMPILER NAMES ${_ic_triple}-gcc-posix ${_ic_triple}-gcc)
find_program(CMAKE_RC_COMPILER NAMES ${_ic_triple}-windres)

# Programs and DLLs carry the C++ and GCC run-times and the thread library inside, so that each
# runs without MinGW's DLLs beside it (only the system's DLLs).
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)

set(CMAKE_FIND_ROOT_PATH /usr/${_ic_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
