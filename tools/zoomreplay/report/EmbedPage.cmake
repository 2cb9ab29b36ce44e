# Writes OUTPUT: the files of PAGE_FOLDER as string literals.
set(longest_literal 65536)  # that compilers must take
foreach(part html css js)
    file(READ ${PAGE_FOLDER}/report.${part} ${part})
    string(LENGTH "${${part}}" length)
    string(FIND "${${part}}" ")page\"" end)
    if(NOT length LESS longest_literal OR NOT end EQUAL -1)
        message(FATAL_ERROR "report.${part} does not fit in one string literal")
    endif()
endforeach()
configure_file(${PAGE_FOLDER}/Page.cpp.in ${OUTPUT} @ONLY)
