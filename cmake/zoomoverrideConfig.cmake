# Package of the zoom override manager: the targets zoomoverride::<library>, see docs/integration.md.

include(CMakeFindDependencyMacro)
list(PREPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
find_dependency(AndroidLiblog)
list(POP_FRONT CMAKE_MODULE_PATH)

include(${CMAKE_CURRENT_LIST_DIR}/zoomoverrideTargets.cmake)
