# The programs that the build runs: the resource compiler (ic_rescomp) and the table generators
# (ic_gencase, ic_genunicode). A cross build cannot run what it compiles, so it takes them from a
# build for the build machine:
#
#   cmake --preset host-tools && cmake --build --preset host-tools   # writes icHostTools.cmake
#   cmake --preset windows-x64                                       # IC_HOST_TOOLS_DIR points there
#
# A native build makes the tools itself and writes ${PROJECT_BINARY_DIR}/icHostTools.cmake, which
# declares them as imported executables for another build to read.
set(IC_HOST_TOOLS_DIR "" CACHE PATH
    "Build folder of a native build whose rescomp, gencase and genunicode this build runs")

set(_ic_host_tools ic_rescomp ic_gencase ic_genunicode)

if(IC_HOST_TOOLS_DIR)
  set(_ic_host_tools_file "${IC_HOST_TOOLS_DIR}/icHostTools.cmake")
  if(NOT EXISTS "${_ic_host_tools_file}")
    message(FATAL_ERROR "IC_HOST_TOOLS_DIR: ${_ic_host_tools_file} does not exist; configure and "
                        "build the host-tools preset first")
  endif()
  include("${_ic_host_tools_file}")
  foreach(tool IN LISTS _ic_host_tools)
    if(NOT TARGET ${tool})
      message(FATAL_ERROR "${_ic_host_tools_file} does not declare ${tool}")
    endif()
  endforeach()
elseif(CMAKE_CROSSCOMPILING)
  message(FATAL_ERROR "A cross build runs the resource compiler and the table generators on the "
                      "build machine: set IC_HOST_TOOLS_DIR to a native build of this project")
endif()

# Writes icHostTools.cmake for a cross build to import (native builds only).
function(ic_export_host_tools)
  if(IC_HOST_TOOLS_DIR)
    return()
  endif()
  export(TARGETS ${_ic_host_tools} NAMESPACE "" FILE "${PROJECT_BINARY_DIR}/icHostTools.cmake")
endfunction()
