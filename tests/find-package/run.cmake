# Installs the built project into a scratch prefix, then configures, builds and runs a host
# project against it with find_package. Variables: BUILD_DIR, CONSUMER_DIR, WORK_DIR.
file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/prefix"
                RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "install failed: ${rc}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${WORK_DIR}/build" -G Ninja
                "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix" -DCMAKE_BUILD_TYPE=Release
                RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "configuring the consumer failed: ${rc}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK_DIR}/build" RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "building the consumer failed: ${rc}")
endif()
foreach(program consumer_static consumer_shared)
  execute_process(COMMAND "${WORK_DIR}/build/${program}" RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "${program} failed: ${rc}")
  endif()
endforeach()
