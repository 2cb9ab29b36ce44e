// Finds zoom ratios and crop regions in a log, and which frame each belongs to.
#include "WatchLog.h"

#include <algorithm>

#include "base/Messages.h"
#include "scenario/json/LineError.h"

namespace zoomreplay {

void FrameJoiner::take(WatchLine const& line) {
    WatchedFrame& frame = line.isResult ? mObserved : mAsked;
    bool const isSame = mIsOpen && mIsResult == line.isResult && frame.number == line.frame;
    if (!isSame) {
        close();
        mIsOpen = true;
        mIsResult = line.isResult;
        frame.number = line.frame;
    }
    frame.time = line.time;
    merge(frame.values, line);
}

void FrameJoiner::finish() {
    close();
    mFollower.finish();
}

void FrameJoiner::close() {
    if (!mIsOpen) {
        return;
    }
    mIsOpen = false;
    if (mIsResult) {
        mFollower.observe(mObserved);
        return;
    }
    auto const& ratio = mAsked.values.zoomRatio;
    mHasRatio = ratio.has_value() && (mHasRatio || *ratio != 1.0F);
    mAsked.isZoomedByRegion = !mHasRatio && mAsked.values.cropRegion.has_value();
    mFollower.request(mAsked);
}

void WatchLog::take(std::string_view text, uint64_t lineNumber) {
    std::optional<WatchLine> line;
    try {
        line = parseWatchLine(text);
    } catch (scenario::LineError const& e) {
        if (mUnusableLines == 0) {
            mFirstUnusable = std::to_string(lineNumber) + ": " + e.what();
        }
        ++mUnusableLines;
    }
    if (!line.has_value()) {
        return;
    }
    count(*line);
    if (!isWanted(line->source)) {
        return;
    }
    if (mIsFlowing) {
        demandOneSource();
        mJoiner.take(*line);
        return;
    }
    mKept.push_back(*line);
    if (mIsLive && mRises > mFalls) {
        demandOneSource();
        release();
        mIsFlowing = true;
    }
}

void WatchLog::finish() {
    demandOneSource();
    if (mIsFlowing && isNewestFirst()) {
        throw UserError("turns out to be newest first; import it from a file, not as it comes");
    }
    if (isNewestFirst()) {
        std::reverse(mKept.begin(), mKept.end());
    }
    release();
    mJoiner.finish();
}

std::string WatchLog::complaint() const {
    return mUnusableLines == 0
               ? ""
               : mFirstUnusable + "; lines left out in all: " + std::to_string(mUnusableLines);
}

bool WatchLog::isWanted(std::string_view source) const {
    return !mCamera.has_value() || source == *mCamera || cameraOf(source) == *mCamera;
}

// Only requests tell the order, and how much there is of a camera. The line's source becomes one
// that stays.
void WatchLog::count(WatchLine& line) {
    auto known = mSources.find(line.source);
    if (known == mSources.end()) {
        known = mSources.emplace(line.source, Source{}).first;
    }
    line.source = known->first;
    Source& source = known->second;
    if (line.isResult || source.frame == line.frame) {
        return;
    }
    if (source.frame.has_value() && isWanted(line.source)) {
        // Frame numbers begin anew with each session, so that a few of them fall in any log.
        ++(line.frame > *source.frame ? mRises : mFalls);
    }
    source.frame = line.frame;
    ++source.frames;
}

void WatchLog::release() {
    for (WatchLine const& line : mKept) {
        mJoiner.take(line);
    }
    mKept.clear();
}

void WatchLog::demandOneSource() const {
    std::string all;
    std::string wanted;
    size_t count = 0;
    for (auto const& [name, source] : mSources) {
        if (source.frames == 0) {
            continue;
        }
        std::string const text = (name.empty() ? std::string("one without an id") : name) + " (" +
                                 std::to_string(source.frames) + " frames)";
        all.append(all.empty() ? "" : ", ").append(text);
        if (isWanted(name)) {
            wanted.append(wanted.empty() ? "" : ", ").append(text);
            ++count;
        }
    }
    if (all.empty()) {
        throw UserError("has no frame with a zoom ratio or a crop region");
    }
    if (count == 0) {
        throw UserError("has no frames of camera " + *mCamera + ", only of " + all);
    }
    if (count > 1) {
        throw UserError("has several cameras or applications: " + wanted +
                        "; choose one with --camera");
    }
}

}  // namespace zoomreplay
