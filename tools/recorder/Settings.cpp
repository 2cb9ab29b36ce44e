// Reads the settings out of the environment.
#include "Settings.h"

#include <algorithm>
#include <cstdlib>

#include "Report.h"
#include "scenario/text/ParseNumber.h"

namespace zoomrecorder {
namespace {

// Half an hour or more of a camera at 30 requests a second.
constexpr uint64_t kDefaultBytes = 64U << 20U;

#ifdef __ANDROID__
// Where camera processes may write; a wrap property has no room for a path of one's own.
constexpr char kDefaultPath[] = "/data/vendor/camera/zoomoverride.jsonl";
#else
constexpr char kDefaultPath[] = "zoomoverride.jsonl";
#endif

std::string valueOf(char const* variable, char const* fallback) {
    char const* const value = std::getenv(variable);
    return value == nullptr || *value == '\0' ? fallback : value;
}

}  // namespace

Settings settingsFromEnvironment() {
    Settings settings{valueOf("ZOOMOVERRIDE_RECORD", kDefaultPath), kDefaultBytes};
    auto const bytes = valueOf("ZOOMOVERRIDE_RECORD_BYTES", "");
    if (bytes.empty()) {
        return settings;
    }
    auto const number = scenario::parseNumber<uint64_t>(bytes);
    if (!number.has_value()) {
        report("ZOOMOVERRIDE_RECORD_BYTES: not a number of bytes: " + bytes);
        return settings;
    }
    if (*number < kLeastBytes) {
        report("ZOOMOVERRIDE_RECORD_BYTES: " + bytes + " is too little, taken as " +
               std::to_string(kLeastBytes));
    }
    settings.bytes = std::max(*number, kLeastBytes);
    return settings;
}

}  // namespace zoomrecorder
