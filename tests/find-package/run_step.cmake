# run(WHAT COMMAND...): runs a command of a test script and stops the script with its output
# when it fails; else leaves its standard output in `out`.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(rc)
    message(FATAL_ERROR "${what} failed (${rc}):\n${out}${err}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()
