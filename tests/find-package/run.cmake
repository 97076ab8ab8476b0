# Installs the built project into a scratch prefix and checks what a host gets from it: the
# layout, headers that include only installed headers, a host project built with find_package
# (the text library static and shared, and a host of the language module), and the same host
# built with nothing but the compiler and the pkg-config file.
# Variables: BUILD_DIR, CONSUMER_DIR, WORK_DIR, CXX (the compiler), DL_LIBS (the loader's
# library, if the platform has one).
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

include("${CMAKE_CURRENT_LIST_DIR}/run_step.cmake")

run("install" "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")

# The layout: the tool, the libraries, the module, the package files and the key headers.
file(GLOB_RECURSE pc_files "${prefix}/*/ictext.pc")
file(GLOB_RECURSE modules "${prefix}/*icres_zh.*")
file(GLOB_RECURSE runtimes "${prefix}/*ic_resources*")
foreach(found IN ITEMS pc_files modules runtimes)
  list(LENGTH ${found} n)
  if(NOT n EQUAL 1)
    message(FATAL_ERROR "expected one file for ${found} in the prefix, found: ${${found}}")
  endif()
endforeach()
foreach(file bin/icres include/ic/msg/xml.h include/ic/resources/message_key.h
             include/ic/platform/executable_path.h)
  if(NOT EXISTS "${prefix}/${file}")
    message(FATAL_ERROR "the prefix lacks ${file}")
  endif()
endforeach()

# Headers: no generated table and no internal header but the one message_key.h includes; every
# <ic/...> include of an installed header names an installed header.
file(GLOB_RECURSE headers RELATIVE "${prefix}/include" "${prefix}/include/*")
foreach(header IN LISTS headers)
  if(header MATCHES "/internal/" AND NOT header STREQUAL "ic/resources/internal/message_scan.h")
    message(FATAL_ERROR "an internal header is installed: ${header}")
  endif()
  if(header MATCHES "catalogues/")
    message(FATAL_ERROR "a generated table header is installed: ${header}")
  endif()
  file(STRINGS "${prefix}/include/${header}" includes REGEX "^#include <ic/")
  foreach(line IN LISTS includes)
    string(REGEX REPLACE "^#include <([^>]+)>.*" "\\1" included "${line}")
    if(NOT EXISTS "${prefix}/include/${included}")
      message(FATAL_ERROR "${header} includes ${included}, which is not installed")
    endif()
  endforeach()
endforeach()

# A host project with find_package.
run("configuring the consumer" "${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${WORK_DIR}/build"
    -G Ninja "-DCMAKE_PREFIX_PATH=${prefix}" -DCMAKE_BUILD_TYPE=Release)
run("building the consumer" "${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
foreach(program consumer_static consumer_shared)
  run("${program}" "${WORK_DIR}/build/${program}")
endforeach()
# ictext_MODULE_PATH and ic::icres_zh name the installed module.
file(STRINGS "${WORK_DIR}/build/module_path.txt" module_paths)
list(GET module_paths 0 module)
list(GET module_paths 1 module_target)
if(NOT module STREQUAL modules OR NOT module_target STREQUAL modules)
  message(FATAL_ERROR "the package names the module ${module} and ${module_target}, "
                      "installed is ${modules}")
endif()
set(expected "结束标记名称b与开始标记名称a不匹配。\n")
run("the find_package host" "${WORK_DIR}/build/host" "${module}")
if(NOT out STREQUAL expected)
  message(FATAL_ERROR "the find_package host printed: ${out}")
endif()

# The same host from the pkg-config file alone.
cmake_path(GET pc_files PARENT_PATH pc_dir)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
run("pkg-config --cflags --libs" pkg-config --cflags --libs ictext)
separate_arguments(flags UNIX_COMMAND "${out}")
run("pkg-config --variable=module" pkg-config --variable=module ictext)
string(STRIP "${out}" pc_module)
file(REAL_PATH "${pc_module}" pc_module)
if(NOT pc_module STREQUAL modules)
  message(FATAL_ERROR "ictext.pc names the module ${pc_module}, installed is ${modules}")
endif()
set(dl)
foreach(library IN LISTS DL_LIBS)
  list(APPEND dl "-l${library}")
endforeach()
run("compiling the pkg-config host" "${CXX}" -std=c++20 -O1 "${CONSUMER_DIR}/host.cpp" ${flags}
    ${dl} -o "${WORK_DIR}/host_pc")
run("the pkg-config host" "${WORK_DIR}/host_pc" "${pc_module}")
if(NOT out STREQUAL expected)
  message(FATAL_ERROR "the pkg-config host printed: ${out}")
endif()
