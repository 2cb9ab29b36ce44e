// What a new part of a record must begin with, so that it replays by itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace zoomrecorder {

/// What a line of a record changes. Those up to Metadata leave something behind that later calls of
/// any request depend on, and stand in the order in which a part begins with them.
enum class LineKind {
    Property,
    Sensor,
    Publish,
    Initialize,  ///< undoes all that follows here
    ConfigFspInfo,
    ConfigSensorInfo,
    ConfigSensorBehaviorInfo,
    Deposit,
    Setting,
    MovedSetting,  ///< a setting that repeats for another request
    Metadata,
    RepeatingDeposit,
    P1Query,  ///< the manager keeps the first answer for each request
    Done,
    Other,  ///< changes nothing
};

/// A line's kind and, where there are several of a kind, which: the sensor, property or request.
struct LineSubject {
    LineKind kind = LineKind::Other;
    uint32_t number = 0;
};

/// Follows the lines of a record and remembers those that still matter: all since the oldest
/// request that is not done was first heard of, and of what went before just what it left behind.
///
/// A pipeline that never reports requests done must not fill the memory: beyond byteLimit the
/// oldest requests are taken for done.
class LiveState {
 public:
    explicit LiveState(size_t byteLimit) : mByteLimit(byteLimit) {}

    void add(LineSubject subject, std::string_view text);

    /// About how many bytes appendTo appends.
    size_t size() const;

    /// Lines that bring a fresh manager to where the last line left the recorded one.
    void appendTo(std::string& out) const;

 private:
    struct Line {
        LineSubject subject;
        std::string text;
    };

    void open(uint32_t requestNo);
    bool isOpenSince(uint32_t requestNo, uint64_t number) const;
    void close(uint32_t requestNo);
    void closeOldest();
    void settleOldest();
    void settle(Line line);

    size_t const mByteLimit;
    std::map<std::pair<LineKind, uint32_t>, std::string> mSettled;
    uint32_t mSettledDeposit = 0;  // the number of its request

    std::deque<Line> mRecent;  // oldest first
    size_t mRecentBytes = 0;
    uint64_t mOldest = 0;  // number of mRecent's first line, counted from the record's beginning

    // Requests that are not done, by the number of their first line and the other way round.
    std::set<uint64_t> mOpenings;
    std::unordered_map<uint32_t, uint64_t> mOpenRequests;
};

}  // namespace zoomrecorder
