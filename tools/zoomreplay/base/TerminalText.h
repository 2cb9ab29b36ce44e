// Texts of others on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace zoomreplay {

/// The text with a replacement for each character that a terminal might obey, or that hides or
/// turns around what stands beside it: control characters, line ends among them, Unicode's format
/// characters, and bytes that are not UTF-8.
std::string terminalText(std::string_view text, char replacement);

}  // namespace zoomreplay
