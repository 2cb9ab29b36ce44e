// Reads the records of the library and of its platform from the values of a scenario line. All
// throw LineError.
#pragma once

#include <memory>

#include "CustomZoomRatioOverride.h"
#include "HwTransHelper.h"
#include "IMetadata.h"
#include "ISensorCropMapperFactory.h"
#include "ZoomOverrideTypes.h"
#include "host/SensorTable.h"
#include "scenario/json/Value.h"

namespace scenario {

void read(Value const& value, NSCam::MSize& result);
void read(Value const& value, NSCam::MRect& result);
void read(Value const& value, NSCam::MRectF& result);

void read(Value const& value, NSCam::Feature::ZoomOverrideMode& result);
void read(Value const& value, NSCam::Feature::OverrideNotice& result);

void read(Value const& value, std::shared_ptr<NSCam::Feature::ZoomOverrideSensorInfo>& result);

/// null gives an empty pointer.
void read(Value const& value, std::shared_ptr<NSCam::Feature::ZoomOverrideSetting>& result);

// Fields that are left out keep what result holds.
void read(Value const& value, NSCam::Feature::ZoomOverrideP1Need& result);
void read(Value const& value, NSCam::Feature::ZoomOverrideP2Need& result);
void read(Value const& value, NSCam::Feature::ZoomOverride3ANeed& result);
void read(Value const& value, NSCam::Feature::SensorCropOutput& result);

void read(Value const& value, NSCam::IMetadata& result);
void read(Value const& value, NSCamHW::simplifiedMatrix& result);
void read(Value const& value, NSCam::Host::SensorModeInfo& result);

/// The fields of a sensor configuration: the manager's and the mapper's are alike.
template <typename Config>
Config readSensorConfig(Fields& fields) {
    Config config;
    fields.optional("sensorIds", config.sensorIds);
    fields.optional("sensorInfos", config.sensorInfos);
    return config;
}

}  // namespace scenario
