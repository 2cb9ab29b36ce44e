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
    CropRecord record{kind, sensorId, mode, {}, domain, crop, {}, {}, {}, {}, {}, {}};
    record.view = viewOf(context.rig, sensorId, mode, crop, domain);
    return record;
}

void setPath(CropRecord& record, CropPath const& path) {
    record.steps = path.steps;
    record.isExplained = path.crop == record.crop;
    record.minSize = path.minSize;
    if (path.asked != record.crop) {
        record.asked = path.asked;
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

void addSensorCrops(CropContext const& context, std::vector<CropRecord>& records, Kind kind,
                    Domain domain, SensorCrops const& crops,
                    std::map<uint32_t, CropPath> const& paths) {
    for (auto const* entry : inKeyOrder(crops)) {
        auto record = recordOf(context, kind, domain, entry->first, entry->second);
        if (auto const path = paths.find(entry->first); path != paths.end()) {
            setPath(record, path->second);
        }
        records.push_back(std::move(record));
    }
}

}  // namespace

std::vector<CropRecord> cropRecords(CropContext const& context, ZoomOverrideP1Need const& need) {
    std::vector<CropRecord> records;
    for (auto const* sensor : inKeyOrder(need.tgCrops)) {
        auto const paths = context.explained.ports.find(sensor->first);
        for (auto const& [port, crop] : sensor->second) {
            auto record = recordOf(context, Kind::Port, Domain::Tg, sensor->first, crop);
            if (paths != context.explained.ports.end()) {
                if (auto const path = paths->second.find(port); path != paths->second.end()) {
                    setPath(record, path->second);
                }
            }
            addPort(records, std::move(record), port);
        }
    }
    compareWithMaster(records, context.rig.master);
    return records;
}

std::vector<CropRecord> cropRecords(CropContext const& context, ZoomOverrideP2Need const& need) {
    auto const domain = domainOfP2(context.mode);
    std::vector<CropRecord> records;
    addSensorCrops(context, records, Kind::Stream, domain, need.streamCrops,
                   context.explained.streams);
    addSensorCrops(context, records, Kind::Extra, Domain::Tg, need.extraTgCrops,
                   context.explained.extras);
    compareWithMaster(records, context.rig.master);
    return records;
}

}  // namespace zoomreplay
