#include "WatchLog.h"

#include <algorithm>
#include <charconv>

namespace zoomreplay {
namespace {

constexpr std::string_view kDigits = "0123456789";

/// The values that one frame changes.
struct Change {
    uint64_t frame = 0;
    std::optional<float> zoomRatio;
    std::optional<NSCam::MRect> cropRegion;
};

// Takes "f12:3400ns:" off, and what a phone may print before it. Empty for other lines.
std::optional<uint64_t> skipFrame(std::string_view& line) {
    auto const unit = line.find("ns:");
    if (unit == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view head = line.substr(0, unit);
    head = head.substr(0, head.find_last_not_of(kDigits) + 1);
    if (head.empty() || head.back() != ':') {
        return std::nullopt;
    }
    head.remove_suffix(1);
    auto const begin = head.find_last_not_of(kDigits);
    if (begin == std::string_view::npos || head[begin] != 'f') {
        return std::nullopt;
    }

    head.remove_prefix(begin + 1);
    uint64_t frame = 0;
    auto const [stop, error] = std::from_chars(head.data(), head.data() + head.size(), frame);
    line.remove_prefix(unit + 3);
    return error == std::errc{} ? std::optional(frame) : std::nullopt;
}

bool takeZoomRatio(std::string_view values, Change& change) {
    auto const numbers = parseFloats(values);
    if (!numbers.has_value() || numbers->size() != 1 || !(numbers->front() > 0.0F)) {
        return false;
    }
    change.zoomRatio = numbers->front();
    return true;
}

bool takeCropRegion(std::string_view values, Change& change) {
    auto const numbers = parseIntegers(values);
    if (!numbers.has_value() || numbers->size() != 4 || (*numbers)[2] <= 0 || (*numbers)[3] <= 0) {
        return false;
    }
    change.cropRegion = {(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
    return true;
}

class Reader {
 public:
    void take(std::string_view line, uint64_t lineNumber) {
        auto const frame = skipFrame(line);
        if (!frame.has_value()) {
            return;
        }
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        if (skip(line, "REQ:android.control.zoomRatio:")) {
            takeValues(*frame, takeZoomRatio, line, lineNumber, "is not one positive number");
        } else if (skip(line, "REQ:android.scaler.cropRegion:")) {
            takeValues(*frame, takeCropRegion, line, lineNumber, "is not x, y, width and height");
        }
    }

    WatchLog finish() {
        if (isNewestFirst()) {
            std::reverse(mChanges.begin(), mChanges.end());
        }
        WatchedFrame state;
        for (Change const& change : mChanges) {
            state.number = change.frame;
            state.zoomRatio = change.zoomRatio.value_or(state.zoomRatio);
            if (change.cropRegion.has_value()) {
                state.cropRegion = change.cropRegion;
            }
            mLog.frames.push_back(state);
        }
        return std::move(mLog);
    }

 private:
    template <typename Take>
    void takeValues(uint64_t frame, Take takeValue, std::string_view values, uint64_t lineNumber,
                    char const* complaint) {
        bool const isNewFrame = mChanges.empty() || mChanges.back().frame != frame;
        Change change = isNewFrame ? Change{frame, {}, {}} : mChanges.back();
        if (!takeValue(values, change)) {
            if (mLog.unusableLines == 0) {
                mLog.firstUnusable = std::to_string(lineNumber) + ": " + complaint;
            }
            ++mLog.unusableLines;
            return;
        }
        if (isNewFrame) {
            mChanges.push_back(change);
        } else {
            mChanges.back() = change;
        }
    }

    // Frame numbers begin anew with each session, so that a few of them fall in any log.
    bool isNewestFirst() const {
        size_t rises = 0;
        size_t falls = 0;
        for (size_t i = 1; i < mChanges.size(); ++i) {
            ++(mChanges[i].frame > mChanges[i - 1].frame ? rises : falls);
        }
        return falls > rises;
    }

    std::vector<Change> mChanges;
    WatchLog mLog;
};

}  // namespace

WatchLog readWatchLog(PhoneText& log) {
    Reader reader;
    while (auto const line = log.next()) {
        reader.take(*line, log.lineNumber());
    }
    return reader.finish();
}

}  // namespace zoomreplay
