// Writes outcomes as JSON.
#include "ResultWriter.h"

#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;

template <typename Record>
void appendFields(std::string& out, Record const& record) {
    visitFields<Record>(
        [&](auto const& field) { appendField(out, field.name, record.*field.member); });
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
    std::visit([&out](auto const& answer) { appendFields(out, answer); }, outcome.answer);
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
