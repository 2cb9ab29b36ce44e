#include "Alignment.h"

#include <algorithm>

namespace zoomreplay {
namespace {

/// The fewest changes from each pair of entries to the end of the stretches.
class Costs {
 public:
    explicit Costs(Stretches const& stretches)
        : mWidth(stretches.actual + 1), mCosts((stretches.expected + 1) * mWidth) {}

    size_t& at(size_t expected, size_t actual) { return mCosts[expected * mWidth + actual]; }

 private:
    size_t mWidth;
    std::vector<size_t> mCosts;
};

constexpr size_t kCostOfChange = 1;
constexpr size_t kCostOfGap = 1;
constexpr size_t kNever = 1U << 20U;

size_t costOf(Likeness likeness) {
    switch (likeness) {
        case Likeness::Same:
            return 0;
        case Likeness::Changed:
            return kCostOfChange;
        case Likeness::Foreign:
            break;
    }
    return kNever;
}

}  // namespace

std::vector<Pairing> align(Stretches const& stretches,
                           std::function<Likeness(size_t, size_t)> const& compare) {
    auto const [expected, actual, isExpectedWhole, isActualWhole] = stretches;
    Costs costs(stretches);
    Costs pairCosts(stretches);
    for (size_t i = 0; i < expected; ++i) {
        costs.at(i, actual) = isActualWhole ? (expected - i) * kCostOfGap : 0;
    }
    for (size_t j = 0; j < actual; ++j) {
        costs.at(expected, j) = isExpectedWhole ? (actual - j) * kCostOfGap : 0;
    }
    for (size_t i = expected; i-- > 0;) {
        for (size_t j = actual; j-- > 0;) {
            pairCosts.at(i, j) = costOf(compare(i, j)) + costs.at(i + 1, j + 1);
            costs.at(i, j) = std::min({pairCosts.at(i, j), costs.at(i + 1, j) + kCostOfGap,
                                       costs.at(i, j + 1) + kCostOfGap});
        }
    }

    std::vector<Pairing> pairings;
    size_t i = 0;
    size_t j = 0;
    while (i < expected && j < actual) {
        size_t const cost = costs.at(i, j);
        if (cost == pairCosts.at(i, j)) {
            pairings.push_back(Pairing::Both);
            ++i;
            ++j;
        } else if (cost == costs.at(i, j + 1) + kCostOfGap) {
            pairings.push_back(Pairing::OnlyActual);
            ++j;
        } else {
            pairings.push_back(Pairing::OnlyExpected);
            ++i;
        }
    }
    if (isActualWhole) {
        pairings.insert(pairings.end(), expected - i, Pairing::OnlyExpected);
    }
    if (isExpectedWhole) {
        pairings.insert(pairings.end(), actual - j, Pairing::OnlyActual);
    }
    return pairings;
}

}  // namespace zoomreplay
