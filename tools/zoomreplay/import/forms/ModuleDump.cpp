#include "Forms.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

using Kind = DumpTitle::Kind;

// The metadata's tags come straight below "Camera 0 information:" and a few lines of its own.
std::optional<DumpTitle> cameraTitle(std::string_view line) {
    if (!skip(line, "Camera ")) {
        return std::nullopt;
    }
    std::string_view const id = line.substr(0, line.find(' '));
    line.remove_prefix(id.size());
    bool const isCamera = line == " information:" || line == " static information:";
    return isCamera ? std::optional(DumpTitle{Kind::Camera, std::string(id), std::string(id)})
                    : std::nullopt;
}

std::optional<DumpTitle> announcement(std::string_view line) {
    if (!skip(line, "Number of camera devices: ")) {
        return std::nullopt;
    }
    auto const number = scenario::takeNumber<size_t>(line);
    return number.has_value() ? std::optional(DumpTitle{Kind::Announcement, {}, {}, *number})
                              : std::nullopt;
}

// What an open camera last asked has tags, too.
std::optional<DumpTitle> openTitle(std::string_view line) {
    if (!skip(line, "Device ") || line.find("is open") == std::string_view::npos) {
        return std::nullopt;
    }
    bool const hasId = line.substr(0, 2) != "is";
    return DumpTitle{Kind::Open, std::string(hasId ? line.substr(0, line.find(' ')) : ""), {}};
}

}  // namespace

std::optional<DumpTitle> moduleDumpTitle(std::string_view line) {
    if (auto title = cameraTitle(line)) {
        return title;
    }
    if (auto title = announcement(line)) {
        return title;
    }
    return openTitle(line);
}

}  // namespace zoomreplay
