#include "CameraChoice.h"

#include <algorithm>

#include "ActiveArray.h"
#include "base/Messages.h"

namespace zoomreplay {
namespace {

// A logical camera has no sensor of its own, unless it is one of its own physical cameras.
bool isSensor(CameraStatics const& camera) {
    auto const& ids = camera.physicalIds;
    return ids.empty() || std::find(ids.begin(), ids.end(), camera.id) != ids.end();
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

/// Why a camera cannot be a sensor of the rig; empty when it can.
std::vector<std::string> defectsOf(CameraStatics const& camera) {
    std::vector<std::string> defects;
    auto const lacks = [&](std::string_view name, bool isThere) {
        if (camera.unreadable.contains(name)) {
            defects.push_back(std::string(name) + " cannot be read");
        } else if (!isThere) {
            defects.push_back("no " + std::string(name));
        }
        return !isThere || camera.unreadable.contains(name);
    };

    lacks(tag::kPhysicalIds, true);
    if (!lacks(tag::kActiveArray, camera.activeArray.has_value()) &&
        !isArray(*camera.activeArray)) {
        defects.push_back(std::string(tag::kActiveArray) + " is no area");
    }
    if (!lacks(tag::kPhysicalSize, camera.physicalSize.has_value()) &&
        !((*camera.physicalSize)[0] > 0.0F && (*camera.physicalSize)[1] > 0.0F)) {
        defects.push_back(std::string(tag::kPhysicalSize) + " is no area");
    }
    if (lacks(tag::kFocalLengths, !camera.focalLengths.empty())) {
        return defects;
    }
    if (camera.focalLengths.size() > 1) {
        defects.push_back("several focal lengths, so that its angles of view are not known");
    } else if (!(camera.focalLengths.front() > 0.0F)) {
        defects.push_back(std::string(tag::kFocalLengths) + " is no length");
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
    if (camera.unreadable.contains(tag::kZoomRatioRange)) {
        flaws.push_back(std::string(tag::kZoomRatioRange) + " cannot be read");
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

Cameras usablePhysicals(CameraStock const& stock, CameraStatics const& logical) {
    Cameras physicals;
    for (auto const& id : logical.physicalIds) {
        addOnce(physicals, findCamera(stock.usable, id));
    }
    return physicals;
}

CameraStatics const* firstLogical(CameraStock const& stock) {
    auto const found =
        std::find_if(stock.chosen.begin(), stock.chosen.end(),
                     [&](auto const* camera) { return !usablePhysicals(stock, *camera).empty(); });
    return found == stock.chosen.end() ? nullptr : *found;
}

// A logical camera describes itself with the optics of its main sensor.
CameraStatics const* mainSensor(CameraStatics const& logical, Cameras const& physicals) {
    auto const found = std::find_if(physicals.begin(), physicals.end(), [&](auto const* camera) {
        return camera->focalLengths == logical.focalLengths &&
               camera->physicalSize == logical.physicalSize;
    });
    if (found == physicals.end()) {
        throw UserError("camera " + logical.id +
                        ": none of its physical cameras that can be used (" + idsOf(physicals) +
                        ") has its focal length and physical size; choose the main one with "
                        "--master");
    }
    return *found;
}

}  // namespace

CameraStock sortCameras(std::vector<CameraStatics> const& cameras,
                        std::vector<std::string> const& chosenIds) {
    CameraStock stock;
    for (auto const& camera : cameras) {
        stock.all.push_back(&camera);
    }
    stock.chosen = choose(stock.all, chosenIds);
    for (auto const* camera : stock.chosen) {
        auto complaints = isSensor(*camera) ? defectsOf(*camera) : std::vector<std::string>{};
        bool const isUsable = complaints.empty();
        if (isSensor(*camera) && isUsable) {
            stock.usable.push_back(camera);
        }
        auto const flaws = flawsOf(*camera, stock.all);
        complaints.insert(complaints.end(), flaws.begin(), flaws.end());
        if (!complaints.empty()) {
            stock.complaints.push_back("camera " + camera->id +
                                       (isUsable ? ": " : " is left out: ") +
                                       join(complaints, "; "));
        }
    }
    return stock;
}

SensorGroup groupSensors(CameraStock const& stock, bool areAllWanted,
                         std::optional<std::string> const& masterId) {
    auto const* const logical = firstLogical(stock);
    SensorGroup group{{stock.usable.front()}, "the first camera"};
    if (areAllWanted) {
        group.sensors = stock.usable;
    } else if (logical != nullptr) {
        group.sensors = usablePhysicals(stock, *logical);
    }

    auto const* master = group.sensors.front();
    if (masterId.has_value()) {
        master = findCamera(group.sensors, *masterId);
        if (master == nullptr) {
            throw UserError("camera " + *masterId + " cannot be the master, only one of " +
                            idsOf(group.sensors));
        }
        group.masterReason = "chosen";
    } else if (logical != nullptr) {
        master = mainSensor(*logical, usablePhysicals(stock, *logical));
        group.masterReason =
            "the first with the focal length and physical size of camera " + logical->id;
    }
    std::stable_partition(group.sensors.begin(), group.sensors.end(),
                          [&](auto const* camera) { return camera == master; });
    return group;
}

}  // namespace zoomreplay
