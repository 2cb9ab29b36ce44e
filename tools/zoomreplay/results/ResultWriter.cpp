// Writes each kind of answer as JSON.
#include "ResultWriter.h"

#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam::Feature;

void appendAnswer(std::string& out, BoolAnswer const& answer) {
    appendField(out, "result", answer.result);
}

void appendAnswer(std::string& out, ModeAnswer const& answer) {
    appendField(out, "result", answer.mode);
}

template <typename Need>
void appendAnswer(std::string& out, QueryAnswer<Need> const& answer) {
    appendField(out, "result", answer.result);
    appendField(out, "need", answer.need);
}

void appendAnswer(std::string& out, HistoryAnswer const& answer) {
    appendField(out, "record", *answer.record);
}

void appendAnswer(std::string& out, CorrectionAnswer const& answer) {
    appendField(out, "result", answer.result);
    appendField(out, "crop", answer.crop);
}

void appendAnswer(std::string& out, MapperAnswer const& answer) {
    appendField(out, "result", answer.result);
    appendField(out, "output", answer.output);
}

void appendAnswer(std::string& out, ExceptionAnswer const& answer) {
    appendField(out, "exception", std::string_view(answer.type));
    appendField(out, "what", std::string_view(answer.what));
}

void appendAnswer(std::string& out, FatalAnswer const& answer) {
    appendField(out, "fatal", std::string_view(answer.text));
}

void appendTime(std::string& out, char const* name, std::optional<int64_t> nanoseconds) {
    if (nanoseconds.has_value()) {
        out.append(", \"").append(name).append("\": ");
        appendNumber(out, static_cast<uint64_t>(*nanoseconds));
    }
}

void appendLog(std::string& out, std::vector<NSCam::Host::LogLine> const& log) {
    using NSCam::Host::LogSink;
    char const* separator = "{";
    out += ", \"log\": [";
    for (auto const& line : log) {
        out += separator;
        out += line.sink == LogSink::Print ? "\"sink\": \"print\"" : "\"sink\": \"unified\"";
        appendField(out, "level", line.level);
        appendField(out, "text", std::string_view(line.text));
        out += '}';
        separator = ", {";
    }
    out += ']';
}

}  // namespace

void appendResultLine(std::string& out, Outcome const& outcome) {
    out += "{\"line\": ";
    appendNumber(out, outcome.line);
    appendTime(out, "t", outcome.time.start);
    appendTime(out, "dur", outcome.time.duration);
    appendField(out, "op", outcome.op);
    std::visit([&out](auto const& answer) { appendAnswer(out, answer); }, outcome.answer);
    if (outcome.isLogged) {
        appendLog(out, outcome.log);
    }
    out += '}';
}

void ResultWriter::consume(Outcome const& outcome) {
    appendResultLine(mLines.text(), outcome);
    mLines.text() += '\n';
    mLines.endLine();
}

}  // namespace zoomreplay
