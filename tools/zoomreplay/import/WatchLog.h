// What an application asked of the camera and what the camera answered, frame by frame, out of the
// log of `cmd media.camera watch`.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "WatchLine.h"

namespace zoomreplay {

/// What holds from a logged frame on.
struct WatchedFrame {
    uint64_t number = 0;
    uint64_t time = 0;  ///< nanoseconds; 0: not known
    ZoomValues values;

    /// There is a crop region and no zoom ratio, or none but 1 so far: the region zooms, as all had
    /// to before there was a ratio. Otherwise the region lies within what the ratio leaves.
    bool isZoomedByRegion = false;
};

/// Gets a log's frames in the order of time.
class WatchFollower {
 public:
    virtual ~WatchFollower() = default;

    /// What an application asked for.
    virtual void request(WatchedFrame const& frame) = 0;

    /// What the camera says that it did for a frame; comes some frames after it was asked for.
    virtual void observe(WatchedFrame const& frame) = 0;

    /// No frame comes any more.
    virtual void finish() = 0;
};

/// Puts lines together to frames. A frame is handed on when another's first line comes.
class FrameJoiner {
 public:
    explicit FrameJoiner(WatchFollower& follower) : mFollower(follower) {}

    void take(WatchLine const& line);
    void finish();

 private:
    void close();

    WatchFollower& mFollower;
    WatchedFrame mAsked;
    WatchedFrame mObserved;
    bool mHasRatio = false;
    bool mIsOpen = false;
    bool mIsResult = false;  // the open one
};

/// Reads a log line by line. A log has a line only where a value changes; values that are not
/// printed hold. One that is printed newest first, so that its frame numbers fall, is turned round.
class WatchLog {
 public:
    /// @param follower outlives the log.
    /// @param camera whose frames count, as an id or with its application, as in "0:some.app";
    ///     empty: the log must have one camera only.
    /// @param isLive hand frames on as soon as the second one shows that the log is not newest
    ///     first. Otherwise all come at the end, when the log is known to be right.
    WatchLog(WatchFollower& follower, std::optional<std::string> camera, bool isLive)
        : mJoiner(follower), mCamera(std::move(camera)), mIsLive(isLive) {}

    /// @throws UserError a second camera shows up after the first one's frames went on.
    void take(std::string_view line, uint64_t lineNumber);

    /// @throws UserError there is no frame, none of the camera that is wanted, or there are several
    ///     cameras to choose from; without the log's name.
    void finish();

    /// "LINE: what is wrong" of the first line whose values make no sense, and how many there are;
    /// empty without any.
    std::string complaint() const;

    bool isNewestFirst() const { return mFalls > mRises; }

 private:
    struct Source {
        std::optional<uint64_t> frame;  // the latest
        size_t frames = 0;
    };
    using Sources = std::map<std::string, Source, std::less<>>;

    bool isWanted(std::string_view source) const;
    void count(WatchLine& line);
    void release();
    void demandOneSource() const;

    FrameJoiner mJoiner;
    std::optional<std::string> mCamera;
    bool mIsLive;
    bool mIsFlowing = false;
    Sources mSources;              // with requests
    std::vector<WatchLine> mKept;  // until the order is known
    size_t mRises = 0;             // of the wanted camera's frame numbers
    size_t mFalls = 0;
    uint64_t mUnusableLines = 0;
    std::string mFirstUnusable;
};

}  // namespace zoomreplay
