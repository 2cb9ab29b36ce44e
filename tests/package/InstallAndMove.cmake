# Installs the build folder BUILD and moves what it gets to PREFIX, so that a path left over from the
# installation leads nowhere.
file(REMOVE_RECURSE ${PREFIX} ${PREFIX}.installed)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}.installed
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${PREFIX}.installed ${PREFIX})
