# Helpers that define the text library targets, warnings and install rules in one place.

set(IC_SUBSYSTEMS platform string number text path markup unicode regex resources)

# Flags for the project's own code: warnings (as errors when the project is built on its own),
# and the sanitizers when asked. ic_options is linked privately by the project's targets and is
# not exported, so nothing of it reaches a consumer of the installed package; a project that
# adds this tree as a subdirectory builds it without -Werror unless it asks for it.
option(IC_WARNINGS_AS_ERRORS "Treat compiler warnings as errors in the project's own targets"
       ${PROJECT_IS_TOP_LEVEL})
add_library(ic_options INTERFACE)
target_compile_options(ic_options INTERFACE -Wall -Wextra)
if(IC_WARNINGS_AS_ERRORS)
  target_compile_options(ic_options INTERFACE -Werror)
endif()
if(IC_SANITIZE)
  set(_ic_san -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(ic_options INTERFACE ${_ic_san})
  target_link_options(ic_options INTERFACE ${_ic_san})
endif()

function(ic_make_include_root)
  set(root "${PROJECT_BINARY_DIR}/include")
  file(MAKE_DIRECTORY "${root}")
  if(NOT EXISTS "${root}/ic")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}" "${root}/ic" SYMBOLIC COPY_ON_ERROR)
  endif()
  set(IC_INCLUDE_ROOT "${root}" PARENT_SCOPE)
endfunction()

# The library is compiled once, position independent, and packaged twice: as a static archive
# (which the language module and the tests link) and as a shared library for hosts.
function(ic_add_text_library)
  add_library(ictext_objects OBJECT)
  set_target_properties(ictext_objects PROPERTIES POSITION_INDEPENDENT_CODE ON
                        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_definitions(ictext_objects PRIVATE IC_BUILDING_LIBRARY)
  target_include_directories(ictext_objects PUBLIC "$<BUILD_INTERFACE:${IC_INCLUDE_ROOT}>")
  target_link_libraries(ictext_objects PRIVATE ic_options)

  foreach(kind IN ITEMS static shared)
    if(kind STREQUAL "static")
      set(t ictext)
      add_library(${t} STATIC $<TARGET_OBJECTS:ictext_objects>)
      add_library(ic::text ALIAS ${t})
      set_target_properties(${t} PROPERTIES EXPORT_NAME text)
    else()
      set(t ictext_shared)
      add_library(${t} SHARED $<TARGET_OBJECTS:ictext_objects>)
      add_library(ic::text_shared ALIAS ${t})
      set_target_properties(${t} PROPERTIES OUTPUT_NAME ictext EXPORT_NAME text_shared
                            VERSION ${PROJECT_VERSION}
                            SOVERSION ${PROJECT_VERSION_MAJOR})
      target_compile_definitions(${t} INTERFACE IC_SHARED)
    endif()
    target_include_directories(${t} PUBLIC "$<BUILD_INTERFACE:${IC_INCLUDE_ROOT}>"
                               "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
    target_compile_features(${t} PUBLIC cxx_std_20)
    if(IC_SANITIZE)
      target_link_options(${t} PUBLIC -fsanitize=address,undefined)
    endif()
  endforeach()
endfunction()

# Adds sources of one subsystem to the text library.
function(ic_library_sources)
  target_sources(ictext_objects PRIVATE ${ARGN})
endfunction()

function(ic_install_text_library)
  include(CMakePackageConfigHelpers)
  install(TARGETS ictext ictext_shared EXPORT ictextTargets
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  # The headers a host includes; the library's internal headers (internal/ folders) stay out.
  foreach(sub IN LISTS IC_SUBSYSTEMS)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/${sub}/"
            DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/ic/${sub}"
            FILES_MATCHING PATTERN "*.h"
            PATTERN "internal" EXCLUDE)
  endforeach()
  set(cfgdir "${CMAKE_INSTALL_LIBDIR}/cmake/ictext")
  install(EXPORT ictextTargets NAMESPACE ic:: DESTINATION "${cfgdir}")
  export(EXPORT ictextTargets NAMESPACE ic:: FILE "${PROJECT_BINARY_DIR}/ictextTargets.cmake")
  configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/ictextConfig.cmake.in"
                                "${PROJECT_BINARY_DIR}/ictextConfig.cmake"
                                INSTALL_DESTINATION "${cfgdir}" PATH_VARS IC_MODULE_FILE)
  write_basic_package_version_file("${PROJECT_BINARY_DIR}/ictextConfigVersion.cmake"
                                   COMPATIBILITY SameMajorVersion)
  install(FILES "${PROJECT_BINARY_DIR}/ictextConfig.cmake"
          "${PROJECT_BINARY_DIR}/ictextConfigVersion.cmake" DESTINATION "${cfgdir}")
endfunction()

# A GoogleTest program whose tests CTest discovers. In a cross build, where every start of a
# program goes through the emulator (wine takes about a second for each), the program is one
# CTest test that runs all its tests, less those matching IC_GTEST_EXCLUDE (GoogleTest patterns
# joined by ':').
set(IC_GTEST_EXCLUDE "" CACHE STRING "Tests that a cross build's test programs leave out")
# Options for the test programs' own sources only (the library keeps the build type's): the
# Windows presets compile the tests with -O1, which takes about 40 % off the compile time of a
# typed-test file (mostly code generation), while the library under test stays fully optimised.
set(IC_TEST_COMPILE_OPTIONS "" CACHE STRING "Extra compile options of the test programs' sources")
# The test programs' common compile settings: what they link for headers and definitions, and
# the extra options above. The precompiled header is built with exactly these, so that every
# program can use it.
function(_ic_test_compile_settings name)
  target_link_libraries(${name} PRIVATE ic::text ic_options GTest::gtest GTest::gmock)
  if(IC_TEST_COMPILE_OPTIONS)
    target_compile_options(${name} PRIVATE ${IC_TEST_COMPILE_OPTIONS})
  endif()
endfunction()

function(ic_add_test name)
  # GoogleTest's headers are the largest part of every test file's parse, and a compiled header
  # of them is about 100 MB: the first test program defines the one target that builds it, and
  # all reuse it (one per program took 2.7 GB in each build tree). The macros that programs
  # define themselves do not occur in GoogleTest's headers, so it is valid for all of them.
  if(NOT TARGET ic_test_pch)
    add_library(ic_test_pch OBJECT "${PROJECT_SOURCE_DIR}/tests/support/precompiled_headers.cpp")
    _ic_test_compile_settings(ic_test_pch)
    target_precompile_headers(ic_test_pch PRIVATE <gtest/gtest.h> <gmock/gmock.h>)
  endif()
  add_executable(${name} ${ARGN})
  _ic_test_compile_settings(${name})
  target_link_libraries(${name} PRIVATE GTest::gtest_main)
  target_precompile_headers(${name} REUSE_FROM ic_test_pch)
  if(CMAKE_CROSSCOMPILING)
    set(filter)
    if(IC_GTEST_EXCLUDE)
      set(filter "--gtest_filter=-${IC_GTEST_EXCLUDE}")
    endif()
    add_test(NAME ${name} COMMAND ${name} ${filter})
    set_tests_properties(${name} PROPERTIES LABELS unit)
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS unit)
  endif()
endfunction()
