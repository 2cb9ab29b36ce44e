// Puts each crop of an answer beside what was asked for, and beside the crop of the master.
#include "CropRecords.h"

#include <algorithm>

#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam;           // NOLINT(google-build-using-namespace)
using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

using Kind = CropRecord::Kind;
using SensorCrops = std::unordered_map<uint32_t, MRect>;

uint32_t sensorModeOf(CropContext const& context, uint32_t sensorId) {
    if (context.data == nullptr) {
        return kSensorNotStreaming;
    }
    auto const mode = context.data->sensorModes.find(sensorId);
    return mode == context.data->sensorModes.end() ? kSensorNotStreaming : mode->second;
}

CropRecord recordOf(CropContext const& context, Kind kind, Domain domain, uint32_t sensorId,
                    MRect const& crop) {
    auto const mode = sensorModeOf(context, sensorId);
    CropRecord record{kind, sensorId, mode, {}, domain, crop, {}, {}, {}, {}};
    record.view = viewOf(context.rig, sensorId, mode, crop, domain);
    return record;
}

// Where the mode has no matrix nothing is known of what was asked for.
template <typename Rect>
void setAsked(CropContext const& context, CropRecord& record, Rect const& active) {
    auto const* const mode = findMode(context.rig, record.sensorId, record.sensorMode);
    if (mode == nullptr || !mode->fromActive.has_value()) {
        return;
    }
    MRect const asked = toTg(*mode->fromActive, active);
    if (asked != record.crop) {
        record.asked = asked;
    }
}

// InstantRequest: the custom crop of the port's stream, or of the one that it must follow, and the
// size of the stream that the crop was made for.
void setStream(CropContext const& context, CropRecord& record, uint16_t port) {
    if (context.data == nullptr || context.asked == nullptr) {
        return;
    }
    for (auto const& [streamId, size] : context.data->streamSizes) {
        if (sensorIdOfStream(streamId) != record.sensorId || portKeyOfStream(streamId) != port) {
            continue;
        }
        auto const constraint = context.data->constraintStreams.find(streamId);
        bool const isFollower = constraint != context.data->constraintStreams.end();
        int64_t const followed = isFollower ? constraint->second : streamId;
        if (auto const followedSize = context.data->streamSizes.find(followed);
            followedSize != context.data->streamSizes.end()) {
            record.minSize = followedSize->second;
        }
        auto const own = context.asked->custom(streamId);
        if (auto const asked = own.has_value() ? own : context.asked->custom(followed)) {
            setAsked(context, record, *asked);
        }
        return;
    }
}

// Ports with one crop, as those of ExternalAPI mode have, share a record.
void addPort(std::vector<CropRecord>& records, CropRecord record, uint16_t port) {
    auto const same = std::find_if(records.begin(), records.end(), [&](CropRecord const& other) {
        return other.sensorId == record.sensorId && other.crop == record.crop &&
               other.asked == record.asked && other.minSize == record.minSize;
    });
    if (same != records.end()) {
        same->ports.push_back(port);
        return;
    }
    record.ports.push_back(port);
    records.push_back(std::move(record));
}

bool sharePort(CropRecord const& a, CropRecord const& b) {
    return std::find_first_of(a.ports.begin(), a.ports.end(), b.ports.begin(), b.ports.end()) !=
           a.ports.end();
}

// The master's crop that a crop is seen beside: of the same port if there is one.
CropRecord const* masterOf(std::vector<CropRecord> const& records, CropRecord const& record,
                           uint32_t master) {
    CropRecord const* found = nullptr;
    for (CropRecord const& other : records) {
        if (other.sensorId == master && other.kind == record.kind) {
            if (found == nullptr || (sharePort(other, record) && !sharePort(*found, record))) {
                found = &other;
            }
        }
    }
    return found;
}

void compareWithMaster(std::vector<CropRecord>& records, std::optional<uint32_t> master) {
    if (!master.has_value()) {
        return;
    }
    for (CropRecord& record : records) {
        auto const* const other = masterOf(records, record, *master);
        if (other != nullptr && record.view.has_value() && other->view.has_value() &&
            record.view->sight.has_value() && other->view->sight.has_value()) {
            Sight const& own = *record.view->sight;
            Sight const& seen = *other->view->sight;
            record.difference = {own.across.extent() - seen.across.extent(),
                                 own.down.extent() - seen.down.extent()};
        }
    }
}

void addByRequest(CropContext const& context, std::vector<CropRecord>& records, Kind kind,
                  SensorCrops const& crops, std::unordered_map<uint32_t, MRectF> const& asked) {
    for (auto const* entry : inKeyOrder(crops)) {
        auto record = recordOf(context, kind, Domain::Tg, entry->first, entry->second);
        // A sensor without a second crop gets an empty one, which nobody asked for.
        auto const active = asked.find(entry->first);
        if (context.asked != nullptr && active != asked.end() && active->second != MRectF{}) {
            setAsked(context, record, active->second);
        }
        records.push_back(std::move(record));
    }
}

// P2 crops of this mode stay in the active array.
void addExternal(CropContext const& context, std::vector<CropRecord>& records,
                 SensorCrops const& crops) {
    auto const asked = context.asked != nullptr ? context.asked->published() : SensorCrops{};
    for (auto const* entry : inKeyOrder(crops)) {
        auto record =
            recordOf(context, Kind::Stream, Domain::ActiveArray, entry->first, entry->second);
        auto const active = asked.find(entry->first);
        if (active != asked.end() && active->second != record.crop) {
            record.asked = active->second;
        }
        records.push_back(std::move(record));
    }
}

}  // namespace

std::vector<CropRecord> cropRecords(CropContext const& context, ZoomOverrideP1Need const& need) {
    bool const isExternal = context.mode == ZoomOverrideMode::ExternalAPI;
    auto const published =
        isExternal && context.asked != nullptr ? context.asked->published() : SensorCrops{};
    std::vector<CropRecord> records;
    for (auto const* sensor : inKeyOrder(need.tgCrops)) {
        for (auto const& [port, crop] : sensor->second) {
            auto record = recordOf(context, Kind::Port, Domain::Tg, sensor->first, crop);
            if (!isExternal) {
                setStream(context, record, port);
            } else if (auto const asked = published.find(sensor->first); asked != published.end()) {
                setAsked(context, record, asked->second);
            }
            addPort(records, std::move(record), port);
        }
    }
    compareWithMaster(records, context.rig.master);
    return records;
}

std::vector<CropRecord> cropRecords(CropContext const& context, ZoomOverrideP2Need const& need) {
    std::vector<CropRecord> records;
    if (domainOfP2(context.mode) == Domain::ActiveArray) {
        addExternal(context, records, need.streamCrops);
    } else {
        addByRequest(context, records, Kind::Stream, need.streamCrops, need.previewAaCrops);
        addByRequest(context, records, Kind::Extra, need.extraTgCrops, need.extraAaCrops);
    }
    compareWithMaster(records, context.rig.master);
    return records;
}

}  // namespace zoomreplay
