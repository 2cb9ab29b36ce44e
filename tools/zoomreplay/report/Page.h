// The page of a report, as its three source files have it: report.html, report.css, report.js.
#pragma once

namespace zoomreplay {

// Page.cpp.in becomes their definitions when the tool is built.
extern char const* const kPageHtml;
extern char const* const kPageStyle;
extern char const* const kPageScript;

}  // namespace zoomreplay
