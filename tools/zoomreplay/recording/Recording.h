// Follows a replay request by request, and hands on each request that is over.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "ReplayedCrops.h"
#include "ReplayedRequest.h"
#include "RequestRange.h"
#include "steps/Explainer.h"

namespace zoomreplay {

/// Keeps the requests that are not over: not yet reported done, or done so lately that a query may
/// still come. Requests outside of the range are counted only.
///
/// Scenarios carry no time. Requests are laid out as a camera with 30 frames a second makes them:
/// each deposit begins a new frame, and what follows it falls into that frame.
class Recording : public OutcomeConsumer {
 public:
    /// @param explainer gets each outcome before the recording; like the consumers, it lives longer
    Recording(RequestRange range, Explainer const& explainer,
              std::vector<RequestConsumer*> consumers);

    void prepare(uint64_t line, Input const& input) override;
    void consume(Outcome const& outcome) override;
    void finish() override;

 private:
    struct Open {
        ReplayedRequest request;
        bool isInRange;
    };
    using Place = uint64_t;  // counts all requests

    /// What the line in hand is about.
    struct Pending {
        std::optional<Place> request;
        std::optional<ReplayedQuery> query;
    };

    void take(uint64_t line, SensorInput const& input);
    void take(uint64_t line, InitializeInput const& input);
    void take(uint64_t line, SensorInfoInput const& input);
    void take(uint64_t line, DepositInput const& input);
    void take(uint64_t line, MetadataInput const& input);
    void take(uint64_t line, SettingInput const& input);
    void take(uint64_t line, QueryInput const& input);
    void take(uint64_t line, DoneInput const& input);
    void take(uint64_t line, ObservedInput const& input);
    void take(uint64_t /*line*/, PublishInput const& /*input*/) const {}
    void take(uint64_t /*line*/, ManagerInput const& /*input*/) const {}
    void take(uint64_t /*line*/, FspInput const& /*input*/) const {}
    void take(uint64_t /*line*/, PortsInput const& /*input*/) const {}
    void take(uint64_t /*line*/, CorrectionInput const& /*input*/) const {}

    int64_t now() const;  // microseconds
    Place addRequest(uint64_t line, uint32_t requestNo);
    size_t currentRig();
    void show(Open const& open) const;
    void answer(Open& open, Pending& pending, Answer const& answer);
    CropContext contextOf(ReplayedRequest const& request) const;
    std::vector<ReplayedCrop> p1Crops(ReplayedRequest const& request, ReplayedQuery const& query,
                                      NSCam::Feature::ZoomOverrideP1Need const& need) const;
    void handOnDone();
    void handOn(Place place);
    void handOnAll();

    RequestRange mRange;
    Explainer const& mExplainer;
    std::vector<RequestConsumer*> mConsumers;

    std::map<Place, Open> mOpen;
    std::deque<Place> mDone;                        // in the order in which they were done
    std::unordered_map<uint32_t, Place> mByNumber;  // the latest open request of each number
    std::optional<Place> mLatest;                   // the request deposited last
    size_t mInRange = 0;
    std::shared_ptr<NSCam::Feature::RunTimeCropNeedData const> mLastData;
    NSCam::Feature::ZoomOverrideMode mMode = NSCam::Feature::ZoomOverrideMode::None;

    Rig mRig;
    bool mIsRigChanged = true;

    int64_t mFrame = -1;
    int64_t mStep = 0;
    Pending mPending;
    ReplaySummary mReplay;
};

}  // namespace zoomreplay
