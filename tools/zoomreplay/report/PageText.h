// Texts that may stand in a page.
#pragma once

#include <string>
#include <string_view>

#include "scenario/json/Json.h"

namespace zoomreplay {

/// JSON that ends neither a script element nor a string: ASCII, without "<".
std::string inScript(scenario::Json const& json);

/// Text between the tags of a page.
std::string inPage(std::string_view text);

std::string base64(std::string_view bytes);

}  // namespace zoomreplay
