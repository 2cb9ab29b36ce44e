// Shows an address in the user's browser.
#pragma once

#include <string>

namespace zoomreplay {

/// Whether there is a desktop to show it on, and somebody at a terminal who sees it.
bool hasDesktop();

/// Asks the desktop for it. @throws UserError it has no program for that
void openBrowser(std::string const& address);

}  // namespace zoomreplay
