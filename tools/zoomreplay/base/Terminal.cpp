#include "Terminal.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "TerminalText.h"

namespace zoomreplay {
namespace {

std::string_view environment(char const* name) {
    char const* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

}  // namespace

bool isDumbTerminal() {
    return environment("TERM") == "dumb";
}

Terminal Terminal::of(File const& file) {
    constexpr size_t kNarrowest = 80;
    if (!file.isTerminal()) {
        return {};
    }
    size_t const columns = file.columns().value_or(kUsualColumns);
    return {std::max(columns, kNarrowest), environment("NO_COLOR").empty() && !isDumbTerminal()};
}

void appendFolded(std::string& out, std::string_view unsafeText, size_t column, size_t indent,
                  size_t columns) {
    std::string text = terminalText(unsafeText, ' ');
    size_t width = columns - column;
    while (text.size() > width) {
        size_t const blank = text.rfind(' ', width);
        bool const isBetweenWords = blank != std::string::npos && blank > 0;
        size_t const length = isBetweenWords ? blank : width;
        out.append(text, 0, length).append(1, '\n').append(indent, ' ');
        text.erase(0, isBetweenWords ? length + 1 : length);
        width = columns - indent;
    }
    out += text;
}

}  // namespace zoomreplay
