# Runs COMMAND (a list) and fails unless its exit status is EXIT_STATUS and its standard output is the
# file EXPECTED, to the byte. Only numbers of source lines, which move with every edit, stand there as N.
execute_process(COMMAND ${COMMAND}
    OUTPUT_VARIABLE output ERROR_VARIABLE log RESULT_VARIABLE status)
string(REGEX REPLACE "(\\{#|\\.cpp:)[0-9]+" "\\1N" output "${output}")
file(READ ${EXPECTED} expected)
if(NOT status EQUAL EXIT_STATUS OR NOT output STREQUAL expected)
    message(FATAL_ERROR
        "exit status: ${status}\nexpected:\n${expected}\noutput:\n${output}\nlog:\n${log}")
endif()
