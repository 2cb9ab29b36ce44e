#include "LivePage.h"

#include <string_view>
#include <vector>

#include "LiveTexts.h"
#include "report/Page.h"
#include "report/PageParts.h"
#include "report/PageText.h"
#include "report/Report.h"
#include "scenario/text/Modes.h"

namespace zoomreplay {
namespace {

using scenario::Json;

std::string withNonce(std::string html, std::string const& nonce) {
    constexpr std::string_view kTag = "<script";
    for (auto place = html.find(kTag); place != std::string::npos;
         place = html.find(kTag, place + 1)) {
        html.insert(place + kTag.size(), " nonce=\"" + nonce + '"');
    }
    return html;
}

Json publishingModes() {
    Json modes = Json::array();
    for (auto const mode : scenario::allModes()) {
        if (scenario::traitsOf(mode).source == scenario::OverrideSource::Published) {
            modes.push_back(static_cast<int32_t>(mode));
        }
    }
    return modes;
}

}  // namespace

std::string livePage(std::string const& scenario, bool isLogged, std::string const& nonce) {
    Json const noTable{{"words", Json::array()}, {"blocks", Json::array()}};
    Json data = Report::head(scenario, {isLogged, false});
    data.update({{"live", true},
                 {"publishing", publishingModes()},
                 {"total", 0},
                 {"shown", 0},
                 {"jumps", Json::array()},
                 {"allJumps", 0},
                 {"overview", noTable},
                 {"requests", noTable},
                 {"differences", noTable}});
    std::string const html = withNonce(kPageHtml, nonce);
    std::string const style = std::string(kPageStyle) + kLiveStyle;
    std::vector<char const*> scripts(kPageScripts.begin(), kPageScripts.end());
    scripts.push_back(kLiveScript);
    std::string page;
    writePage({html, style, "<p>A page that follows a replay needs scripts.</p>", inScript(data),
               scripts},
              [&page](std::string_view text) { page += text; });
    return page;
}

}  // namespace zoomreplay
