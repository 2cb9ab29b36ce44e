// The examples that explain themselves line by line, one for each zoom override mode.
#pragma once

namespace zoomreplay {

// FirstScenarios.cpp.in becomes their definitions when the tool is built.
extern char const* const kExternalFirst;
extern char const* const kByRequestFirst;
extern char const* const kInstantFirst;

}  // namespace zoomreplay
