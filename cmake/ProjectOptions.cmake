# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release)
endif()

option(ZOOMOVERRIDE_WERROR "Treat warnings as errors" OFF)
set(ZOOMOVERRIDE_SANITIZE "" CACHE STRING "Sanitizers, comma separated, as -fsanitize takes them")

add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wformat=2
    # Geometry gives the same bits on every target: each operation is rounded once.
    -ffp-contract=off
    # Log lines and assertions name a source file by its path in the tree.
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)

if(ZOOMOVERRIDE_WERROR)
    add_compile_options(-Werror)
endif()

if(ZOOMOVERRIDE_SANITIZE)
    add_compile_options(-fsanitize=${ZOOMOVERRIDE_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ZOOMOVERRIDE_SANITIZE})
endif()
