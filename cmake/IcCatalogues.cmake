# Compiles catalogue sources (XML) into C++ tables with the resource string compiler.
#
#   ic_add_catalogues(TARGET <target> SOURCES <name>.xml ...)
#
# Each source yields ${CMAKE_CURRENT_BINARY_DIR}/catalogues/<name>.cpp and <name>.h, where
# <name> is the file name without ".xml" and is the module compiled from it. The sources are
# added to <target>, and the folder above them to its include path, so that the headers are
# included as "catalogues/<name>.h" (a bare "<name>.h" could hide a system header: regex.h).
# A source is compiled again when it, a file it includes, or the compiler changes.

function(ic_add_catalogues)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "TARGET" "SOURCES")
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

  # A dependency file tells the build about included sources; the generators named here
  # read one for a custom command.
  set(use_depfile FALSE)
  if(CMAKE_GENERATOR MATCHES "Ninja|Makefiles")
    set(use_depfile TRUE)
  endif()

  foreach(source IN LISTS arg_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE
               OUTPUT_VARIABLE source_path)
    cmake_path(GET source_path STEM LAST_ONLY module)
    set(cpp "${out_dir}/${module}.cpp")
    set(header "${out_dir}/${module}.h")
    set(depfile_args)
    set(depfile_option)
    if(use_depfile)
      set(depfile "${out_dir}/${module}.d")
      set(depfile_args --depfile "${depfile}")
      set(depfile_option DEPFILE "${depfile}")
    endif()
    add_custom_command(
      OUTPUT "${cpp}" "${header}"
      COMMAND ic_rescomp --module "${module}" --out-cpp "${cpp}" --out-h "${header}"
              ${depfile_args} "${source_path}"
      DEPENDS "${source_path}" ic_rescomp
      ${depfile_option}
      COMMENT "Compiling resource strings of ${module}"
      VERBATIM)
    target_sources("${arg_TARGET}" PRIVATE "${cpp}" "${header}")
  endforeach()
  target_include_directories("${arg_TARGET}" PUBLIC "$<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}>")
endfunction()
