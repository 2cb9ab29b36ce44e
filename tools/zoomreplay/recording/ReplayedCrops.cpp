// Puts each crop of an answer beside what was asked for, and beside the crop of the master.
#include "ReplayedCrops.h"

#include <algorithm>

#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam;
using namespace NSCam::Feature;

using Kind = ReplayedCrop::Kind;
using SensorCrops = std::unordered_map<uint32_t, MRect>;

uint32_t sensorModeOf(CropContext const& context, uint32_t sensorId) {
    if (context.data == nullptr) {
        return kSensorNotStreaming;
    }
    auto const mode = context.data->sensorModes.find(sensorId);
    return mode == context.data->sensorModes.end() ? kSensorNotStreaming : mode->second;
}

ReplayedCrop replayed(CropContext const& context, Kind kind, Domain domain, uint32_t sensorId,
                      MRect const& rect) {
    auto const mode = sensorModeOf(context, sensorId);
    return {.kind = kind,
            .sensorId = sensorId,
            .sensorMode = mode,
            .domain = domain,
            .crop = rect,
            .view = viewOf(context.rig, sensorId, mode, rect, domain)};
}

void setPath(ReplayedCrop& crop, CropPath const& path) {
    crop.steps = path.steps;
    crop.isExplained = path.crop == crop.crop;
    crop.minSize = path.minSize;
    if (path.asked != crop.crop) {
        crop.asked = path.asked;
    }
}

// Ports that are cropped alike, as those of ExternalAPI mode are, share one.
void addPort(std::vector<ReplayedCrop>& crops, ReplayedCrop crop, uint16_t port) {
    auto const same = std::find_if(crops.begin(), crops.end(), [&](ReplayedCrop const& other) {
        return other.sensorId == crop.sensorId && other.crop == crop.crop &&
               other.asked == crop.asked && other.minSize == crop.minSize;
    });
    if (same != crops.end()) {
        same->ports.push_back(port);
        return;
    }
    crop.ports.push_back(port);
    crops.push_back(std::move(crop));
}

bool sharePort(ReplayedCrop const& a, ReplayedCrop const& b) {
    return std::find_first_of(a.ports.begin(), a.ports.end(), b.ports.begin(), b.ports.end()) !=
           a.ports.end();
}

// The master's crop that a crop is seen beside: of the same port if there is one.
ReplayedCrop const* masterOf(std::vector<ReplayedCrop> const& crops, ReplayedCrop const& crop,
                             uint32_t master) {
    ReplayedCrop const* found = nullptr;
    for (ReplayedCrop const& other : crops) {
        if (other.sensorId == master && other.kind == crop.kind) {
            if (found == nullptr || (sharePort(other, crop) && !sharePort(*found, crop))) {
                found = &other;
            }
        }
    }
    return found;
}

void compareWithMaster(std::vector<ReplayedCrop>& crops, std::optional<uint32_t> master) {
    if (!master.has_value()) {
        return;
    }
    for (ReplayedCrop& crop : crops) {
        auto const* const other = masterOf(crops, crop, *master);
        if (other != nullptr && crop.view.has_value() && other->view.has_value() &&
            crop.view->sight.has_value() && other->view->sight.has_value()) {
            Sight const& own = *crop.view->sight;
            Sight const& seen = *other->view->sight;
            crop.difference = {own.across.extent() - seen.across.extent(),
                               own.down.extent() - seen.down.extent()};
        }
    }
}

void addSensorCrops(CropContext const& context, std::vector<ReplayedCrop>& crops, Kind kind,
                    Domain domain, SensorCrops const& rects,
                    std::map<uint32_t, CropPath> const& paths) {
    for (auto const* entry : inKeyOrder(rects)) {
        auto crop = replayed(context, kind, domain, entry->first, entry->second);
        if (auto const path = paths.find(entry->first); path != paths.end()) {
            setPath(crop, path->second);
        }
        crops.push_back(std::move(crop));
    }
}

}  // namespace

std::vector<ReplayedCrop> replayedCrops(CropContext const& context,
                                        ZoomOverrideP1Need const& need) {
    std::vector<ReplayedCrop> crops;
    for (auto const* sensor : inKeyOrder(need.tgCrops)) {
        auto const paths = context.explained.ports.find(sensor->first);
        for (auto const& [port, rect] : sensor->second) {
            auto crop = replayed(context, Kind::Port, Domain::Tg, sensor->first, rect);
            if (paths != context.explained.ports.end()) {
                if (auto const path = paths->second.find(port); path != paths->second.end()) {
                    setPath(crop, path->second);
                }
            }
            addPort(crops, std::move(crop), port);
        }
    }
    compareWithMaster(crops, context.rig.master);
    return crops;
}

std::vector<ReplayedCrop> replayedCrops(CropContext const& context,
                                        ZoomOverrideP2Need const& need) {
    auto const domain = domainOfP2(context.mode);
    std::vector<ReplayedCrop> crops;
    addSensorCrops(context, crops, Kind::Stream, domain, need.streamCrops,
                   context.explained.streams);
    addSensorCrops(context, crops, Kind::Extra, Domain::Tg, need.extraTgCrops,
                   context.explained.extras);
    compareWithMaster(crops, context.rig.master);
    return crops;
}

}  // namespace zoomreplay
