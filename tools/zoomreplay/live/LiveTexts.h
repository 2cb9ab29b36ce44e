// What the page of a live replay has beside a report's, as the files of page/ have it.
#pragma once

namespace zoomreplay {

// LiveTexts.cpp.in becomes their definitions when the tool is built.
extern char const* const kLiveStyle;
extern char const* const kLiveScript;

}  // namespace zoomreplay
