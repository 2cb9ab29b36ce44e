// Which entries of two sequences belong together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zoomreplay {

struct Entry {
    uint64_t kind;     ///< entries of two kinds never belong together
    uint64_t content;  ///< the same number for what is the same
    bool isStart;      ///< of entries that belong together; known of actual entries only
};

enum class Pairing : uint8_t { Both, OnlyExpected, OnlyActual };

/// Pairs two sequences in their order so that the fewest entries stand alone and, among all ways to
/// do so, the fewest pairs differ. Where several places are as good, what was added or left out
/// begins at a start. Sequences that differ by many thousands of entries are first divided at
/// contents that each of them has once, or where there are none, by their places.
/// @return the entries of both, in their order.
std::vector<Pairing> align(std::vector<Entry> const& expected, std::vector<Entry> const& actual);

}  // namespace zoomreplay
