// The page that follows a replay: that of a report, with a script more.
#pragma once

#include <string>

namespace zoomreplay {

/// A page without requests, which it is told by events.
/// @param scenario its name, as the page tells it
/// @param nonce that its scripts carry
std::string livePage(std::string const& scenario, bool isLogged, std::string const& nonce);

}  // namespace zoomreplay
