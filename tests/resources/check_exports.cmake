# Checks that a DLL's export table lists exactly the names of a module definition file.
#
#   cmake -DOBJDUMP=<target objdump> -DMODULE=<dll> -DDEF=<file.def> -P check_exports.cmake
foreach(variable IN ITEMS OBJDUMP MODULE DEF)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "check_exports: ${variable} is not set")
  endif()
endforeach()

# The names after EXPORTS in the definition file, one a line; ';' starts a comment.
file(STRINGS "${DEF}" def_lines)
set(expected)
set(in_exports FALSE)
foreach(line IN LISTS def_lines)
  string(REGEX REPLACE ";.*" "" line "${line}")
  string(STRIP "${line}" line)
  if(line STREQUAL "EXPORTS")
    set(in_exports TRUE)
  elseif(in_exports AND NOT line STREQUAL "")
    list(APPEND expected "${line}")
  endif()
endforeach()

execute_process(COMMAND "${OBJDUMP}" -p "${MODULE}" OUTPUT_VARIABLE dump RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "${OBJDUMP} -p ${MODULE} failed: ${rc}")
endif()
# objdump lists the names under "[Ordinal/Name Pointer] Table" as "[   0] Name" (binutils 2.40:
# "\t[   0] Name"), up to the first empty line.
string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table[^\n]*\n(([^\n]+\n)*)" table "${dump}")
set(table "${CMAKE_MATCH_1}")
string(REPLACE "\n" ";" table_lines "${table}")
set(exported)
foreach(line IN LISTS table_lines)
  if(line MATCHES "^[ \t]*\\[ *[0-9]+\\] +([^ \t]+)")
    list(APPEND exported "${CMAKE_MATCH_1}")
  endif()
endforeach()

list(SORT expected)
list(SORT exported)
if(NOT exported STREQUAL expected)
  list(LENGTH exported count)
  message(FATAL_ERROR "${MODULE} exports ${count} names:\n  ${exported}\nexpected:\n  ${expected}")
endif()
message(STATUS "${MODULE} exports exactly: ${exported}")
