#include "Alignment.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <span>
#include <unordered_map>

namespace zoomreplay {
namespace {

using Entries = std::span<Entry const>;

bool isSameEntry(Entry const& a, Entry const& b) {
    return a.kind == b.kind && a.content == b.content;
}

constexpr uint64_t kCostOfChange = 1;
constexpr uint64_t kCostOfGap = uint64_t{1} << 32U;  // more than all changes
constexpr uint64_t kNever = std::numeric_limits<uint64_t>::max() / 2;
constexpr size_t kMostSteps = size_t{1} << 25U;

/// The cheapest pairings in a band around the diagonal: entry i of the expected ones against
/// entries i - leading to i - leading + width - 1 of the actual ones.
class Band {
 public:
    /// @param gaps how many entries may stand alone; at least the difference of the lengths
    Band(Entries expected, Entries actual, size_t gaps)
        : mExpected(expected),
          mActual(actual),
          mLeading((gaps + expected.size() - actual.size()) / 2),
          mWidth(gaps + 1),
          mSteps((expected.size() + 1) * mWidth, Pairing::Both),
          mCosts(mWidth + 1, kNever) {
        for (size_t i = 0; i <= expected.size(); ++i) {
            fillRow(i);
        }
    }

    /// How many entries stand alone, at the least; more than gaps where the band is too narrow.
    size_t gaps() const { return mCosts[mActual.size() + mLeading - mExpected.size()] >> 32U; }

    /// From the end to the beginning.
    std::vector<Pairing> steps() const {
        std::vector<Pairing> steps;
        size_t i = mExpected.size();
        size_t j = mActual.size();
        while (i > 0 || j > 0) {
            Pairing const step = mSteps[i * mWidth + j + mLeading - i];
            i -= step != Pairing::OnlyActual ? 1 : 0;
            j -= step != Pairing::OnlyExpected ? 1 : 0;
            steps.push_back(step);
        }
        return steps;
    }

 private:
    // mCosts holds the row above until it is overwritten from left to right.
    void fillRow(size_t i) {
        for (size_t k = 0; k < mWidth; ++k) {
            if (i + k < mLeading || i + k - mLeading > mActual.size()) {
                mCosts[k] = kNever;
                continue;
            }
            size_t const j = i + k - mLeading;
            if (i == 0 && j == 0) {
                mCosts[k] = 0;
                continue;
            }
            uint64_t best = kNever;
            Pairing step = Pairing::Both;
            if (i > 0 && j > 0 && mExpected[i - 1].kind == mActual[j - 1].kind) {
                bool const isChange = mExpected[i - 1].content != mActual[j - 1].content;
                best = mCosts[k] + (isChange ? kCostOfChange : 0);
            }
            if (j > 0 && k > 0 && mCosts[k - 1] + kCostOfGap < best) {
                best = mCosts[k - 1] + kCostOfGap;
                step = Pairing::OnlyActual;
            }
            if (i > 0 && mCosts[k + 1] + kCostOfGap < best) {
                best = mCosts[k + 1] + kCostOfGap;
                step = Pairing::OnlyExpected;
            }
            mCosts[k] = std::min(best, kNever);
            mSteps[i * mWidth + k] = step;
        }
    }

    Entries mExpected;
    Entries mActual;
    size_t mLeading;
    size_t mWidth;
    std::vector<Pairing> mSteps;   // the last one of the way to each place
    std::vector<uint64_t> mCosts;  // of a row; one more, which is out of the band
};

void append(std::vector<Pairing>& pairings, size_t count, Pairing pairing) {
    pairings.insert(pairings.end(), count, pairing);
}

size_t sharedStart(Entries expected, Entries actual) {
    auto const end =
        std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end(), isSameEntry);
    return static_cast<size_t>(end.first - expected.begin());
}

size_t sharedEnd(Entries expected, Entries actual) {
    auto const end = std::mismatch(expected.rbegin(), expected.rend(), actual.rbegin(),
                                   actual.rend(), isSameEntry);
    return static_cast<size_t>(end.first - expected.rbegin());
}

// Empty where it would take too long.
std::optional<std::vector<Pairing>> alignExactly(Entries expected, Entries actual) {
    size_t const least =
        std::max(expected.size(), actual.size()) - std::min(expected.size(), actual.size());
    size_t const most = expected.size() + actual.size();
    for (size_t gaps = least;; gaps = std::min(most, 2 * gaps + 2)) {
        if ((expected.size() + 1) * (gaps + 1) > kMostSteps) {
            return std::nullopt;
        }
        Band const band(expected, actual, gaps);
        if (band.gaps() <= gaps) {
            auto steps = band.steps();
            std::reverse(steps.begin(), steps.end());
            return steps;
        }
    }
}

struct Anchor {
    size_t expected;
    size_t actual;
};

/// Entries whose content each side has once, as many as are in the same order in both.
std::vector<Anchor> anchorsOf(Entries expected, Entries actual) {
    constexpr size_t kSeveral = std::numeric_limits<size_t>::max();
    auto const placesOf = [](Entries entries) {
        std::unordered_map<uint64_t, size_t> places;
        for (size_t i = 0; i < entries.size(); ++i) {
            auto const [known, isNew] = places.emplace(entries[i].content, i);
            known->second = isNew ? i : kSeveral;
        }
        return places;
    };
    auto const places = placesOf(expected);
    auto const actualPlaces = placesOf(actual);

    // The longest rising sequence: tails[n] ends the one of n + 1 anchors that ends earliest.
    std::vector<Anchor> unique;
    std::vector<size_t> previous;
    std::vector<size_t> tails;
    for (size_t j = 0; j < actual.size(); ++j) {
        auto const known = places.find(actual[j].content);
        bool const isUnique = known != places.end() && known->second != kSeveral &&
                              actualPlaces.at(actual[j].content) != kSeveral;
        if (!isUnique) {
            continue;
        }
        auto const tail = std::lower_bound(
            tails.begin(), tails.end(), known->second,
            [&](size_t index, size_t place) { return unique[index].expected < place; });
        previous.push_back(tail == tails.begin() ? kSeveral : *(tail - 1));
        unique.push_back({known->second, j});
        if (tail == tails.end()) {
            tails.push_back(unique.size() - 1);
        } else {
            *tail = unique.size() - 1;
        }
    }
    std::vector<Anchor> anchors;
    for (size_t index = tails.empty() ? kSeveral : tails.back(); index != kSeveral;
         index = previous[index]) {
        anchors.push_back(unique[index]);
    }
    std::reverse(anchors.begin(), anchors.end());
    return anchors;
}

void alignPart(std::vector<Pairing>& out, Entries expected, Entries actual);

// Where nothing tells the entries apart: what has the same place belongs together.
void alignInStretches(std::vector<Pairing>& out, Entries expected, Entries actual) {
    constexpr size_t kStretch = 2048;
    while (!expected.empty() && !actual.empty()) {
        size_t const length = std::min({expected.size(), actual.size(), kStretch});
        alignPart(out, expected.first(length), actual.first(length));
        expected = expected.subspan(length);
        actual = actual.subspan(length);
    }
    append(out, expected.size(), Pairing::OnlyExpected);
    append(out, actual.size(), Pairing::OnlyActual);
}

// Each part begins with an anchor, but for the first one.
void alignBetweenAnchors(std::vector<Pairing>& out, Entries expected, Entries actual) {
    auto anchors = anchorsOf(expected, actual);
    if (anchors.empty()) {
        alignInStretches(out, expected, actual);
        return;
    }
    anchors.push_back({expected.size(), actual.size()});
    Anchor begin{0, 0};
    for (Anchor const& end : anchors) {
        alignPart(out, expected.subspan(begin.expected, end.expected - begin.expected),
                  actual.subspan(begin.actual, end.actual - begin.actual));
        begin = end;
    }
}

void alignPart(std::vector<Pairing>& out, Entries expected, Entries actual) {
    size_t const start = sharedStart(expected, actual);
    size_t const end = sharedEnd(expected.subspan(start), actual.subspan(start));
    Entries const differentExpected = expected.subspan(start, expected.size() - start - end);
    Entries const differentActual = actual.subspan(start, actual.size() - start - end);
    append(out, start, Pairing::Both);
    if (auto const exact = alignExactly(differentExpected, differentActual)) {
        out.insert(out.end(), exact->begin(), exact->end());
    } else {
        alignBetweenAnchors(out, differentExpected, differentActual);
    }
    append(out, end, Pairing::Both);
}

/// Moves each run of entries that stand alone to where it begins at a start, as far as neither
/// more entries nor more pairs differ by it.
class Slider {
 public:
    Slider(Entries expected, Entries actual, std::vector<Pairing>& pairings)
        : mExpected(expected), mActual(actual), mPairings(pairings) {}

    void slideAll() {
        Run run{0, 0, 0, 0};
        while (run.begin < mPairings.size()) {
            Pairing const kind = mPairings[run.begin];
            run.end =
                static_cast<size_t>(std::find_if(iterator(run.begin), mPairings.end(),
                                                 [kind](Pairing other) { return other != kind; }) -
                                    mPairings.begin());
            size_t const moved = kind != Pairing::Both ? slide(run) : 0;
            size_t const length = run.end - run.begin;
            run = {run.end + moved, 0,
                   run.expected + moved + (kind != Pairing::OnlyActual ? length : 0),
                   run.actual + moved + (kind != Pairing::OnlyExpected ? length : 0)};
        }
    }

 private:
    struct Run {
        size_t begin;  // in the pairings
        size_t end;
        size_t expected;  // its first entry, or the one behind the run
        size_t actual;
    };

    /// @return how far it has moved to later places.
    size_t slide(Run const& run) {
        size_t const most = run.end - run.begin;  // beyond that it is the same again
        for (size_t by = 0; by <= most; ++by) {
            if (isAtStart(run.actual - by)) {
                std::rotate(iterator(run.begin - by), iterator(run.begin), iterator(run.end));
                return 0;
            }
            if (!canMoveEarlier(run, by)) {
                break;
            }
        }
        for (size_t by = 0; by < most && canMoveLater(run, by); ++by) {
            if (isAtStart(run.actual + by + 1)) {
                std::rotate(iterator(run.begin), iterator(run.end), iterator(run.end + by + 1));
                return by + 1;
            }
        }
        return 0;
    }

    // Whether a run that has moved so far can move by one more.
    bool canMoveEarlier(Run const& run, size_t by) const {
        if (by == run.begin || mPairings[run.begin - by - 1] != Pairing::Both) {
            return false;
        }
        size_t const length = run.end - run.begin;
        Entry const& expected = mExpected[run.expected - by - 1];
        Entry const& actual = mActual[run.actual - by - 1];
        return mPairings[run.begin] == Pairing::OnlyActual
                   ? isAsGood(expected, mActual[run.actual + length - by - 1], actual)
                   : isAsGood(actual, mExpected[run.expected + length - by - 1], expected);
    }

    bool canMoveLater(Run const& run, size_t by) const {
        if (run.end + by == mPairings.size() || mPairings[run.end + by] != Pairing::Both) {
            return false;
        }
        size_t const length = run.end - run.begin;
        return mPairings[run.begin] == Pairing::OnlyActual
                   ? isAsGood(mExpected[run.expected + by], mActual[run.actual + by],
                              mActual[run.actual + length + by])
                   : isAsGood(mActual[run.actual + by], mExpected[run.expected + by],
                              mExpected[run.expected + length + by]);
    }

    // Whether its partner may be another one.
    static bool isAsGood(Entry const& entry, Entry const& partner, Entry const& before) {
        return entry.kind == partner.kind &&
               (isSameEntry(entry, partner) || !isSameEntry(entry, before));
    }

    bool isAtStart(size_t actual) const {
        return actual == mActual.size() || mActual[actual].isStart;
    }

    std::vector<Pairing>::iterator iterator(size_t place) const {
        return mPairings.begin() + static_cast<ptrdiff_t>(place);
    }

    Entries mExpected;
    Entries mActual;
    std::vector<Pairing>& mPairings;
};

}  // namespace

std::vector<Pairing> align(std::vector<Entry> const& expected, std::vector<Entry> const& actual) {
    std::vector<Pairing> pairings;
    alignPart(pairings, expected, actual);
    Slider(expected, actual, pairings).slideAll();
    return pairings;
}

}  // namespace zoomreplay
