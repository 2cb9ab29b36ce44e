// Replaces what would end a script, and what a page takes for markup.
#include "PageText.h"

namespace zoomreplay {

std::string inScript(scenario::Json const& json) {
    std::string const text = json.dump(-1, ' ', true, scenario::Json::error_handler_t::replace);
    std::string safe;
    safe.reserve(text.size());
    for (char const c : text) {
        if (c == '<') {
            safe += "\\u003c";
        } else {
            safe += c;
        }
    }
    return safe;
}

std::string inPage(std::string_view text) {
    std::string safe;
    for (char const c : text) {
        switch (c) {
            case '<':
                safe += "&lt;";
                break;
            case '&':
                safe += "&amp;";
                break;
            default:
                safe += c;
        }
    }
    return safe;
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k) {
            group = group << 8U | (i + k < bytes.size() ? static_cast<uint8_t>(bytes[i + k]) : 0U);
        }
        for (size_t k = 0; k < 4; ++k) {
            bool const isThere = i + k < bytes.size() + 1;
            out += isThere ? kDigits[group >> (18U - 6U * k) & 0x3FU] : '=';
        }
    }
    return out;
}

}  // namespace zoomreplay
