#include "WatchLine.h"

#include <algorithm>
#include <array>

#include "CameraTags.h"
#include "PhoneText.h"
#include "scenario/json/LineError.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

using scenario::LineError;

/// The number that a text ends with, which is taken off.
std::optional<uint64_t> takeLastNumber(std::string_view& text) {
    auto const last = text.find_last_not_of(kDigits);
    std::string_view const digits = text.substr(last == std::string_view::npos ? 0 : last + 1);
    auto const number = scenario::parseNumber<uint64_t>(digits);
    text.remove_suffix(digits.size());
    return number;
}

bool takeLast(std::string_view& text, char c) {
    bool const isThere = !text.empty() && text.back() == c;
    text.remove_suffix(isThere ? 1 : 0);
    return isThere;
}

// Takes "f12:3400ns:" off, and the source before it.
bool takeHead(std::string_view& line, WatchLine& result) {
    auto const unit = line.find("ns:");
    if (unit == std::string_view::npos) {
        return false;
    }
    std::string_view head = line.substr(0, unit);
    line.remove_prefix(unit + 3);
    auto const time = takeLastNumber(head);
    bool const hasColon = takeLast(head, ':');
    auto const frame = takeLastNumber(head);
    if (!time.has_value() || !hasColon || !frame.has_value() || !takeLast(head, 'f')) {
        return false;
    }
    head = head.substr(0, head.find_last_not_of(" :") + 1);
    auto const blank = head.find_last_of(' ');
    result.source = head.substr(blank == std::string_view::npos ? 0 : blank + 1);
    result.frame = *frame;
    result.time = *time;
    return true;
}

void takeZoomRatio(std::string_view text, ZoomValues& values) {
    auto const numbers = parseFloats(text);
    if (!numbers.has_value() || numbers->size() != 1 || !(numbers->front() > 0.0F)) {
        throw LineError("is not one positive number");
    }
    values.zoomRatio = numbers->front();
}

void takeCropRegion(std::string_view text, ZoomValues& values) {
    auto const numbers = parseIntegers(text);
    if (!numbers.has_value() || numbers->size() != 4 || (*numbers)[2] <= 0 || (*numbers)[3] <= 0) {
        throw LineError("is not x, y, width and height");
    }
    values.cropRegion = {(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
}

// The codes of the characters with a zero behind them, or the characters.
void takeActiveId(std::string_view text, ZoomValues& values) {
    auto const words = splitWords(text);
    auto const ids = idsFromCodes(words);
    if (ids.has_value() && ids->size() == 1) {
        values.activeId = ids->front();
        return;
    }
    std::string id;
    for (auto const word : words) {
        id += word.size() == 1 ? word : " ";
    }
    if (!isPrintableId(id)) {
        throw LineError("is not the id of one camera");
    }
    values.activeId = id;
}

struct WatchedTag {
    std::string_view name;
    WatchLine::Tag tag;
    void (*take)(std::string_view text, ZoomValues& values);
};

constexpr std::array kWatchedTags{
    WatchedTag{"android.control.zoomRatio", WatchLine::Tag::ZoomRatio, takeZoomRatio},
    WatchedTag{"android.scaler.cropRegion", WatchLine::Tag::CropRegion, takeCropRegion},
    WatchedTag{"android.logicalMultiCamera.activePhysicalId", WatchLine::Tag::ActiveId,
               takeActiveId},
};

// Behind the brackets some phones name the streams of the request.
std::string_view inBrackets(std::string_view text) {
    auto const begin = text.find('[');
    auto const end = text.find(']');
    bool const isThere = begin != std::string_view::npos && end != std::string_view::npos;
    return isThere && begin < end ? text.substr(begin + 1, end - begin - 1) : std::string_view();
}

}  // namespace

std::optional<WatchLine> parseWatchLine(std::string_view line) {
    WatchLine result;
    if (!takeHead(line, result)) {
        return std::nullopt;
    }
    skipBlanks(line);
    result.isResult = skip(line, "RES");
    if (!result.isResult && !skip(line, "REQ")) {
        return std::nullopt;
    }
    skip(line, ":");
    skipBlanks(line);
    auto const* const tag = std::find_if(
        kWatchedTags.begin(), kWatchedTags.end(),
        [&](WatchedTag const& watched) { return line.substr(0, line.find(':')) == watched.name; });
    if (tag == kWatchedTags.end()) {
        return std::nullopt;
    }
    result.tag = tag->tag;
    line.remove_prefix(tag->name.size());
    if (line.find("(Removed)") != std::string_view::npos) {
        return result;
    }
    try {
        tag->take(inBrackets(line), result.values);
    } catch (LineError const& e) {
        constexpr size_t kLongest = 80;
        throw LineError(std::string(tag->name) + std::string(line.substr(0, kLongest)) + ' ' +
                        e.what());
    }
    return result;
}

void merge(ZoomValues& values, WatchLine const& line) {
    switch (line.tag) {
        case WatchLine::Tag::ZoomRatio:
            values.zoomRatio = line.values.zoomRatio;
            break;
        case WatchLine::Tag::CropRegion:
            values.cropRegion = line.values.cropRegion;
            break;
        case WatchLine::Tag::ActiveId:
            values.activeId = line.values.activeId;
            break;
    }
}

std::string_view cameraOf(std::string_view source) {
    return source.substr(0, source.find(':'));
}

}  // namespace zoomreplay
