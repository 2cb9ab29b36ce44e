#include "RunProgress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "base/Terminal.h"

namespace zoomreplay {

RunProgress::RunProgress(std::vector<Record> const& records)
    : mRecords(records.size()), mIsOn(isatty(STDERR_FILENO) != 0 && !isDumbTerminal()) {
    for (Record const& record : records) {
        std::error_code error;
        auto const size = std::filesystem::file_size(record.path, error);
        mBytes += error ? 0 : size;
    }
}

void RunProgress::update(size_t ended, uint64_t bytesRead) {
    using namespace std::chrono_literals;
    if (!mIsOn || ended == mRecords || Clock::now() - mStart < 1s) {
        return;
    }
    mIsShown = true;
    double const part =
        static_cast<double>(bytesRead) / static_cast<double>(std::max(mBytes, uint64_t{1}));
    std::fprintf(stderr, "\r%3.0f %%  %zu of %zu records\x1b[K", 100.0 * std::min(part, 1.0), ended,
                 mRecords);
}

void RunProgress::clear() {
    if (mIsShown) {
        std::fputs("\r\x1b[K", stderr);
        mIsShown = false;
    }
}

}  // namespace zoomreplay
