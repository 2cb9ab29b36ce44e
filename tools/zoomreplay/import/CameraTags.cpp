#include "CameraTags.h"

#include <algorithm>
#include <array>

#include "PhoneText.h"

namespace zoomreplay {
namespace {

using Words = std::vector<std::string_view>;

std::string joinWords(Words const& words) {
    std::string text;
    for (auto const word : words) {
        text.append(word).append(" ");
    }
    return text;
}

template <size_t kCount, typename T>
std::optional<std::array<T, kCount>> exactly(std::optional<std::vector<T>> const& numbers,
                                             size_t announced) {
    if (!numbers.has_value() || numbers->size() != kCount || announced != kCount) {
        return std::nullopt;
    }
    std::array<T, kCount> result{};
    std::copy(numbers->begin(), numbers->end(), result.begin());
    return result;
}

template <size_t kCount>
std::optional<std::array<float, kCount>> floatsOf(Words const& words, size_t count) {
    return exactly<kCount>(parseFloats(joinWords(words)), count);
}

template <size_t kCount>
std::optional<std::array<int32_t, kCount>> integersOf(Words const& words, size_t count) {
    return exactly<kCount>(parseIntegers(joinWords(words)), count);
}

bool setActiveArray(CameraStatics& camera, Words const& words, size_t count) {
    auto const numbers = integersOf<4>(words, count);
    if (numbers.has_value()) {
        auto const [x, y, w, h] = *numbers;
        camera.activeArray = {x, y, w, h};
    }
    return numbers.has_value();
}

bool setPixelArray(CameraStatics& camera, Words const& words, size_t count) {
    auto const numbers = integersOf<2>(words, count);
    if (numbers.has_value()) {
        camera.pixelArray = {(*numbers)[0], (*numbers)[1]};
    }
    return numbers.has_value();
}

bool setPhysicalSize(CameraStatics& camera, Words const& words, size_t count) {
    camera.physicalSize = floatsOf<2>(words, count);
    return camera.physicalSize.has_value();
}

bool setFocalLengths(CameraStatics& camera, Words const& words, size_t count) {
    camera.focalLengths = parseFloats(joinWords(words)).value_or(std::vector<float>{});
    bool const isWhole = !camera.focalLengths.empty() && camera.focalLengths.size() == count;
    if (!isWhole) {
        camera.focalLengths.clear();
    }
    return isWhole;
}

bool setIntrinsics(CameraStatics& camera, Words const& words, size_t count) {
    camera.intrinsics = floatsOf<5>(words, count);
    return camera.intrinsics.has_value();
}

bool setZoomRatioRange(CameraStatics& camera, Words const& words, size_t count) {
    camera.zoomRatioRange = floatsOf<2>(words, count);
    return camera.zoomRatioRange.has_value();
}

bool setDigitalZoom(CameraStatics& camera, Words const& words, size_t count) {
    auto const numbers = floatsOf<1>(words, count);
    if (numbers.has_value()) {
        camera.digitalZoom = numbers->front();
    }
    return numbers.has_value();
}

bool setOrientation(CameraStatics& camera, Words const& words, size_t count) {
    auto const numbers = integersOf<1>(words, count);
    if (numbers.has_value()) {
        camera.orientation = numbers->front();
    }
    return numbers.has_value();
}

// By its name, or by its number where a phone does not know the name.
bool setFacing(CameraStatics& camera, Words const& words, size_t /*count*/) {
    struct Name {
        std::string_view word;
        std::string_view number;
        Facing facing;
    };
    constexpr std::array kNames{Name{"FRONT", "0", Facing::Front}, Name{"BACK", "1", Facing::Back},
                                Name{"EXTERNAL", "2", Facing::External}};
    if (words.size() != 1) {
        return false;
    }
    auto const* const found = std::find_if(kNames.begin(), kNames.end(), [&](Name const& name) {
        return words.front() == name.word || words.front() == name.number;
    });
    if (found == kNames.end()) {
        return false;
    }
    camera.facing = found->facing;
    return true;
}

// A phone prints the codes of all characters, or the characters without the zeros that end the ids:
// then as many are missing as there are ids.
bool setPhysicalIds(CameraStatics& camera, Words const& words, size_t count) {
    constexpr size_t kLongest = 256;
    if (words.size() == count) {
        camera.physicalIds = idsFromCodes(words).value_or(std::vector<std::string>{});
        return !camera.physicalIds.empty();
    }
    bool const areCharacters = std::all_of(words.begin(), words.end(), [](std::string_view word) {
        return word.size() == 1 && isPrintableId(word);
    });
    if (!areCharacters || words.size() > count || count > kLongest) {
        return false;
    }
    JoinedIds joined{{}, count - words.size()};
    for (auto const word : words) {
        joined.characters += word;
    }
    bool const hasRoom = joined.count <= joined.characters.size();
    if (hasRoom) {
        camera.joinedIds = std::move(joined);
    }
    return hasRoom;
}

constexpr std::array kTags{
    CameraTag{tag::kActiveArray, "int32", setActiveArray},
    CameraTag{tag::kPixelArray, "int32", setPixelArray},
    CameraTag{tag::kPhysicalSize, "float", setPhysicalSize},
    CameraTag{tag::kOrientation, "int32", setOrientation},
    CameraTag{tag::kFacing, "byte", setFacing},
    CameraTag{tag::kFocalLengths, "float", setFocalLengths},
    CameraTag{tag::kIntrinsics, "float", setIntrinsics},
    CameraTag{tag::kPhysicalIds, "byte", setPhysicalIds},
    CameraTag{tag::kZoomRatioRange, "float", setZoomRatioRange},
    CameraTag{tag::kDigitalZoom, "float", setDigitalZoom},
};

}  // namespace

CameraTag const* findCameraTag(std::string_view name) {
    auto const* const found = std::find_if(
        kTags.begin(), kTags.end(), [name](CameraTag const& known) { return known.name == name; });
    return found == kTags.end() ? nullptr : found;
}

void setCameraTag(CameraStatics& camera, CameraTag const& tag, Words const& words,
                  std::optional<size_t> count, std::string const& place) {
    constexpr size_t kLongest = 80;
    camera.hasTags = true;
    if (!words.empty() && count.has_value() && tag.set(camera, words, *count)) {
        return;
    }
    auto& damage = camera.unreadable[tag.name];
    damage = place + (place.empty() ? "" : ": ") + '[' + joinWords(words).substr(0, kLongest) + ']';
    damage += count.has_value() ? ", announced as " + std::to_string(*count) + " values"
                                : ", not announced as " + std::string(tag.type);
}

std::optional<std::vector<std::string>> idsFromCodes(Words const& words) {
    auto const codes = parseIntegers(joinWords(words));
    if (!codes.has_value() || codes->empty() || codes->back() != 0) {
        return std::nullopt;
    }
    std::vector<std::string> ids(1);
    for (int32_t const code : *codes) {
        if (code < 0 || code > 0x7F) {
            return std::nullopt;
        }
        if (code == 0) {
            ids.emplace_back();
        } else {
            ids.back() += static_cast<char>(code);
        }
    }
    ids.pop_back();
    bool const arePrintable = std::all_of(ids.begin(), ids.end(), isPrintableId);
    return arePrintable ? std::optional(std::move(ids)) : std::nullopt;
}

std::vector<std::string> splitIds(JoinedIds const& joined, std::vector<std::string> const& known) {
    std::string_view const characters = joined.characters;
    size_t const length = characters.size();
    // In how many ways the characters from a place on make a number of ids; 2 stands for more.
    std::vector<std::vector<int>> ways(length + 1, std::vector<int>(joined.count + 1, 0));
    ways[length][0] = 1;
    auto const fits = [&](size_t begin, std::string const& id) {
        return !id.empty() && characters.substr(begin, id.size()) == id;
    };
    for (size_t begin = length; begin-- > 0;) {
        for (size_t count = 1; count <= joined.count; ++count) {
            for (auto const& id : known) {
                int const more = fits(begin, id) ? ways[begin + id.size()][count - 1] : 0;
                ways[begin][count] = std::min(2, ways[begin][count] + more);
            }
        }
    }
    if (ways[0][joined.count] != 1) {
        return {};
    }

    std::vector<std::string> ids;
    size_t begin = 0;
    for (size_t left = joined.count; left > 0; --left) {
        auto const next = std::find_if(known.begin(), known.end(), [&](std::string const& id) {
            return fits(begin, id) && ways[begin + id.size()][left - 1] == 1;
        });
        ids.push_back(*next);
        begin += next->size();
    }
    return ids;
}

}  // namespace zoomreplay
