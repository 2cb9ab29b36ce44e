// Lays answers out in columns.
#include "Table.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "CellText.h"
#include "base/TerminalText.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam;
using namespace NSCam::Feature;

constexpr size_t kCellWidth = 46;  // of crops beside each other
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
    bool isOverridden = false;
    std::vector<std::string> crops;
};

/// Something told in words instead of a row.
struct Note {
    std::string text;
    bool isAlarm;
};

// A crop cell: whose it is, such as "0 0x7001", and the rectangle.
std::string cropText(uint32_t sensorId, std::string const& which, MRect const& rect) {
    return padLeft(std::to_string(sensorId), 2) + ' ' + padRight(which, 7) + ' ' + rectText(rect);
}

using SensorCrops = std::unordered_map<uint32_t, MRect>;
using SensorPaths = std::map<uint32_t, CropPath>;

std::string markOf(CropPath const& path, MRect const& crop) {
    return path.asked.has_value() && *path.asked != crop ? "  corrected" : "";
}

void addCrops(Row& row, char const* which, SensorCrops const& crops,
              SensorPaths const& paths = {}) {
    for (auto const* entry : inKeyOrder(crops)) {
        auto const path = paths.find(entry->first);
        std::string const mark = path != paths.end() ? markOf(path->second, entry->second) : "";
        row.crops.push_back(cropText(entry->first, which, entry->second) + mark);
    }
}

void addCrops(Row& row, ZoomOverrideP1Need const& need, Explained const* explained) {
    for (auto const* sensor : inKeyOrder(need.tgCrops)) {
        for (auto const& [port, rect] : sensor->second) {
            std::string which;
            appendKey(which, port);
            std::string text = cropText(sensor->first, which, rect);
            if (explained != nullptr && explained->ports.count(sensor->first) > 0 &&
                explained->ports.at(sensor->first).count(port) > 0) {
                text += markOf(explained->ports.at(sensor->first).at(port), rect);
            }
            row.crops.push_back(std::move(text));
        }
    }
}

void addCrops(Row& row, ZoomOverrideP2Need const& need, Explained const* explained) {
    addCrops(row, "crop", need.streamCrops,
             explained != nullptr ? explained->streams : SensorPaths{});
    addCrops(row, "extra", need.extraTgCrops,
             explained != nullptr ? explained->extras : SensorPaths{});
}

void addCrops(Row& /*row*/, ZoomOverride3ANeed const& /*need*/, Explained const* /*none*/) {}

template <typename Need>
Row queryRow(char const* query, QueryAnswer<Need> const& answer, Explained const* explained) {
    bool const isKept = explained != nullptr && explained->keptSince.has_value();
    Row row;
    row.request = std::to_string(answer.request.requestNo);
    row.query = query;
    row.asked = ratioText(answer.request.zoomRatio);
    row.applied = ratioText(answer.need.zoomRatio);
    row.answer = answer.result ? (isKept ? "kept" : "override") : (isKept ? "kept no" : "no");
    row.isOverridden = answer.result;
    addCrops(row, answer.need, explained);
    return row;
}

Row mapperRow(MapperAnswer const& answer) {
    Row row;
    row.query = "map";
    row.asked = ratioText(answer.input.zoomRatio);
    row.applied = ratioText(answer.output.zoomRatio);
    row.isOverridden = answer.result && answer.output.isValid;
    row.answer = row.isOverridden ? "override" : "no";
    addCrops(row, "crop", answer.output.sensorCrops);
    return row;
}

Row correctionRow(CorrectionAnswer const& answer) {
    Row row;
    row.query = "fit";
    row.isOverridden = answer.result;
    row.answer = answer.result ? "fitted" : "no";
    row.crops.push_back(cropText(static_cast<uint32_t>(answer.sensorId), "crop", answer.crop));
    return row;
}

// Of any text, what fits into a cell.
std::string plainText(std::string_view text) {
    constexpr size_t kLongest = 30;
    return terminalText(text.substr(0, kLongest), '?');
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

using MaybeRow = std::optional<Row>;

// The kinds of answers that are told in results only: one that is named nowhere does not compile.
template <typename... Answers>
struct WithoutRow {
    template <typename Other>
    requires(std::is_same_v<Other, Answers> || ...) MaybeRow operator()(
        Other const& /*answer*/) const {
        return std::nullopt;
    }
};

MaybeRow rowOf(Answer const& answer, Explained const* explained) {
    return std::visit(
        Overloaded{
            [&](P1Answer const& query) -> MaybeRow { return queryRow("P1", query, explained); },
            [&](P2Answer const& query) -> MaybeRow { return queryRow("P2", query, explained); },
            [](ThreeAAnswer const& query) -> MaybeRow { return queryRow("3A", query, nullptr); },
            [](MapperAnswer const& mapper) -> MaybeRow { return mapperRow(mapper); },
            [](CorrectionAnswer const& fit) -> MaybeRow { return correctionRow(fit); },
            WithoutRow<BoolAnswer, ModeAnswer, HistoryAnswer, ExceptionAnswer, FatalAnswer>{}},
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

// What a row begins with; the lines below it repeat the request only.
std::string rowStart(std::string const& line, Row const& row) {
    return padLeft(line, 7) + padLeft(row.request, 11) + "  ";
}

// A crop that does not fit beside the row goes below it, and a huge one further to the left.
void appendCrops(std::string& out, size_t width, Row const& row, size_t columns) {
    size_t const column = width;
    for (std::string const& crop : row.crops) {
        if (width + crop.size() > columns) {
            std::string const start = rowStart("", row);
            width = column + crop.size() <= columns
                        ? column
                        : columns - std::min(columns, std::max(crop.size(), kCellWidth));
            out += '\n';
            out += width > start.size() ? padRight(start, width) : std::string(width, ' ');
        }
        std::string const cell = padRight(crop, kCellWidth);
        out += cell;
        width += cell.size();
    }
}

void appendRow(std::string& out, std::string const& line, Row const& row,
               Terminal const& terminal) {
    std::string const start = rowStart(line, row) + padRight(row.query, 5) + padLeft(row.asked, 9) +
                              padLeft(row.applied, 10) + "  ";
    std::string const answer = padRight(row.answer, 9);
    out += start;
    if (terminal.isColoured) {
        out.append(row.isOverridden ? kBright : kDim).append(answer).append(kPlain);
    } else {
        out += answer;
    }
    appendCrops(out, start.size() + answer.size(), row, terminal.columns);
}

void appendNote(std::string& out, std::string const& line, Note const& note,
                Terminal const& terminal) {
    out += padRight(padLeft(line, 7), kNoteIndent);
    bool const isAlarm = note.isAlarm && terminal.isColoured;
    out += isAlarm ? kAlarm : "";
    appendFolded(out, note.text, kNoteIndent, kNoteIndent, terminal.columns);
    out += isAlarm ? kPlain : "";
}

void appendLogLine(std::string& out, Host::LogLine const& line, size_t columns) {
    out.append(kNoteIndent, ' ');
    std::string const sink = line.sink == Host::LogSink::Print ? "print " : "unified ";
    appendFolded(out, sink + std::to_string(line.level) + "  " + line.text, kNoteIndent,
                 kNoteIndent, columns);
}

std::string withoutTrailingBlanks(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        auto const end = std::min(text.find('\n'), text.size());
        auto const line = text.substr(0, end);
        result.append(line.substr(0, line.find_last_not_of(' ') + 1)).append(1, '\n');
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

}  // namespace

void Table::prepare(uint64_t line, Input const& input) {
    mRequest = requestOf(input);
    auto const* const observed = std::get_if<ObservedInput>(&input);
    if (observed != nullptr && isShown(false)) {
        std::string text;
        appendRow(text, std::to_string(line), observedRow(observed->observation), mTerminal);
        write(withoutTrailingBlanks(text));
    }
}

bool Table::isShown(bool isFatal) const {
    return mRange.isAll() || isFatal || (mRequest.has_value() && mRange.contains(*mRequest));
}

void Table::consume(Outcome const& outcome) {
    bool const isFatal = std::holds_alternative<FatalAnswer>(outcome.answer);
    bool const isWanted = isShown(isFatal);
    mRequest.reset();
    if (!isWanted) {
        return;
    }
    auto const& explained = mExplainer.current();
    std::string const line = std::to_string(outcome.line);
    std::string text;
    if (auto const row = rowOf(outcome.answer, explained.has_value() ? &*explained : nullptr)) {
        appendRow(text, line, *row, mTerminal);
    } else if (auto const note = noteOf(outcome)) {
        appendNote(text, line, *note, mTerminal);
    } else {
        return;
    }
    text = withoutTrailingBlanks(text);
    for (auto const& logLine : outcome.log) {
        appendLogLine(text, logLine, mTerminal.columns);
        text += '\n';
    }
    write(text);
}

void Table::write(std::string_view text) {
    if (!mHasHeader) {
        mHasHeader = true;
        mLines.text() +=
            "   line    request  query    asked  override  answer    sensor, port and crop\n";
    }
    mLines.text() += text;
    mLines.endLine();
}

void Table::finish() {
    if (!mHasHeader) {
        mLines.text() += "Nothing to show: no line asks for a crop.\n";
        mLines.endLine();
    }
    flush();
}

}  // namespace zoomreplay
