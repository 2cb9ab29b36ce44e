// Packs what each request has for the timeline and the findings.
#include "Overview.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>

#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

using NSCam::MRect;

constexpr std::array kStages{Stage::P1, Stage::P2, Stage::ThreeA};

bool reachesBeyond(MRect const& crop, ActiveRect const& whole) {
    double const right = static_cast<double>(crop.x) + crop.w;
    double const bottom = static_cast<double>(crop.y) + crop.h;
    return crop.x < whole[0] || crop.y < whole[1] || right > whole[0] + whole[2] ||
           bottom > whole[1] + whole[3];
}

bool isOutside(Rig const& rig, ReplayedCrop const& crop) {
    std::optional<ActiveRect> whole;
    if (crop.domain == Domain::ActiveArray) {
        whole = activeArrayOf(rig, crop.sensorId);
    } else if (auto const* const mode = findMode(rig, crop.sensorId, crop.sensorMode);
               mode != nullptr && mode->size.has_value()) {
        whole = ActiveRect{0.0, 0.0, static_cast<double>(mode->size->w),
                           static_cast<double>(mode->size->h)};
    }
    return whole.has_value() && reachesBeyond(crop.crop, *whole);
}

bool isStale(ReplayedRequest const& request, ReplayedQuery const& query) {
    return query.isCached && request.data != nullptr &&
           std::any_of(query.crops.begin(), query.crops.end(), [&](ReplayedCrop const& crop) {
               auto const mode = request.data->sensorModes.find(crop.sensorId);
               return mode != request.data->sensorModes.end() && mode->second != crop.sensorMode;
           });
}

uint32_t marksOf(ReplayedRequest const& request, Rig const& rig) {
    uint32_t marks = request.doneLine.has_value() ? 0 : kMarkNeverDone;
    for (ReplayedQuery const& query : request.queries) {
        marks |= query.state == QueryState::Overridden ? kMarkOverridden : 0;
        marks |= query.state == QueryState::Exception ? kMarkException : 0;
        marks |= query.state == QueryState::Fatal ? kMarkFatal : 0;
        marks |= query.isCached ? kMarkCached : 0;
        marks |= isStale(request, query) ? kMarkStale : 0;
        for (ReplayedCrop const& crop : query.crops) {
            marks |= crop.asked.has_value() ? kMarkCorrected : 0;
            marks |= isOutside(rig, crop) ? kMarkOutside : 0;
        }
    }
    return marks;
}

ReplayedQuery const* lastOverride(ReplayedRequest const& request, Stage stage) {
    auto const found =
        std::find_if(request.queries.rbegin(), request.queries.rend(), [stage](auto const& query) {
            return query.stage == stage && query.state == QueryState::Overridden;
        });
    return found == request.queries.rend() ? nullptr : &*found;
}

std::vector<LeadCrop> leadsOf(ReplayedRequest const& request) {
    std::map<uint32_t, ReplayedCrop const*> leads;
    for (Stage const stage : {Stage::P2, Stage::P1}) {
        auto const* const query = lastOverride(request, stage);
        for (size_t i = 0; query != nullptr && i < query->crops.size(); ++i) {
            ReplayedCrop const& crop = query->crops[i];
            if (crop.kind != ReplayedCrop::Kind::Extra) {
                leads.emplace(crop.sensorId, &crop);
            }
        }
    }
    std::vector<LeadCrop> list;
    list.reserve(leads.size());
    for (auto const& [sensorId, crop] : leads) {
        list.push_back({sensorId, crop});
    }
    return list;
}

// 0 not asked, then in the order of QueryState; cached answers 8 more. A stage stands where its
// last answer left it, unless something broke.
int64_t stateOf(ReplayedRequest const& request, Stage stage) {
    constexpr int64_t kCached = 8;
    int64_t state = 0;
    int64_t cached = 0;
    for (ReplayedQuery const& query : request.queries) {
        if (query.stage != stage) {
            continue;
        }
        auto const own = static_cast<int64_t>(query.state) + 1;
        auto const kBroken = static_cast<int64_t>(QueryState::Exception) + 1;
        state = state < kBroken ? own : std::max(state, own);
        cached = query.isCached ? kCached : cached;
    }
    return state + cached;
}

bool isCorrected(ReplayedRequest const& request, uint32_t sensorId) {
    for (ReplayedQuery const& query : request.queries) {
        for (ReplayedCrop const& crop : query.crops) {
            if (crop.sensorId == sensorId && crop.asked.has_value()) {
                return true;
            }
        }
    }
    return false;
}

void addLead(PackedRow& out, ReplayedCrop const& crop) {
    constexpr uint8_t kAngleDecimals = 2;
    constexpr uint8_t kShareDecimals = 4;
    if (!crop.view.has_value()) {
        return;
    }
    if (auto const& sight = crop.view->sight) {
        out.key("angle").decimal(sight->across.extent(), kAngleDecimals);
        out.key("right").decimal(sight->across.centre, kAngleDecimals);
        out.key("down").decimal(sight->down.centre, kAngleDecimals);
    } else {
        out.key("share").decimal(crop.view->share, kShareDecimals);
    }
    if (crop.difference.has_value()) {
        out.key("difference").decimal(crop.difference->across, kAngleDecimals);
    }
}

int64_t modeOf(ReplayedRequest const& request, uint32_t sensorId) {
    constexpr int64_t kNone = -1;
    if (request.data == nullptr) {
        return kNone;
    }
    auto const mode = request.data->sensorModes.find(sensorId);
    bool const streams = mode != request.data->sensorModes.end() &&
                         mode->second != NSCam::Feature::kSensorNotStreaming;
    return streams ? int64_t{mode->second} : kNone;
}

void addSensors(PackedRow& out, ReplayedRequest const& request, Overview const& overview) {
    std::map<uint32_t, ReplayedCrop const*> sensors;
    if (request.data != nullptr) {
        for (auto const& [sensorId, mode] : request.data->sensorModes) {
            sensors[sensorId] = nullptr;
        }
    }
    for (LeadCrop const& lead : overview.leads) {
        sensors[lead.sensorId] = lead.crop;
    }
    out.open('{');
    for (auto const& [sensorId, crop] : sensors) {
        out.key(std::to_string(sensorId)).open('{');
        out.key("mode").number(modeOf(request, sensorId));
        out.key("corrected").number(int64_t{isCorrected(request, sensorId)});
        if (crop != nullptr) {
            addLead(out, *crop);
        }
        out.close('}');
    }
    out.close('}');
}

// The lens by its number, which nearly all have: the page draws it beside the sensors.
void addPhone(PackedRow& out, Observation const& observed) {
    out.open('{');
    if (observed.zoomRatio.has_value()) {
        out.key("zoom").number(*observed.zoomRatio);
    }
    if (observed.activePhysicalId.has_value()) {
        if (auto const lens = scenario::parseNumber<uint32_t>(*observed.activePhysicalId)) {
            out.key("lens").number(int64_t{*lens});
        }
    }
    out.close('}');
}

}  // namespace

Overview overviewOf(ReplayedRequest const& request, Rig const& rig) {
    Overview overview;
    overview.marks = marksOf(request, rig);
    overview.leads = leadsOf(request);
    if (!request.queries.empty()) {
        overview.asked = request.queries.front().request.zoomRatio;
    }
    bool isOverridden = false;
    for (ReplayedQuery const& query : request.queries) {
        bool const decides = query.state == QueryState::Overridden;
        if (query.need.has_value() && (decides || (!isOverridden && !overview.override))) {
            overview.override = query.need->zoomRatio;
            isOverridden = isOverridden || decides;
        }
    }
    return overview;
}

PackedRow overviewData(ReplayedRequest const& request, Overview const& overview) {
    PackedRow out;
    out.open('{');
    out.key("no").number(int64_t{request.requestNo});
    out.key("line").number(static_cast<int64_t>(request.firstLine));
    out.key("marks").number(int64_t{overview.marks});
    out.key("mode").number(static_cast<int64_t>(request.mode));
    if (overview.asked.has_value()) {
        out.key("asked").number(*overview.asked);
        out.key("asker").number(int64_t{request.queries.front().request.sensorId});
    }
    if (overview.override.has_value()) {
        out.key("override").number(*overview.override);
    }
    if (request.observed.has_value()) {
        addPhone(out.key("phone"), *request.observed);
    }
    out.key("stages").open('{');
    for (Stage const stage : kStages) {
        out.key(nameOf(stage)).number(stateOf(request, stage));
    }
    out.close('}');
    addSensors(out.key("sensors"), request, overview);
    out.close('}');
    return out;
}

}  // namespace zoomreplay
