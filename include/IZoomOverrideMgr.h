// The zoom override manager as a camera pipeline sees it: which crops do the stages of a request
// apply when the application's zoom is overridden?
//
// Order of calls: getInstance, initialize, the config operations; then for each request
// setRunTimeCropNeedData, storeOverrideSetting where the mode has one, the crop queries and at last
// onRequestDone.
//
// Threads: every operation may be called from any thread and is serialised by one lock inside the
// manager, except the three call-backs getHistoryCropNeedData, isPortExist and correctTgCropRegion.
// Strategies call those while the lock is held, so they take none; a caller outside a strategy must
// keep other calls out meanwhile.
//
// Errors: what the pipeline must never do (the single operations say what) ends the process through
// __android_log_assert after a log line. A table that lacks a sensor or stream which the override
// names raises std::out_of_range from the query; the manager stays usable.
#pragma once

#include "ZoomOverrideTypes.h"

namespace NSCam {
class IMetadata;
}

namespace NSCam::Feature {

/// The facade of the module. The order of the virtual operations is part of the binary interface.
class ZOOMOVERRIDE_API IZoomOverrideMgr {
 public:
    /// The one manager of the process, created on first demand; debug properties are read then and
    /// never again. Callers share ownership. Let go at the end of the process; whoever asks after
    /// that gets a manager of its own. The process ends when none can be made. Any thread.
    static std::shared_ptr<IZoomOverrideMgr> getInstance();

    virtual ~IZoomOverrideMgr() = default;

    /// Sets which port the bundle port of each sensor follows, replacing earlier choices.
    /// Ignored outside ExternalAPI mode. Always true.
    virtual bool configFspInfo(ZoomOverrideFspInfoConfig const& config) = 0;

    /// Sets the sensors of the camera and their optics, replacing earlier ones; the infos are
    /// shared, not copied. Ignored outside ExternalAPI mode. Always true.
    virtual bool configSensorInfo(ZoomOverrideSensorInfoConfig const& config) = 0;

    /// Fills the P1 crops of a request, TG domain, per sensor and port.
    ///
    /// The first answer for a request number, true or false, is kept until onRequestDone and given
    /// to every later P1 query of that number, whatever sensor it names: need becomes a copy of it,
    /// its table included. In a first answer, entries of need.tgCrops that the strategy does not
    /// write stay as the caller gave them.
    /// @return whether the crops are to be applied; need's header is filled in either case. False
    ///     with need untouched: the closeP1Override property is set, or an external-API customer
    ///     has published nothing. False with overrideValid and mode alone written: there is no
    ///     strategy.
    /// @pre The request was deposited with setRunTimeCropNeedData; if the strategy needs the record
    ///     and it is missing, the process ends.
    /// @throws std::out_of_range the override names a sensor or stream that the record lacks.
    virtual bool getP1CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP1Need& need) = 0;

    /// Fills the P2 crops of a request, per sensor. Answers are not kept.
    ///
    /// @param manual forces the override whatever the ratios, as long as it is switched on.
    /// @return as for getP1CropSetting, with the closeP2Override property.
    /// @pre As for getP1CropSetting; and the mode is not InstantRequest, where the query ends the
    ///     process unless the closeP2Override property is set.
    /// @throws std::out_of_range as for getP1CropSetting.
    virtual bool getP2CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP2Need& need,
                                  bool manual) = 0;

    /// No strategy supports 3A: while one is in place the query ends the process. Without one:
    /// false.
    virtual bool get3ACropSetting(ZoomOverrideRequest const& request, ZoomOverride3ANeed& need) = 0;

    /// Takes the override of InstantRequest mode out of a request's metadata, which must carry a
    /// zoom ratio (the process ends otherwise) and may carry custom stream crops, active array.
    ///
    /// @param metadata read during the call only; not null in InstantRequest mode.
    /// @param streamIdMap the customer's stream numbers to pipeline stream ids.
    /// @return true, also when the mode is another one and the call was ignored.
    virtual bool storeOverrideSetting(
        IMetadata const* metadata, std::unordered_map<uint32_t, uint64_t> const& streamIdMap) = 0;

    /// Takes the override of ByRequest mode. Default: keeps setting in place of the earlier one.
    /// Repeating: moves the kept setting on to requestNo and ignores setting; the process ends when
    /// none is kept.
    ///
    /// @param setting shared with the caller, who sees the new number too; may be null.
    /// @return true, also when the mode is another one and the call was ignored.
    virtual bool storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                                      std::shared_ptr<ZoomOverrideSetting> setting) = 0;

    /// Forgets what is kept of a request. Any number will do. Always true.
    virtual bool onRequestDone(uint32_t requestNo) = 0;

    /// The mode of the strategy in place; None without one, also after initialize with an unknown
    /// value.
    virtual ZoomOverrideMode getZoomOverrideMode() = 0;

    /// Drops everything gathered so far, configurations and histories included, and starts afresh
    /// with the strategy of mode; an unknown mode leaves the manager without one. Always true. What
    /// a customer's mapper throws while it is made passes, and leaves the manager without one, too.
    virtual bool initialize(ZoomOverrideMode mode) = 0;

    /// Sets the P1 ports of each sensor, replacing earlier ones. Every mode. Always true.
    virtual bool configSensorBehaviorInfo(ZoomOverrideSensorBehaviorInfoConfig const& config) = 0;

    /// Deposits what is known of a request, before its crops are asked for. Default: keeps a copy
    /// of data, which is left intact. Repeating: shares the record of the latest Default deposit
    /// and ignores data; the process ends when there is none. Always true.
    virtual bool setRunTimeCropNeedData(uint32_t requestNo, OverrideNotice notice,
                                        RunTimeCropNeedData&& data) = 0;

    /// The record deposited for a request; never null, and the caller may keep it. The process ends
    /// when there is none. Takes no lock.
    virtual std::shared_ptr<RunTimeCropNeedData> getHistoryCropNeedData(int32_t requestNo) = 0;

    /// Whether the sensor has the port. Only the low 8 bits of port count. Takes no lock.
    virtual bool isPortExist(int32_t sensorId, int32_t port) = 0;

    /// Makes a crop fit the output of a sensor mode, in place, TG domain.
    ///
    /// A crop larger than the output shrinks to it, aspect ratio kept, and is centred. Then, if
    /// checkMinSize, a crop smaller than minSize grows to it, aspect ratio kept, and is centred on
    /// the output. At last the crop is moved inside the output; one that is still too large ends
    /// with a negative corner. Takes no lock.
    /// @return always true; the process ends when the platform knows no size for the mode.
    virtual bool correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize,
                                     MSize minSize, MRect& crop) = 0;
};

}  // namespace NSCam::Feature
