// Runs zoomreplay as a process in a folder of its own.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zoomreplay::test {

struct ToolRun {
    int status = 0;   ///< exit status, or minus the signal that ended the process
    std::string out;  ///< standard output
    std::string err;  ///< standard error
};

class ToolTest : public testing::Test {
 protected:
    ToolTest();
    ~ToolTest() override;

    void write(std::string const& name, std::string_view text) const;
    std::string read(std::string const& name) const;

    std::string pathOf(std::string const& name) const { return mFolder / name; }

    /// What all files of the folder hold, by name; without those that run makes.
    std::map<std::string, std::string> readAll() const;

    /// Runs the tool with these arguments; file names are relative to the test's folder.
    /// @param prepare runs in the new process, when its standard streams are open.
    ToolRun run(std::vector<std::string> const& arguments, std::string_view input = "",
                std::function<void()> const& prepare = {}) const;

    /// Replays a scenario under the name s.jsonl, results to standard output.
    ToolRun replay(std::string_view scenario, std::vector<std::string> const& more = {}) const;

    /// What a run printed that must have gone well.
    static std::string outputOf(ToolRun const& run) {
        EXPECT_EQ(run.status, 0) << run.err;
        return run.out;
    }

 private:
    std::filesystem::path mFolder;
};

/// Sensor 0 in mode 1: every second pixel of an array of 4608x2592.
inline constexpr std::string_view kSensor =
    R"({"op":"sensor","id":0,"modes":{"1":{"size":[2304,1296],"window":[0,0,4608,2592]}}})"
    "\n";

/// A line that works without any other, and its result as line 1.
inline constexpr std::string_view kModeLine = R"({"op":"getZoomOverrideMode"})"
                                              "\n";
inline constexpr std::string_view kModeResult =
    R"({"line": 1, "op": "getZoomOverrideMode", "result": 0})"
    "\n";

/// A line that the library cannot answer: nothing is known of the request.
inline constexpr std::string_view kFatalLine = R"({"op":"getHistoryCropNeedData","requestNo":9})"
                                               "\n";

}  // namespace zoomreplay::test
