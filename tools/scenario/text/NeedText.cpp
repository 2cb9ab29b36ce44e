#include "scenario/text/NeedText.h"

#include "scenario/text/JsonText.h"

namespace scenario {

using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

namespace {

void appendHeader(std::string& out, ZoomOverrideNeedHeader const& header) {
    out += ", \"need\": {\"overrideValid\": ";
    appendJson(out, header.overrideValid);
    appendField(out, "requestNo", header.requestNo);
    appendField(out, "zoomRatio", header.zoomRatio);
    appendField(out, "mode", static_cast<int32_t>(header.mode));
}

}  // namespace

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

}  // namespace scenario
