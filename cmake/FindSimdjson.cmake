# Finds simdjson, also where only the library itself is installed for a foreign architecture: Debian's
# libsimdjson-dev is for one at a time. Defines the target simdjson::simdjson.

find_path(Simdjson_INCLUDE_DIR simdjson.h)
find_library(Simdjson_LIBRARY NAMES simdjson libsimdjson.so.14)
mark_as_advanced(Simdjson_INCLUDE_DIR Simdjson_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    Simdjson
    REQUIRED_VARS Simdjson_LIBRARY Simdjson_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "On Debian: apt-get install libsimdjson-dev")

if(Simdjson_FOUND AND NOT TARGET simdjson::simdjson)
    add_library(simdjson::simdjson SHARED IMPORTED)
    set_target_properties(simdjson::simdjson PROPERTIES
        IMPORTED_LOCATION ${Simdjson_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${Simdjson_INCLUDE_DIR})
endif()
