#include "ResultWriter.h"

#include "JsonText.h"

namespace zoomreplay {
namespace {

using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

int32_t numberOf(ZoomOverrideMode mode) {
    return static_cast<int32_t>(mode);
}

void appendHeader(std::string& out, ZoomOverrideNeedHeader const& header) {
    out += ", \"need\": {\"overrideValid\": ";
    appendJson(out, header.overrideValid);
    appendField(out, "requestNo", header.requestNo);
    appendField(out, "zoomRatio", header.zoomRatio);
    appendField(out, "mode", numberOf(header.mode));
}

void appendNeed(std::string& out, ZoomOverrideP1Need const& need) {
    appendHeader(out, need);
    appendField(out, "tgCrops", need.tgCrops);
    out += '}';
}

void appendNeed(std::string& out, ZoomOverrideP2Need const& need) {
    appendHeader(out, need);
    appendField(out, "overrideRect", need.overrideRect);
    appendField(out, "streamCrops", need.streamCrops);
    appendField(out, "extraTgCrops", need.extraTgCrops);
    appendField(out, "previewAaCrops", need.previewAaCrops);
    appendField(out, "extraAaCrops", need.extraAaCrops);
    out += '}';
}

void appendNeed(std::string& out, ZoomOverride3ANeed const& need) {
    appendHeader(out, need);
    out += '}';
}

void appendAnswer(std::string& out, BoolAnswer const& answer) {
    appendField(out, "result", answer.result);
}

void appendAnswer(std::string& out, ModeAnswer const& answer) {
    appendField(out, "result", numberOf(answer.mode));
}

template <typename Need>
void appendAnswer(std::string& out, QueryAnswer<Need> const& answer) {
    appendField(out, "result", answer.result);
    appendNeed(out, answer.need);
}

void appendAnswer(std::string& out, HistoryAnswer const& answer) {
    out += ", \"record\": {\"sensorModes\": ";
    appendJson(out, answer.record->sensorModes);
    appendField(out, "streamSizes", answer.record->streamSizes);
    appendField(out, "constraintStreams", answer.record->constraintStreams);
    appendField(out, "extraTable", answer.record->extraTable);
    out += '}';
}

void appendAnswer(std::string& out, CorrectionAnswer const& answer) {
    appendField(out, "result", answer.result);
    appendField(out, "crop", answer.crop);
}

void appendAnswer(std::string& out, MapperAnswer const& answer) {
    appendField(out, "result", answer.result);
    out += ", \"output\": {\"isValid\": ";
    appendJson(out, answer.output.isValid);
    appendField(out, "zoomRatio", answer.output.zoomRatio);
    appendField(out, "sensorCrops", answer.output.sensorCrops);
    out += '}';
}

void appendAnswer(std::string& out, ExceptionAnswer const& answer) {
    appendField(out, "exception", std::string_view(answer.type));
    appendField(out, "what", std::string_view(answer.what));
}

void appendAnswer(std::string& out, FatalAnswer const& answer) {
    appendField(out, "fatal", std::string_view(answer.text));
}

}  // namespace

void appendResultLine(std::string& out, Outcome const& outcome) {
    out += "{\"line\": ";
    appendNumber(out, outcome.line);
    appendField(out, "op", outcome.op);
    std::visit([&out](auto const& answer) { appendAnswer(out, answer); }, outcome.answer);
    if (outcome.isLogged) {
        appendField(out, "log", outcome.log);
    }
    out += '}';
}

void ResultWriter::consume(Outcome const& outcome) {
    mLine.clear();
    appendResultLine(mLine, outcome);
    mLine += '\n';
    mFile.write(mLine);
}

}  // namespace zoomreplay
