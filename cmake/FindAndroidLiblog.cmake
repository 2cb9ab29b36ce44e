# Finds Android's liblog as Debian packages it: android-liblog-dev keeps headers and library in
# folders of their own. Defines the target android::log.

find_path(AndroidLiblog_INCLUDE_DIR android/log.h PATH_SUFFIXES android)
find_library(AndroidLiblog_LIBRARY log PATH_SUFFIXES android)
mark_as_advanced(AndroidLiblog_INCLUDE_DIR AndroidLiblog_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    AndroidLiblog
    REQUIRED_VARS AndroidLiblog_LIBRARY AndroidLiblog_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "On Debian: apt-get install android-liblog-dev")

if(AndroidLiblog_FOUND AND NOT TARGET android::log)
    add_library(android::log SHARED IMPORTED)
    set_target_properties(android::log PROPERTIES
        IMPORTED_LOCATION ${AndroidLiblog_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${AndroidLiblog_INCLUDE_DIR})
endif()
