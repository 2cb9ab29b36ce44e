// Lays answers out in columns.
#include "Table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>

#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam;           // NOLINT(google-build-using-namespace)
using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

constexpr size_t kColumns = 100;
constexpr size_t kNoteIndent = 9;  // exceptions and log lines, below or beside the line number

constexpr std::string_view kBright = "\x1b[32m";
constexpr std::string_view kDim = "\x1b[2m";
constexpr std::string_view kAlarm = "\x1b[31m";
constexpr std::string_view kPlain = "\x1b[0m";

struct Row {
    std::string request = "-";
    std::string query;
    std::string asked = "-";
    std::string applied = "-";
    std::string answer;
    std::vector<std::string> crops;
};

/// Something told in words instead of a row.
struct Note {
    std::string text;
    bool isAlarm;
};

std::string padLeft(std::string const& text, size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string padRight(std::string const& text, size_t width) {
    return text + std::string(width - std::min(width, text.size()), ' ');
}

// Up to ten characters: two decimals for every ratio that a camera knows.
std::string ratioText(float ratio) {
    float const size = std::abs(ratio);
    bool const isOrdinary = ratio == 0.0F || (size >= 0.01F && size < 100000.0F);
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), isOrdinary ? "%.2f" : "%.3g",
                  static_cast<double>(ratio));
    return text.data();
}

std::string rectText(MRect const& rect) {
    return '(' + std::to_string(rect.x) + ", " + std::to_string(rect.y) + ")/" +
           std::to_string(rect.w) + 'x' + std::to_string(rect.h);
}

// A crop cell: whose it is, such as "0 0x7001", and the rectangle.
std::string cropText(uint32_t sensorId, std::string const& which, MRect const& rect) {
    return padLeft(std::to_string(sensorId), 2) + ' ' + padRight(which, 7) + ' ' + rectText(rect);
}

using SensorCrops = std::unordered_map<uint32_t, MRect>;

void addCrops(Row& row, char const* which, SensorCrops const& crops) {
    for (auto const* entry : inKeyOrder(crops)) {
        row.crops.push_back(cropText(entry->first, which, entry->second));
    }
}

void addCrops(Row& row, ZoomOverrideP1Need const& need) {
    for (auto const* sensor : inKeyOrder(need.tgCrops)) {
        for (auto const& [port, rect] : sensor->second) {
            std::string which;
            appendKey(which, port);
            row.crops.push_back(cropText(sensor->first, which, rect));
        }
    }
}

void addCrops(Row& row, ZoomOverrideP2Need const& need) {
    addCrops(row, "crop", need.streamCrops);
    addCrops(row, "extra", need.extraTgCrops);
}

void addCrops(Row& /*row*/, ZoomOverride3ANeed const& /*need*/) {}

template <typename Need>
Row queryRow(char const* query, QueryAnswer<Need> const& answer) {
    Row row;
    row.request = std::to_string(answer.request.requestNo);
    row.query = query;
    row.asked = ratioText(answer.request.zoomRatio);
    row.applied = ratioText(answer.need.zoomRatio);
    row.answer = answer.result ? "override" : "no";
    addCrops(row, answer.need);
    return row;
}

Row mapperRow(MapperAnswer const& answer) {
    Row row;
    row.query = "map";
    row.asked = ratioText(answer.input.zoomRatio);
    row.applied = ratioText(answer.output.zoomRatio);
    row.answer = answer.result && answer.output.isValid ? "override" : "no";
    addCrops(row, "crop", answer.output.sensorCrops);
    return row;
}

Row correctionRow(CorrectionAnswer const& answer) {
    Row row;
    row.query = "fit";
    row.answer = answer.result ? "fitted" : "no";
    row.crops.push_back(cropText(static_cast<uint32_t>(answer.sensorId), "crop", answer.crop));
    return row;
}

// Of any text, what fits into a cell.
std::string plainText(std::string text) {
    constexpr size_t kLongest = 30;
    text.resize(std::min(text.size(), kLongest));
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return text;
}

Row observedRow(Observation const& observation) {
    Row row;
    row.request = std::to_string(observation.requestNo);
    row.query = "phone";
    row.applied = observation.zoomRatio.has_value() ? ratioText(*observation.zoomRatio) : "-";
    row.answer = "seen";
    if (observation.activePhysicalId.has_value()) {
        row.crops.push_back(" camera  " + plainText(*observation.activePhysicalId));
    }
    if (observation.cropRegion.has_value()) {
        row.crops.push_back(" region  " + rectText(*observation.cropRegion));
    }
    return row;
}

std::optional<Row> rowOf(Answer const& answer) {
    return std::visit(
        Overloaded{[](P1Answer const& query) { return std::optional(queryRow("P1", query)); },
                   [](P2Answer const& query) { return std::optional(queryRow("P2", query)); },
                   [](ThreeAAnswer const& query) { return std::optional(queryRow("3A", query)); },
                   [](MapperAnswer const& mapper) { return std::optional(mapperRow(mapper)); },
                   [](CorrectionAnswer const& fit) { return std::optional(correctionRow(fit)); },
                   [](auto const& /*other*/) { return std::optional<Row>(); }},
        answer);
}

// Outcomes without a row are worth a word when something went wrong, or when their log is shown.
std::optional<Note> noteOf(Outcome const& outcome) {
    std::string const op(outcome.op);
    if (auto const* exception = std::get_if<ExceptionAnswer>(&outcome.answer)) {
        return Note{op + ": exception " + exception->type + ": " + exception->what, true};
    }
    if (auto const* fatal = std::get_if<FatalAnswer>(&outcome.answer)) {
        return Note{op + ": fatal: " + fatal->text, true};
    }
    return outcome.isLogged ? std::optional(Note{op, false}) : std::nullopt;
}

// A crop that does not fit beside the row goes below it, and a huge one further to the left.
void appendCrops(std::string& out, size_t width, std::vector<std::string> const& crops) {
    size_t const column = width;
    for (std::string const& crop : crops) {
        if (width + crop.size() > kColumns || width > column) {
            width = std::min(column, kColumns - std::min(kColumns, crop.size()));
            out.append(1, '\n').append(width, ' ');
        }
        out += crop;
        width += crop.size();
    }
}

void appendRow(std::string& out, std::string const& line, Row const& row, bool isColoured) {
    std::string const start = padLeft(line, 7) + padLeft(row.request, 11) + "  " +
                              padRight(row.query, 5) + padLeft(row.asked, 9) +
                              padLeft(row.applied, 10) + "  ";
    std::string const answer = padRight(row.answer, 9);
    out += start;
    if (isColoured) {
        out.append(row.answer == "no" ? kDim : kBright).append(answer).append(kPlain);
    } else {
        out += answer;
    }
    appendCrops(out, start.size() + answer.size(), row.crops);
}

// Folds a text of any length into indented lines, between words where there are any. Control
// characters, line ends among them, would break the table.
void appendFolded(std::string& out, std::string text) {
    constexpr size_t kWidth = kColumns - kNoteIndent;
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < 0x20; }, ' ');
    while (text.size() > kWidth) {
        size_t const blank = text.rfind(' ', kWidth);
        bool const isBetweenWords = blank != std::string::npos && blank > 0;
        size_t const length = isBetweenWords ? blank : kWidth;
        out.append(text, 0, length).append(1, '\n').append(kNoteIndent, ' ');
        text.erase(0, isBetweenWords ? length + 1 : length);
    }
    out += text;
}

void appendNote(std::string& out, std::string const& line, Note const& note, bool isColoured) {
    out += padRight(padLeft(line, 7), kNoteIndent);
    bool const isAlarm = note.isAlarm && isColoured;
    out += isAlarm ? kAlarm : "";
    appendFolded(out, note.text);
    out += isAlarm ? kPlain : "";
}

void appendLogLine(std::string& out, Host::LogLine const& line) {
    out.append(kNoteIndent, ' ');
    std::string const sink = line.sink == Host::LogSink::Print ? "print " : "unified ";
    appendFolded(out, sink + std::to_string(line.level) + "  " + line.text);
}

std::string rstripped(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

}  // namespace

void Table::consume(Outcome const& outcome) {
    std::string const line = std::to_string(outcome.line);
    std::string text;
    if (auto const row = rowOf(outcome.answer)) {
        appendRow(text, line, *row, mIsColoured);
    } else if (auto const note = noteOf(outcome)) {
        appendNote(text, line, *note, mIsColoured);
    } else {
        return;
    }
    text = rstripped(std::move(text)) + '\n';
    for (auto const& logLine : outcome.log) {
        appendLogLine(text, logLine);
        text += '\n';
    }
    write(std::move(text));
}

void Table::prepare(uint64_t line, Input const& input) {
    if (auto const* observed = std::get_if<ObservedInput>(&input)) {
        std::string text;
        appendRow(text, std::to_string(line), observedRow(observed->observation), mIsColoured);
        write(rstripped(std::move(text)) + '\n');
    }
}

void Table::write(std::string text) {
    if (!mHasHeader) {
        mHasHeader = true;
        text.insert(
            0, "   line    request  query    asked  override  answer    sensor, port and crop\n");
    }
    mFile.write(text);
}

void Table::finish() {
    if (!mHasHeader) {
        mFile.write("Nothing to show: no line asks for a crop.\n");
    }
}

}  // namespace zoomreplay
