// How wide what is shown to people may be, and whether it may be coloured.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "File.h"

namespace zoomreplay {

struct Terminal {
    static constexpr size_t kUsualColumns = 100;

    size_t columns = kUsualColumns;
    bool isColoured = false;

    /// The terminal's own width, but never too narrow for a row; the usual one for a file. NO_COLOR
    /// and TERM=dumb count.
    static Terminal of(File const& file);
};

/// Whether the terminal obeys no control sequences.
bool isDumbTerminal();

/// Appends a text of any length in lines of at most columns, between words where there are any.
/// Lines after the first are indented. What is not safe on a terminal becomes a blank.
/// @param column where the first line begins
void appendFolded(std::string& out, std::string_view unsafeText, size_t column, size_t indent,
                  size_t columns);

}  // namespace zoomreplay
