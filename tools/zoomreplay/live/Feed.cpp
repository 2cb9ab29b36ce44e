// Packs what is new into messages.
#include "Feed.h"

#include <algorithm>
#include <utility>

#include "report/Overview.h"
#include "report/PageText.h"
#include "report/RequestData.h"
#include "report/RigData.h"

namespace zoomreplay {
namespace {

using namespace std::chrono_literals;
using scenario::Json;

// Several lines about a request come in one message.
constexpr auto kTellingDelay = 40ms;
constexpr size_t kRowsOfFold = 512;

// A jump depends on the requests on both sides of it.
constexpr size_t kRequestsForJumps = 96;
constexpr size_t kNeighbours = 3;

Json listOf(std::vector<std::string> const& words, size_t first) {
    return std::vector(words.begin() + static_cast<std::ptrdiff_t>(first), words.end());
}

std::string eventOf(std::string_view name, Json const& data) {
    return "event: " + std::string(name) + "\ndata: " + inScript(data) + "\n\n";
}

}  // namespace

void Feed::see(ReplayedRequest const& request, Rig const& rig) {
    if (mIsSilent) {
        mSeenInCopy = &request;
        return;
    }
    knowRig(request.rig, rig);
    mSeen[request.index] = &request;
    auto const now = Clock::now();
    if (!mDue.has_value()) {
        mDue = now + kTellingDelay;
    } else if (now >= *mDue) {
        tell();
    }
}

void Feed::take(ReplayedRequest const& request, Rig const& rig) {
    bool const isNew = mSeen.erase(request.index) > 0 || !request.doneLine.has_value();
    if (mIsSilent || !isNew) {
        return;
    }
    knowRig(request.rig, rig);
    add(request, true);
}

ReplayedRequest const* Feed::newest(bool (*test)(ReplayedRequest const&)) const {
    for (auto seen = mSeen.rbegin(); seen != mSeen.rend(); ++seen) {
        if (test(*seen->second)) {
            return seen->second;
        }
    }
    for (auto latest = mLatest.rbegin(); latest != mLatest.rend(); ++latest) {
        if (test(latest->second)) {
            return &latest->second;
        }
    }
    return nullptr;
}

uint32_t Feed::freeNumber() const {
    uint32_t last = 0;
    for (auto const& [index, request] : mSeen) {
        last = std::max(last, request->requestNo);
    }
    for (auto const& [index, request] : mLatest) {
        last = std::max(last, request.requestNo);
    }
    return last + 1;
}

void Feed::finish(ReplaySummary const& replay) {
    if (mIsSilent) {
        return;
    }
    tell();
    if (auto const& fatal = replay.fatal) {
        Json data{{"line", fatal->line}, {"op", fatal->op}, {"text", fatal->text}};
        if (fatal->request.has_value()) {
            data["at"] = *fatal->request;
        }
        mBroadcast.append(eventOf("fatal", data));
    }
}

void Feed::end(std::string_view trouble) {
    mBroadcast.append(eventOf("end", {{"trouble", trouble}}));
}

void Feed::close() {
    mBroadcast.append(eventOf("bye", {}));
    mBroadcast.close();
}

void Feed::knowRig(size_t place, Rig const& rig) {
    while (mRigs.size() <= place) {
        mRigs.push_back(rig);
    }
}

void Feed::add(ReplayedRequest const& request, bool isOver) {
    Overview overview = overviewOf(request, mRigs[request.rig]);
    if (!isOver) {
        overview.marks &= ~kMarkNeverDone;
    }
    mNew.rows.insert_or_assign(request.index,
                               Row{overviewData(request, overview), requestData(request)});
    mCount = std::max(mCount, request.index + 1);
    if (mLatest.empty() || request.index >= mLatest.begin()->first) {
        mLatest.insert_or_assign(request.index, request);
    }
}

void Feed::tell() {
    mDue.reset();
    for (auto const& [index, request] : std::exchange(mSeen, {})) {
        add(*request, false);
    }
    if (mNew.rows.empty()) {
        return;
    }
    findJumps();
    Said said = std::exchange(mNew, {});
    mBroadcast.append(messageOf(said, false));
    mNew.firstRig = mRigs.size();
    mNew.firstOverviewWords = mOverviews.words().size();
    mNew.firstRequestWords = mRequests.words().size();

    for (auto& [index, row] : said.rows) {
        mToFold.rows.insert_or_assign(index, std::move(row));
    }
    if (said.jumpsFrom.has_value()) {
        mToFold.jumpsFrom = std::min(*said.jumpsFrom, mToFold.jumpsFrom.value_or(*said.jumpsFrom));
    }
    if (mToFold.rows.size() >= kRowsOfFold) {
        fold();
    }
}

void Feed::fold() {
    Said const said = std::exchange(mToFold, {});
    mBroadcast.fold(messageOf(said, true));
    mToFold.firstRig = mRigs.size();
    mToFold.firstOverviewWords = mOverviews.words().size();
    mToFold.firstRequestWords = mRequests.words().size();
    mJumps.erase(mJumps.begin(), mJumps.lower_bound(mLatest.begin()->first));
}

// Looks at the latest requests anew, since each line about one may change what it shows.
void Feed::findJumps() {
    JumpFinder finder;
    for (auto const& [index, request] : mLatest) {
        finder.take(request, mRigs[request.rig]);
    }
    finder.finish({});
    size_t const first = mLatest.begin()->first;
    size_t const from = first == 0 ? 0 : first + kNeighbours;
    Jumps found;
    for (Jump const& jump : finder.worstFirst()) {
        if (jump.index >= from) {
            found.emplace(jump.index, JumpFound{jump.size, jump.sensorId, textOf(jump)});
        }
    }
    auto const before = mJumps.lower_bound(from);
    if (!std::equal(before, mJumps.end(), found.begin(), found.end())) {
        mJumps.erase(before, mJumps.end());
        mJumps.merge(found);
        mNew.jumpsFrom = from;
    }
    while (mLatest.size() > kRequestsForJumps) {
        mLatest.erase(mLatest.begin());
    }
}

std::string Feed::messageOf(Said const& said, bool isFold) {
    for (auto const& [index, row] : said.rows) {
        mOverviews.add(index, row.overview);
        mRequests.add(index, row.request);
    }
    Json data{{"count", mCount}, {"isFold", isFold}};
    data["overview"] = {{"block", mOverviews.takeBlock()},
                        {"firstWords", said.firstOverviewWords},
                        {"words", listOf(mOverviews.words(), said.firstOverviewWords)}};
    data["requests"] = {{"block", mRequests.takeBlock()},
                        {"firstWords", said.firstRequestWords},
                        {"words", listOf(mRequests.words(), said.firstRequestWords)}};
    if (said.firstRig < mRigs.size()) {
        data["firstRig"] = said.firstRig;
        data["rigs"] = Json::array();
        for (size_t i = said.firstRig; i < mRigs.size(); ++i) {
            data["rigs"].push_back(rigData(mRigs[i]));
        }
    }
    if (said.jumpsFrom.has_value()) {
        data["jumpsFrom"] = *said.jumpsFrom;
        data["jumps"] = Json::array();
        for (auto jump = mJumps.lower_bound(*said.jumpsFrom); jump != mJumps.end(); ++jump) {
            data["jumps"].push_back({{"index", jump->first},
                                     {"sensor", jump->second.sensorId},
                                     {"size", jump->second.size},
                                     {"words", jump->second.words}});
        }
    }
    return eventOf("requests", data);
}

}  // namespace zoomreplay
