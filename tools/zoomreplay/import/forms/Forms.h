// The text forms in which phones describe their cameras. Those with metadata tags differ only in
// the titles above the tags; which form a text has is seen from them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "import/CameraStatics.h"
#include "import/PhoneText.h"

namespace zoomreplay {

/// What a line of a text begins, or says of the whole.
struct DumpTitle {
    enum class Kind {
        Camera,          ///< characteristics of camera id
        PhysicalCamera,  ///< characteristics of camera id, hidden behind the one before it
        Open,            ///< how camera id, which may be open, is used
        Other,           ///< none of these
        Announcement     ///< how many devices provider id has, or how many cameras there are;
                         ///< begins nothing
    };

    Kind kind;
    std::string id;
    std::string name;  ///< of a camera's description, where one id may have several
    size_t number = 0;
};

/// Titles of `dumpsys media.camera` since Android 8; empty for other lines.
std::optional<DumpTitle> serviceDumpTitle(std::string_view line);

/// Titles of `dumpsys media.camera` of Android 5 to 7; empty for other lines.
std::optional<DumpTitle> moduleDumpTitle(std::string_view line);

/// Whether a text that begins with this line is JSON.
bool isCharacteristicsJson(std::string_view firstLine);

/// Reads characteristics as Android's camera test scripts (ITS) print them: JSON objects with tags
/// as names, one a camera, alone, in "cameraProperties" or under the camera's id.
/// @param firstLine the line that text gave last.
/// @throws UserError text is no such JSON.
CameraDump readCharacteristicsJson(std::string_view firstLine, PhoneText& text);

}  // namespace zoomreplay
