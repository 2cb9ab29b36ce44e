// Asks as a scenario would, and answers as a report would.
#include "WhatIf.h"

#include "CustomZoomRatioOverride.h"
#include "report/PackedTable.h"
#include "report/PageText.h"
#include "report/RequestData.h"
#include "scenario/text/Line.h"
#include "scenario/text/Modes.h"
#include "scenario/text/RecordFields.h"

namespace zoomreplay {
namespace {

using scenario::Json;
using scenario::Line;

// Of a crop: where one of 3A is asked in such a mode, the process has ended.
std::string queryLine(ReplayedQuery const& query, uint32_t requestNo) {
    auto request = query.request;
    request.requestNo = requestNo;
    std::string text;
    Line line(text, query.stage == Stage::P1 ? "getP1CropSetting" : "getP2CropSetting");
    line.fields(request);
    if (query.isManual) {
        line.field("manual", true);
    }
    line.end();
    return text;
}

Json linesOf(WhatIf const& question) {
    Json lines = Json::array();
    for (std::string const& line : question.lines) {
        lines.push_back(line.substr(0, line.size() - 1));
    }
    return lines;
}

}  // namespace

bool canBeAsked(ReplayedRequest const& request) {
    return scenario::traitsOf(request.mode).source == scenario::OverrideSource::Published &&
           request.data != nullptr && !request.queries.empty();
}

WhatIf whatIf(ReplayedRequest const& request, uint32_t requestNo, float ratio) {
    WhatIf question{requestNo, {}};
    std::string publish;
    Line(publish, "publish").fields(NSCam::v3::CustomZoomRatioOverride{ratio, true}).end();
    std::string deposit;
    Line line(deposit, "setRunTimeCropNeedData");
    line.field("requestNo", requestNo).fields(*request.data).end();
    question.lines = {std::move(publish), std::move(deposit)};
    for (ReplayedQuery const& query : request.queries) {
        question.lines.push_back(queryLine(query, requestNo));
    }
    return question;
}

std::string answerOf(WhatIf const& question, ReplayedRequest const& answered) {
    PackedTable table(1);
    table.add(0, requestData(answered));
    std::string text = inScript({{"lines", linesOf(question)}});
    text.pop_back();
    text += ",\"requests\":";
    table.appendJson(text);
    return text + '}';
}

std::string fatalAnswerOf(WhatIf const& question) {
    return inScript({{"lines", linesOf(question)}, {"isFatal", true}});
}

}  // namespace zoomreplay
