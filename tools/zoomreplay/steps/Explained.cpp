#include "Explained.h"

#include "Modes.h"

namespace zoomreplay {
namespace {

using namespace NSCam;
using namespace NSCam::Feature;

CropPath heldByCaller(MRect const& crop, Domain domain) {
    CropPath path;
    addStep(path, "in the caller's record before the query", {}, domain, crop);
    return path;
}

std::map<uint32_t, CropPath> heldByCaller(std::unordered_map<uint32_t, MRect> const& crops,
                                          Domain domain) {
    std::map<uint32_t, CropPath> paths;
    for (auto const& [sensorId, crop] : crops) {
        paths[sensorId] = heldByCaller(crop, domain);
    }
    return paths;
}

}  // namespace

std::optional<uint32_t> streamingMode(Told::Deposit const& deposit, uint32_t sensorId) {
    auto const mode = deposit.data->sensorModes.find(sensorId);
    bool const isStreaming =
        mode != deposit.data->sensorModes.end() && mode->second != kSensorNotStreaming;
    return isStreaming ? std::optional(mode->second) : std::nullopt;
}

Explained explain(Told& told, P1Question const& question) {
    Explained explained;
    if (told.isP1Closed()) {
        explained.reason = {"P1 overrides are closed by a property", {}};
        return explained;
    }
    if (auto const since = told.keptP1Since(question.request.requestNo)) {
        explained.reason = {"the answer of line {line}, kept until the request is done",
                            {static_cast<double>(*since)}};
        explained.keptSince = since;
        return explained;
    }

    for (auto const& [sensorId, ports] : question.before.tgCrops) {
        for (auto const& [port, crop] : ports) {
            explained.ports[sensorId][port] = heldByCaller(crop, Domain::Tg);
        }
    }
    auto const requestNo = question.request.requestNo;
    switch (told.mode()) {
        case ZoomOverrideMode::InstantRequest:
            giveReasonOfInstantP1(told, question, explained);
            if (question.isOverridden) {
                addInstantP1(told, requestNo, explained);
            }
            break;
        case ZoomOverrideMode::ExternalAPI:
            giveReasonOfExternalP1(told, question, explained);
            if (question.isOverridden) {
                addExternalP1(told, requestNo, explained);
            }
            break;
        case ZoomOverrideMode::ByRequest:
            explained.reason = {"mode ByRequest overrides P2 only", {}};
            break;
        case ZoomOverrideMode::None:
            explained.reason = {"nothing is overridden without a mode", {}};
    }
    return explained;
}

Explained explain(Told& told, P2Question const& question) {
    Explained explained;
    if (told.isP2Closed()) {
        explained.reason = {"P2 overrides are closed by a property", {}};
        return explained;
    }
    explained.streams = heldByCaller(question.before.streamCrops, domainOfP2(told.mode()));
    explained.extras = heldByCaller(question.before.extraTgCrops, Domain::Tg);
    auto const requestNo = question.request.requestNo;
    switch (told.mode()) {
        case ZoomOverrideMode::ByRequest:
            giveReasonOfByRequestP2(told, question, explained);
            if (question.isOverridden) {
                addByRequestP2(told, requestNo, explained);
            }
            break;
        case ZoomOverrideMode::ExternalAPI:
            giveReasonOfExternalP2(told, question, explained);
            if (question.isOverridden) {
                addExternalP2(told, requestNo, explained);
            }
            break;
        case ZoomOverrideMode::InstantRequest:
            explained.reason = {"mode InstantRequest overrides P1 only", {}};
            break;
        case ZoomOverrideMode::None:
            explained.reason = {"nothing is overridden without a mode", {}};
    }
    return explained;
}

}  // namespace zoomreplay
