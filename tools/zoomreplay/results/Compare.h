// Compares the outcomes of a replay with an expected result file.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "Alignment.h"
#include "ResultDifference.h"
#include "TextSpool.h"
#include "base/LineReader.h"
#include "replay/Outcome.h"
#include "scenario/json/Json.h"

namespace zoomreplay {

/// A result that is not the expected one. Where one side has none, its text is empty.
struct Difference {
    std::optional<uint32_t> request;  ///< empty where the line names none
    std::string_view op;              ///< valid as long as the difference
    uint64_t line = 0;                ///< of the scenario; 0 where nothing came of it
    std::string expected;             ///< result lines
    std::string actual;
    std::vector<FieldDifference> fields;  ///< where there are both
};

/// Results belong together by operation and order, whatever their lines, so that the fewest are
/// missing or new and then the fewest differ. Up to the first result that is not the expected one
/// both sides are streamed; from there on some fifty bytes of each are kept, and their texts on
/// disk, since only the end shows what was added or left out.
class Compare : public OutcomeConsumer {
 public:
    using Tell = std::function<void(Difference const&)>;

    /// @param expected outlives the comparison.
    /// @param scenario the scenario's name, for messages.
    /// @param tell gets every difference in its order, when the replay is over.
    Compare(LineReader& expected, std::string scenario, Tell tell);

    void prepare(uint64_t line, Input const& input) override;

    /// @throws UserError a bad line of the expected file, too.
    void consume(Outcome const& outcome) override;

    /// Tells the differences, and prints the first of them and their number on standard error.
    /// @throws UserError a bad line of the expected file, too.
    void finish() override;

    /// In place of finish, where the replay has ended too early: results that it did not come to
    /// are no differences.
    void breakOff();

    uint64_t differences() const { return mDifferences; }

 private:
    /// A result that may have no counterpart, or another one than the next.
    struct Result {
        std::optional<uint32_t> request;  // of the actual side only
        uint64_t line;                    // of the scenario, or of the expected file
        TextSpool::Place text;
        bool isLogged;
    };

    struct Side {
        std::vector<Result> results;
        std::vector<Entry> entries;
    };

    /// A result that has not been parsed yet.
    struct Text {
        std::optional<uint32_t> request;
        uint64_t line;
        std::string text;
    };

    /// A result and its counterpart, which says the same.
    struct Pair {
        Text expected;
        Text actual;
    };

    std::optional<Text> nextExpected();
    bool areAlike(Text const& expected, Text const& actual) const;
    void partWays();
    void keepExpected(Text const& text);
    void keepActual(Text const& text);
    scenario::Json parseExpected(Text const& text) const;

    void tellAll();
    void tellPair(size_t expected, size_t actual);
    void tellMissing(size_t expected);
    void tellNew(size_t actual);
    void tell(Difference const& difference, std::string const& place);
    void print(std::string message);
    static std::string placeOf(std::string const& file, Result const& result);

    LineReader& mReader;
    std::string mScenario;
    Tell mTell;
    TextSpool mTexts;
    Side mExpected;  // both from the first result on that is not the expected one
    Side mActual;
    bool mAreAlike = true;
    std::deque<Pair> mAlike;  // the latest ones, while they are alike
    bool mIsTold = false;
    std::optional<uint32_t> mRequest;  // that the line in hand is about
    std::optional<uint32_t> mLatest;   // request that a kept result is about
    uint64_t mDifferences = 0;
    uint64_t mMessages = 0;
    std::unordered_set<uint32_t> mRequests;  // that differ
    uint64_t mMissingRequests = 0;           // whose numbers nobody knows
    std::vector<std::string> mFirst;
};

}  // namespace zoomreplay
