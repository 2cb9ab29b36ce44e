// ByRequest mode: crops of the setting that is kept.
#include "Modes.h"

namespace zoomreplay {
namespace {

using namespace NSCam;
using namespace NSCam::Feature;

uint64_t broughtBy(Told::Setting const& setting) {
    return setting.renewedBy != 0 ? setting.renewedBy : setting.line;
}

std::array<double, 4> rectOf(MRectF const& rect) {
    return {plain(rect.x), plain(rect.y), plain(rect.w), plain(rect.h)};
}

void addSetting(CropPath& path, Told::Setting const& setting, std::string_view words,
                MRectF const& active) {
    auto const line = static_cast<double>(setting.line);
    path.steps.push_back({{words, {line}}, Domain::ActiveArray, rectOf(active)});
    if (setting.renewedBy != 0) {
        path.steps.push_back({{"the setting was renewed for request {} (line {line})",
                               {static_cast<double>(setting.value->requestNo),
                                static_cast<double>(setting.renewedBy)}},
                              Domain::ActiveArray,
                              rectOf(active)});
    }
}

}  // namespace

void giveReasonOfByRequestP2(Told const& told, P2Question const& question, Explained& explained) {
    auto const& setting = told.setting();
    if (!setting.value.has_value()) {
        explained.reason = {"no setting is kept", {}};
        return;
    }
    auto const line = static_cast<double>(broughtBy(setting));
    auto const ratio = plain(setting.value->zoomRatio);
    auto const asked = plain(question.request.zoomRatio);
    auto const itsRequest = static_cast<double>(setting.value->requestNo);
    auto const thisRequest = static_cast<double>(question.request.requestNo);

    if (!setting.value->overrideValid) {
        explained.reason = {"the setting is switched off (line {line})", {line}};
    } else if (setting.value->requestNo <= question.request.requestNo) {
        explained.reason = {"the setting (line {line}) is for request {}, not ahead of request {}",
                            {line, itsRequest, thisRequest}};
    } else if (question.isManual) {
        explained.reason = {
            "a manual query takes the setting (line {line}), which is for request {}, ahead of "
            "request {}",
            {line, itsRequest, thisRequest}};
    } else if (setting.value->zoomRatio >= question.request.zoomRatio) {
        explained.reason = {
            "{}x of the setting (line {line}) for request {}, ahead of request {}, is not below "
            "the asked {}x",
            {ratio, line, itsRequest, thisRequest, asked}};
    } else {
        explained.reason = {
            "{}x of the setting (line {line}) is below the asked {}x, and the query is not manual",
            {ratio, line, asked}};
    }
}

void addByRequestP2(Told& told, uint32_t requestNo, Explained& explained) {
    auto const* const deposit = told.deposit(requestNo);
    auto const& setting = told.setting();
    if (deposit == nullptr || !setting.value.has_value()) {
        return;
    }
    for (auto const& [sensorId, preview] : setting.value->previewAaCrops) {
        auto const mode = streamingMode(*deposit, sensorId);
        auto const* const matrix = mode.has_value() ? told.matrixOf(sensorId, *mode) : nullptr;
        if (matrix == nullptr) {
            continue;
        }
        auto const size = told.outputSize(sensorId, *mode);

        CropPath path;
        addSetting(path, setting, "preview crop of the setting (line {line})", preview);
        addConversion(path, *mode, deposit->line, *matrix, preview);
        addFit(path, size, Domain::Tg, {});
        explained.streams[sensorId] = std::move(path);

        auto const second = setting.value->extraAaCrops.find(sensorId);
        bool const isGiven = second != setting.value->extraAaCrops.end();
        MRectF const active = isGiven ? second->second : MRectF{};
        CropPath extra;
        addSetting(extra, setting,
                   isGiven ? "second crop of the setting (line {line})"
                           : "the setting has no second crop (line {line}): empty",
                   active);
        addConversion(extra, *mode, deposit->line, *matrix, active);
        addFit(extra, size, Domain::Tg, {});
        if (active == MRectF{}) {
            extra.asked.reset();  // nobody asked for it
        }
        explained.extras[sensorId] = std::move(extra);
    }
}

}  // namespace zoomreplay
