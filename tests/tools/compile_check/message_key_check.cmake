# Compiles message_key_check.cpp once per case and checks the compiler's verdict: the right
# spelling compiles; a misspelt, a missing, a doubled parameter and a parameter of a message
# that has none are refused, each with its own message.
#
#   cmake -DCXX=<compiler> -DSOURCE=<message_key_check.cpp> -DINCLUDES=<dir;dir> -P this file
foreach(variable IN ITEMS CXX SOURCE INCLUDES)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "message_key_check: ${variable} is not set")
  endif()
endforeach()

set(include_flags)
foreach(dir IN LISTS INCLUDES)
  list(APPEND include_flags "-I${dir}")
endforeach()

function(compile_case name expect_success expected_message)
  execute_process(
    COMMAND "${CXX}" -std=c++20 -fsyntax-only -Wall -Wextra -Werror ${include_flags}
            "-DIC_CASE_${name}" "${SOURCE}"
    RESULT_VARIABLE result
    OUTPUT_VARIABLE out
    ERROR_VARIABLE err)
  if(expect_success)
    if(NOT result EQUAL 0)
      message(FATAL_ERROR "case ${name} should compile but failed:\n${err}")
    endif()
    message(STATUS "case ${name}: compiles")
    return()
  endif()
  if(result EQUAL 0)
    message(FATAL_ERROR "case ${name} should not compile, but it did")
  endif()
  string(FIND "${err}" "${expected_message}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "case ${name} failed without the message '${expected_message}':\n${err}")
  endif()
  message(STATUS "case ${name}: refused with '${expected_message}'")
endfunction()

compile_case(RIGHT TRUE "")
compile_case(MISSPELT FALSE "a value is given for a name that is no parameter of this message")
compile_case(MISSPELT FALSE "stga")
compile_case(MISSING FALSE "a parameter of this message is given no value")
compile_case(TWICE FALSE "a parameter is given more than one value")
compile_case(NO_PARAMETERS FALSE "a value is given for a name that is no parameter of this message")
