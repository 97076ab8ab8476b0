# Limits what a language module exports to the functions of host_api.h, and makes it one file.
#
#   ic_limit_module_exports(<target>)
#
# ELF: the version script icres_zh.map (with --exclude-libs, which also keeps inside the template
# instantiations of the standard library that the compiler marks for export). Windows: the
# definition file icres_zh.def, which is the whole export table, since the text library's objects
# carry no dllexport (platform/export.h); the C++ and GCC run-times and the thread library are
# linked in statically, so that the DLL needs nothing beside it.
include(CheckLinkerFlag)

set(IC_MODULE_EXPORTS_MAP "${PROJECT_SOURCE_DIR}/resources/icres_zh.map")
set(IC_MODULE_EXPORTS_DEF "${PROJECT_SOURCE_DIR}/resources/icres_zh.def")

function(ic_limit_module_exports target)
  if(WIN32)
    target_sources(${target} PRIVATE "${IC_MODULE_EXPORTS_DEF}")
    target_link_options(${target} PRIVATE -static)
    # Named as Windows names its modules: icres_zh.dll, without the "lib" of MinGW's default.
    set_target_properties(${target} PROPERTIES PREFIX "")
    return()
  endif()
  # Options of the GNU linker and of those that follow it (gold, lld, mold): each is checked.
  check_linker_flag(CXX "LINKER:--exclude-libs,ALL" IC_LINKER_EXCLUDE_LIBS)
  check_linker_flag(CXX "LINKER:--version-script=${IC_MODULE_EXPORTS_MAP}" IC_LINKER_VERSION_SCRIPT)
  check_linker_flag(CXX "LINKER:--no-undefined" IC_LINKER_NO_UNDEFINED)
  if(IC_LINKER_EXCLUDE_LIBS)
    target_link_options(${target} PRIVATE LINKER:--exclude-libs,ALL)
  endif()
  if(IC_LINKER_VERSION_SCRIPT)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${IC_MODULE_EXPORTS_MAP}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${IC_MODULE_EXPORTS_MAP}")
  endif()
  # Sanitizer and fuzzer run-times are linked into the program that loads the module, so an
  # instrumented module keeps undefined references to them.
  if(IC_LINKER_NO_UNDEFINED AND NOT IC_SANITIZE AND NOT IC_BUILD_FUZZERS)
    target_link_options(${target} PRIVATE LINKER:--no-undefined)
  endif()
endfunction()
