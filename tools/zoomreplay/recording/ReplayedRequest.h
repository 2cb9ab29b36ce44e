// What is known of a request once it is over: the base of reports and traces.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "optics/FieldOfView.h"
#include "replay/Outcome.h"
#include "steps/CropStep.h"

namespace zoomreplay {

/// Degrees.
struct AngleDifference {
    double across;
    double down;
};

/// A crop of an answer, and what it means for the picture.
struct ReplayedCrop {
    enum class Kind { Port, Stream, Extra };

    Kind kind;
    uint32_t sensorId;
    uint32_t sensorMode;
    std::vector<uint16_t> ports = {};  ///< Kind::Port: all that have this crop
    Domain domain;
    NSCam::MRect crop;
    std::optional<NSCam::MRect> asked = {};    ///< before the correction, where that changed it
    std::optional<NSCam::MSize> minSize = {};  ///< of the stream that the crop has to feed
    std::optional<View> view = {};
    std::optional<AngleDifference> difference = {};  ///< wider than the master sensor's crop
    std::vector<CropStep> steps = {};                ///< that made it; of the first of its ports
    bool isExplained = false;                        ///< the last step is the crop
};

enum class QueryState { Overridden, Refused, Exception, Fatal };

struct ReplayedQuery {
    Stage stage;
    uint64_t line;
    int64_t time;  ///< microseconds
    NSCam::Feature::ZoomOverrideRequest request;
    bool isManual;
    QueryState state;
    bool isCached = false;                   ///< an earlier answer, given again
    std::optional<uint64_t> keptSince = {};  ///< the line of that answer
    Saying reason = {};                      ///< for the override, or against it
    std::optional<NSCam::Feature::ZoomOverrideNeedHeader> need = {};
    std::vector<ReplayedCrop> crops = {};
    std::string trouble = {};  ///< the text of an exception or a fatal condition
};

/// A line of the scenario that is about a request.
struct ReplayedLine {
    uint64_t line;
    std::string_view op;
    std::vector<NSCam::Host::LogLine> log;
};

struct ReplayedRequest {
    size_t index;  ///< its place among the requests of the range, as they were deposited
    uint32_t requestNo;
    uint64_t firstLine;
    int64_t begin;  ///< microseconds
    std::optional<int64_t> end;
    std::optional<uint64_t> depositLine;
    std::optional<uint64_t> doneLine;
    bool isRepeating = false;
    NSCam::Feature::ZoomOverrideMode mode = NSCam::Feature::ZoomOverrideMode::None;
    std::shared_ptr<NSCam::Feature::RunTimeCropNeedData const> data;  ///< null without a deposit
    size_t rig = 0;
    std::optional<Observation> observed;  ///< the latest
    std::vector<ReplayedQuery> queries;
    std::vector<ReplayedLine> lines;
};

struct ReplayedFatal {
    uint64_t line;
    std::string_view op;
    std::string text;
    int64_t time;
    std::optional<size_t> request;  ///< index of the request that it happened to, or after
};

/// What is known of a replay when it is over.
struct ReplaySummary {
    std::vector<Rig> rigs;  ///< ReplayedRequest::rig counts in it
    std::optional<ReplayedFatal> fatal;
    size_t total = 0;  ///< requests, those outside of the range included
    int64_t end = 0;   ///< microseconds
};

/// Gets each request when it is over.
class RequestConsumer {
 public:
    virtual ~RequestConsumer() = default;

    /// What is known so far of a request that goes on, after each line about it.
    /// @param request stays where it is until it is taken
    virtual void see(ReplayedRequest const& /*request*/, Rig const& /*rig*/) {}

    /// In the order in which requests end; their index tells the order of their deposits.
    /// @param rig the sensors that the request was answered for
    virtual void take(ReplayedRequest const& request, Rig const& rig) = 0;

    /// The replay is over and every request has been taken. @throws UserError
    virtual void finish(ReplaySummary const& replay) = 0;
};

}  // namespace zoomreplay
