# What `cmake --install` puts where, and the package by which other projects find it, with
# find_package(zoomoverride) or pkg-config. The installed tree holds no absolute path of its own: it may be
# moved. Components: runtime, tools, development.

include(CMakePackageConfigHelpers)

set(headers zoomoverride_headers platform_headers host_control)
set(libraries
    zoomoverridemgr
    qvxcam_camsys_sensor_utils
    qvxcam_custom_feature
    qvxcam_debugwrapper
    qvxcam_hwutils
    qvxcam_metadata
    qvxcam_modulehelper
    qvxcam_stdutils
    qvxcam_ulog)

# In the tree as in the package: zoomoverride::<target>.
foreach(target IN LISTS headers libraries)
    add_library(zoomoverride::${target} ALIAS ${target})
endforeach()

# ---- The module, and the host platform that it links ----

# Libraries find each other beside themselves, and liblog where Debian keeps it.
set_target_properties(${libraries} PROPERTIES
    INSTALL_RPATH $ORIGIN
    INSTALL_RPATH_USE_LINK_PATH ON)
install(TARGETS ${headers} ${libraries} EXPORT zoomoverride
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime)

# ---- Headers ----

# install_headers(<target> <folder in the tree> <installed folder>)
function(install_headers target source folder)
    target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${folder}>)
    install(DIRECTORY ${source}/ DESTINATION ${folder} COMPONENT development FILES_MATCHING PATTERN *.h)
endfunction()

set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/zoomoverride)
install_headers(zoomoverride_headers include ${header_folder})
install_headers(platform_headers platform/include ${header_folder}/platform)
install_headers(host_control platform/host/include ${header_folder}/platform)

# ---- The tools ----

if(ZOOMOVERRIDE_BUILD_TOOLS)
    file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(zoomreplay PROPERTIES
        INSTALL_RPATH $ORIGIN/${bin_to_lib}
        INSTALL_RPATH_USE_LINK_PATH ON)
    set_target_properties(zoomoverride_recorder PROPERTIES
        INSTALL_RPATH $ORIGIN
        INSTALL_RPATH_USE_LINK_PATH ON)
    install(TARGETS zoomreplay zoomoverride_recorder
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT tools)
    install(FILES docs/zoomreplay.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
    install(FILES tools/zoomreplay/completion.bash
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME zoomreplay COMPONENT tools)
endif()

# ---- find_package(zoomoverride) ----

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zoomoverride)
set(version_file ${PROJECT_BINARY_DIR}/zoomoverrideConfigVersion.cmake)
write_basic_package_version_file(${version_file} COMPATIBILITY SameMinorVersion)
install(EXPORT zoomoverride
    NAMESPACE zoomoverride::
    FILE zoomoverrideTargets.cmake
    DESTINATION ${package_folder} COMPONENT development)
install(FILES cmake/zoomoverrideConfig.cmake cmake/FindAndroidLiblog.cmake ${version_file}
    DESTINATION ${package_folder} COMPONENT development)

# ---- pkg-config ----

set(pkgconfig_folder ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_to_include ${pkgconfig_folder} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
foreach(package zoomoverride zoomoverride-host)
    configure_file(cmake/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${package}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()
