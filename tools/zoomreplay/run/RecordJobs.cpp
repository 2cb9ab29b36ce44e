#include "RecordJobs.h"

#include <poll.h>
#include <sys/wait.h>

#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

namespace zoomreplay {
namespace {

constexpr int kTickMilliseconds = 200;

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        size_t const end = std::min(text.find('\n'), text.size());
        auto const last = text.substr(0, end).find_last_not_of(" \r");
        if (last != std::string_view::npos) {
            lines.emplace_back(text.substr(0, last + 1));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// @return empty where the child has ended as the replay of a record does.
std::string suddenEnd(int status, Tally const& tally) {
    if (WIFSIGNALED(status)) {
        int const signal = WTERMSIG(status);
        return "the process was killed by signal " + std::to_string(signal) + ", " +
               strsignal(signal);
    }
    int const code = WEXITSTATUS(status);
    bool const isWhole = tally.isOver || code == static_cast<int>(ExitStatus::BadInput) ||
                         code == static_cast<int>(ExitStatus::Fatal);
    return isWhole ? "" : "the process ended early, with status " + std::to_string(code);
}

Ending endingOf(int exitStatus) {
    return static_cast<Ending>(exitStatus);
}

}  // namespace

RecordJobs::RecordJobs(std::vector<Record> const& records, std::optional<std::string> expected)
    : mRecords(records), mExpected(std::move(expected)), mResults(records.size()) {}

void RecordJobs::run(size_t most, Tell const& tell, Tick const& tick) {
    for (size_t told = 0; told < mRecords.size();) {
        startUpTo(most);
        listen();
        while (told < mRecords.size() && mResults[told].has_value()) {
            tell(mRecords[told], *mResults[told]);
            mResults[told++].reset();
        }
        tick(*this);
    }
}

uint64_t RecordJobs::bytesRead() const {
    uint64_t bytes = mBytesOfEnded;
    for (Job const& job : mRunning) {
        bytes += job.tally->bytesRead;
    }
    return bytes;
}

// Where no more processes can be had, those that there are go on.
void RecordJobs::startUpTo(size_t most) {
    while (mRunning.size() < most && mStarted < mRecords.size()) {
        try {
            start();
        } catch (UserError const&) {
            if (mRunning.empty()) {
                throw;
            }
            return;
        }
    }
}

void RecordJobs::start() {
    Record const& record = mRecords[mStarted];
    std::optional<std::string> expected;
    if (mExpected.has_value()) {
        expected = std::filesystem::path(*mExpected) / record.name;
    }
    mRunning.emplace_back(mStarted,
                          [&](Tally& tally) { return replayRecord(record.path, expected, tally); });
    ++mStarted;
}

void RecordJobs::listen() {
    std::vector<pollfd> pipes;
    for (Job const& job : mRunning) {
        pipes.push_back({job.process.descriptor(), POLLIN, 0});
    }
    if (poll(pipes.data(), pipes.size(), kTickMilliseconds) <= 0) {
        return;
    }
    auto pipe = pipes.begin();
    for (auto job = mRunning.begin(); job != mRunning.end(); ++pipe) {
        if (pipe->revents == 0 || job->process.listen()) {
            ++job;
            continue;
        }
        end(*job);
        job = mRunning.erase(job);
    }
}

void RecordJobs::end(Job& job) {
    int const status = job.process.status();
    std::string const sudden = suddenEnd(status, *job.tally);
    RecordResult result;
    result.ending = sudden.empty() ? endingOf(WEXITSTATUS(status)) : Ending::Killed;
    result.counts = job.tally->counts;
    result.seconds = std::chrono::duration<double>(Clock::now() - job.start).count();
    result.messages = linesOf(job.process.said());
    if (!sudden.empty()) {
        result.messages.push_back(mRecords[job.index].path + ':' + std::to_string(job.tally->line) +
                                  ": " + sudden);
    }
    mResults[job.index] = std::move(result);
    mBytesOfEnded += job.tally->bytesRead;
    ++mEnded;
}

}  // namespace zoomreplay
