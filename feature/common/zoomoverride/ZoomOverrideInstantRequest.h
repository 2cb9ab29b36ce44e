// Instant-request mode: the override arrives in the metadata of each request.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "QueryContext.h"
#include "ZoomOverrideBase.h"

namespace NSCam::Feature {

/// Keeps the zoom ratio and the custom stream crops of the latest metadata and applies them to
/// every P1 query until the next metadata comes.
class ZoomOverrideInstantRequest final : public ZoomOverrideBase {
 public:
    ZoomOverrideInstantRequest(std::shared_ptr<IZoomOverrideMgr> const& mgr, int32_t logLevel);

    bool getP1CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP1Need& need) override;

    using ZoomOverrideBase::storeOverrideSetting;

    /// @return whether the metadata carried a usable list of custom stream crops.
    bool storeOverrideSetting(IMetadata const* metadata,
                              std::unordered_map<uint32_t, uint64_t> const& streamIdMap) override;

    bool onRequestDone(uint32_t requestNo) override;
    ZoomOverrideMode getZoomOverrideMode() override;

 private:
    /// Makes the TG crop of one custom crop. Streams of a sensor that does not stream get none.
    void cropStream(QueryContext const& context, int64_t streamId, MRect const& activeCrop,
                    ZoomOverrideP1Need& need) const;

    /// Gives internal streams the crop of the stream that they must follow.
    void cropInternalStreams(RunTimeCropNeedData const& history, ZoomOverrideP1Need& need) const;

    std::string mName = "InstantRequest";
    std::weak_ptr<IZoomOverrideMgr> mMgr;
    std::unordered_map<int64_t, MRect> mCustomCrops;  // by stream id, active array
    float mLatestZoomRatio = 0.0F;
    int32_t mLogLevel;
    bool mCustomCropValid = true;
};

}  // namespace NSCam::Feature
