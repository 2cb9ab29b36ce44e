// What is said of a crop on its way: in words, numbers and, for each step, the rectangle after it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "optics/FieldOfView.h"

namespace zoomreplay {

/// A constant text whose placeholders stand for numbers, in their order: {} for a number as it is,
/// {x} for a hexadecimal one, {line} for a line of the scenario, {stream} for a stream id in two
/// numbers, its high and its low 32 bits.
struct Saying {
    std::string_view words;  ///< lives as long as the program
    std::vector<double> numbers;
};

struct CropStep : Saying {
    Domain domain;               ///< of rect
    std::array<double, 4> rect;  ///< after the step: x, y, w, h
};

/// The words with their numbers filled in.
std::string textOf(Saying const& saying);

}  // namespace zoomreplay
