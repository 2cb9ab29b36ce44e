#include "PartWriter.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace zoomrecorder {

using std::chrono::milliseconds;

PartWriter::PartWriter(Settings const& settings)
    : mPartBytes(settings.bytes / PartFiles::kParts),
      mFiles(settings.path),
      // What a part begins with must leave room for what is new.
      mState(static_cast<size_t>(mPartBytes / 2)) {
    startPart();
}

void PartWriter::add(LineSubject subject, std::string_view line) {
    if (mFiles.hasFailed()) {
        return;
    }
    bool const isFull = mFiles.size() + line.size() > mPartBytes && mFiles.size() > mHeadBytes;
    if (isFull) {
        startPart();
    }

    mText.clear();
    appendTime(mText);
    mText += line;
    mFiles.write(mText);
    mState.add(subject, line);
}

// The lines before the comment repeat what older parts have.
void PartWriter::startPart() {
    mText = "// Recorded by libcam.zoomoverride_recorder. Replay: zoomreplay FILE\n";
    mState.appendTo(mText);
    mText += "// The record goes on here.\n";
    mFiles.startPart();
    mFiles.write(mText);
    mHeadBytes = mFiles.size();
}

// Once a second, as logcat writes it, to find one's way between log and record.
void PartWriter::appendTime(std::string& out) {
    auto const now = std::chrono::duration_cast<milliseconds>(
                         std::chrono::system_clock::now().time_since_epoch())
                         .count();
    constexpr int64_t kMillis = 1000;
    if (now / kMillis == mLastSecond) {
        return;
    }
    mLastSecond = now / kMillis;

    time_t const seconds = mLastSecond;
    struct tm calendar {};
    localtime_r(&seconds, &calendar);
    std::array<char, 64> text{};
    auto const length = std::strftime(text.data(), text.size(), "// %m-%d %H:%M:%S.", &calendar);
    out.append(text.data(), length);
    auto const fraction = std::to_string(now % kMillis);
    out.append(3 - fraction.size(), '0').append(fraction).append(1, '\n');
}

}  // namespace zoomrecorder
