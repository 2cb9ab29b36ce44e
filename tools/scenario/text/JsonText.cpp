#include "scenario/text/JsonText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace scenario {
namespace {

template <typename T, typename... Format>
void appendChars(std::string& out, T value, Format... format) {
    std::array<char, 32> text;  // NOLINT(*-member-init): to_chars fills what is used
    auto const [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, format...);
    out.append(text.data(), end);
}

void appendHexadecimal(std::string& out, uint64_t bits) {
    out += "0x";
    appendChars(out, bits, 16);
}

template <typename Key>
void appendQuotedKey(std::string& out, Key key) {
    out += '"';
    appendKey(out, key);
    out += '"';
}

template <typename Items>
void appendArray(std::string& out, Items const& items) {
    char const* separator = "";
    out += '[';
    for (auto const item : items) {
        out += separator;
        appendJson(out, item);
        separator = ", ";
    }
    out += ']';
}

}  // namespace

void appendJson(std::string& out, bool value) {
    out += value ? "true" : "false";
}
void appendJson(std::string& out, uint32_t value) {
    appendChars(out, value);
}
void appendJson(std::string& out, int32_t value) {
    appendChars(out, value);
}

void appendJson(std::string& out, uint16_t portKey) {
    appendQuotedKey(out, portKey);
}
void appendJson(std::string& out, int64_t streamId) {
    appendQuotedKey(out, streamId);
}
void appendJson(std::string& out, uint64_t streamId) {
    appendQuotedKey(out, static_cast<int64_t>(streamId));
}

void appendJson(std::string& out, float value) {
    if (std::isnan(value)) {
        out += "\"nan\"";
    } else if (std::isinf(value)) {
        out += value > 0.0F ? "\"inf\"" : "\"-inf\"";
    } else if (value == 0.0F) {
        out += std::signbit(value) ? "-0.0" : "0";  // readers take "-0" for an integer without sign
    } else {
        appendChars(out, value);
    }
}

void appendJson(std::string& out, NSCam::MSize const& size) {
    appendArray(out, std::array{size.w, size.h});
}

void appendJson(std::string& out, NSCam::MRect const& rect) {
    appendArray(out, std::array{rect.x, rect.y, rect.w, rect.h});
}

void appendJson(std::string& out, NSCam::MRectF const& rect) {
    appendArray(out, std::array{rect.x, rect.y, rect.w, rect.h});
}

void appendJson(std::string& out, std::vector<int32_t> const& numbers) {
    appendArray(out, numbers);
}

void appendNumber(std::string& out, uint64_t value) {
    appendChars(out, value);
}

void appendKey(std::string& out, uint8_t port) {
    appendChars(out, port);
}
void appendKey(std::string& out, uint32_t sensorId) {
    appendChars(out, sensorId);
}
void appendKey(std::string& out, uint16_t portKey) {
    appendHexadecimal(out, portKey);
}

void appendKey(std::string& out, int64_t streamId) {
    appendHexadecimal(out, static_cast<uint64_t>(streamId));
}

}  // namespace scenario
