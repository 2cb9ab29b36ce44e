// Where the picture jumps from one request to the next.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "recording/ReplayedRequest.h"

namespace zoomreplay {

/// A change of what a sensor sees that the asked ratio does not explain.
struct Jump {
    size_t index;  ///< of the request
    uint32_t requestNo;
    uint64_t line;  ///< of the query
    uint32_t sensorId;
    std::optional<uint32_t> fromSensor;  ///< where the picture went over to another sensor
    double wider;                        ///< 0.06 for 6 % wider, negative for narrower
    std::optional<double> right, down;   ///< degrees; empty where no angles are configured
    double shiftX, shiftY;               ///< to the right and down, in widths and heights
    double size;                         ///< how far an edge moves, in widths or heights
    bool isBack;  ///< the next request is back where the one before was: one finding, not two
};

/// "sensor 2 narrower by 6 %, 1.1 degrees to the right".
std::string textOf(Jump const& jump);

/// Compares what each sensor sees from one request to the next: its P1 crop, its P2 crop where P1
/// is not overridden, and the application's own zoom where nothing is. Where the query's sensor
/// changes the picture of the new one is compared with that of the old one.
///
/// A change counts as far as it goes beyond what the change of the asked ratio brings, or against
/// it. Changes that move no edge by half a percent of the picture are no jumps.
class JumpFinder : public RequestConsumer {
 public:
    /// What the page and the terminal can show at most; the rest is counted.
    static constexpr size_t kMostKept = 1000;

    void take(ReplayedRequest const& request, Rig const& rig) override;
    void finish(ReplaySummary const& replay) override;

    /// When the replay is over.
    std::vector<Jump> worstFirst(size_t limit = kMostKept) const;

    /// All that were found.
    size_t count() const { return mCount; }

    /// The edges of what is seen as tangents of the angles off the axis, or, where no angles are
    /// configured, as shares of the active array from its middle.
    struct Window {
        bool isAngle;
        float left, right, top, bottom;
    };

    /// A window of a request. All are kept until the end, since requests end out of order.
    struct Seen {
        uint32_t index;
        uint32_t requestNo;
        uint64_t line;
        uint32_t sensorId;
        float asked;
        std::vector<uint16_t> const* ports;  ///< whose crop it is; none of P2 and the application
        bool isAll;                          ///< the sensor has no other crop
        bool isPicture;                      ///< the sensor that the query asks for
        Window window;
    };

 private:
    using Place = std::deque<Seen>::const_iterator;
    struct Pending {
        Jump jump;
        size_t step;
    };

    void compare(size_t step, Place const& from, Place const& to, Place const& end);
    void found(size_t step, Jump jump);
    void keep(Jump jump);

    std::set<std::vector<uint16_t>> mPorts;
    std::deque<Seen> mSeen;
    std::map<uint32_t, Pending> mPending;  // by sensor id: the next request may take it back
    std::vector<Jump> mJumps;
    size_t mCount = 0;
};

}  // namespace zoomreplay
