// What goes into the places of a page.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace zoomreplay {

/// Lives as long as what it refers to.
struct PageParts {
    std::string_view html;
    std::string_view style;
    std::string plain;  ///< elements for a browser that runs no scripts
    std::string data;
    std::span<char const* const> scripts;
};

/// Hands the page on in pieces, the chart library in its place.
void writePage(PageParts const& parts, std::function<void(std::string_view)> const& write);

}  // namespace zoomreplay
