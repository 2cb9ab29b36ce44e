#include "Report.h"

#include <string_view>

#include "Page.h"
#include "ReportData.h"

namespace zoomreplay {
namespace {

void replace(std::string& text, std::string_view mark, std::string_view part) {
    auto const place = text.find(mark);
    if (place != std::string::npos) {
        text.replace(place, mark.size(), part);
    }
}

}  // namespace

// The data goes in last: what it holds must not be taken for a mark.
void writeReport(File& file, std::vector<RequestRecord> const& requests, ReplayRecord const& replay,
                 bool isLogged, std::string const& scenario) {
    std::string page = kPageHtml;
    replace(page, "/* style */", kPageStyle);
    replace(page, "/* scripts */", kPageScript);
    replace(page, "/* data */", reportData(requests, replay, isLogged, scenario));
    file.write(page);
}

}  // namespace zoomreplay
