// ExternalAPI mode: the published ratio, mapped to a crop for each sensor.
#include <functional>

#include "Modes.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam;
using namespace NSCam::Feature;

ZoomOverrideSensorInfo infoOf(Told const& told, uint32_t sensorId) {
    auto const& infos = told.angles().config.sensorInfos;
    auto const info = infos.find(sensorId);
    return info == infos.end() || info->second == nullptr ? ZoomOverrideSensorInfo{}
                                                          : *info->second;
}

ZoomOverrideSensorInfo infoOfMaster(Told const& told) {
    auto const& ids = told.angles().config.sensorIds;
    return ids.empty() ? ZoomOverrideSensorInfo{}
                       : infoOf(told, static_cast<uint32_t>(ids.front()));
}

CropPath mappedPath(Told const& told, float mappedRatio, uint32_t sensorId, MRect const& active) {
    auto const info = infoOf(told, sensorId);
    auto const master = infoOfMaster(told);
    CropPath path;
    addStep(path, "{}x is published (line {line})",
            {plain(told.published().entry.zoomRatio), static_cast<double>(told.published().line)},
            Domain::ActiveArray, info.activeArray);
    addStep(path,
            "mapped for {}x to the sensor's {} by {} degrees beside the master's {} by {} (line "
            "{line})",
            {plain(mappedRatio), plain(info.degreeH), plain(info.degreeV), plain(master.degreeH),
             plain(master.degreeV), static_cast<double>(told.angles().line)},
            Domain::ActiveArray, active);
    return path;
}

std::map<uint16_t, CropPath> portPaths(Told const& told, uint32_t sensorId, MSize output,
                                       CropPath const& path) {
    using namespace P1Port;
    std::map<uint16_t, CropPath> ports;
    for (uint16_t const port : {P1_PORT_R1, P1_PORT_R3}) {
        if (told.hasPort(sensorId, port)) {
            addFit(ports[port] = path, output, Domain::Tg, {});
        }
    }
    if (ports.empty()) {
        return ports;
    }
    auto const& fsp = told.fsp().config.fspPorts;
    auto const follows = fsp.find(sensorId);
    bool const wantsR3 = follows != fsp.end() && follows->second == P1_PORT_R3;
    uint16_t const wanted = wantsR3 ? P1_PORT_R3 : P1_PORT_R1;
    auto const taken = ports.find(wanted) != ports.end() ? ports.find(wanted) : ports.begin();

    CropPath bundle = taken->second;
    auto const bundlePort = static_cast<double>(P1_PORT_R2);
    auto const takenPort = static_cast<double>(taken->first);
    if (follows != fsp.end() && taken->first == wanted) {
        addStep(bundle, "the bundle port {x} takes the crop of port {x} (line {line})",
                {bundlePort, takenPort, static_cast<double>(told.fsp().line)}, Domain::Tg,
                bundle.crop);
    } else {
        addStep(bundle, "the bundle port {x} takes the crop of port {x}", {bundlePort, takenPort},
                Domain::Tg, bundle.crop);
    }
    ports[P1_PORT_R2] = std::move(bundle);
    return ports;
}

/// Runs add(sensor, mode, path, active crop) for each sensor that is mapped and streams.
using Add = std::function<void(uint32_t, uint32_t, CropPath, MRect const&)>;
void forEachMapped(Told& told, Told::Deposit const& deposit, Add const& add) {
    auto const mapped = told.mapPublished();
    for (auto const* entry : inKeyOrder(mapped.sensorCrops)) {
        auto const& [sensorId, active] = *entry;
        if (auto const mode = streamingMode(deposit, sensorId)) {
            add(sensorId, *mode, mappedPath(told, mapped.zoomRatio, sensorId, active), active);
        }
    }
}

/// @return whether there is anything to compare the asked ratio with.
bool givesEntry(Told::Published const& published, Explained& explained) {
    if (published.line == 0) {
        explained.reason = {"nothing is published yet", {}};
        return false;
    }
    if (!published.entry.enable) {
        explained.reason = {"what is published (line {line}) is switched off",
                            {static_cast<double>(published.line)}};
        return false;
    }
    return true;
}

}  // namespace

void giveReasonOfExternalP1(Told const& told, P1Question const& question, Explained& explained) {
    auto const& published = told.published();
    if (!givesEntry(published, explained)) {
        return;
    }
    bool const isWider = published.entry.zoomRatio < question.request.zoomRatio;
    char const* words =
        "published {}x (line {line}) is not below the asked {}x: P1 follows only to a wider view";
    if (isWider) {
        words = question.isOverridden
                    ? "published {}x (line {line}) is below the asked {}x: P1 shows the wider view"
                    : "published {}x (line {line}) is below the asked {}x, but the sensor crop "
                      "mapper has no crops";
    }
    explained.reason = {words,
                        {plain(published.entry.zoomRatio), static_cast<double>(published.line),
                         plain(question.request.zoomRatio)}};
}

void giveReasonOfExternalP2(Told const& told, P2Question const& question, Explained& explained) {
    auto const& published = told.published();
    if (!givesEntry(published, explained)) {
        return;
    }
    bool const isNarrower = published.entry.zoomRatio >= question.request.zoomRatio;
    char const* words = "published {}x (line {line}) is below the asked {}x: left to P1";
    if (question.isOverridden) {
        words = isNarrower ? "published {}x (line {line}) is not below the asked {}x: P2 narrows"
                           : "published {}x (line {line}) is below the asked {}x, but the query is "
                             "manual";
    } else if (isNarrower || question.isManual) {
        words =
            "published {}x (line {line}) for the asked {}x, but the sensor crop mapper has no "
            "crops";
    }
    explained.reason = {words,
                        {plain(published.entry.zoomRatio), static_cast<double>(published.line),
                         plain(question.request.zoomRatio)}};
}

void addExternalP1(Told& told, uint32_t requestNo, Explained& explained) {
    auto const* const deposit = told.deposit(requestNo);
    if (deposit == nullptr) {
        return;
    }
    forEachMapped(
        told, *deposit, [&](uint32_t sensorId, uint32_t mode, CropPath path, MRect const& active) {
            if (auto const* matrix = told.matrixOf(sensorId, mode)) {
                addConversion(path, mode, deposit->line, *matrix, active);
            } else {
                addStep(path, "sensor mode {} (line {line}) has no matrix: taken as it is",
                        {static_cast<double>(mode), static_cast<double>(deposit->line)}, Domain::Tg,
                        active);
            }
            explained.ports[sensorId] =
                portPaths(told, sensorId, told.outputSize(sensorId, mode), path);
        });
}

// P2 works in the active array. A crop that the caller's record has already is kept.
void addExternalP2(Told& told, uint32_t requestNo, Explained& explained) {
    auto const* const deposit = told.deposit(requestNo);
    if (deposit == nullptr) {
        return;
    }
    forEachMapped(told, *deposit,
                  [&](uint32_t sensorId, uint32_t mode, CropPath path, MRect const& /*active*/) {
                      addFit(path, told.outputSize(sensorId, mode), Domain::ActiveArray, {});
                      explained.streams.try_emplace(sensorId, std::move(path));
                  });
}

}  // namespace zoomreplay
