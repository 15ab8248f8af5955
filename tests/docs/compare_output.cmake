# Runs PROGRAM and fails unless it ends with status 0 and prints the content of the file EXPECTED.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed RESULT_VARIABLE status)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 0 OR NOT printed STREQUAL expected)
  message(FATAL_ERROR "status ${status}, printed:\n${printed}\nexpected:\n${expected}")
endif()
