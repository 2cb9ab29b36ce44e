#include "JsonText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>

#include "Json.h"

namespace zoomreplay {
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

template <typename T>
void appendArray(std::string& out, std::initializer_list<T> items) {
    char const* separator = "[";
    for (T const item : items) {
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

void appendJson(std::string& out, int64_t streamId) {
    out += '"';
    appendKey(out, streamId);
    out += '"';
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

// Texts are rare; the JSON library escapes them, and replaces what is not UTF-8.
void appendJson(std::string& out, std::string_view text) {
    out += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

void appendJson(std::string& out, NSCam::MSize const& size) {
    appendArray(out, {size.w, size.h});
}

void appendJson(std::string& out, NSCam::MRect const& rect) {
    appendArray(out, {rect.x, rect.y, rect.w, rect.h});
}

void appendJson(std::string& out, NSCam::MRectF const& rect) {
    appendArray(out, {rect.x, rect.y, rect.w, rect.h});
}

void appendJson(std::string& out, std::vector<NSCam::Host::LogLine> const& log) {
    using NSCam::Host::LogSink;
    char const* separator = "{";
    out += '[';
    for (auto const& line : log) {
        out += separator;
        out += line.sink == LogSink::Print ? "\"sink\": \"print\"" : "\"sink\": \"unified\"";
        appendField(out, "level", line.level);
        appendField(out, "text", std::string_view(line.text));
        out += '}';
        separator = ", {";
    }
    out += ']';
}

void appendNumber(std::string& out, uint64_t value) {
    appendChars(out, value);
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

}  // namespace zoomreplay
