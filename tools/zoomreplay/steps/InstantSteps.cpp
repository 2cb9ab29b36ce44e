// InstantRequest mode: custom crops from the metadata, and streams that follow them.
#include "Modes.h"

namespace zoomreplay {
namespace {

using namespace NSCam;
using namespace NSCam::Feature;

void addCustom(Told& told, Told::Deposit const& deposit, int64_t streamId, MRect const& active,
               Explained& explained) {
    auto const sensorId = sensorIdOfStream(streamId);
    auto const mode = streamingMode(deposit, sensorId);
    if (!mode.has_value()) {
        return;
    }
    auto const& data = *deposit.data;
    auto const constraint = data.constraintStreams.find(streamId);
    auto const leader = constraint == data.constraintStreams.end() ? streamId : constraint->second;
    auto const size = data.streamSizes.find(leader);
    auto const* const matrix = told.matrixOf(sensorId, *mode);
    if (matrix == nullptr || size == data.streamSizes.end()) {
        return;  // the library does not answer
    }

    CropPath path;
    auto const [high, low] = numbersOf(streamId);
    addStep(path, "custom crop of stream {stream} (line {line})",
            {high, low, static_cast<double>(told.metadata().line)}, Domain::ActiveArray, active);
    addConversion(path, *mode, deposit.line, *matrix, active);
    addFit(path, told.outputSize(sensorId, *mode), Domain::Tg, LeastSize{size->second, leader});
    explained.ports[sensorId][portKeyOfStream(streamId)] = std::move(path);
}

// The followed stream's crop counts where it lies on the follower's sensor; elsewhere there is an
// empty one.
void addFollower(Told::Deposit const& deposit, int64_t streamId, int64_t leader,
                 Explained& explained) {
    auto const sensorId = sensorIdOfStream(streamId);
    auto const leaderPort = portKeyOfStream(leader);
    auto& ports = explained.ports[sensorId];
    auto const [leaderPath, isNew] = ports.try_emplace(leaderPort);
    if (isNew) {
        addStep(leaderPath->second, "sensor {} has no crop for port {x}: empty",
                {static_cast<double>(sensorId), static_cast<double>(leaderPort)}, Domain::Tg, {});
    }
    CropPath path = leaderPath->second;
    auto const [high, low] = numbersOf(streamId);
    auto const [leaderHigh, leaderLow] = numbersOf(leader);
    addStep(path,
            "stream {stream} has no custom crop: takes that of port {x}, as it follows stream "
            "{stream} (line {line})",
            {high, low, static_cast<double>(leaderPort), leaderHigh, leaderLow,
             static_cast<double>(deposit.line)},
            Domain::Tg, path.crop);
    ports[portKeyOfStream(streamId)] = std::move(path);
}

}  // namespace

void giveReasonOfInstantP1(Told const& told, P1Question const& question, Explained& explained) {
    auto const& metadata = told.metadata();
    auto const line = static_cast<double>(metadata.line);
    if (!metadata.isUsable) {
        explained.reason = {"the metadata has no usable custom crops (line {line})", {line}};
        return;
    }
    bool const isWider = metadata.zoomRatio < question.request.zoomRatio;
    if (metadata.line == 0) {
        explained.reason = {isWider ? "no metadata has come yet, which counts as 0x: P1 shows the "
                                      "wider view, without any crop"
                                    : "no metadata has come yet",
                            {}};
        return;
    }
    explained.reason = {
        isWider
            ? "{}x of the metadata (line {line}) is below the asked {}x: P1 shows the wider view"
            : "{}x of the metadata (line {line}) is not below the asked {}x: P1 follows only to "
              "a wider view",
        {plain(metadata.zoomRatio), line, plain(question.request.zoomRatio)}};
}

void addInstantP1(Told& told, uint32_t requestNo, Explained& explained) {
    auto const* const deposit = told.deposit(requestNo);
    if (deposit == nullptr) {
        return;
    }
    auto const& crops = told.metadata().crops;
    for (auto const& [streamId, active] : crops) {
        addCustom(told, *deposit, streamId, active, explained);
    }
    for (auto const& [streamId, size] : deposit->data->streamSizes) {
        auto const constraint = deposit->data->constraintStreams.find(streamId);
        bool const isFollower = crops.find(streamId) == crops.end() &&
                                constraint != deposit->data->constraintStreams.end() &&
                                crops.find(constraint->second) != crops.end();
        if (isFollower) {
            addFollower(*deposit, streamId, constraint->second, explained);
        }
    }
}

}  // namespace zoomreplay
