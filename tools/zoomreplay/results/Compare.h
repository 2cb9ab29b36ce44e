// Compares the outcomes of a replay with an expected result file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/LineReader.h"
#include "replay/Outcome.h"
#include "scenario/json/Json.h"

namespace zoomreplay {

/// Both sides are streamed. Lines belong together by the scenario line that they name. They compare
/// as JSON: the order of fields and the spelling of numbers do not count, types and the sign of
/// zero do. Logs count only where both sides have them; times, and source line numbers and
/// addresses inside messages, never do.
class Compare : public OutcomeConsumer {
 public:
    /// @param expected outlives the comparison.
    /// @param scenario the scenario's name, for messages.
    Compare(LineReader& expected, std::string scenario);

    /// @throws UserError a bad line of the expected file, too.
    void consume(Outcome const& outcome) override;

    /// Prints the first differences on standard error.
    void finish() override;

    uint64_t differences() const { return mDifferences; }

 private:
    struct Expected {
        uint64_t line;
        std::string op;
        scenario::Json result;
    };

    Expected parseExpected() const;
    void compareFields(std::string const& path, scenario::Json const& expected,
                       scenario::Json const& actual);
    void compareValues(std::string const& path, scenario::Json const& expected,
                       scenario::Json const& actual);
    void reportValues(std::string const& path, std::string const& expected,
                      std::string const& actual);
    void report(uint64_t line, std::string_view op, std::string const& what);

    LineReader& mReader;
    std::string mScenario;
    std::optional<std::string_view> mPending;  // expected line that has found no counterpart yet
    std::string mActual;                       // kept for its memory
    uint64_t mLine = 0;                        // scenario line and operation under comparison
    std::string_view mOp;
    uint64_t mDifferences = 0;
    std::vector<std::string> mFirst;
};

}  // namespace zoomreplay
