# Runs COMMAND (a list) and fails unless its exit status is EXIT_STATUS and its standard output is the
# file EXPECTED, to the byte.
execute_process(COMMAND ${COMMAND}
    OUTPUT_VARIABLE output ERROR_VARIABLE log RESULT_VARIABLE status)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL EXIT_STATUS OR NOT output STREQUAL expected)
    message(FATAL_ERROR
        "exit status: ${status}\nexpected:\n${expected}\noutput:\n${output}\nlog:\n${log}")
endif()
