// Begins each part with what it needs to be replayed by itself, and adds the time now and then.
#include "PartWriter.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace zoomrecorder {
namespace {

// What a reader takes as a line: no request needs more than that to be kept.
constexpr size_t kLargestRequest = size_t{1} << 20U;

}  // namespace

PartWriter::PartWriter(Settings const& settings)
    : mPartBytes(settings.bytes / PartFiles::kParts),
      mFiles(settings.path),
      // What a part begins with must leave room for what is new.
      mState(std::max(static_cast<size_t>(mPartBytes / 2), kLargestRequest)) {
    startPart();
}

void PartWriter::add(LineSubject subject, std::string_view line) {
    if (mFiles.hasFailed()) {
        return;
    }
    if (isFull(line.size())) {
        startPart();
    }

    mText.clear();
    bool const hasDuration = appendDuration(mText);
    appendTime(mText);
    mText += line;
    if (hasDuration) {
        mFiles.rewriteEnd(mText);
    } else {
        mFiles.write(mText);
    }
    mState.add(subject, line);
}

// Where the requests in flight need more than half a part, parts grow with them: otherwise each
// would be full as soon as it has begun, and the older ones be lost.
bool PartWriter::isFull(size_t more) const {
    uint64_t const size = mFiles.size() + more;
    return size > mPartBytes && mFiles.size() > mHeadBytes && size > 2 * mState.size();
}

// The lines before the comment repeat what older parts have.
void PartWriter::startPart() {
    mDuration.reset();
    mText = "// Recorded by libcam.zoomoverride_recorder. Replay: zoomreplay FILE\n";
    mState.appendTo(mText);
    mText += "// The record goes on here.\n";
    mFiles.startPart();
    mFiles.write(mText);
    mHeadBytes = mFiles.size();
}

// The end of the last line with its duration. A write that is torn ends at a page: it must not
// tear a line that was whole, so one that ends just there gets no duration.
bool PartWriter::appendDuration(std::string& out) {
    auto const nanoseconds = std::exchange(mDuration, std::nullopt);
    if (!nanoseconds.has_value()) {
        return false;
    }
    out.append(", \"dur\": ").append(std::to_string(*nanoseconds)).append(PartFiles::kLineEnd);
    constexpr uint64_t kPage = 4096;
    uint64_t const begin = mFiles.size() - PartFiles::kLineEnd.size();
    bool const isOnOnePage = begin / kPage == (begin + out.size() - 1) / kPage;
    if (!isOnOnePage) {
        out.clear();
    }
    return isOnOnePage;
}

// Once a second, as logcat writes it, to find one's way between log and record.
void PartWriter::appendTime(std::string& out) {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    if (now.tv_sec == mLastSecond) {
        return;
    }
    mLastSecond = now.tv_sec;

    struct tm calendar {};
    localtime_r(&now.tv_sec, &calendar);
    std::array<char, 64> text{};
    auto const length = std::strftime(text.data(), text.size(), "// %m-%d %H:%M:%S.", &calendar);
    out.append(text.data(), length);
    constexpr int64_t kPerMillisecond = 1000000;
    auto const fraction = std::to_string(now.tv_nsec / kPerMillisecond);
    out.append(3 - fraction.size(), '0').append(fraction).append(1, '\n');
}

}  // namespace zoomrecorder
