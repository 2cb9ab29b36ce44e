# Files as string literals of a program. Included it defines embed_files; run with -P it does the work.
#
# embed_files(<target> <template> <file>...) adds <template>, without its .in, to the sources of <target>. In
# the template @NAME@ stands for the text of the file NAME, and belongs into R"text()text".

function(embed_files target template)
    foreach(file IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH file NORMALIZE)
        list(APPEND files ${file})
    endforeach()
    cmake_path(ABSOLUTE_PATH template)
    cmake_path(GET template STEM LAST_ONLY source)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/${source})
    list(JOIN files "$<SEMICOLON>" file_list)
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DTEMPLATE=${template} -DFILES=${file_list} -DOUTPUT=${output}
            -P ${CMAKE_CURRENT_FUNCTION_LIST_FILE}
        DEPENDS ${CMAKE_CURRENT_FUNCTION_LIST_FILE} ${template} ${files}
        VERBATIM)
    set_source_files_properties(${output} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    target_sources(${target} PRIVATE ${output})
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE)
    return()
endif()

# A text that is too long for one literal becomes several, for an array of them.
set(longest_literal 65000)  # compilers must take 65536
foreach(file IN LISTS FILES)
    cmake_path(GET file FILENAME name)
    file(READ ${file} text)
    string(REGEX REPLACE "\n//# sourceMappingURL=[^\n]*" "" text "${text}")  # a page has no file beside it
    string(FIND "${text}" ")text\"" end)
    if(NOT end EQUAL -1)
        message(FATAL_ERROR "${file} does not fit in a string literal")
    endif()
    set(${name} "")
    string(LENGTH "${text}" length)
    while(length GREATER longest_literal)
        string(SUBSTRING "${text}" 0 ${longest_literal} piece)
        string(SUBSTRING "${text}" ${longest_literal} -1 text)
        string(APPEND ${name} "${piece})text\",\n    R\"text(")
        string(LENGTH "${text}" length)
    endwhile()
    string(APPEND ${name} "${text}")
endforeach()
cmake_path(GET TEMPLATE PARENT_PATH TEMPLATE_FOLDER)
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
