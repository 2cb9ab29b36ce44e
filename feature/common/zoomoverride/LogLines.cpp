// The texts that log lines hand to their sinks.
#include "LogLines.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace NSCam::Feature::Log {

namespace {

constexpr uint32_t kCategory = 0x100100C;

}  // namespace

PrintFormat::PrintFormat(Level const& level, Site const& site, char const* messageFormat) {
    std::snprintf(mText, sizeof mText, "%s[%s] %s:%d %s() %s",
                  g_logInfoLv[static_cast<size_t>(level.print)].prefix, kLogTag,
                  get_filename_log_control(site.path), site.line, site.function, messageFormat);
}

void writeUnified(Level const& level, char const* format, ...) {
    char text[kTextSize];
    va_list args;
    va_start(args, format);
    int const length = std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    if (length < 0) {
        return;
    }
    ULogger::sULogger->print(kCategory, kLogTag, level.unified, text, std::strlen(text));
}

}  // namespace NSCam::Feature::Log
