// Follows a replay and explains each answer of P1 and P2.
#pragma once

#include <optional>
#include <variant>

#include "Explained.h"
#include "Told.h"
#include "replay/Outcome.h"

namespace zoomreplay {

/// Comes first among the consumers of a replay: those after it find the explanation of the outcome
/// that they are given.
class Explainer : public OutcomeConsumer {
 public:
    void prepare(uint64_t line, Input const& input) override;
    void consume(Outcome const& outcome) override;

    /// Of the outcome in hand; empty when that is no answer of P1 or P2.
    std::optional<Explained> const& current() const { return mCurrent; }

    Told const& told() const { return mTold; }

 private:
    /// What the answer does not tell of its question: the caller's record, empty where it was
    /// fresh, and whether the query was manual.
    struct Asked {
        NSCam::Feature::ZoomOverrideP1Need p1;
        NSCam::Feature::ZoomOverrideP2Need p2;
        bool isManual = false;
    };

    Told mTold;
    Asked mAsked;
    std::optional<Explained> mCurrent;
};

}  // namespace zoomreplay
