// What happened to each request of a replay: the base of reports and traces.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "AskedCrops.h"
#include "FieldOfView.h"
#include "RequestRange.h"
#include "replay/Outcome.h"

namespace zoomreplay {

/// A crop of an answer, and what it means for the picture.
struct CropRecord {
    enum class Kind { Port, Stream, Extra };

    Kind kind;
    uint32_t sensorId;
    uint32_t sensorMode;
    std::vector<uint16_t> ports;  ///< Kind::Port: all that have this crop
    Domain domain;
    NSCam::MRect crop;
    std::optional<NSCam::MRect> asked;    ///< before the correction, where that changed it
    std::optional<NSCam::MSize> minSize;  ///< of the stream that the crop has to feed
    std::optional<View> view;
    std::optional<double> differenceH;  ///< degrees wider than the master sensor's crop
    std::optional<double> differenceV;
};

enum class QueryState { Overridden, Refused, Exception, Fatal };

struct QueryRecord {
    Stage stage;
    uint64_t line;
    int64_t time;  ///< microseconds
    NSCam::Feature::ZoomOverrideRequest request;
    bool isManual;
    QueryState state;
    bool isCached;  ///< an earlier answer, given again
    std::optional<NSCam::Feature::ZoomOverrideNeedHeader> need;
    std::vector<CropRecord> crops;
    std::string trouble;  ///< the text of an exception or a fatal condition
};

/// A line of the scenario that is about a request.
struct LineRecord {
    uint64_t line;
    std::string_view op;
    std::vector<NSCam::Host::LogLine> log;
};

struct RequestRecord {
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
    bool hasP1Answer = false;
    std::vector<QueryRecord> queries;
    std::vector<LineRecord> lines;
};

struct FatalRecord {
    uint64_t line;
    std::string_view op;
    std::string text;
    int64_t time;
    std::optional<size_t> request;  ///< index of the request that it happened to, or after
};

/// Gathers the requests of a replay in memory. Of requests outside the range it keeps that they
/// were there, not what became of them.
///
/// Scenarios carry no time. Requests are laid out as a camera with 30 frames a second makes them:
/// each deposit begins a new frame, and what follows it falls into that frame.
class Recording : public OutcomeConsumer {
 public:
    using Writer = std::function<void(Recording const&)>;

    /// @param writers run when the replay is over, in their order.
    Recording(RequestRange range, bool isLogged, std::vector<Writer> writers);

    void prepare(uint64_t line, Input const& input) override;
    void consume(Outcome const& outcome) override;
    void finish() override;

    RequestRange const& range() const { return mRange; }
    bool isLogged() const { return mIsLogged; }
    bool isInRange(RequestRecord const& request) const {
        return mRange.contains(request.requestNo);
    }

    /// All requests in the order in which they were deposited.
    std::vector<RequestRecord> const& requests() const { return mRequests; }
    std::vector<Rig> const& rigs() const { return mRigs; }
    std::optional<FatalRecord> const& fatal() const { return mFatal; }

    /// Microseconds of the last thing that happened.
    int64_t now() const;

 private:
    /// What the line in hand is about.
    struct Pending {
        std::optional<size_t> request;
        std::optional<QueryRecord> query;
        bool isNeedFresh = false;
    };

    void take(uint64_t line, SensorInput const& input);
    void take(uint64_t line, PublishInput const& input);
    void take(uint64_t line, InitializeInput const& input);
    void take(uint64_t line, SensorInfoInput const& input);
    void take(uint64_t line, DepositInput const& input);
    void take(uint64_t line, MetadataInput const& input);
    void take(uint64_t line, SettingInput const& input);
    void take(uint64_t line, QueryInput const& input);
    void take(uint64_t line, DoneInput const& input);

    size_t addRequest(uint64_t line, uint32_t requestNo);
    size_t currentRig();
    void answer(RequestRecord& request, Pending& pending, Answer const& answer);
    void addCrops(RequestRecord const& request, bool isNeedFresh, QueryRecord& query,
                  NSCam::Feature::ZoomOverrideP1Need const& need);
    void addCrops(RequestRecord const& request, bool isNeedFresh, QueryRecord& query,
                  NSCam::Feature::ZoomOverrideP2Need const& need);

    RequestRange mRange;
    bool mIsLogged;
    std::vector<Writer> mWriters;

    std::vector<RequestRecord> mRequests;
    std::unordered_map<uint32_t, size_t> mByNumber;  // the latest request of each number
    std::optional<size_t> mLatest;                   // the request deposited last
    std::shared_ptr<NSCam::Feature::RunTimeCropNeedData const> mLastData;
    NSCam::Feature::ZoomOverrideMode mMode = NSCam::Feature::ZoomOverrideMode::None;
    std::optional<bool> mIsP1Closed;

    std::vector<Rig> mRigs;
    Rig mRig;
    bool mIsRigChanged = true;
    AskedCrops mAsked;

    int64_t mFrame = -1;
    int64_t mStep = 0;
    Pending mPending;
    std::optional<FatalRecord> mFatal;
};

}  // namespace zoomreplay
