// What the recorder has to say about itself goes to the system log.
#pragma once

#include <android/log.h>

#include <string>

namespace zoomrecorder {

inline constexpr char kTag[] = "zoomoverride_recorder";

inline void report(std::string const& text) {
    __android_log_write(ANDROID_LOG_ERROR, kTag, text.c_str());
}

}  // namespace zoomrecorder
