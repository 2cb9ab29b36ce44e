#include "CellText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace zoomreplay {

std::string padLeft(std::string const& text, size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string padRight(std::string const& text, size_t width) {
    return text + std::string(width - std::min(width, text.size()), ' ');
}

std::string ratioText(float ratio) {
    float const size = std::abs(ratio);
    bool const isOrdinary = ratio == 0.0F || (size >= 0.01F && size < 100000.0F);
    // Halves away from zero, as the report's page rounds: printf makes 2.12 of 2.125.
    double const exact = ratio;
    double const shown = isOrdinary ? std::round(exact * 100.0) / 100.0 : exact;
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), isOrdinary ? "%.2f" : "%.3g", shown);
    return text.data();
}

std::string rectText(NSCam::MRect const& rect) {
    return '(' + std::to_string(rect.x) + ", " + std::to_string(rect.y) + ")/" +
           std::to_string(rect.w) + 'x' + std::to_string(rect.h);
}

}  // namespace zoomreplay
