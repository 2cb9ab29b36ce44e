#include "Explainer.h"

namespace zoomreplay {

using namespace NSCam::Feature;

void Explainer::prepare(uint64_t line, Input const& input) {
    mTold.take(line, input);
    auto const* const query = std::get_if<QueryInput>(&input);
    if (query == nullptr) {
        return;
    }
    mAsked = {};
    mAsked.isManual = query->isManual;
    if (query->isNeedFresh) {
        return;
    }
    if (auto const* p1 = std::get_if<ZoomOverrideP1Need const*>(&query->need)) {
        mAsked.p1 = **p1;
    } else if (auto const* p2 = std::get_if<ZoomOverrideP2Need const*>(&query->need)) {
        mAsked.p2 = **p2;
    }
}

void Explainer::consume(Outcome const& outcome) {
    mCurrent.reset();
    if (auto const* p1 = std::get_if<P1Answer>(&outcome.answer)) {
        mCurrent = explain(mTold, P1Question{p1->request, mAsked.p1, p1->result});
        mTold.answeredP1(p1->request.requestNo, outcome.line);
    } else if (auto const* p2 = std::get_if<P2Answer>(&outcome.answer)) {
        mCurrent = explain(mTold, P2Question{p2->request, mAsked.p2, mAsked.isManual, p2->result});
    }
}

}  // namespace zoomreplay
