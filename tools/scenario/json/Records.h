// Reads the records of the library and of its platform from the values of a scenario line. All
// throw LineError.
#pragma once

#include <memory>
#include <type_traits>

#include "HwTransHelper.h"
#include "IMetadata.h"
#include "ZoomOverrideTypes.h"
#include "host/SensorTable.h"
#include "scenario/json/Value.h"
#include "scenario/text/RecordFields.h"

namespace scenario {

void read(Value const& value, NSCam::MSize& result);
void read(Value const& value, NSCam::MRect& result);
void read(Value const& value, NSCam::MRectF& result);

void read(Value const& value, NSCam::Feature::ZoomOverrideMode& result);
void read(Value const& value, NSCam::Feature::OverrideNotice& result);

void read(Value const& value, std::shared_ptr<NSCam::Feature::ZoomOverrideSensorInfo>& result);

/// null gives an empty pointer.
void read(Value const& value, std::shared_ptr<NSCam::Feature::ZoomOverrideSetting>& result);

void read(Value const& value, NSCam::IMetadata& result);
void read(Value const& value, NSCamHW::simplifiedMatrix& result);
void read(Value const& value, NSCam::Host::SensorModeInfo& result);

/// Reads the fields of a record out of an object that has others, too. Fields that are left out
/// keep what record holds.
template <typename Record>
void readFields(Fields& fields, Record& record) {
    visitFields<Record>([&](auto const& field) {
        if (field.isRequired) {
            fields.required(field.name, record.*field.member);
        } else {
            fields.optional(field.name, record.*field.member);
        }
    });
}

template <typename Record>
std::enable_if_t<kIsRecord<Record>> read(Value const& value, Record& result) {
    Fields fields(value);
    readFields(fields, result);
    fields.finish();
}

}  // namespace scenario
