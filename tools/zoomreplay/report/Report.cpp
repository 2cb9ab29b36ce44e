// Puts the parts of the page together.
#include "Report.h"

#include <array>
#include <string_view>
#include <utility>

#include "DifferenceData.h"
#include "Overview.h"
#include "Page.h"
#include "PageParts.h"
#include "PageText.h"
#include "RequestData.h"
#include "RigData.h"
#include "scenario/text/Modes.h"

namespace zoomreplay {
namespace {

using scenario::Json;

// The overview is unpacked whole, a request's block when somebody looks at the request.
constexpr size_t kOverviewsPerBlock = 8192;
constexpr size_t kRequestsPerBlock = 512;

}  // namespace

Report::Report(std::string scenario, Shown shown)
    : mScenario(std::move(scenario)),
      mShown(shown),
      mOverview(kOverviewsPerBlock),
      mRequests(kRequestsPerBlock),
      mDifferences(kOverviewsPerBlock) {}

void Report::take(ReplayedRequest const& request, Rig const& rig) {
    Overview const overview = overviewOf(request, rig);
    mOverview.add(request.index, overviewData(request, overview));
    mRequests.add(request.index, requestData(request));
    mJumps.take(request, rig);
    mPlain.take(request, overview);
    ++mCount;
}

void Report::take(Difference const& difference) {
    mDifferences.add(mDifferenceCount++, differenceData(difference));
}

Json Report::head(std::string const& scenario, Shown shown) {
    Json json{{"scenario", scenario},         {"logged", shown.isLogged},
              {"compared", shown.isCompared}, {"requestsPerBlock", kRequestsPerBlock},
              {"modes", Json::array()},       {"rigs", Json::array()}};
    for (auto const mode : scenario::allModes()) {
        json["modes"].push_back(scenario::nameOf(mode));
    }
    return json;
}

std::string Report::data(ReplaySummary const& replay) {
    Json json = head(mScenario, mShown);
    json["total"] = replay.total;
    json["shown"] = mCount;
    for (Rig const& rig : replay.rigs) {
        json["rigs"].push_back(rigData(rig));
    }
    if (auto const& fatal = replay.fatal) {
        json["fatal"] = {{"line", fatal->line}, {"op", fatal->op}, {"text", fatal->text}};
        if (fatal->request.has_value()) {
            json["fatal"]["at"] = *fatal->request;
        }
    }
    json["jumps"] = Json::array();
    for (Jump const& jump : mJumps.worstFirst()) {
        json["jumps"].push_back(
            {{"index", jump.index}, {"sensor", jump.sensorId}, {"words", textOf(jump)}});
    }
    json["allJumps"] = mJumps.count();
    std::string out = inScript(json);
    out.pop_back();
    out += ",\n\"overview\":";
    mOverview.appendJson(out);
    out += ",\n\"requests\":";
    mRequests.appendJson(out);
    out += ",\n\"differences\":";
    mDifferences.appendJson(out);
    out += '}';
    return out;
}

void Report::finish(ReplaySummary const& replay) {
    mJumps.finish(replay);
    mReplay = &replay;
}

void Report::write(File& file) {
    writePage({kPageHtml, kPageStyle, mPlain.text(*mReplay), data(*mReplay), kPageScripts},
              [&file](std::string_view text) { file.write(text); });
}

}  // namespace zoomreplay
