# Holds the exported symbols of LIBRARY against the list of those that pipelines may rely on.
cmake_minimum_required(VERSION 3.25)

set(wanted
    "NSCam::Feature::IZoomOverrideMgr::getInstance()"
    "NSCam::Feature::ISensorCropMapperFactory::createSensorCropMapperInstance(NSCam::Feature::ISensorCropMapperFactory::CreationParams const&)"
    "typeinfo for NSCam::Feature::IZoomOverrideMgr"
    "typeinfo for NSCam::Feature::ISensorCropMapper"
    "typeinfo name for NSCam::Feature::IZoomOverrideMgr"
    "typeinfo name for NSCam::Feature::ISensorCropMapper")

execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY}
    OUTPUT_VARIABLE table COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" table "${table}")
string(REPLACE "\n" ";" lines "${table}")
list(TRANSFORM lines REPLACE "^[0-9a-f]+ [A-Za-z] " "" OUTPUT_VARIABLE exported)

list(SORT wanted)
list(SORT exported)
if(NOT exported STREQUAL wanted)
    list(JOIN exported "\n  " exported)
    list(JOIN wanted "\n  " wanted)
    message(FATAL_ERROR "exported:\n  ${exported}\nwanted:\n  ${wanted}")
endif()
