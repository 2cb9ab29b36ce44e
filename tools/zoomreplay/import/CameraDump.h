// Reads what a phone says of its cameras, in whatever form.
#pragma once

#include "CameraStatics.h"
#include "PhoneText.h"

namespace zoomreplay {

/// Reads a whole text: what `dumpsys media.camera` prints, a bugreport with it, or characteristics
/// as JSON. Which it is shows as it is read. Of descriptions of one camera the first with tags
/// counts.
/// @throws UserError the text cannot be read, or is of a kind that must be converted first.
CameraDump readCameraDump(PhoneText& text);

}  // namespace zoomreplay
