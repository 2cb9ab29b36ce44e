// Joins the parts of a page.
#include "PageParts.h"

#include "Page.h"

namespace zoomreplay {

void writePage(PageParts const& parts, std::function<void(std::string_view)> const& write) {
    std::string_view rest = parts.html;
    auto const writeUpTo = [&](std::string_view mark) {
        auto const place = rest.find(mark);
        write(rest.substr(0, place));
        rest.remove_prefix(place + mark.size());
    };
    writeUpTo("/* style */");
    write(parts.style);
    writeUpTo("<!-- plain -->");
    write(parts.plain);
    writeUpTo("/* data */");
    write(parts.data);
    writeUpTo("/* charts */");
    for (char const* const piece : kChartLibrary) {
        write(piece);
    }
    writeUpTo("/* scripts */");
    for (char const* const piece : parts.scripts) {
        write(piece);
    }
    write(rest);
}

}  // namespace zoomreplay
