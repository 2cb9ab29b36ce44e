// Where the recorder writes to, and how much.
#pragma once

#include <cstdint>
#include <string>

namespace zoomrecorder {

struct Settings {
    std::string path;    ///< of the newest part of the record
    uint64_t bytes = 0;  ///< that all parts may take together
};

/// Reads ZOOMOVERRIDE_RECORD (the path) and ZOOMOVERRIDE_RECORD_BYTES. What is not set gets a
/// default; a number of bytes that cannot be read is reported and gets it too.
Settings settingsFromEnvironment();

}  // namespace zoomrecorder
