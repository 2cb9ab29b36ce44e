// How numbers are shown to people.
#pragma once

#include <cstddef>
#include <string>

#include "ZoomOverrideTypes.h"

namespace zoomreplay {

std::string padLeft(std::string const& text, size_t width);
std::string padRight(std::string const& text, size_t width);

/// Up to ten characters: two decimals for every ratio that a camera knows.
std::string ratioText(float ratio);

std::string rectText(NSCam::MRect const& rect);

}  // namespace zoomreplay
