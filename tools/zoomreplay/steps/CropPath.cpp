#include "CropPath.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "DomainTransform.h"
#include "TgCropFit.h"

namespace zoomreplay {
namespace {

using namespace NSCam;
using namespace NSCam::Feature;

double withoutSignOfZero(double number) {
    return number == 0.0 ? 0.0 : number;
}

// Two decimals, but never beyond the pixel that the library cuts it to: 575.999 is not 576.
double cutOff(float value) {
    constexpr double kSteps = 100.0;
    double const exact = value;
    double const rounded = std::round(exact * kSteps) / kSteps;
    bool const isSamePixel = std::trunc(rounded) == std::trunc(exact);
    return withoutSignOfZero(isSamePixel ? rounded : std::trunc(exact * kSteps) / kSteps);
}

void addMoves(CropPath& path, MSize output, Domain domain) {
    MRect const before = path.crop;
    MRect moved = before;
    auto const crossed = moveInside(moved, output);
    MRect step = before;
    if ((crossed & kLeftEdge) != 0) {
        step.x = 0;
        addStep(path, "reached over the left edge: moved inside", {}, domain, step);
    }
    if ((crossed & kTopEdge) != 0) {
        step.y = 0;
        addStep(path, "reached over the upper edge: moved inside", {}, domain, step);
    }
    if ((crossed & kRightEdge) != 0) {
        step.x = moved.x;
        addStep(path, "reached over the right edge of {}: moved inside",
                {static_cast<double>(output.w)}, domain, step);
    }
    if ((crossed & kBottomEdge) != 0) {
        step.y = moved.y;
        addStep(path, "reached over the lower edge of {}: moved inside",
                {static_cast<double>(output.h)}, domain, step);
    }
    path.crop = moved;
}

}  // namespace

std::array<double, 2> numbersOf(int64_t streamId) {
    auto const bits = static_cast<uint64_t>(streamId);
    return {static_cast<double>(bits >> 32U), static_cast<double>(bits & 0xFFFFFFFFU)};
}

double plain(float value) {
    // A float tells all numbers of six digits apart: one of them that is this float is the
    // shortest.
    for (double const scale : {1.0, 1e4}) {
        double const scaled = std::round(static_cast<double>(value) * scale);
        double const number = scaled / scale;
        if (std::abs(scaled) < 1e6 && static_cast<float>(number) == value) {
            return withoutSignOfZero(number);
        }
    }
    std::array<char, 32> text{};  // longer than any float: ends with a zero
    std::to_chars(text.data(), text.data() + text.size(), value);
    // Not every standard library has from_chars for floats.
    return withoutSignOfZero(std::strtod(text.data(), nullptr));
}

void addStep(CropPath& path, std::string_view words, std::vector<double> numbers, Domain domain,
             MRect const& rect) {
    path.steps.push_back({{words, std::move(numbers)},
                          domain,
                          {static_cast<double>(rect.x), static_cast<double>(rect.y),
                           static_cast<double>(rect.w), static_cast<double>(rect.h)}});
    path.crop = rect;
}

template <typename Rect>
void addConversion(CropPath& path, uint32_t mode, uint64_t line,
                   NSCamHW::simplifiedMatrix const& matrix, Rect const& active) {
    MRectF const exact = toExactTgDomain(matrix, active);
    addStep(path,
            "converted to sensor mode {} (line {line}), x by {} and {}, y by {} and {}: exactly "
            "({}, {})/{}x{}, fractions cut",
            {static_cast<double>(mode), static_cast<double>(line), plain(matrix.xScale),
             plain(matrix.xOffset), plain(matrix.yScale), plain(matrix.yOffset), cutOff(exact.x),
             cutOff(exact.y), cutOff(exact.w), cutOff(exact.h)},
            Domain::Tg, toTgDomain(matrix, active));
}

template void addConversion(CropPath&, uint32_t, uint64_t, NSCamHW::simplifiedMatrix const&,
                            MRect const&);
template void addConversion(CropPath&, uint32_t, uint64_t, NSCamHW::simplifiedMatrix const&,
                            MRectF const&);

void addFit(CropPath& path, MSize output, Domain domain, std::optional<LeastSize> const& least) {
    path.asked = path.crop;
    if (MRect crop = path.crop; exceeds(crop, output)) {
        shrinkToSensor(crop, output);
        addStep(path, "larger than the sensor's output of {}x{}: shrunk to it and centred",
                {static_cast<double>(output.w), static_cast<double>(output.h)}, domain, crop);
    }
    if (least.has_value()) {
        path.minSize = least->size;
        if (MRect crop = path.crop; fallsShortOf(crop, least->size)) {
            growToMinSize(crop, least->size, output);
            auto const [high, low] = numbersOf(least->streamId);
            addStep(
                path, "smaller than {}x{}, the size of stream {stream}: grown to it and centred",
                {static_cast<double>(least->size.w), static_cast<double>(least->size.h), high, low},
                domain, crop);
        }
    }
    addMoves(path, output, domain);
}

}  // namespace zoomreplay
