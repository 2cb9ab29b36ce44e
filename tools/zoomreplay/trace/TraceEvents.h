// The events of a trace, in the trace event format: JSON that the viewers of Android and Chrome
// open.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/File.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {

/// A row of the viewer. Rows stand in the order of these numbers.
using Track = int32_t;

/// The arguments of an event: a JSON object that is built field by field.
class TraceArguments {
 public:
    template <typename T>
    TraceArguments& add(std::string_view name, T const& value) {
        scenario::appendJson(startField(name), value);
        return *this;
    }

    /// A number without quotes, such as a line's.
    TraceArguments& number(std::string_view name, uint64_t value) {
        scenario::appendNumber(startField(name), value);
        return *this;
    }

    /// A value that is JSON already.
    TraceArguments& json(std::string_view name, std::string_view text) {
        startField(name) += text;
        return *this;
    }

    std::string text() const { return '{' + mFields + '}'; }

 private:
    std::string& startField(std::string_view name) {
        mFields += mFields.empty() ? "\"" : ", \"";
        return mFields.append(name).append("\": ");
    }

    std::string mFields;
};

/// Writes events as they come; nothing of them is kept. Times are in nanoseconds. All operations
/// throw UserError where the file cannot be written.
class TraceEvents {
 public:
    /// @param file outlives the events.
    explicit TraceEvents(File& file);

    /// Names a track. Must come before its first event.
    void name(Track track, std::string_view name);

    /// Something that took some time.
    void slice(Track track, std::string_view name, int64_t start, int64_t duration,
               TraceArguments const& arguments);

    /// Something that lasts until endSlice, which not every viewer matches without its name.
    void beginSlice(Track track, std::string_view name, int64_t time);
    void endSlice(Track track, std::string_view name, int64_t time);

    /// A request: they overlap, so the viewer gives each a lane below one name.
    void beginRequest(uint64_t id, int64_t time, TraceArguments const& arguments);
    void endRequest(uint64_t id, int64_t time, TraceArguments const& arguments);

    /// Holds until its next value; written where it changes. Nothing where the value is no finite
    /// number.
    void counter(std::string_view name, int64_t time, float value);
    void counter(std::string_view name, int64_t time, int32_t value);

    /// Something to notice, across all tracks.
    void instant(std::string_view name, int64_t time, TraceArguments const& arguments);

    /// From a slice to a later one.
    void arrow(Track fromTrack, int64_t fromStart, Track toTrack, int64_t toStart);

    /// Completes the file. @param metadata what to tell of the trace as a whole.
    void finish(TraceArguments const& metadata);

 private:
    void begin(char const* phase, Track track, int64_t time);
    void end(TraceArguments const& arguments = {});
    void request(char const* phase, uint64_t id, int64_t time, TraceArguments const& arguments);
    void counter(std::string_view name, int64_t time, TraceArguments const& arguments);
    void arrowEnd(char const* phase, Track track, int64_t time);
    void describe(Track track, std::string_view what, TraceArguments const& arguments);
    void field(std::string_view name, std::string_view value);
    void time(std::string_view name, int64_t nanoseconds);
    void flush();

    File& mFile;
    std::string mText;                                       // not yet written
    std::unordered_map<std::string, std::string> mCounters;  // what they hold
    bool mIsFirst = true;
    uint64_t mArrows = 0;
};

}  // namespace zoomreplay
