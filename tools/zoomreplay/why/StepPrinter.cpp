#include "StepPrinter.h"

#include <array>
#include <cstdio>

#include "results/CellText.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam;
using namespace NSCam::Feature;

constexpr size_t kRectWidth = 32;  // of rectangles beside their steps

std::string numberText(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.10g", number);
    return text.data();
}

std::string rectText(std::array<double, 4> const& rect) {
    return '(' + numberText(rect[0]) + ", " + numberText(rect[1]) + ")/" + numberText(rect[2]) +
           'x' + numberText(rect[3]);
}

CropPath const* find(std::map<uint32_t, CropPath> const& paths, uint32_t sensorId) {
    auto const path = paths.find(sensorId);
    return path == paths.end() ? nullptr : &path->second;
}

}  // namespace

void StepPrinter::consume(Outcome const& outcome) {
    if (auto const* p1 = std::get_if<P1Answer>(&outcome.answer)) {
        show(outcome, "P1", p1->request, p1->result, p1->need);
    } else if (auto const* p2 = std::get_if<P2Answer>(&outcome.answer)) {
        show(outcome, "P2", p2->request, p2->result, p2->need);
    }
}

template <typename Need>
void StepPrinter::show(Outcome const& outcome, char const* stage,
                       ZoomOverrideRequest const& request, bool isOverridden, Need const& need) {
    if (!mChoice.requests.contains(request.requestNo)) {
        return;
    }
    std::string out = mHasRequest ? "\n" : "";
    mHasRequest = true;
    out += "Request " + std::to_string(request.requestNo) + ", " + stage + " of line " +
           std::to_string(outcome.line) + " for " + ratioText(request.zoomRatio) +
           "x: " + (isOverridden ? "overridden" : "not overridden") + '\n';
    out += "  ";
    appendFolded(out, textOf(mExplainer.current()->reason), 2, 2, mTerminal.columns);
    out += '\n';
    if (isOverridden) {
        mIsOverridden = true;
        addCrops(out, need);
    }
    mFile.write(out);
}

void StepPrinter::addCrops(std::string& out, ZoomOverrideP1Need const& need) {
    auto const& paths = mExplainer.current()->ports;
    for (auto const* sensor : inKeyOrder(need.tgCrops)) {
        auto const ports = paths.find(sensor->first);
        for (auto const& [port, crop] : sensor->second) {
            if (!isAskedFor(sensor->first) || mChoice.port.value_or(port) != port) {
                continue;
            }
            std::string whose = "sensor " + std::to_string(sensor->first) + ", port ";
            appendKey(whose, port);
            bool const isKnown = ports != paths.end() && ports->second.count(port) > 0;
            addCrop(out, whose, crop, isKnown ? &ports->second.at(port) : nullptr);
        }
    }
}

void StepPrinter::addCrops(std::string& out, ZoomOverrideP2Need const& need) {
    if (!mChoice.port.has_value()) {
        addSensorCrops(out, "crop", need.streamCrops, mExplainer.current()->streams);
        addSensorCrops(out, "second crop", need.extraTgCrops, mExplainer.current()->extras);
    }
}

void StepPrinter::addSensorCrops(std::string& out, char const* which,
                                 std::unordered_map<uint32_t, MRect> const& crops,
                                 std::map<uint32_t, CropPath> const& paths) {
    for (auto const* entry : inKeyOrder(crops)) {
        if (isAskedFor(entry->first)) {
            addCrop(out, "sensor " + std::to_string(entry->first) + ", " + which, entry->second,
                    find(paths, entry->first));
        }
    }
}

void StepPrinter::addCrop(std::string& out, std::string const& whose, MRect const& crop,
                          CropPath const* path) {
    mHasCrop = true;
    out += "  " + whose + ": " + rectText(crop) + '\n';
    if (mExplainer.current()->keptSince.has_value()) {
        return;  // its steps are those of the first answer
    }
    if (path != nullptr) {
        for (CropStep const& step : path->steps) {
            bool const isActive = step.domain == Domain::ActiveArray;
            out += "    " + padRight(rectText(step.rect) + ' ', kRectWidth) +
                   padRight(isActive ? "active" : "TG", 8);
            size_t const column = 4 + kRectWidth + 8;
            appendFolded(out, textOf(step), column, column, mTerminal.columns);
            out += '\n';
        }
    }
    if (path == nullptr || path->crop != crop) {
        ++mUnexplained;
        out += "    these steps do not end at the library's answer\n";
    }
}

bool StepPrinter::isAskedFor(uint32_t sensorId) const {
    return mChoice.sensorId.value_or(sensorId) == sensorId;
}

void StepPrinter::finish() {
    auto const [first, last] = mChoice.requests;
    std::string const requests =
        "request " + std::to_string(first) + (last == first ? "" : '-' + std::to_string(last));
    if (!mHasRequest) {
        throw UserError(requests + ": no line asks for its crops");
    }
    bool const isChosen = mChoice.sensorId.has_value() || mChoice.port.has_value();
    if (mIsOverridden && isChosen && !mHasCrop) {
        throw UserError(requests + ": has no crop of that sensor or port");
    }
}

}  // namespace zoomreplay
