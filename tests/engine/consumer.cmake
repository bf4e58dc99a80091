# Installs the engine into a folder of its own, configures and builds the example against it there,
# and runs that on a sounding. Given: BUILD, SOURCE, WORK, GENERATOR, COMPILER, FLAGS.
set(run COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --component engine
  --prefix ${WORK}/installed OUTPUT_QUIET ${run})
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE}/examples/library -B ${WORK}/build
  -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS}
  -DCMAKE_PREFIX_PATH=${WORK}/installed OUTPUT_QUIET ${run})
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build OUTPUT_QUIET ${run})
execute_process(COMMAND ${WORK}/build/indices ${SOURCE}/examples/severe_norman_1999.RAW
  OUTPUT_VARIABLE said ${run})
if(NOT said MATCHES "\nKI [0-9.]+\nSWEAT [0-9.]+\nWater [0-9.]+\nCAPE [0-9.]+ J/kg\n")
  message(FATAL_ERROR "The example prints: ${said}")
endif()
execute_process(COMMAND ${WORK}/build/indices ${SOURCE}/README.md
  RESULT_VARIABLE result ERROR_VARIABLE said)
if(result EQUAL 0 OR NOT said MATCHES "README.md: in none of the known formats")
  message(FATAL_ERROR "Of a file that is no sounding it says: ${said}")
endif()
