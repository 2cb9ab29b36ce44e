// Which entries of two sequences belong together.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace zoomreplay {

/// How much alike an expected and an actual entry are.
enum class Likeness {
    Same,
    Changed,  ///< may be the same one with another content
    Foreign,  ///< cannot be the same one
};

enum class Pairing { Both, OnlyExpected, OnlyActual };

/// A stretch of each sequence.
struct Stretches {
    size_t expected;  ///< lengths
    size_t actual;
    bool isExpectedWhole;  ///< nothing follows the stretch
    bool isActualWhole;
};

/// Pairs two stretches in their order so that the fewest entries are changed, missing or new. What
/// is left of one stretch at the end of the other is left out, unless nothing follows.
std::vector<Pairing> align(Stretches const& stretches,
                           std::function<Likeness(size_t expected, size_t actual)> const& compare);

}  // namespace zoomreplay
