// What the library answered to one line of a scenario, and who wants to know.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ISensorCropMapperFactory.h"
#include "Input.h"
#include "ZoomOverrideTypes.h"
#include "host/LogCapture.h"
#include "scenario/text/RecordFields.h"

namespace zoomreplay {

/// An operation that only answers true or false.
struct BoolAnswer {
    bool result;
};

struct ModeAnswer {
    NSCam::Feature::ZoomOverrideMode mode;
};

/// A crop query: what was asked and the caller's record afterwards.
template <typename Need>
struct QueryAnswer {
    NSCam::Feature::ZoomOverrideRequest request;
    bool result;
    Need need;
};
using P1Answer = QueryAnswer<NSCam::Feature::ZoomOverrideP1Need>;
using P2Answer = QueryAnswer<NSCam::Feature::ZoomOverrideP2Need>;
using ThreeAAnswer = QueryAnswer<NSCam::Feature::ZoomOverride3ANeed>;

struct HistoryAnswer {
    std::shared_ptr<NSCam::Feature::RunTimeCropNeedData> record;
};

struct CorrectionAnswer {
    int32_t sensorId;
    bool result;
    NSCam::MRect crop;
};

struct MapperAnswer {
    NSCam::Feature::SensorCropInput input;
    bool result;
    NSCam::Feature::SensorCropOutput output;
};

/// An exception that came out of the library.
struct ExceptionAnswer {
    std::string type;
    std::string what;
};

/// The library stopped the process; nothing comes after it.
struct FatalAnswer {
    std::string text;
};

using Answer = std::variant<BoolAnswer, ModeAnswer, P1Answer, P2Answer, ThreeAAnswer, HistoryAnswer,
                            CorrectionAnswer, MapperAnswer, ExceptionAnswer, FatalAnswer>;

}  // namespace zoomreplay

// What results tell of each kind of answer.
namespace scenario::fields {

template <>
inline constexpr auto kOf<zoomreplay::BoolAnswer> =
    describe<zoomreplay::BoolAnswer>(optional("result", &zoomreplay::BoolAnswer::result));

template <>
inline constexpr auto kOf<zoomreplay::ModeAnswer> =
    describe<zoomreplay::ModeAnswer>(optional("result", &zoomreplay::ModeAnswer::mode));

template <typename Need>
inline constexpr auto kOf<zoomreplay::QueryAnswer<Need>> = describe<zoomreplay::QueryAnswer<Need>>(
    hidden("request", &zoomreplay::QueryAnswer<Need>::request),
    optional("result", &zoomreplay::QueryAnswer<Need>::result),
    optional("need", &zoomreplay::QueryAnswer<Need>::need));

template <>
inline constexpr auto kOf<zoomreplay::HistoryAnswer> =
    describe<zoomreplay::HistoryAnswer>(optional("record", &zoomreplay::HistoryAnswer::record));

template <>
inline constexpr auto kOf<zoomreplay::CorrectionAnswer> = describe<zoomreplay::CorrectionAnswer>(
    hidden("sensorId", &zoomreplay::CorrectionAnswer::sensorId),
    optional("result", &zoomreplay::CorrectionAnswer::result),
    optional("crop", &zoomreplay::CorrectionAnswer::crop));

template <>
inline constexpr auto kOf<zoomreplay::MapperAnswer> =
    describe<zoomreplay::MapperAnswer>(hidden("input", &zoomreplay::MapperAnswer::input),
                                       optional("result", &zoomreplay::MapperAnswer::result),
                                       optional("output", &zoomreplay::MapperAnswer::output));

template <>
inline constexpr auto kOf<zoomreplay::ExceptionAnswer> =
    describe<zoomreplay::ExceptionAnswer>(optional("exception", &zoomreplay::ExceptionAnswer::type),
                                          optional("what", &zoomreplay::ExceptionAnswer::what));

template <>
inline constexpr auto kOf<zoomreplay::FatalAnswer> =
    describe<zoomreplay::FatalAnswer>(optional("fatal", &zoomreplay::FatalAnswer::text));

}  // namespace scenario::fields

namespace zoomreplay {

/// When a line's call was made and how long it took, as far as the line tells: nanoseconds, the
/// first of the boot time clock. Not negative.
struct LineTime {
    std::optional<int64_t> start;
    std::optional<int64_t> duration;
};

struct Outcome {
    uint64_t line;  ///< of the scenario, from 1
    LineTime time;
    std::string_view op;  ///< lives as long as the program
    Answer answer;
    bool isLogged;  ///< log was captured
    std::vector<NSCam::Host::LogLine> log;
};

/// Gets every outcome as soon as it is known.
class OutcomeConsumer {
 public:
    virtual ~OutcomeConsumer() = default;

    /// A line is about to be carried out. Comes first, and for every line.
    virtual void begin(uint64_t /*line*/, LineTime const& /*time*/) {}

    /// What a line is about to be answered from, or sets up. Comes before the line's outcome.
    virtual void prepare(uint64_t /*line*/, Input const& /*input*/) {}

    /// What is written may be held back until flush or finish. @throws UserError
    virtual void consume(Outcome const& outcome) = 0;

    /// Nothing may follow for a while, or at all: what was held back is out when it returns.
    /// @throws UserError
    virtual void flush() {}

    /// The replay is over, by the scenario's end or by a fatal condition. @throws UserError
    virtual void finish() {}

    /// The library stopped the process, which ends when this returns: all has been told. The
    /// library must not be called.
    virtual void stay() {}
};

/// Makes one visitor of several lambdas.
template <typename... Visitors>
struct Overloaded : Visitors... {
    using Visitors::operator()...;
};
template <typename... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

}  // namespace zoomreplay
