# Holds the exported symbols of LIBRARY against the list of those that pipelines may rely on.
cmake_minimum_required(VERSION 3.25)

set(required
    "NSCam::Feature::IZoomOverrideMgr::getInstance()"
    "NSCam::Feature::ISensorCropMapperFactory::createSensorCropMapperInstance(NSCam::Feature::ISensorCropMapperFactory::CreationParams const&)")
set(allowed ${required}
    "typeinfo for NSCam::Feature::IZoomOverrideMgr"
    "typeinfo for NSCam::Feature::ISensorCropMapper"
    "typeinfo name for NSCam::Feature::IZoomOverrideMgr"
    "typeinfo name for NSCam::Feature::ISensorCropMapper")

execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY}
    OUTPUT_VARIABLE table COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" table "${table}")
string(REPLACE "\n" ";" lines "${table}")
list(TRANSFORM lines REPLACE "^[0-9a-f]+ [A-Za-z] " "" OUTPUT_VARIABLE exported)

foreach(symbol IN LISTS required)
    if(NOT symbol IN_LIST exported)
        message(SEND_ERROR "not exported: ${symbol}")
    endif()
endforeach()
foreach(symbol IN LISTS exported)
    if(NOT symbol IN_LIST allowed)
        message(SEND_ERROR "exported: ${symbol}")
    endif()
endforeach()
