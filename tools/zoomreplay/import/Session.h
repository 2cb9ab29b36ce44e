// Makes a scenario of what an application asked for.
#pragma once

#include "RigFile.h"
#include "WatchLog.h"

namespace zoomreplay {

/// Writes one request for each frame, asking for the frame's zoom ratio, all of the rig's sensors
/// streaming. The overrides are made of the application's own zoom, so that somebody can put others
/// in their place: in InstantRequest and ExternalAPI mode that of the frame before, as if the
/// override followed the application, in ByRequest mode that of the frame to come, since settings
/// count for the requests before theirs.
/// @param mode any but None.
/// @param log with at least one frame.
void writeSession(File& scenario, PhoneRig const& rig, WatchLog const& log,
                  NSCam::Feature::ZoomOverrideMode mode);

}  // namespace zoomreplay
