// Words system errors, and writes messages for a terminal.
#include "Messages.h"

#include <cstdio>
#include <system_error>

#include "TerminalText.h"

namespace zoomreplay {

UserError systemError(std::string const& what, int errorNumber) {
    return UserError(what + ": " + std::generic_category().message(errorNumber));
}

void complain(std::string_view message) {
    constexpr size_t kLongest = 1000;
    std::string line = terminalText(message.substr(0, kLongest), '?');
    line += message.size() > kLongest ? "...\n" : "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace zoomreplay
