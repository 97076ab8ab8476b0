# Compiles catalogue sources (XML) into C++ tables with the resource string compiler.
#
#   ic_add_catalogues(TARGET <target> [PSEUDO] SOURCES <name>.xml ...)
#
# Each source yields ${CMAKE_CURRENT_BINARY_DIR}/catalogues/<name>.cpp and <name>.h, where
# <name> is the file name without ".xml" and is the module compiled from it. The sources are
# added to <target>, and the folder above them to its include path, so that the headers are
# included as "catalogues/<name>.h" (a bare "<name>.h" could hide a system header: regex.h).
# A source is compiled again when it, a file it includes, or the compiler changes. With PSEUDO
# the tables hold the pseudo-locale of the texts (rescomp --pseudo).
#
#   ic_add_message_keys(TARGET <interface target> SOURCES <name>.xml ...)
#
# Generates the key header of each source, ${CMAKE_CURRENT_BINARY_DIR}/message_keys/ic/msg/
# <name>.h, included by hosts as <ic/msg/<name>.h>. <interface target> is created as an
# INTERFACE library that carries the include path and makes its users wait for the headers.
# The folder of the headers is the target's IC_KEY_HEADER_DIR property (for the install step).
#
#   ic_add_language_module(<target> [PSEUDO] SOURCES <name>.xml ...)
#
# A language module: a shared library of the resource runtime, the module start-up and the
# tables compiled from SOURCES (with PSEUDO, their pseudo-locale), which exports only the
# functions of host_api.h (ic_limit_module_exports). The text library is linked in
# statically with its symbols hidden.

# Adds the custom command that runs rescomp on the module `module` of one source. OUTPUTS are the
# files it writes and ARGS the options that name them. Where the generator reads a dependency file
# for a custom command (Ninja, Makefiles), rescomp writes one into `dep_dir`, so that files the
# source includes are dependencies too.
function(_ic_rescomp_command source_path module dep_dir comment)
  cmake_parse_arguments(PARSE_ARGV 4 arg "" "" "OUTPUTS;ARGS")
  set(depfile_args)
  set(depfile_option)
  if(CMAKE_GENERATOR MATCHES "Ninja|Makefiles")
    set(depfile "${dep_dir}/${module}.d")
    set(depfile_args --depfile "${depfile}")
    set(depfile_option DEPFILE "${depfile}")
  endif()
  add_custom_command(
    OUTPUT ${arg_OUTPUTS}
    COMMAND ic_rescomp --module "${module}" ${arg_ARGS} ${depfile_args} "${source_path}"
    DEPENDS "${source_path}" ic_rescomp
    ${depfile_option}
    COMMENT "${comment}"
    VERBATIM)
endfunction()

function(ic_add_catalogues)
  cmake_parse_arguments(PARSE_ARGV 0 arg "PSEUDO" "TARGET" "SOURCES")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "ic_add_catalogues: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_TARGET OR NOT TARGET "${arg_TARGET}")
    message(FATAL_ERROR "ic_add_catalogues: TARGET must name an existing target")
  endif()
  if(NOT arg_SOURCES)
    message(FATAL_ERROR "ic_add_catalogues: no SOURCES given")
  endif()

  set(out_dir "${CMAKE_CURRENT_BINARY_DIR}/catalogues")
  file(MAKE_DIRECTORY "${out_dir}")
  set(pseudo_option)
  set(pseudo_comment)
  if(arg_PSEUDO)
    set(pseudo_option --pseudo)
    set(pseudo_comment " (pseudo-locale)")
  endif()

  foreach(source IN LISTS arg_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE
               OUTPUT_VARIABLE source_path)
    cmake_path(GET source_path STEM LAST_ONLY module)
    set(cpp "${out_dir}/${module}.cpp")
    set(header "${out_dir}/${module}.h")
    _ic_rescomp_command("${source_path}" "${module}" "${out_dir}"
                        "Compiling resource strings of ${module}${pseudo_comment}"
                        OUTPUTS "${cpp}" "${header}"
                        ARGS --out-cpp "${cpp}" --out-h "${header}" ${pseudo_option})
    target_sources("${arg_TARGET}" PRIVATE "${cpp}" "${header}")
  endforeach()
  target_include_directories("${arg_TARGET}" PUBLIC "$<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}>")
endfunction()

function(ic_add_message_keys)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "TARGET" "SOURCES")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "ic_add_message_keys: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_TARGET OR TARGET "${arg_TARGET}")
    message(FATAL_ERROR "ic_add_message_keys: TARGET must name a target yet to be made")
  endif()
  if(NOT arg_SOURCES)
    message(FATAL_ERROR "ic_add_message_keys: no SOURCES given")
  endif()

  set(root "${CMAKE_CURRENT_BINARY_DIR}/message_keys")
  set(out_dir "${root}/ic/msg")
  set(dep_dir "${CMAKE_CURRENT_BINARY_DIR}/message_keys_deps")
  file(MAKE_DIRECTORY "${out_dir}" "${dep_dir}")

  set(headers)
  foreach(source IN LISTS arg_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE
               OUTPUT_VARIABLE source_path)
    cmake_path(GET source_path STEM LAST_ONLY module)
    set(header "${out_dir}/${module}.h")
    _ic_rescomp_command("${source_path}" "${module}" "${dep_dir}"
                        "Writing the key header of ${module}"
                        OUTPUTS "${header}" ARGS --out-keys "${header}")
    list(APPEND headers "${header}")
  endforeach()
  add_custom_target(${arg_TARGET}_headers DEPENDS ${headers})
  add_library(${arg_TARGET} INTERFACE)
  target_include_directories(${arg_TARGET} INTERFACE "$<BUILD_INTERFACE:${root}>")
  add_dependencies(${arg_TARGET} ${arg_TARGET}_headers)
  set_target_properties(${arg_TARGET} PROPERTIES IC_KEY_HEADER_DIR "${out_dir}")
endfunction()

include(CheckLinkerFlag)

function(ic_add_language_module target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "PSEUDO" "" "SOURCES")
  if(arg_UNPARSED_ARGUMENTS OR NOT arg_SOURCES)
    message(FATAL_ERROR "ic_add_language_module: expected [PSEUDO] SOURCES <name>.xml ...")
  endif()
  set(pseudo)
  if(arg_PSEUDO)
    set(pseudo PSEUDO)
  endif()
  # The one table of static initialisers is module_startup.cpp; the entry point on Windows is
  # the platform layer's module_entry.cpp.
  add_library(${target} SHARED "${PROJECT_SOURCE_DIR}/resources/module_startup.cpp"
              "${PROJECT_SOURCE_DIR}/platform/module_entry.cpp"
              $<TARGET_OBJECTS:ic_resources_objects>)
  ic_add_catalogues(TARGET ${target} ${pseudo} SOURCES ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden
                        VISIBILITY_INLINES_HIDDEN ON)
  target_compile_definitions(${target} PRIVATE IC_BUILDING_LIBRARY)
  # The generated headers are included as "catalogues/<name>.h".
  target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
  target_link_libraries(${target} PRIVATE ic::text ic_options)
  ic_limit_module_exports(${target})
endfunction()
