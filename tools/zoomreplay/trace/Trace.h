// Writes a replay as a trace, line by line, for the viewers that show a phone's own traces.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include "TraceClock.h"
#include "TraceCrops.h"
#include "TraceEvents.h"
#include "recording/ReplayedCrops.h"
#include "recording/RequestRange.h"
#include "replay/Outcome.h"
#include "steps/Explainer.h"

namespace zoomreplay {

/// A track for the calls that are no queries, one for each stage's queries, one for each sensor's
/// mode and one for the requests in flight; counters for ratios and crops; instants for what went
/// wrong; arrows from what was handed over to the queries that used it. Keeps no more than the
/// requests in flight.
class Trace : public OutcomeConsumer {
 public:
    /// @param file outlives the trace.
    /// @param scenario its name, for the description of the trace.
    /// @param range the requests to show. Lines of no request are shown while one of them is in
    ///     flight.
    /// @param explainer gets each outcome before the trace; like file, it lives longer
    Trace(File& file, std::string scenario, RequestRange range, Explainer const& explainer);

    void begin(uint64_t line, LineTime const& time) override;
    void prepare(uint64_t line, Input const& input) override;
    void consume(Outcome const& outcome) override;
    void finish() override;

 private:
    struct Request {
        uint64_t id;
        int64_t deposit;  ///< when its newest one was made
        std::shared_ptr<NSCam::Feature::RunTimeCropNeedData const> data;
    };

    /// What the line in hand is about.
    struct Line {
        uint64_t number = 0;
        Stretch time;
        std::optional<uint32_t> requestNo;
        std::optional<Stage> stage;  ///< of a query
    };

    void take(SensorInput const& input);
    void take(PublishInput const& input);
    void take(InitializeInput const& input);
    void take(SensorInfoInput const& input);
    void take(DepositInput const& input);
    void take(MetadataInput const& input);
    void take(SettingInput const& input);
    void take(QueryInput const& input);
    void take(DoneInput const& input);
    void take(ObservedInput const& input);
    void take(ManagerInput const& /*input*/) const {}
    void take(FspInput const& /*input*/) const {}
    void take(PortsInput const& /*input*/) const {}
    void take(CorrectionInput const& /*input*/) const {}

    bool isShown() const;

    /// When the line in hand begins; empty where it is not shown.
    std::optional<int64_t> startIfShown() const;
    Request* findRequest();
    TraceArguments lineArguments() const;
    void showSensors(NSCam::Feature::RunTimeCropNeedData const& data);
    void endRequest(uint32_t requestNo, bool isDone);
    void endAllRequests();

    void showCall(Outcome const& outcome, TraceArguments const& arguments);
    void showTrouble(Outcome const& outcome);
    template <typename Need>
    void showQuery(Outcome const& outcome, QueryAnswer<Need> const& answer);
    Track useTrack(Stage stage);
    void showArrows(bool isOverridden);

    /// When the override was that the mode takes; empty without one.
    std::optional<int64_t> overrideHandedOver() const;
    CropContext context(Explained const& explained);

    TraceEvents mEvents;
    CropCounters mCrops;
    std::string mScenario;
    RequestRange mRange;
    Explainer const& mExplainer;
    TraceClock mClock;
    Line mLine;

    NSCam::Feature::ZoomOverrideMode mMode = NSCam::Feature::ZoomOverrideMode::None;
    Rig mRig;
    std::shared_ptr<NSCam::Feature::RunTimeCropNeedData const> mNewestData;
    std::optional<int64_t> mSetting;    // when the newest was handed over; empty if not shown
    std::optional<int64_t> mPublished;  // likewise
    std::unordered_map<uint32_t, Request> mRequests;  // in flight, those in the range only
    uint64_t mRequestCount = 0;

    std::set<Stage> mStages;  // that have a track
    std::map<uint32_t, Track> mSensorTracks;
    std::map<uint32_t, uint32_t> mSensorModes;  // what is shown now
};

}  // namespace zoomreplay
