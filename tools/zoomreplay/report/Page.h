// The page of a report, as the files of page/ have it. They are joined when a report is written.
#pragma once

#include <span>

namespace zoomreplay {

// Page.cpp.in becomes their definitions when the tool is built. Long texts come in pieces.
extern char const* const kPageHtml;
extern char const* const kPageStyle;
extern std::span<char const* const> const kChartLibrary;
extern std::span<char const* const> const kPageScripts;

}  // namespace zoomreplay
