#include "CameraOptics.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

float angleOfView(double side, double focalLength) {
    return static_cast<float>(2.0 * std::atan(side / (2.0 * focalLength)) * 180.0 /
                              std::numbers::pi);
}

bool hasPixelArray(CameraStatics const& camera) {
    return camera.pixelArray.has_value() && camera.pixelArray->w > 0 && camera.pixelArray->h > 0;
}

// The array that the physical size belongs to.
NSCam::MSize measuredArray(CameraStatics const& camera) {
    return hasPixelArray(camera) ? *camera.pixelArray
                                 : NSCam::MSize{camera.activeArray->w, camera.activeArray->h};
}

}  // namespace

Angles anglesBySize(CameraStatics const& camera) {
    auto const [width, height] = *camera.physicalSize;
    auto const measured = measuredArray(camera);
    double const shareX = static_cast<double>(camera.activeArray->w) / measured.w;
    double const shareY = static_cast<double>(camera.activeArray->h) / measured.h;
    float const focalLength = camera.focalLengths.front();
    return {angleOfView(width * shareX, focalLength), angleOfView(height * shareY, focalLength)};
}

std::optional<Angles> anglesByIntrinsics(CameraStatics const& camera) {
    if (!camera.intrinsics.has_value()) {
        return std::nullopt;
    }
    auto const [fx, fy, cx, cy, skew] = *camera.intrinsics;
    if (!(fx > 0.0F && fy > 0.0F)) {
        return std::nullopt;
    }
    return Angles{angleOfView(camera.activeArray->w, fx), angleOfView(camera.activeArray->h, fy)};
}

Angles anglesOf(CameraStatics const& camera, AngleSource source) {
    auto const byIntrinsics = anglesByIntrinsics(camera);
    bool const isBySize = source == AngleSource::PhysicalSize || !byIntrinsics.has_value();
    return isBySize ? anglesBySize(camera) : *byIntrinsics;
}

std::vector<std::string> doubtsAbout(CameraStatics const& camera) {
    constexpr float kWidest = 170.0F;
    constexpr double kPitchTolerance = 1.1;
    std::vector<std::string> doubts;

    auto const measured = measuredArray(camera);
    auto const [width, height] = *camera.physicalSize;
    double const pitchX = static_cast<double>(width) / measured.w;
    double const pitchY = static_cast<double>(height) / measured.h;
    if (std::max(pitchX, pitchY) > kPitchTolerance * std::min(pitchX, pitchY)) {
        doubts.push_back(scenario::jsonText(width) + " x " + scenario::jsonText(height) +
                         " mm for " + std::to_string(measured.w) + " x " +
                         std::to_string(measured.h) +
                         " pixels, which would not be square; one of its angles is wrong");
    }
    auto const angles = anglesBySize(camera);
    if (std::max(angles.horizontal, angles.vertical) > kWidest) {
        doubts.push_back("an angle of view of " +
                         scenario::jsonText(std::max(angles.horizontal, angles.vertical)) +
                         " degrees; its physical size or focal length is wrong");
    }
    auto const& array = *camera.activeArray;
    if (hasPixelArray(camera) &&
        (array.w > measured.w - array.x || array.h > measured.h - array.y)) {
        doubts.emplace_back("an active array outside its pixel array; crops may be shifted");
    }
    return doubts;
}

}  // namespace zoomreplay
