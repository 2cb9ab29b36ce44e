// The page of a report, as the files of page/ have it. They are joined when a report is written.
#pragma once

namespace zoomreplay {

// Page.cpp.in becomes their definitions when the tool is built.
extern char const* const kPageHtml;
extern char const* const kPageStyle;
extern char const* const kPageScript;

}  // namespace zoomreplay
