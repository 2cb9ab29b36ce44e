# Every library below PREFIX is one that pkg-config names. Not so the customer's, which only the module
# links, and the recorder, which is preloaded.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND pkg-config --libs-only-l zoomoverride-host
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(named NATIVE_COMMAND ${flags})
list(SORT named)

file(GLOB installed RELATIVE ${PREFIX}/${LIBDIR} ${PREFIX}/${LIBDIR}/*.so)
list(REMOVE_ITEM installed libcam.zoomoverride_recorder.so libqvxcam_custom_feature.so)
list(TRANSFORM installed REPLACE "^lib(.*)\\.so$" "-l\\1")
list(SORT installed)

if(NOT named STREQUAL installed)
    message(FATAL_ERROR "named:     ${named}\ninstalled: ${installed}")
endif()
