// Which results belong together: held against all ways to pair a few, and where there are too many
// to try everything.
#include "results/Alignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <utility>

namespace zoomreplay::test {
namespace {

using Entries = std::vector<Entry>;
using Pairings = std::vector<Pairing>;

/// Entries that stand alone, and then pairs that differ.
using Cost = std::pair<size_t, size_t>;
constexpr Cost kImpossible{std::numeric_limits<size_t>::max() / 2, 0};

Cost costOf(Entries const& expected, Entries const& actual, Pairings const& pairings) {
    Cost cost{0, 0};
    size_t i = 0;
    size_t j = 0;
    for (Pairing const pairing : pairings) {
        i += pairing != Pairing::OnlyActual ? 1U : 0U;
        j += pairing != Pairing::OnlyExpected ? 1U : 0U;
        if (i > expected.size() || j > actual.size()) {
            return kImpossible;
        }
        if (pairing != Pairing::Both) {
            ++cost.first;
        } else if (expected[i - 1].kind != actual[j - 1].kind) {
            return kImpossible;
        } else {
            cost.second += expected[i - 1].content != actual[j - 1].content ? 1U : 0U;
        }
    }
    return i == expected.size() && j == actual.size() ? cost : kImpossible;
}

Cost leastCost(Entries const& expected, Entries const& actual) {
    std::vector<std::vector<Cost>> least(expected.size() + 1,
                                         std::vector<Cost>(actual.size() + 1, kImpossible));
    for (size_t i = 0; i <= expected.size(); ++i) {
        for (size_t j = 0; j <= actual.size(); ++j) {
            Cost best = i + j == 0 ? Cost{0, 0} : kImpossible;
            if (i > 0 && j > 0 && expected[i - 1].kind == actual[j - 1].kind) {
                bool const isChange = expected[i - 1].content != actual[j - 1].content;
                auto const [alone, changed] = least[i - 1][j - 1];
                best = {alone, changed + (isChange ? 1U : 0U)};
            }
            for (bool const isExpected : {true, false}) {
                if ((isExpected ? i : j) > 0) {
                    auto const [alone, changed] = isExpected ? least[i - 1][j] : least[i][j - 1];
                    best = std::min(best, Cost{alone + 1, changed});
                }
            }
            least[i][j] = best;
        }
    }
    return least.back().back();
}

bool isAtStart(Entries const& actual, Pairings const& pairings, size_t begin) {
    auto const end = pairings.begin() + static_cast<ptrdiff_t>(begin);
    auto const place = static_cast<size_t>(std::count_if(
        pairings.begin(), end, [](Pairing pairing) { return pairing != Pairing::OnlyExpected; }));
    return place == actual.size() || actual[place].isStart;
}

/// Whether the only run that stands alone, if there is one, begins where it ought to.
bool isInPlace(Entries const& expected, Entries const& actual, Pairings const& pairings) {
    auto const isAlone = [](Pairing pairing) { return pairing != Pairing::Both; };
    auto const run = std::find_if(pairings.begin(), pairings.end(), isAlone);
    auto const behind = std::find(run, pairings.end(), Pairing::Both);
    if (run == pairings.end() || std::any_of(behind, pairings.end(), isAlone) ||
        std::count(run, behind, *run) != behind - run) {
        return true;
    }
    auto const begin = static_cast<size_t>(run - pairings.begin());
    auto const length = static_cast<size_t>(behind - run);
    if (isAtStart(actual, pairings, begin)) {
        return true;
    }
    Cost const cost = costOf(expected, actual, pairings);
    for (int const step : {-1, 1}) {
        Pairings moved = pairings;
        size_t place = begin;
        for (size_t by = 0; by < length; ++by) {
            if (step < 0 ? place == 0 : place + length == moved.size()) {
                break;
            }
            std::swap(moved[step < 0 ? place - 1 : place],
                      moved[step < 0 ? place + length - 1 : place + length]);
            place = step < 0 ? place - 1 : place + 1;
            if (costOf(expected, actual, moved) != cost) {
                break;
            }
            if (isAtStart(actual, moved, place)) {
                return false;
            }
        }
    }
    return true;
}

TEST(AlignmentTest, IsTheCheapestAndBeginsAtAStart) {
    std::mt19937 random(1);
    auto const entries = [&random] {
        Entries found(random() % 8U);
        for (Entry& entry : found) {
            auto const content = random() % 4U;
            entry = {content % 2U, content, random() % 3U == 0};
        }
        return found;
    };
    for (int i = 0; i < 20000; ++i) {
        auto const expected = entries();
        auto const actual = entries();
        auto const pairings = align(expected, actual);
        ASSERT_EQ(costOf(expected, actual, pairings), leastCost(expected, actual)) << i;
        ASSERT_TRUE(isInPlace(expected, actual, pairings)) << i;
    }
}

constexpr size_t kMany = 20000;

struct Gap {
    size_t contents;  ///< how many there are, as many kinds as calls of a request
    size_t begin;     ///< of what one side lacks
    size_t length;
    bool isAdded;  ///< it is the expected side
};

void PrintTo(Gap const& gap, std::ostream* out) {
    *out << gap.contents << " contents, " << gap.length << " from " << gap.begin;
}

class GapTest : public testing::TestWithParam<Gap> {};

// The changes at both ends keep the ends from being set apart.
TEST_P(GapTest, IsFoundBetweenTwoChanges) {
    auto const& [contents, begin, length, isAdded] = GetParam();
    Entries whole;
    for (size_t i = 0; i < kMany; ++i) {
        whole.push_back({i % 4, i % contents, i % 4 == 0});
    }
    Entries part = whole;
    auto const from = part.begin() + static_cast<ptrdiff_t>(begin);
    part.erase(from, from + static_cast<ptrdiff_t>(length));
    part.front().content = kMany;
    part.back().content = kMany;
    auto const pairings = isAdded ? align(part, whole) : align(whole, part);

    EXPECT_EQ(costOf(isAdded ? part : whole, isAdded ? whole : part, pairings), Cost(length, 2));
}

// What is not whole lacks its end.
constexpr Gap kGaps[] = {{kMany, 8000, 4000, false}, {kMany, 8000, 4000, true},
                         {400, 8000, 4000, false},   {400, 8000, 4000, true},
                         {kMany, 5000, 15000, true}, {400, 5000, 15000, false}};
INSTANTIATE_TEST_SUITE_P(Gaps, GapTest, testing::ValuesIn(kGaps));

}  // namespace
}  // namespace zoomreplay::test
