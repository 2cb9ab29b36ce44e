// Where the recorder writes to, and how much.
#pragma once

#include <cstdint>
#include <string>

namespace zoomrecorder {

struct Settings {
    std::string path;    ///< of the newest part of the record
    uint64_t bytes = 0;  ///< that all parts may take together
};

/// Smaller parts would hold little but what they begin with.
inline constexpr uint64_t kLeastBytes = 65536;

/// Reads ZOOMOVERRIDE_RECORD (the path) and ZOOMOVERRIDE_RECORD_BYTES. What is not set gets a
/// default; a number of bytes that cannot be read is reported and gets it too, one below
/// kLeastBytes is reported and raised.
Settings settingsFromEnvironment();

}  // namespace zoomrecorder
