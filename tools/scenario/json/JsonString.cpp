// The JSON library escapes what needs it, and replaces what is not UTF-8.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "scenario/text/JsonText.h"

namespace scenario {

namespace {

bool standsForItself(char c) {
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
}

}  // namespace

void appendJson(std::string& out, std::string_view text) {
    if (std::all_of(text.begin(), text.end(), standsForItself)) {
        out.append(1, '"').append(text).append(1, '"');
        return;
    }
    out += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace scenario
