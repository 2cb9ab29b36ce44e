#include "TraceCrops.h"

#include <utility>

namespace zoomreplay {

using namespace NSCam;
using namespace NSCam::Feature;

namespace {

std::string portName(uint16_t port) {
    switch (port) {
        case P1Port::P1_PORT_R1:
            return "R1";
        case P1Port::P1_PORT_R2:
            return "R2";
        case P1Port::P1_PORT_R3:
            return "R3";
        default: {
            std::string name;
            scenario::appendKey(name, port);
            return name;
        }
    }
}

// What the names of a crop's counters begin with.
std::vector<std::string> namesOf(Stage stage, ReplayedCrop const& crop) {
    std::string const name = "sensor " + std::to_string(crop.sensorId) + ' ' + nameOf(stage);
    if (crop.kind == ReplayedCrop::Kind::Stream) {
        return {name};
    }
    if (crop.kind == ReplayedCrop::Kind::Extra) {
        return {name + " extra"};
    }
    std::vector<std::string> names;
    for (uint16_t const port : crop.ports) {
        names.push_back(name + ' ' + portName(port));
    }
    return names;
}

float centreOf(int32_t begin, int32_t length) {
    return static_cast<float>(begin + length / 2.0);
}

}  // namespace

std::string listOf(std::vector<ReplayedCrop> const& crops) {
    std::string text = "[";
    for (ReplayedCrop const& crop : crops) {
        TraceArguments fields;
        fields.add("sensor", crop.sensorId).add("sensorMode", crop.sensorMode);
        if (crop.kind == ReplayedCrop::Kind::Extra) {
            fields.add("extra", true);
        }
        std::string ports;
        for (uint16_t const port : crop.ports) {
            ports.append(ports.empty() ? "" : " ").append(portName(port));
        }
        if (!ports.empty()) {
            fields.add("ports", std::string_view(ports));
        }
        fields.add("crop", crop.crop);
        if (crop.asked.has_value()) {
            fields.add("beforeCorrection", *crop.asked);
        }
        text.append(text.size() > 1 ? ", " : "").append(fields.text());
    }
    return text + ']';
}

void CropCounters::show(Stage stage, std::vector<ReplayedCrop> const& crops, int64_t time) {
    std::set<std::string> names;
    for (ReplayedCrop const& crop : crops) {
        for (std::string const& name : namesOf(stage, crop)) {
            show(name, crop, time);
            names.insert(name);
        }
    }
    for (std::string const& name : mShown[stage]) {
        if (names.count(name) == 0) {
            mEvents.counter(name + " width", time, 0);
        }
    }
    mShown[stage] = std::move(names);
}

void CropCounters::show(std::string const& name, ReplayedCrop const& crop, int64_t time) {
    MRect const& rect = crop.crop;
    mEvents.counter(name + " width", time, rect.w);
    mEvents.counter(name + " centre x", time, centreOf(rect.x, rect.w));
    mEvents.counter(name + " centre y", time, centreOf(rect.y, rect.h));
    if (crop.view.has_value() && crop.view->sight.has_value()) {
        double const degrees = crop.view->sight->across.extent();
        mEvents.counter(name + " angle", time, static_cast<float>(degrees));
        mWithAngle.insert(name);
    } else if (mWithAngle.erase(name) > 0) {
        mEvents.counter(name + " angle", time, 0);
    }
}

}  // namespace zoomreplay
