// The steps on which the library makes a crop, taken by its own geometry.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "CropStep.h"
#include "HwTransHelper.h"
#include "ZoomOverrideTypes.h"

namespace zoomreplay {

struct CropPath {
    std::vector<CropStep> steps;
    NSCam::MRect crop;                    ///< after the last step
    std::optional<NSCam::MRect> asked;    ///< before it was made to fit; empty where nothing was
    std::optional<NSCam::MSize> minSize;  ///< of the stream that the crop has to feed
};

/// The least size of a crop, and the stream that wants it.
struct LeastSize {
    NSCam::MSize size;
    int64_t streamId;
};

/// The two numbers of a {stream}.
std::array<double, 2> numbersOf(int64_t streamId);

/// The shortest decimal number that is the single-precision one.
double plain(float value);

/// Adds a step that leaves the crop at rect.
void addStep(CropPath& path, std::string_view words, std::vector<double> numbers, Domain domain,
             NSCam::MRect const& rect);

/// From the active array into the pixels of a sensor's mode.
/// @param active an MRect or an MRectF
/// @param line that said which mode the sensor is in
template <typename Rect>
void addConversion(CropPath& path, uint32_t mode, uint64_t line,
                   NSCamHW::simplifiedMatrix const& matrix, Rect const& active);

/// What correctTgCropRegion does with the crop, in the domain that it is in.
void addFit(CropPath& path, NSCam::MSize output, Domain domain,
            std::optional<LeastSize> const& least);

}  // namespace zoomreplay
