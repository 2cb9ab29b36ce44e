// The manager that pipelines get while the recorder is in front of the module: it writes each call
// down and hands it on to the real one.
#pragma once

#include <memory>

#include "CallRecorder.h"
#include "IZoomOverrideMgr.h"

namespace zoomrecorder {

/// A manager that answers what the real one answers. Any thread: one lock makes the order of the
/// lines the order of the calls, as the manager's own lock would. A process forks while no call is
/// under way; the child's calls are answered, not recorded, as the record is its parent's.
///
/// One a process, which is never let go: it goes on watching for forks.
std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> makeRecordingManager(
    std::unique_ptr<CallRecorder> recorder, std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> real);

}  // namespace zoomrecorder
