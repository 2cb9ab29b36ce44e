// What the page knows of every request from the start: what its timeline and findings need.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "PackedRow.h"
#include "recording/ReplayedRequest.h"

namespace zoomreplay {

/// What may be said of a request; the page knows them by the same bits.
inline constexpr uint32_t kMarkOverridden = 1U << 0U;
inline constexpr uint32_t kMarkCorrected = 1U << 1U;
inline constexpr uint32_t kMarkCached = 1U << 2U;
inline constexpr uint32_t kMarkException = 1U << 3U;
inline constexpr uint32_t kMarkFatal = 1U << 4U;
inline constexpr uint32_t kMarkOutside = 1U << 5U;  ///< a crop reaches beyond its sensor
inline constexpr uint32_t kMarkStale =
    1U << 6U;  ///< a kept answer, of another sensor mode than the request's
inline constexpr uint32_t kMarkNeverDone = 1U << 7U;

/// The crop that stands for a sensor: P2's, or else that of its first P1 port.
struct LeadCrop {
    uint32_t sensorId;
    ReplayedCrop const* crop;
};

struct Overview {
    uint32_t marks = 0;
    std::optional<float> asked;
    std::optional<float> override;
    std::vector<LeadCrop> leads;  ///< by sensor id, as long as the request lives
};

Overview overviewOf(ReplayedRequest const& request, Rig const& rig);

/// page/overview.js tells its fields.
PackedRow overviewData(ReplayedRequest const& request, Overview const& overview);

}  // namespace zoomreplay
