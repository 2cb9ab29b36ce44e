#include "Forms.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

using Kind = DumpTitle::Kind;

std::string_view word(std::string_view text) {
    return text.substr(0, text.find(' '));
}

/// What follows a phrase; empty where it does not occur.
std::optional<std::string_view> after(std::string_view text, std::string_view phrase) {
    auto const place = text.find(phrase);
    return place == std::string_view::npos ? std::nullopt
                                           : std::optional(text.substr(place + phrase.size()));
}

// "== Camera HAL device device@3.7/legacy/3 (v3.7) static information: ==" describes camera 3.
std::optional<DumpTitle> deviceTitle(std::string_view line) {
    auto const device = after(line, "HAL device ");
    if (!device.has_value() || !after(*device, "static information").has_value()) {
        return std::nullopt;
    }
    std::string const name(word(*device));
    return DumpTitle{Kind::Camera, name.substr(name.rfind('/') + 1), name};
}

// "== Camera Provider HAL legacy/0 (v2.5, remote) static info: 4 devices: =="
std::optional<DumpTitle> providerTitle(std::string_view line) {
    auto const provider = after(line, "Provider HAL ");
    auto count = after(line, "static info: ");
    if (!provider.has_value() || !count.has_value()) {
        return std::nullopt;
    }
    auto const number = scenario::takeNumber<size_t>(*count);
    return number.has_value() ? std::optional(DumpTitle{
                                    Kind::Announcement, std::string(word(*provider)), {}, *number})
                              : std::nullopt;
}

}  // namespace

std::optional<DumpTitle> serviceDumpTitle(std::string_view line) {
    if (skip(line, "Physical camera ")) {
        auto const length = line.find(" characteristics:");
        return length == std::string_view::npos
                   ? std::nullopt
                   : std::optional(
                         DumpTitle{Kind::PhysicalCamera, std::string(line.substr(0, length)), {}});
    }
    if (!skip(line, "== ")) {
        bool const isService = line.substr(0, 16) == "DUMP OF SERVICE ";
        return isService ? std::optional(DumpTitle{Kind::Other, {}, {}}) : std::nullopt;
    }
    if (auto title = providerTitle(line)) {
        return title;
    }
    if (auto title = deviceTitle(line)) {
        return title;
    }
    if (auto const device = after(line, "Camera device ")) {
        return DumpTitle{Kind::Open, std::string(word(*device)), {}};
    }
    return DumpTitle{Kind::Other, {}, {}};
}

}  // namespace zoomreplay
