// A case: some calls of the module, and beside them the floor, which gives the same answers.
//
// The floor is the least code that computes the answer: the same containers and records, the same
// calls of the platform, but no lock, no dispatch, no log lines and no cache.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "scenario/text/Modes.h"

namespace Bench {

/// What is measured. One object at a time: the manager is one for the whole process.
class Work {
 public:
    Work() = default;
    virtual ~Work() = default;
    Work(Work const&) = delete;
    Work& operator=(Work const&) = delete;

    /// Before and after each batch, not measured. A batch is module and floor in either order.
    virtual void prepare() {}
    virtual void finish() {}

    /// A batch of calls, and the same answers by the floor.
    virtual void module() = 0;
    virtual void floor() = 0;

    /// Whether both gave the same answers in the latest batch. Before finish.
    virtual bool agree() const = 0;
};

struct Case {
    std::string name;
    int calls = 0;  ///< in a batch
    std::function<std::unique_ptr<Work>()> start;
};

/// A case whose Work is made anew from arguments for each run, and is told its number of calls.
template <typename W, typename... Args>
Case makeCase(std::string name, int calls, Args... args) {
    return {std::move(name), calls,
            [calls, args...] { return std::make_unique<W>(calls, args...); }};
}

std::vector<Case> instantRequestCases();
std::vector<Case> byRequestCases();
std::vector<Case> externalApiCases();

/// The cases of a mode.
inline std::vector<Case> casesOf(NSCam::Feature::ZoomOverrideMode mode) {
    using NSCam::Feature::ZoomOverrideMode;
    switch (mode) {
        case ZoomOverrideMode::ExternalAPI:
            return externalApiCases();
        case ZoomOverrideMode::ByRequest:
            return byRequestCases();
        case ZoomOverrideMode::InstantRequest:
            return instantRequestCases();
        case ZoomOverrideMode::None:
            break;
    }
    return {};
}

std::vector<Case> geometryCases();
std::vector<Case> logCases();

/// The same work by another library's rectangles in place of a floor.
std::vector<Case> yardstickCases();

/// All cases but the yardstick's.
inline std::vector<Case> moduleCases() {
    std::vector<Case> all;
    auto const add = [&all](std::vector<Case> const& cases) {
        all.insert(all.end(), cases.begin(), cases.end());
    };
    auto const modes = scenario::overridingModes();
    for (auto mode = modes.rbegin(); mode != modes.rend(); ++mode) {
        add(casesOf(*mode));
    }
    add(geometryCases());
    add(logCases());
    return all;
}

/// Calls in a batch of queries: with each a request in flight.
inline constexpr int kQueries = 64;

/// Calls in a batch of operations that take a few nanoseconds.
inline constexpr int kSmallCalls = 4096;

}  // namespace Bench
