// Replays many records, several at a time.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "RecordReplay.h"
#include "RecordResult.h"
#include "Records.h"
#include "Shared.h"

namespace zoomreplay {

class RecordJobs {
 public:
    /// Gets each result in the order of the records. @throws UserError
    using Tell = std::function<void(Record const&, RecordResult const&)>;

    /// Called several times a second.
    using Tick = std::function<void(RecordJobs const&)>;

    /// @param records outlive it.
    /// @param expected the folder of the expected results.
    RecordJobs(std::vector<Record> const& records, std::optional<std::string> expected);

    /// Replays all records, each in a process of its own, and returns when all are told.
    /// @param most how many at a time. @throws UserError what tell throws; not one process can be
    ///     started.
    void run(size_t most, Tell const& tell, Tick const& tick);

    size_t records() const { return mRecords.size(); }
    size_t ended() const { return mEnded; }

    /// Of the records, what has been read so far.
    uint64_t bytesRead() const;

 private:
    using Clock = std::chrono::steady_clock;

    struct Job {
        Job(size_t place, std::function<ExitStatus(Tally&)> const& work)
            : index(place), process([&] { return work(*tally); }) {}

        size_t index;
        Clock::time_point start = Clock::now();
        Shared<Tally> tally;
        ChildProcess process;
    };

    void start();
    void startUpTo(size_t most);
    void listen();
    void end(Job& job);

    std::vector<Record> const& mRecords;
    std::optional<std::string> mExpected;
    std::list<Job> mRunning;
    std::vector<std::optional<RecordResult>> mResults;  // until they are told
    size_t mStarted = 0;
    size_t mEnded = 0;
    uint64_t mBytesOfEnded = 0;
};

}  // namespace zoomreplay
