#include "CameraDump.h"

#include <algorithm>
#include <charconv>

namespace zoomreplay {
namespace {

bool isPrintable(std::string_view id) {
    return !id.empty() &&
           std::all_of(id.begin(), id.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

template <size_t kCount>
std::optional<std::array<float, kCount>> asArray(std::optional<std::vector<float>> const& numbers) {
    if (!numbers.has_value() || numbers->size() != kCount) {
        return std::nullopt;
    }
    std::array<float, kCount> result{};
    std::copy(numbers->begin(), numbers->end(), result.begin());
    return result;
}

// Each setter returns whether the values make sense.

bool setActiveArray(CameraStatics& camera, std::string_view values) {
    auto const numbers = parseIntegers(values);
    if (!numbers.has_value() || numbers->size() != 4) {
        return false;
    }
    camera.activeArray = {(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
    return true;
}

bool setPhysicalSize(CameraStatics& camera, std::string_view values) {
    camera.physicalSize = asArray<2>(parseFloats(values));
    return camera.physicalSize.has_value();
}

bool setFocalLengths(CameraStatics& camera, std::string_view values) {
    camera.focalLengths = parseFloats(values).value_or(std::vector<float>{});
    return !camera.focalLengths.empty();
}

bool setZoomRatioRange(CameraStatics& camera, std::string_view values) {
    camera.zoomRatioRange = asArray<2>(parseFloats(values));
    return camera.zoomRatioRange.has_value();
}

// The codes of the ids' characters, each id with a zero behind it.
bool setPhysicalIds(CameraStatics& camera, std::string_view values) {
    auto const codes = parseIntegers(values);
    if (!codes.has_value() || codes->empty() || codes->back() != 0) {
        return false;
    }
    std::vector<std::string> ids(1);
    for (int32_t const code : *codes) {
        if (code < 0 || code > 0x7F) {
            return false;
        }
        if (code == 0) {
            ids.emplace_back();
        } else {
            ids.back() += static_cast<char>(code);
        }
    }
    ids.pop_back();
    if (!std::all_of(ids.begin(), ids.end(), isPrintable)) {
        return false;
    }
    camera.physicalIds = std::move(ids);
    return true;
}

struct WantedTag {
    std::string_view name;
    std::string_view type;
    bool (*set)(CameraStatics& camera, std::string_view values);
};

constexpr std::array kWantedTags{
    WantedTag{tag::kActiveArray, "int32", setActiveArray},
    WantedTag{tag::kPhysicalSize, "float", setPhysicalSize},
    WantedTag{tag::kFocalLengths, "float", setFocalLengths},
    WantedTag{tag::kPhysicalIds, "byte", setPhysicalIds},
    WantedTag{tag::kZoomRatioRange, "float", setZoomRatioRange},
};

WantedTag const* findWantedTag(std::string_view line) {
    auto const* const found = std::find_if(
        kWantedTags.begin(), kWantedTags.end(),
        [line](WantedTag const& wanted) { return line.substr(0, line.find(' ')) == wanted.name; });
    return found == kWantedTags.end() ? nullptr : found;
}

// "android.lens.info.availableFocalLengths (90002): float[1]" says 1 float.
std::optional<size_t> announcedCount(std::string_view line, std::string_view type) {
    auto const colon = line.find("): ");
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    line.remove_prefix(colon + 3);
    if (!skip(line, type) || !skip(line, "[")) {
        return std::nullopt;
    }
    size_t count = 0;
    char const* const end = line.data() + line.size();
    auto const [stop, error] = std::from_chars(line.data(), end, count);
    bool const isWhole = error == std::errc{} && end - stop == 1 && *stop == ']';
    return isWhole ? std::optional(count) : std::nullopt;
}

size_t countWords(std::string_view text) {
    size_t count = 0;
    bool isBlank = true;
    for (char const c : text) {
        bool const wasBlank = isBlank;
        isBlank = c == ' ' || c == '[' || c == ']';
        count += wasBlank && !isBlank ? 1 : 0;
    }
    return count;
}

class Parser {
 public:
    void take(std::string_view line) {
        if (mTag != nullptr && isValues(line)) {
            mValues.append(line).append(" ");
            return;
        }
        endTag();
        if (skip(line, "==")) {
            beginSection(line);
        } else if (skip(line, "Physical camera ")) {
            beginPhysicalCamera(line);
        } else if (mIsInside) {
            beginTag(line);
        }
    }

    std::vector<CameraStatics> finish() {
        endTag();
        std::set<std::string> known;
        std::erase_if(mCameras,
                      [&](CameraStatics const& camera) { return !known.insert(camera.id).second; });
        return std::move(mCameras);
    }

 private:
    static bool isValues(std::string_view line) {
        return line.find_first_not_of("0123456789+-.eE[] ") == std::string_view::npos;
    }

    // "== Camera HAL device device@3.7/legacy/3 (v3.7) static information: ==" begins camera 3.
    // Other sections print requests and results, with tags of the same names.
    void beginSection(std::string_view title) {
        mIsInside = false;
        mPublicId.clear();
        constexpr std::string_view kDevice = "HAL device ";
        auto const device = title.find(kDevice);
        if (device == std::string_view::npos ||
            title.find("static information") == std::string_view::npos) {
            return;
        }
        title.remove_prefix(device + kDevice.size());
        title = title.substr(0, title.find(' '));
        mPublicId = title.substr(title.rfind('/') + 1);
        beginCamera(mPublicId, "");
    }

    void beginPhysicalCamera(std::string_view rest) {
        auto const length = rest.find(" characteristics:");
        if (!mPublicId.empty() && length != std::string_view::npos) {
            beginCamera(std::string(rest.substr(0, length)), mPublicId);
        }
    }

    void beginCamera(std::string const& id, std::string const& logicalId) {
        mIsInside = isPrintable(id);
        if (mIsInside) {
            CameraStatics& camera = mCameras.emplace_back();
            camera.id = id;
            camera.logicalId = logicalId;
        }
    }

    void beginTag(std::string_view line) {
        mTag = findWantedTag(line);
        if (mTag != nullptr) {
            mCount = announcedCount(line, mTag->type);
        }
    }

    // Where values break off at the end of a line is known only by the line that follows.
    void endTag() {
        if (mTag == nullptr) {
            return;
        }
        CameraStatics& camera = mCameras.back();
        if (mCount != countWords(mValues) || !mTag->set(camera, mValues)) {
            camera.unreadable.insert(mTag->name);
        }
        mTag = nullptr;
        mValues.clear();
    }

    std::vector<CameraStatics> mCameras;
    bool mIsInside = false;  // of a camera's characteristics, the last camera's
    std::string mPublicId;   // of the section, where it is a camera's
    WantedTag const* mTag = nullptr;
    std::optional<size_t> mCount;  // of the tag's values, as announced
    std::string mValues;
};

}  // namespace

std::vector<CameraStatics> readCameraDump(PhoneText& dump) {
    Parser parser;
    while (auto const line = dump.next()) {
        parser.take(*line);
    }
    return parser.finish();
}

}  // namespace zoomreplay
