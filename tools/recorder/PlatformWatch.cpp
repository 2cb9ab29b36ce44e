// Asks the platform what the module is about to ask it, and writes down what is new.
#include "PlatformWatch.h"

#include <cstring>
#include <type_traits>

#include "ICamsysSensorInfoHelper.h"
#include "Properties.h"
#include "ZoomOverrideContract.h"
#include "scenario/text/Line.h"

namespace zoomrecorder {
namespace {

using scenario::appendJson;
using scenario::appendKey;
using scenario::Line;

constexpr std::array<char const*, 3> kProperties{
    NSCam::Feature::kLogLevelProperty,
    NSCam::Feature::kCloseP1Property,
    NSCam::Feature::kCloseP2Property,
};

/// What C++20's libraries have and those of devices lack.
template <typename To, typename From>
To bitCast(From const& from) {
    static_assert(sizeof(To) == sizeof(From));
    static_assert(std::is_trivially_copyable_v<To> && std::is_trivially_copyable_v<From>);
    To to{};
    std::memcpy(&to, &from, sizeof(to));
    return to;
}

}  // namespace

void PlatformWatch::noteProperties() {
    uint32_t index = 0;
    for (char const* const property : kProperties) {
        auto const value = NSCam::Utils::Properties::property_get_int32(property, 0);
        mLine.clear();
        Line(mLine, "property").word("name", property).field("value", value).end();
        mParts.add({LineKind::Property, index++}, mLine);
    }
}

void PlatformWatch::noteSensors(std::unordered_map<uint32_t, uint32_t> const& sensorModes) {
    for (auto const& [sensorId, mode] : sensorModes) {
        if (mode != NSCam::Feature::kSensorNotStreaming) {
            noteSensor(static_cast<int32_t>(sensorId), mode);
        }
    }
}

void PlatformWatch::noteSensor(int32_t sensorId, uint32_t mode) {
    auto& modes = mSensors[sensorId];
    Mode const answer = ask(sensorId, mode);
    auto const [known, isNew] = modes.try_emplace(mode, answer);
    if (!isNew && known->second == answer) {
        return;
    }
    known->second = answer;
    recordSensor(sensorId, modes);
}

void PlatformWatch::noteNewestEntry() {
    if (!mReader) {
        mReader = Container::createReader(NSCam::Feature::kCustomZoomContainer,
                                          NSCam::Feature::kCustomZoomCapacity,
                                          NSCam::Feature::kCustomZoomFlags);
    }
    auto const newest = mReader ? mReader->readNewest().value_or(nullptr) : nullptr;
    if (!newest) {
        return;
    }
    EntryBits const bits{bitCast<uint32_t>(newest->zoomRatio), newest->enable};
    if (mNewest == bits) {
        return;
    }
    mNewest = bits;
    mLine.clear();
    Line(mLine, "publish").fields(*newest).end();
    mParts.add({LineKind::Publish}, mLine);
}

// The line defines the sensor whole, so it lists all modes met so far.
void PlatformWatch::recordSensor(int32_t sensorId, Modes const& modes) {
    std::string text;
    char const* separator = "{\"";
    for (auto const& [number, mode] : modes) {
        text += separator;
        appendKey(text, number);
        text += "\": ";
        appendMode(text, mode);
        separator = ", \"";
    }
    text += '}';

    mLine.clear();
    Line(mLine, "sensor").field("id", sensorId).json("modes", text).end();
    mParts.add({LineKind::Sensor, static_cast<uint32_t>(sensorId)}, mLine);
}

void PlatformWatch::appendMode(std::string& out, Mode const& mode) {
    char const* separator = "";
    out += '{';
    if (mode.size.has_value()) {
        out += "\"size\": ";
        appendJson(out, *mode.size);
        separator = ", ";
    }
    if (mode.matrix.has_value()) {
        out.append(separator).append("\"matrix\": ");
        separator = "[";
        for (uint32_t const bits : *mode.matrix) {
            out += separator;
            appendJson(out, bitCast<float>(bits));
            separator = ", ";
        }
        out += ']';
    }
    out += '}';
}

PlatformWatch::Mode PlatformWatch::ask(int32_t sensorId, uint32_t mode) {
    Mode answer;
    NSCam::MSize size;
    auto const helper = NSCam::utility::ICamsysSensorInfoHelper::getInstance();
    if (helper && helper->getSensorSize(sensorId, static_cast<int32_t>(mode), size)) {
        answer.size = size;
    }
    NSCamHW::simplifiedMatrix matrix;
    if (NSCamHW::HwTransHelper(sensorId).getMatrixFromActive(mode, matrix)) {
        answer.matrix = bitCast<MatrixBits>(matrix);
    }
    return answer;
}

}  // namespace zoomrecorder
