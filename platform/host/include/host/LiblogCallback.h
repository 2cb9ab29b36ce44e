// What liblog hands to the function that __android_log_set_logger sets: up to version 29 the line's
// data and, beside it, the text; later one record that has both. A generic lambda
// (auto const* line, auto... text) takes either.
#pragma once

namespace NSCam::Host {

/// The text of a line. Its arguments are those of the callback.
template <typename Line, typename... Text>
char const* textOf(Line const* line, Text... text) {
    if constexpr (sizeof...(text) == 0) {
        return line->message;
    } else {
        return (text, ...);
    }
}

}  // namespace NSCam::Host
