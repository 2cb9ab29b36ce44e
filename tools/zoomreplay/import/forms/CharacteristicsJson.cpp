#include <sstream>

#include "Forms.h"
#include "base/Messages.h"
#include "import/CameraTags.h"
#include "scenario/json/Json.h"

namespace zoomreplay {
namespace {

using scenario::Json;

constexpr size_t kLargestText = size_t{16} << 20U;
constexpr int kDeepest = 4;  // objects around the tags

// Sizes are objects, areas have their borders; both become the numbers that a dump prints.
std::vector<Json> itemsOf(Json const& value) {
    if (value.is_array()) {
        return value.get<std::vector<Json>>();
    }
    auto const number = [&](char const* name) {
        auto const field = value.find(name);
        bool const isThere = field != value.end() && field->is_number_integer();
        return isThere ? std::optional(field->get<int64_t>()) : std::nullopt;
    };
    if (!value.is_object()) {
        return {value};
    }
    auto const left = number("left");
    auto const top = number("top");
    auto const right = number("right");
    auto const bottom = number("bottom");
    if (left && top && right && bottom) {
        constexpr int64_t kFarthest = int64_t{1} << 40U;
        auto const length = [](int64_t from, int64_t to) {
            bool const isNear = std::abs(from) < kFarthest && std::abs(to) < kFarthest;
            return isNear ? Json(to - from) : Json();
        };
        return {*left, *top, length(*left, *right), length(*top, *bottom)};
    }
    auto const width = value.find("width");
    auto const height = value.find("height");
    return width != value.end() && height != value.end() ? std::vector<Json>{*width, *height}
                                                         : std::vector<Json>{};
}

bool areTexts(std::vector<Json> const& items) {
    for (auto const& item : items) {
        if (!item.is_string() || !isPrintableId(item.get_ref<std::string const&>())) {
            return false;
        }
    }
    return !items.empty();
}

void setTag(CameraStatics& camera, CameraTag const& tag, Json const& value) {
    auto const items = itemsOf(value);
    if (tag.name == tag::kPhysicalIds && areTexts(items)) {
        camera.hasTags = true;
        for (auto const& item : items) {
            camera.physicalIds.push_back(item.get<std::string>());
        }
        return;
    }
    std::vector<std::string> texts;
    texts.reserve(items.size());
    for (auto const& item : items) {
        texts.push_back(item.is_string()
                            ? item.get<std::string>()
                            : item.dump(-1, ' ', true, Json::error_handler_t::replace));
    }
    setCameraTag(camera, tag, {texts.begin(), texts.end()}, texts.size(), "");
}

class Reader {
 public:
    void take(Json const& json, std::string const& id, int depth) {
        if (json.is_array() && depth > 0) {
            for (auto const& item : json) {
                take(item, "", depth - 1);
            }
        }
        if (!json.is_object() || depth == 0) {
            return;
        }
        if (hasTags(json)) {
            takeCamera(json, idIn(json, id));
            return;
        }
        for (auto const& [name, value] : json.items()) {
            bool const isId = name != "cameraProperties" && isPrintableId(name);
            take(value, isId ? name : idIn(json, id), depth - 1);
        }
    }

    CameraDump finish() { return std::move(mDump); }

 private:
    static bool hasTags(Json const& json) {
        for (auto const& [name, value] : json.items()) {
            if (name.rfind("android.", 0) == 0) {
                return true;
            }
        }
        return false;
    }

    static std::string idIn(Json const& json, std::string const& known) {
        for (char const* name : {"cameraId", "camera_id", "id"}) {
            auto const field = json.find(name);
            if (field != json.end() && field->is_string() &&
                isPrintableId(field->get_ref<std::string const&>())) {
                return field->get<std::string>();
            }
        }
        return known;
    }

    // Without an id, cameras count from 0 on, as they do on most phones.
    void takeCamera(Json const& json, std::string const& id) {
        CameraStatics& camera = mDump.cameras.emplace_back();
        camera.id = id.empty() ? std::to_string(mDump.cameras.size() - 1) : id;
        for (auto const& [name, value] : json.items()) {
            if (auto const* const tag = findCameraTag(name)) {
                setTag(camera, *tag, value);
            }
        }
    }

    CameraDump mDump;
};

}  // namespace

bool isCharacteristicsJson(std::string_view firstLine) {
    return firstLine.front() == '{' || firstLine.front() == '[';
}

CameraDump readCharacteristicsJson(std::string_view firstLine, PhoneText& text) {
    std::string const name = text.file().name();
    if (firstLine.size() > 1 && firstLine[1] == '\'') {
        throw UserError(name +
                        ":1: is what Python prints of a dictionary; print it with json.dumps");
    }
    std::string all(firstLine);
    while (auto const line = text.next()) {
        all.append("\n").append(*line);
        if (all.size() > kLargestText) {
            throw UserError(name + ": is JSON, but too large for the characteristics of cameras");
        }
    }

    Reader reader;
    std::istringstream stream(all);
    try {
        while (stream >> std::ws && stream.peek() != std::istringstream::traits_type::eof()) {
            Json json;
            stream >> json;
            reader.take(json, "", kDeepest);
        }
    } catch (Json::exception const&) {
        throw UserError(name +
                        ": begins like JSON, but is damaged; a whole object with the tags of "
                        "a camera is expected");
    }
    return reader.finish();
}

}  // namespace zoomreplay
