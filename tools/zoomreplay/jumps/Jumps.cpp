#include "Jumps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <tuple>

namespace zoomreplay {
namespace {

using Seen = JumpFinder::Seen;
using Window = JumpFinder::Window;

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
constexpr double kVisible = 0.005;  // of the picture

float tangentOf(double degrees) {
    return static_cast<float>(std::tan(degrees * kRadiansPerDegree));
}

std::optional<Window> windowOf(ReplayedCrop const& crop, Rig const& rig) {
    if (!crop.view.has_value()) {
        return std::nullopt;
    }
    auto const& area = crop.view->area;
    if (!(area[2] > 0.0 && area[3] > 0.0)) {
        return std::nullopt;
    }
    if (auto const& sight = crop.view->sight) {
        return Window{true, tangentOf(sight->across.from), tangentOf(sight->across.to),
                      tangentOf(sight->down.from), tangentOf(sight->down.to)};
    }
    auto const array = activeArrayOf(rig, crop.sensorId);
    if (!array.has_value()) {
        return std::nullopt;
    }
    auto const share = [&](size_t axis, double place) {
        return static_cast<float>((place - (*array)[axis]) / (*array)[axis + 2] - 0.5);
    };
    return Window{false, share(0, area[0]), share(0, area[0] + area[2]), share(1, area[1]),
                  share(1, area[1] + area[3])};
}

// The application's zoom is the master's view narrowed by the ratio, as far as a sensor sees.
std::optional<Window> applicationsWindow(Rig const& rig, uint32_t sensorId, float asked) {
    if (!(asked > 0.0F)) {
        return std::nullopt;
    }
    auto const sensor = rig.infos.find(sensorId);
    auto const master = rig.master.has_value() ? rig.infos.find(*rig.master) : rig.infos.end();
    if (sensor == rig.infos.end() || master == rig.infos.end()) {
        float const edge = 0.5F / std::max(asked, 1.0F);
        return Window{false, -edge, edge, -edge, edge};
    }
    auto const edgeOf = [asked](float degrees, float masterDegrees) {
        float const edge = tangentOf(masterDegrees / 2.0) / asked;
        return std::isnan(edge) ? edge : std::min(tangentOf(degrees / 2.0), edge);
    };
    float const x = edgeOf(sensor->second.degreeH, master->second.degreeH);
    float const y = edgeOf(sensor->second.degreeV, master->second.degreeV);
    bool const isUsable = x > 0.0F && y > 0.0F;
    return isUsable ? std::optional(Window{true, -x, x, -y, y}) : std::nullopt;
}

ReplayedQuery const* overriding(ReplayedRequest const& request, Stage stage) {
    auto const found = std::find_if(
        request.queries.begin(), request.queries.end(), [stage](ReplayedQuery const& query) {
            return query.stage == stage && query.state == QueryState::Overridden;
        });
    return found == request.queries.end() ? nullptr : &*found;
}

// What goes beyond the way from 0 to where the asked ratio leads.
double beyond(double change, double explained) {
    double const low = std::min(explained, 0.0);
    double const high = std::max(explained, 0.0);
    return change - std::clamp(change, low, high);
}

struct AxisJump {
    double wider;
    double shift;  // of the width before
    double degrees;

    double size() const { return std::abs(shift) + std::abs(wider) / 2.0; }
};

AxisJump axisJump(double from, double to, double newFrom, double newTo, double zoom) {
    double const width = to - from;
    double const centre = (from + to) / 2.0;
    double const change = std::log((newTo - newFrom) / width);
    double const shift = beyond((newFrom + newTo) / 2.0 - centre, centre * zoom - centre);
    return {std::expm1(beyond(change, std::log(zoom))), shift / width,
            (std::atan(centre + shift) - std::atan(centre)) / kRadiansPerDegree};
}

Jump jumpBetween(Seen const& from, Seen const& to) {
    bool const hasRatios = from.asked > 0.0F && to.asked > 0.0F;
    double const zoom = hasRatios ? static_cast<double>(from.asked) / to.asked : 1.0;
    auto const& a = from.window;
    auto const& b = to.window;
    auto const x = axisJump(a.left, a.right, b.left, b.right, zoom);
    auto const y = axisJump(a.top, a.bottom, b.top, b.bottom, zoom);

    Jump jump{};
    jump.index = to.index;
    jump.requestNo = to.requestNo;
    jump.line = to.line;
    jump.sensorId = to.sensorId;
    jump.wider = std::abs(x.wider) >= std::abs(y.wider) ? x.wider : y.wider;
    jump.shiftX = x.shift;
    jump.shiftY = y.shift;
    if (b.isAngle) {
        jump.right = x.degrees;
        jump.down = y.degrees;
    }
    jump.size = std::max(x.size(), y.size());
    return jump;
}

// A port that comes or goes beside others is compared with none of them.
bool isComparable(Seen const& from, Seen const& to) {
    auto const& a = *from.ports;
    auto const& b = *to.ports;
    bool const isSameView = (from.isAll && to.isAll) || a.empty() || b.empty() ||
                            std::find_first_of(a.begin(), a.end(), b.begin(), b.end()) != a.end();
    return from.sensorId == to.sensorId && from.window.isAngle == to.window.isAngle && isSameView;
}

// Together the two lead nearly nowhere.
bool takesBack(Jump const& first, Jump const& second) {
    double const wider = std::abs((1.0 + first.wider) * (1.0 + second.wider) - 1.0);
    double const shift =
        std::max(std::abs(first.shiftX + second.shiftX), std::abs(first.shiftY + second.shiftY));
    return shift + wider / 2.0 < std::min(first.size, second.size) / 2.0;
}

bool isWorse(Jump const& a, Jump const& b) {
    return a.size != b.size ? a.size > b.size : a.index < b.index;
}

std::string number(double value, int decimals) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

constexpr double kPercent = 100.0;

void addShift(std::string& text, std::optional<double> degrees, double share, char const* positive,
              char const* negative) {
    if (std::abs(share) < kVisible) {
        return;
    }
    text += text.empty() ? "" : ", ";
    text += degrees.has_value() ? number(std::abs(*degrees), 2) + " degrees "
                                : number(std::abs(share) * kPercent, 1) + " % of the picture ";
    text += share > 0.0 ? positive : negative;
}

}  // namespace

std::string textOf(Jump const& jump) {
    std::string what;
    if (std::abs(jump.wider) >= kVisible) {
        what = (jump.wider > 0.0 ? "wider by " : "narrower by ") +
               number(std::abs(jump.wider) * kPercent, 1) + " %";
    }
    addShift(what, jump.right, jump.shiftX, "to the right", "to the left");
    addShift(what, jump.down, jump.shiftY, "down", "up");
    std::string const whose = jump.fromSensor.has_value()
                                  ? "from sensor " + std::to_string(*jump.fromSensor) + " to " +
                                        std::to_string(jump.sensorId) + ": "
                                  : "sensor " + std::to_string(jump.sensorId) + ' ';
    return whose + what + (jump.isBack ? ", and back in the next request" : "");
}

void JumpFinder::take(ReplayedRequest const& request, Rig const& rig) {
    auto const* const p1 = overriding(request, Stage::P1);
    auto const* const p2 = overriding(request, Stage::P2);
    auto const* const crops = p1 != nullptr ? p1 : p2;
    if (request.queries.empty() || request.data == nullptr) {
        return;
    }
    ReplayedQuery const& query = crops != nullptr ? *crops : request.queries.front();
    for (auto const& [sensorId, mode] : request.data->sensorModes) {
        if (mode == NSCam::Feature::kSensorNotStreaming) {
            continue;
        }
        Seen seen{static_cast<uint32_t>(request.index),
                  request.requestNo,
                  query.line,
                  sensorId,
                  query.request.zoomRatio,
                  &*mPorts.emplace().first,
                  true,
                  sensorId == static_cast<uint32_t>(query.request.sensorId),
                  {}};
        bool isOverridden = false;
        auto const count =
            std::count_if(query.crops.begin(), query.crops.end(),
                          [id = sensorId](auto const& c) { return c.sensorId == id; });
        for (ReplayedCrop const& crop : query.crops) {
            if (crop.sensorId != sensorId || crop.kind == ReplayedCrop::Kind::Extra) {
                continue;
            }
            isOverridden = true;  // even where nobody knows what the crop shows
            auto const window = windowOf(crop, rig);
            if (!window.has_value()) {
                continue;
            }
            seen.window = *window;
            seen.ports = &*mPorts.insert(crop.ports).first;
            seen.isAll = count == 1;
            mSeen.push_back(seen);
        }
        if (isOverridden) {
            continue;
        }
        if (auto const window = applicationsWindow(rig, sensorId, query.request.zoomRatio)) {
            seen.window = *window;
            mSeen.push_back(seen);
        }
    }
}

void JumpFinder::finish(ReplaySummary const& /*replay*/) {
    auto const key = [](Seen const& seen) {
        return std::tie(seen.index, seen.sensorId, *seen.ports);
    };
    std::sort(mSeen.begin(), mSeen.end(),
              [key](Seen const& a, Seen const& b) { return key(a) < key(b); });

    auto const endOf = [this](Place const& begin) {
        return std::find_if(begin, mSeen.cend(),
                            [&begin](Seen const& seen) { return seen.index != begin->index; });
    };
    size_t step = 0;
    for (Place from = mSeen.cbegin(); from != mSeen.cend(); ++step) {
        Place const to = endOf(from);
        if (to != mSeen.cend()) {
            compare(step, from, to, endOf(to));
        }
        from = to;
    }
    for (auto const& [sensorId, pending] : mPending) {
        keep(pending.jump);
    }
    mPending.clear();
    mSeen.clear();
    std::sort(mJumps.begin(), mJumps.end(), isWorse);
}

// The worst of each sensor's ports, and of the picture where it goes over to another sensor.
void JumpFinder::compare(size_t step, Place const& from, Place const& to, Place const& end) {
    std::map<uint32_t, Jump> worst;
    std::optional<Jump> handOver;
    for (Place before = from; before != to; ++before) {
        for (Place after = to; after != end; ++after) {
            bool const isHandOver = before->isPicture && after->isPicture &&
                                    before->sensorId != after->sensorId && before->window.isAngle &&
                                    after->window.isAngle;
            if (isHandOver) {
                Jump jump = jumpBetween(*before, *after);
                jump.fromSensor = before->sensorId;
                if (!handOver.has_value() || isWorse(jump, *handOver)) {
                    handOver = jump;
                }
            } else if (isComparable(*before, *after)) {
                Jump const jump = jumpBetween(*before, *after);
                auto const [place, isNew] = worst.try_emplace(after->sensorId, jump);
                if (!isNew && isWorse(jump, place->second)) {
                    place->second = jump;
                }
            }
        }
    }
    for (auto const& [sensorId, jump] : worst) {
        if (jump.size >= kVisible) {
            found(step, jump);
        }
    }
    if (handOver.has_value() && handOver->size >= kVisible) {
        keep(*handOver);
    }
}

void JumpFinder::found(size_t step, Jump jump) {
    auto const place = mPending.find(jump.sensorId);
    if (place == mPending.end()) {
        mPending.emplace(jump.sensorId, Pending{jump, step});
        return;
    }
    Pending& pending = place->second;
    if (pending.step + 1 == step && takesBack(pending.jump, jump)) {
        pending.jump.isBack = true;
        pending.jump.size = std::max(pending.jump.size, jump.size);
        keep(pending.jump);
        mPending.erase(place);
        return;
    }
    keep(pending.jump);
    pending = {jump, step};
}

void JumpFinder::keep(Jump jump) {
    ++mCount;
    mJumps.push_back(jump);
    if (mJumps.size() >= 2 * kMostKept) {
        std::nth_element(mJumps.begin(), mJumps.begin() + kMostKept, mJumps.end(), isWorse);
        mJumps.resize(kMostKept);
    }
}

std::vector<Jump> JumpFinder::worstFirst(size_t limit) const {
    auto const count = std::min({limit, mJumps.size(), kMostKept});
    return {mJumps.begin(), mJumps.begin() + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace zoomreplay
