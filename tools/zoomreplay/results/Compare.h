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

/// Both sides are streamed. Results belong together by request, operation and order, whatever their
/// lines: where they differ, those around them show which were changed, added or left out.
class Compare : public OutcomeConsumer {
 public:
    using Tell = std::function<void(Difference const&)>;

    /// @param expected outlives the comparison.
    /// @param scenario the scenario's name, for messages.
    /// @param tell gets every difference in its order.
    Compare(LineReader& expected, std::string scenario, Tell tell);

    void prepare(uint64_t line, Input const& input) override;

    /// @throws UserError a bad line of the expected file, too.
    void consume(Outcome const& outcome) override;

    /// Prints the first differences and their number on standard error.
    void finish() override;

    uint64_t differences() const { return mDifferences; }

 private:
    /// A result that waits for its counterpart.
    struct Result {
        std::optional<uint32_t> request;  // of the actual side only
        uint64_t line = 0;                // of the scenario, or of the expected file
        std::string op;                   // of the expected side only once it was parsed
        std::string text;
        std::optional<scenario::Json> json;  // once it was needed, as is the essence
        std::string essence;
    };

    Likeness likeness(Result& expected, Result& actual) const;
    void parse(Result& result) const;
    std::string placeOf(Result const& result, bool isExpected) const;

    void fill();
    void pairAll();
    void pairStretch();
    bool areHeadsEqual();
    void take(bool hasExpected, bool hasActual);
    void tell(Difference const& difference, std::string const& place);
    void print(std::string message);

    LineReader& mReader;
    std::string mScenario;
    Tell mTell;
    std::deque<Result> mExpected;
    std::deque<Result> mActual;
    bool mIsExpectedOver = false;
    bool mIsActualOver = false;
    std::optional<uint32_t> mRequest;  // that the line in hand is about
    uint64_t mDifferences = 0;
    uint64_t mMessages = 0;
    std::unordered_set<uint32_t> mRequests;  // that differ
    std::vector<std::string> mFirst;
};

}  // namespace zoomreplay
