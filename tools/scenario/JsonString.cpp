// Texts are rare; the JSON library escapes them, and replaces what is not UTF-8.
#include <nlohmann/json.hpp>

#include "JsonText.h"

namespace zoomreplay {

void appendJson(std::string& out, std::string_view text) {
    out += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace zoomreplay
