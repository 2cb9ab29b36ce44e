// What the values of a characteristics tag mean.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "CameraStatics.h"

namespace zoomreplay {

struct CameraTag {
    std::string_view name;
    std::string_view type;  ///< as phones print it

    /// @param words of the values as text.
    /// @param count how many values the phone announced, NULs among them.
    /// @return whether they make sense; otherwise the camera is left as it was, or the tag's field
    ///     empty.
    bool (*set)(CameraStatics& camera, std::vector<std::string_view> const& words, size_t count);
};

/// Null for tags that a rig does not need.
CameraTag const* findCameraTag(std::string_view name);

/// Takes a tag's values over; what makes no sense is noted as unreadable.
/// @param count empty: what was announced is not known or not of the tag's type.
/// @param place where the tag stands, such as "line 7"; may be empty.
void setCameraTag(CameraStatics& camera, CameraTag const& tag,
                  std::vector<std::string_view> const& words, std::optional<size_t> count,
                  std::string const& place);

/// Camera ids out of the codes of their characters, each id with a zero behind it.
std::optional<std::vector<std::string>> idsFromCodes(std::vector<std::string_view> const& words);

/// Splits joined characters so that each id is one of those known.
/// @return empty when that cannot be done, or in more than one way.
std::vector<std::string> splitIds(JoinedIds const& joined, std::vector<std::string> const& known);

}  // namespace zoomreplay
