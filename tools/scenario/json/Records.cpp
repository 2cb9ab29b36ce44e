// Reads what is not just an object of described fields: geometry, enumerations, the platform.
#include "scenario/json/Records.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

#include "scenario/text/Modes.h"

#include "ZoomOverrideContract.h"

namespace scenario {
namespace {

using namespace NSCam;
using namespace NSCam::Feature;

template <typename T>
void readElements(Value const& value, char const* shape, std::initializer_list<T*> elements) {
    auto const* const nodes = value.as<Elements>();
    if (nodes == nullptr || nodes->size() != elements.size()) {
        value.fail(std::string("must be ") + shape);
    }
    size_t index = 0;
    for (T* element : elements) {
        read(Value((*nodes)[index], value, index), *element);
        ++index;
    }
}

template <typename Enum>
using Names = std::vector<std::pair<std::string_view, Enum>>;

template <typename Enum>
void readEnum(Value const& value, Names<Enum> const& names, Enum& result) {
    auto const* const text = value.as<std::string_view>();
    auto const named = std::find_if(names.begin(), names.end(), [text](auto const& choice) {
        return text != nullptr && choice.first == *text;
    });
    if (named != names.end()) {
        result = named->second;
        return;
    }

    if (!isInteger(value)) {
        std::string choices;
        for (auto const& [name, number] : names) {
            choices.append(", \"").append(name).append("\"");
        }
        value.fail("must be an integer or one of" + choices.substr(1));
    }
    int32_t number = 0;
    read(value, number);
    result = static_cast<Enum>(number);
}

}  // namespace

void read(Value const& value, MSize& result) {
    readElements(value, "[w, h]", {&result.w, &result.h});
}

void read(Value const& value, MRect& result) {
    readElements(value, "[x, y, w, h]", {&result.x, &result.y, &result.w, &result.h});
}

void read(Value const& value, MRectF& result) {
    readElements(value, "[x, y, w, h]", {&result.x, &result.y, &result.w, &result.h});
}

void read(Value const& value, ZoomOverrideMode& result) {
    static auto const kNames = [] {
        Names<ZoomOverrideMode> names;
        for (auto const mode : allModes()) {
            names.emplace_back(nameOf(mode), mode);
        }
        return names;
    }();
    readEnum(value, kNames, result);
}

void read(Value const& value, OverrideNotice& result) {
    static Names<OverrideNotice> const kNames{{"default", OverrideNotice::Default},
                                              {"repeating", OverrideNotice::Repeating}};
    readEnum(value, kNames, result);
}

void read(Value const& value, std::shared_ptr<ZoomOverrideSensorInfo>& result) {
    auto info = std::make_shared<ZoomOverrideSensorInfo>();
    read(value, *info);
    result = std::move(info);
}

void read(Value const& value, std::shared_ptr<ZoomOverrideSetting>& result) {
    if (value.as<std::nullptr_t>() != nullptr) {
        result = nullptr;
        return;
    }
    auto setting = std::make_shared<ZoomOverrideSetting>();
    read(value, *setting);
    result = std::move(setting);
}

void read(Value const& value, IMetadata& result) {
    float zoomRatio = 0.0F;
    std::vector<int32_t> crops;
    Fields fields(value);
    if (fields.optional("zoomRatio", zoomRatio)) {
        result.update(kZoomRatioTag, IMetadata::IEntry(std::vector{zoomRatio}));
    }
    if (fields.optional("customStreamCrops", crops)) {
        result.update(kCustomStreamCropTag, IMetadata::IEntry(std::move(crops)));
    }
    fields.finish();
}

void read(Value const& value, NSCamHW::simplifiedMatrix& result) {
    std::vector<float> numbers;
    read(value, numbers);
    if (numbers.size() != 4) {
        value.fail("must be [xScale, xOffset, yScale, yOffset]");
    }
    result = {numbers[0], numbers[1], numbers[2], numbers[3]};
}

void read(Value const& value, Host::SensorModeInfo& result) {
    MSize size;
    MRect window;
    NSCamHW::simplifiedMatrix matrix;
    Fields fields(value);
    bool const hasSize = fields.optional("size", size);
    bool const hasWindow = fields.optional("window", window);
    bool const hasMatrix = fields.optional("matrix", matrix);
    fields.finish();

    if (hasWindow && hasMatrix) {
        fields.fail("has both a window and a matrix");
    }
    if (hasWindow && !hasSize) {
        fields.fail("a window needs a size");
    }
    if (hasSize) {
        result.size = size;
    }
    if (hasWindow) {
        result.fromActive = Host::matrixOfWindow(size, window);
    } else if (hasMatrix) {
        result.fromActive = matrix;
    }
}

}  // namespace scenario
