# Fails with the lines that differ between what DESCRIBE prints and the file EXPECTED.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${DESCRIBE} OUTPUT_FILE ${ACTUAL} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND diff --unified=0 --label promised --label built ${EXPECTED} ${ACTUAL}
    OUTPUT_VARIABLE difference RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR
        "The binary interface has changed: compiled pipelines break.\n${difference}\n"
        "If that is meant: scripts/check-abi.sh --update")
endif()
