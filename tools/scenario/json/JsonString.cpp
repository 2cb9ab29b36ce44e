// Texts are rare; the JSON library escapes them, and replaces what is not UTF-8.
#include <nlohmann/json.hpp>

#include "scenario/text/JsonText.h"

namespace scenario {

void appendJson(std::string& out, std::string_view text) {
    out += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace scenario
