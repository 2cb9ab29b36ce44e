// Which results belong together where there are too many to try everything.
#include "results/Alignment.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zoomreplay::test {
namespace {

constexpr size_t kMany = 20000;
constexpr size_t kRemoved = 4000;

/// As many kinds as calls of a request.
std::vector<Entry> entriesWithContents(size_t different) {
    std::vector<Entry> entries;
    for (size_t i = 0; i < kMany; ++i) {
        entries.push_back({i % 4, i % different, i % 4 == 0});
    }
    return entries;
}

class AlignmentTest : public testing::TestWithParam<size_t> {};

// The changes at both ends keep the ends from being set apart.
TEST_P(AlignmentTest, FindsALongGapBetweenTwoChanges) {
    auto const expected = entriesWithContents(GetParam());
    auto actual = expected;
    actual.erase(actual.begin() + 8000, actual.begin() + 8000 + kRemoved);
    actual.front().content = kMany;
    actual.back().content = kMany;
    auto const pairings = align(expected, actual);

    ASSERT_EQ(pairings.size(), kMany);
    EXPECT_EQ(std::count(pairings.begin(), pairings.end(), Pairing::OnlyExpected), kRemoved);
    size_t i = 0;
    size_t j = 0;
    size_t changed = 0;
    for (Pairing const pairing : pairings) {
        bool const isPair = pairing == Pairing::Both;
        changed += isPair && expected.at(i).content != actual.at(j).content ? 1U : 0U;
        i += pairing != Pairing::OnlyActual ? 1U : 0U;
        j += pairing != Pairing::OnlyExpected ? 1U : 0U;
    }
    EXPECT_EQ(changed, 2U);
}
INSTANTIATE_TEST_SUITE_P(Contents, AlignmentTest, testing::Values(kMany, 400));

}  // namespace
}  // namespace zoomreplay::test
