// The module's log lines and its two ways to end the process. A call site is one line:
//
//     ZLOG_DEBUG("meta req %d, ratio %.2f!!", request.requestNo, request.zoomRatio);
//
// Formats are checked by the compiler. A line that is off costs a load and a branch: its arguments
// are not evaluated. Every line begins "[class::function] "; the class is the mName of the object
// that logs. The _FOR forms are for helpers whose lines belong to the operation that they serve,
// the _PLAIN forms for code that has no object to name.
//
//     ZLOG_DEBUG                  debug line
//     ZLOG_TRACE                  debug line, only while the object's mLogLevel is not 0
//     ZLOG_WARNING, ZLOG_ERROR, ZLOG_INFO    for whoever reads the log of a phone in the field
//     ZLOG_ERROR_LOCATED_FOR      repeats in its text where it stands, for the unified logger
//     ZLOG_FATAL                  writes to the debug print and ends the process
//     ZLOG_ABORT                  writes to the unified logger and ends the process
#pragma once

#include <android/log.h>

#include <cstddef>
#include <cstdint>

#include "DebugWrapper.h"
#include "ULogger.h"
#include "ZoomOverrideContract.h"

namespace NSCam::Feature::Log {

using Utils::ULog::ULogger;

/// Where a line stands.
struct Site {
    char const* function;
    int line;
    char const* path;
};

/// What a level is called by the switches and by the two sinks.
struct Level {
    int32_t details;
    uint32_t mask;
    int32_t print;
    int32_t unified;
};

inline constexpr Level kDebug{5, 0x1001000, 0, 5};
inline constexpr Level kInfo{3, 0, 3, 3};
inline constexpr Level kWarning{2, 0, 2, 2};
inline constexpr Level kError{1, 0, 1, 1};

/// The longest text that a sink is handed, its final zero included.
inline constexpr size_t kTextSize = 1024;

inline bool isPrintLevelOn(Level const& level) {
    return (g_logInfoLv[static_cast<size_t>(level.print)].flag & kLogLevelOn) != 0;
}

inline bool isPrintOn(Level const& level) {
    return (ULogger::sMode & 0x1U) != 0 && isPrintLevelOn(level);
}

inline bool isUnifiedOn() {
    return (ULogger::sMode & 0xAU) != 0;
}

/// Whether a line of the level reaches any sink. The details level is tested first: on a phone in
/// use it alone turns the lines of the request path off.
inline bool isOn(Level const& level) {
    return ULogger::sDetailsLevel >= level.details &&
           (ULogger::sNormalDetailsMask & level.mask) == level.mask &&
           (isPrintOn(level) || isUnifiedOn());
}

/// The format of a line of the debug print: where the line stands, then the message's own format.
class PrintFormat {
 public:
    PrintFormat(Level const& level, Site const& site, char const* messageFormat);
    char const* text() const { return mText; }

 private:
    char mText[kTextSize];
};

/// Formats a line and hands it to the unified logger.
[[gnu::format(printf, 2, 3)]] void writeUnified(Level const& level, char const* format, ...);

/// Never called: lets the compiler hold the arguments of a line against its format.
[[gnu::format(printf, 1, 2)]] inline void checkFormat(char const* /*format*/, ...) {}

// From here on formats come as parameters; checkFormat saw them where they are spelt out.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

template <typename... Args>
void writePrint(Level const& level, Site const& site, char const* format, Args... args) {
    log_dbg_print(kLogTag, level.print, PrintFormat(level, site, format).text(), args...);
}

// Cold, so that the request path is laid out for lines that are off.
template <typename... Args>
[[gnu::cold]] void write(Level const& level, Site const& site, char const* format, Args... args) {
    if (isPrintOn(level)) {
        writePrint(level, site, format, args...);
    }
    if (isUnifiedOn()) {
        writeUnified(level, format, args...);
    }
}

/// Ends the process. Only the level's own switch can silence the line before: how much detail
/// people want of a running camera does not matter any more.
template <typename... Args>
[[noreturn]] void endAfterPrint(Site const& site, char const* format, Args... args) {
    if (isPrintLevelOn(kError)) {
        writePrint(kError, site, format, args...);
    }
    __android_log_assert("1", kLogTag, "(%s){#%d:%s}\r\n", site.function, site.line, site.path);
}

/// Ends the process. The assertion repeats the line, with the source location appended.
template <typename... Args>
[[noreturn]] void endAfterUnified(Site const& site, char const* format, char const* assertion,
                                  Args... args) {
    if (isUnifiedOn()) {
        writeUnified(kError, format, args...);
        ULogger::sULogger->flush(1);
    }
    __android_log_assert(nullptr, kLogTag, assertion, args..., site.function, site.line, site.path);
}

#pragma GCC diagnostic pop

}  // namespace NSCam::Feature::Log

#define ZLOG_SITE(function) (::NSCam::Feature::Log::Site{function, __LINE__, __FILE__})

#define ZLOG_CHECK_FORMAT(...) \
    (false ? ::NSCam::Feature::Log::checkFormat(__VA_ARGS__) : static_cast<void>(0))

#define ZLOG_WRITE(level, function, ...)                                                    \
    do {                                                                                    \
        ZLOG_CHECK_FORMAT(__VA_ARGS__);                                                     \
        if (::NSCam::Feature::Log::isOn(::NSCam::Feature::Log::level)) {                    \
            ::NSCam::Feature::Log::write(::NSCam::Feature::Log::level, ZLOG_SITE(function), \
                                         __VA_ARGS__);                                      \
        }                                                                                   \
    } while (false)

#define ZLOG_WRITE_NAMED(level, function, format, ...)             \
    ZLOG_WRITE(level, function, "[%s::%s] " format, mName.c_str(), \
               function __VA_OPT__(, ) __VA_ARGS__)

#define ZLOG_DEBUG_FOR(function, ...) ZLOG_WRITE_NAMED(kDebug, function, __VA_ARGS__)
#define ZLOG_TRACE_FOR(function, ...)              \
    do {                                           \
        if (mLogLevel != 0) {                      \
            ZLOG_DEBUG_FOR(function, __VA_ARGS__); \
        }                                          \
    } while (false)

#define ZLOG_DEBUG(...) ZLOG_DEBUG_FOR(__func__, __VA_ARGS__)
#define ZLOG_TRACE(...) ZLOG_TRACE_FOR(__func__, __VA_ARGS__)
#define ZLOG_WARNING(...) ZLOG_WRITE_NAMED(kWarning, __func__, __VA_ARGS__)
#define ZLOG_ERROR_FOR(function, ...) ZLOG_WRITE_NAMED(kError, function, __VA_ARGS__)
#define ZLOG_ERROR(...) ZLOG_ERROR_FOR(__func__, __VA_ARGS__)
#define ZLOG_ERROR_LOCATED_FOR(function, format) \
    ZLOG_ERROR_FOR(function, format " (%s){#%d:%s}", function, __LINE__, __FILE__)

#define ZLOG_INFO_PLAIN(...) ZLOG_WRITE(kInfo, __func__, __VA_ARGS__)

#define ZLOG_FATAL_FOR(function, format, ...)                                              \
    (ZLOG_CHECK_FORMAT(format __VA_OPT__(, ) __VA_ARGS__),                                 \
     ::NSCam::Feature::Log::endAfterPrint(ZLOG_SITE(function), "[Fatal] [%s::%s] " format, \
                                          mName.c_str(), function __VA_OPT__(, ) __VA_ARGS__))
#define ZLOG_FATAL(...) ZLOG_FATAL_FOR(__func__, __VA_ARGS__)

#define ZLOG_ABORT_PLAIN_FOR(function, format, ...)                      \
    (ZLOG_CHECK_FORMAT(format __VA_OPT__(, ) __VA_ARGS__),               \
     ::NSCam::Feature::Log::endAfterUnified(ZLOG_SITE(function), format, \
                                            format " (%s){#%d:%s}" __VA_OPT__(, ) __VA_ARGS__))
#define ZLOG_ABORT_FOR(function, format, ...)                         \
    ZLOG_ABORT_PLAIN_FOR(function, "[%s::%s] " format, mName.c_str(), \
                         function __VA_OPT__(, ) __VA_ARGS__)
#define ZLOG_ABORT(...) ZLOG_ABORT_FOR(__func__, __VA_ARGS__)
#define ZLOG_ABORT_PLAIN(...) ZLOG_ABORT_PLAIN_FOR(__func__, __VA_ARGS__)
