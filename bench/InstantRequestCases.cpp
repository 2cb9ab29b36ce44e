// Instant-request mode: P1 by the number of streams, the answer that is kept, whole requests.
#include "Case.h"
#include "Floor.h"
#include "Queries.h"
#include "Requests.h"

namespace Bench {

using NSCam::Feature::ZoomOverrideMode;

namespace {

constexpr uint32_t kStreamsPerSensor = 4;

/// As many sensors as the streams fill, five at the most.
Rig rigOfStreams(uint32_t streams) {
    auto const groups = (streams + kStreamsPerSensor - 1) / kStreamsPerSensor;
    return makeRig(std::min(groups, kSensorKinds), streams);
}

class P1 final : public Queries<ZoomOverrideP1Need> {
 public:
    P1(int calls, uint32_t streams, P1Floor floor)
        : Queries(calls, ZoomOverrideMode::InstantRequest, rigOfStreams(streams)),
          mFloor(floor),
          mAnswers(calls) {
        mgr().storeOverrideSetting(&rig().metadata, rig().streamIds);
        Floor::readMetadata(rig().metadata, rig().streamIds, mKept);
    }

 private:
    bool askModule(int number, ZoomOverrideP1Need& need) override {
        return mgr().getP1CropSetting(requestOf(number, kAboveOverride), need);
    }

    bool askFloor(int number, ZoomOverrideP1Need& need) override {
        Floor::instantP1(mKept, rig().data, rig().outputSizes, requestOf(number, kAboveOverride),
                         need);
        if (mFloor == P1Floor::Keeping) {
            mAnswers.keep(number, need);
        }
        return true;
    }

    P1Floor mFloor;
    KeptAnswers mAnswers;
    Floor::InstantOverride mKept;
};

/// Whether the caller asks with a record that holds the answer to an earlier query.
enum class Record { Fresh, Reused };

/// The answer that the manager keeps of a request. The floor copies the same answer, into the nodes
/// that a reused record has.
class CachedP1 final : public Queries<ZoomOverrideP1Need> {
 public:
    CachedP1(int calls, uint32_t streams, Record record)
        : Queries(calls, ZoomOverrideMode::InstantRequest, rigOfStreams(streams)), mRecord(record) {
        mgr().storeOverrideSetting(&rig().metadata, rig().streamIds);
    }

    void prepare() override {
        Queries::prepare();
        mgr().getP1CropSetting(requestOf(0, kAboveOverride), mKept);
        if (mRecord == Record::Reused) {
            module();
            floor();
        }
    }

 private:
    bool askModule(int /*number*/, ZoomOverrideP1Need& need) override {
        return mgr().getP1CropSetting(requestOf(0, kAboveOverride), need);
    }

    bool askFloor(int /*number*/, ZoomOverrideP1Need& need) override {
        if (need.tgCrops.empty()) {
            need = mKept;
            return true;
        }
        copyIntoSameKeys(mKept, need);
        return true;
    }

    Record mRecord;
    ZoomOverrideP1Need mKept;
};

class WholeRequests final : public Requests {
 public:
    WholeRequests(int calls, uint32_t streams, int inFlight)
        : Requests(calls, ZoomOverrideMode::InstantRequest, rigOfStreams(streams), inFlight) {}

 private:
    void askModule(int number, Needs& needs) override {
        mgr().storeOverrideSetting(&rig().metadata, rig().streamIds);
        mgr().getP1CropSetting(requestOf(number, kAboveOverride), needs.p1);
    }

    void askFloor(int number, NSCam::Feature::RunTimeCropNeedData const& data,
                  Needs& needs) override {
        Floor::readMetadata(rig().metadata, rig().streamIds, mKept);
        Floor::instantP1(mKept, data, rig().outputSizes, requestOf(number, kAboveOverride),
                         needs.p1);
    }

    Floor::InstantOverride mKept;
};

}  // namespace

std::vector<Case> instantRequestCases() {
    std::vector<Case> cases;
    for (uint32_t const streams : {1U, 4U, 16U, 64U}) {
        auto const name = "streams:" + std::to_string(streams);
        cases.push_back(makeCase<P1>("instant/P1/" + name, kQueries, streams, P1Floor::Bare));
        cases.push_back(
            makeCase<P1>("instant/P1-keeping/" + name, kQueries, streams, P1Floor::Keeping));
    }
    cases.push_back(
        makeCase<CachedP1>("instant/P1-cached/fresh-record", kQueries, 16U, Record::Fresh));
    cases.push_back(
        makeCase<CachedP1>("instant/P1-cached/reused-record", kQueries, 16U, Record::Reused));
    for (int const inFlight : {1, 8, 64}) {
        cases.push_back(makeCase<WholeRequests>(
            "instant/request/in-flight:" + std::to_string(inFlight), kQueries, 8U, inFlight));
    }
    return cases;
}

}  // namespace Bench
