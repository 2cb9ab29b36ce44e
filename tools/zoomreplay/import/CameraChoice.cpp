// Chooses the cameras that a rig can be made of, and its master.
#include "CameraChoice.h"

#include <algorithm>

#include "ActiveArray.h"
#include "base/Messages.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

// A logical camera has no sensor of its own, unless it is one of its own physical cameras.
bool isSensor(CameraStatics const& camera) {
    auto const& ids = camera.physicalIds;
    return !isLogical(camera) || std::find(ids.begin(), ids.end(), camera.id) != ids.end();
}

CameraStatics const* findCamera(Cameras const& cameras, std::string const& id) {
    auto const found = std::find_if(cameras.begin(), cameras.end(),
                                    [&](auto const* camera) { return camera->id == id; });
    return found == cameras.end() ? nullptr : *found;
}

std::string join(std::vector<std::string> const& parts, char const* separator) {
    std::string text;
    for (auto const& part : parts) {
        text.append(text.empty() ? "" : separator).append(part);
    }
    return text;
}

std::string idsOf(Cameras const& cameras) {
    std::vector<std::string> ids;
    for (auto const* camera : cameras) {
        ids.push_back(camera->id);
    }
    return join(ids, ", ");
}

std::string damageText(CameraStatics const& camera, std::string_view name) {
    return std::string(name) + " cannot be read (" + camera.unreadable.at(name) + ")";
}

// What is wider than half of all around, or nothing, is no view; both can be what is left of a
// wrong size.
bool isAngleOfView(float degrees) {
    return degrees > 0.0F && degrees < 180.0F;
}

/// Why a camera cannot be a sensor of the rig; empty when it can.
std::vector<std::string> defectsOf(CameraStatics const& camera, AngleSource source) {
    if (!camera.hasTags) {
        return {"has no characteristics"};
    }
    std::vector<std::string> defects;
    auto const lacks = [&](std::string_view name, bool isThere) {
        if (camera.unreadable.contains(name)) {
            defects.push_back(damageText(camera, name));
        } else if (!isThere) {
            defects.push_back("no " + std::string(name));
        }
        return !isThere || camera.unreadable.contains(name);
    };

    if (!lacks(tag::kActiveArray, camera.activeArray.has_value()) &&
        !isArray(*camera.activeArray)) {
        defects.push_back(std::string(tag::kActiveArray) + " is no area");
    }
    if (!lacks(tag::kPhysicalSize, camera.physicalSize.has_value()) &&
        !((*camera.physicalSize)[0] > 0.0F && (*camera.physicalSize)[1] > 0.0F)) {
        defects.push_back(std::string(tag::kPhysicalSize) + " is no area");
    }
    if (source == AngleSource::Intrinsics &&
        !lacks(tag::kIntrinsics, camera.intrinsics.has_value()) &&
        !((*camera.intrinsics)[0] > 0.0F && (*camera.intrinsics)[1] > 0.0F)) {
        defects.push_back(std::string(tag::kIntrinsics) + " has no focal lengths");
    }
    if (lacks(tag::kFocalLengths, !camera.focalLengths.empty())) {
        return defects;
    }
    if (camera.focalLengths.size() > 1) {
        defects.emplace_back("several focal lengths, so that its angles of view are not known");
    } else if (!(camera.focalLengths.front() > 0.0F)) {
        defects.push_back(std::string(tag::kFocalLengths) + " is no length");
    }
    if (defects.empty()) {
        auto const [across, down] = anglesOf(camera, source);
        if (!isAngleOfView(across) || !isAngleOfView(down)) {
            defects.push_back("angles of view of " + scenario::jsonText(across) + " x " +
                              scenario::jsonText(down) +
                              " degrees; its physical size or focal length is wrong");
        }
    }
    return defects;
}

/// What makes a camera less than the phone means it to be.
std::vector<std::string> flawsOf(CameraStatics const& camera, Cameras const& all) {
    std::vector<std::string> flaws;
    for (auto const& id : camera.physicalIds) {
        if (findCamera(all, id) == nullptr) {
            flaws.push_back("no characteristics of its physical camera " + id);
        }
    }
    for (auto const& [name, damage] : camera.unreadable) {
        flaws.push_back(damageText(camera, name));
    }
    return flaws;
}

void addOnce(Cameras& cameras, CameraStatics const* camera) {
    if (camera != nullptr && findCamera(cameras, camera->id) == nullptr) {
        cameras.push_back(camera);
    }
}

Cameras choose(Cameras const& all, std::vector<std::string> const& ids) {
    if (ids.empty()) {
        return all;
    }
    Cameras chosen;
    for (auto const& id : ids) {
        auto const* const camera = findCamera(all, id);
        if (camera == nullptr) {
            throw UserError("has no camera " + id + ", only " + idsOf(all));
        }
        addOnce(chosen, camera);
        for (auto const& physicalId : camera->physicalIds) {
            addOnce(chosen, findCamera(all, physicalId));
        }
    }
    return chosen;
}

bool facesBack(CameraStatics const* camera) {
    return camera->facing == Facing::Back;
}

/// The first camera that is both, or else the first that is wanted; null without any.
template <typename IsWanted>
CameraStatics const* firstFacingBack(Cameras const& cameras, IsWanted isWanted) {
    auto const isBoth = [&](auto const* camera) { return isWanted(*camera) && facesBack(camera); };
    auto found = std::find_if(cameras.begin(), cameras.end(), isBoth);
    if (found == cameras.end()) {
        found = std::find_if(cameras.begin(), cameras.end(),
                             [&](auto const* camera) { return isWanted(*camera); });
    }
    return found == cameras.end() ? nullptr : *found;
}

[[noreturn]] void refuseRest(CameraStock const& stock, std::string const& why) {
    throw UserError(why +
                    "; the others are not the whole phone. Name what the rig shall have with "
                    "--cameras, of " +
                    idsOf(stock.usable));
}

Cameras physicalsOf(CameraStock const& stock, CameraStatics const& logical) {
    Cameras physicals;
    for (auto const& id : logical.physicalIds) {
        addOnce(physicals, findCamera(stock.usable, id));
    }
    return physicals;
}

void demandChosen(CameraStock const& stock) {
    for (auto const* camera : stock.chosen) {
        if (isSensor(*camera) && findCamera(stock.usable, camera->id) == nullptr) {
            throw UserError("camera " + camera->id +
                            " was chosen, but cannot be used, as told above");
        }
    }
}

// All of a logical camera, or nothing.
void demandWhole(CameraStock const& stock, CameraStatics const& logical) {
    bool const isWhole =
        !logical.unreadable.contains(tag::kPhysicalIds) &&
        std::all_of(logical.physicalIds.begin(), logical.physicalIds.end(),
                    [&](auto const& id) { return findCamera(stock.usable, id) != nullptr; });
    if (!isWhole) {
        refuseRest(stock, "camera " + logical.id +
                              " is made of several, which cannot all be used, as told above");
    }
}

CameraStatics const& mainSensorAlone(CameraStock const& stock) {
    for (auto const* camera : stock.all) {
        if (!camera->hasTags) {
            refuseRest(stock, "camera " + camera->id + " is there, but not described");
        }
    }
    auto const isAny = [](auto const&) { return true; };
    auto const* const camera = firstFacingBack(stock.usable, isAny);
    bool const isBackLost = std::any_of(stock.all.begin(), stock.all.end(), facesBack);
    if (isBackLost && !facesBack(camera)) {
        refuseRest(stock, "no camera that faces back can be used, as told above");
    }
    return *camera;
}

// A logical camera describes itself with the optics of its main sensor.
CameraStatics const* mainSensor(CameraStatics const& logical, Cameras const& physicals) {
    auto const found = std::find_if(physicals.begin(), physicals.end(), [&](auto const* camera) {
        return camera->focalLengths == logical.focalLengths &&
               camera->physicalSize == logical.physicalSize;
    });
    if (found == physicals.end()) {
        throw UserError("camera " + logical.id + ": none of its physical cameras (" +
                        idsOf(physicals) +
                        ") has its focal length and physical size; choose the main one with "
                        "--master");
    }
    return *found;
}

}  // namespace

CameraStock sortCameras(std::vector<CameraStatics> const& cameras,
                        std::vector<std::string> const& chosenIds, AngleSource source) {
    CameraStock stock;
    for (auto const& camera : cameras) {
        stock.all.push_back(&camera);
    }
    stock.chosen = choose(stock.all, chosenIds);
    for (auto const* camera : stock.chosen) {
        bool const isAlone = isSensor(*camera);
        auto complaints = isAlone ? defectsOf(*camera, source) : std::vector<std::string>{};
        bool const isLeftOut = !complaints.empty();
        if (isAlone && !isLeftOut) {
            stock.usable.push_back(camera);
            complaints = doubtsAbout(*camera);
        }
        for (auto const& flaw : flawsOf(*camera, stock.all)) {
            if (std::find(complaints.begin(), complaints.end(), flaw) == complaints.end()) {
                complaints.push_back(flaw);
            }
        }
        if (!complaints.empty()) {
            stock.complaints.push_back("camera " + camera->id +
                                       (isLeftOut ? " is left out: " : ": ") +
                                       join(complaints, "; "));
        }
    }
    return stock;
}

SensorGroup groupSensors(CameraStock const& stock, bool areAllWanted,
                         std::optional<std::string> const& masterId) {
    auto const* const logical = firstFacingBack(
        stock.chosen, [](CameraStatics const& camera) { return isLogical(camera); });
    if (logical != nullptr) {
        demandWhole(stock, *logical);
    }
    SensorGroup group;
    if (areAllWanted) {
        demandChosen(stock);
        group.sensors = stock.usable;
    } else if (logical != nullptr) {
        group.sensors = physicalsOf(stock, *logical);
    } else {
        group.sensors = {&mainSensorAlone(stock)};
    }
    group.cameraId = logical != nullptr ? logical->id : group.sensors.front()->id;
    group.masterReason =
        facesBack(group.sensors.front()) ? "the first camera that faces back" : "the first camera";

    auto const* master = group.sensors.front();
    if (masterId.has_value()) {
        master = findCamera(group.sensors, *masterId);
        if (master == nullptr) {
            throw UserError("camera " + *masterId + " cannot be the master, only one of " +
                            idsOf(group.sensors));
        }
        group.masterReason = "chosen";
    } else if (logical != nullptr) {
        master = mainSensor(*logical, physicalsOf(stock, *logical));
        group.masterReason =
            "the first with the focal length and physical size of camera " + logical->id;
    } else if (areAllWanted) {
        group.masterReason = "the first that was chosen";
    }
    std::stable_partition(group.sensors.begin(), group.sensors.end(),
                          [&](auto const* camera) { return camera == master; });
    return group;
}

}  // namespace zoomreplay
