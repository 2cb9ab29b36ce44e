# Holds the files below PREFIX to the list of those that a package has; a change that is meant is made there.
cmake_minimum_required(VERSION 3.25)

set(list ${CMAKE_CURRENT_LIST_DIR}/files.txt)
file(STRINGS ${list} expected)
file(GLOB_RECURSE installed RELATIVE ${PREFIX} ${PREFIX}/*)
list(TRANSFORM installed REPLACE "^${LIBDIR}/" "lib/")
list(TRANSFORM installed REPLACE "Targets-[a-z]+\\.cmake$" "Targets-CONFIGURATION.cmake")

foreach(file IN LISTS expected)
    if(NOT file IN_LIST installed)
        message(SEND_ERROR "not installed: ${file}")
    endif()
endforeach()
foreach(file IN LISTS installed)
    if(NOT file IN_LIST expected)
        message(SEND_ERROR "installed, but not in ${list}: ${file}")
    endif()
endforeach()
