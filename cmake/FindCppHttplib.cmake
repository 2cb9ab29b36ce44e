# Finds cpp-httplib as Debian packages it: a header and a library, compiled with TLS and compression. Defines
# the target CppHttplib::CppHttplib.

find_path(CppHttplib_INCLUDE_DIR httplib.h)
find_library(CppHttplib_LIBRARY cpp-httplib)
mark_as_advanced(CppHttplib_INCLUDE_DIR CppHttplib_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    CppHttplib
    REQUIRED_VARS CppHttplib_LIBRARY CppHttplib_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "On Debian: apt-get install libcpp-httplib-dev")

if(CppHttplib_FOUND AND NOT TARGET CppHttplib::CppHttplib)
    add_library(CppHttplib::CppHttplib SHARED IMPORTED)
    # The records of the header have other sizes without what the library was compiled with.
    set_target_properties(CppHttplib::CppHttplib PROPERTIES
        IMPORTED_LOCATION ${CppHttplib_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${CppHttplib_INCLUDE_DIR}
        INTERFACE_COMPILE_DEFINITIONS "CPPHTTPLIB_OPENSSL_SUPPORT;CPPHTTPLIB_ZLIB_SUPPORT;CPPHTTPLIB_BROTLI_SUPPORT")
endif()
