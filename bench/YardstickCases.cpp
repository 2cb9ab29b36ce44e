// The correction and the conversion of crops beside the same work by libcamera's rectangles, for
// crops on which the two agree. It stands where the other cases have their floor.
#include <libcamera/geometry.h>

#include "Case.h"
#include "Rig.h"
#include "geometry/DomainTransform.h"

namespace Bench {

namespace {

MRect toMRect(libcamera::Rectangle const& rect) {
    return {rect.x, rect.y, static_cast<int32_t>(rect.width), static_cast<int32_t>(rect.height)};
}

/// The rectangle is a member that the compiler cannot see through: the work is not done in advance.
class CropWork : public Work {
 public:
    CropWork(int calls, MRect crop) : mCalls(calls), mCrop(crop) {}

    void module() override {
        for (int i = 0; i < mCalls; ++i) {
            MRect crop = mCrop;
            asm volatile("" : "+m"(crop));
            mModuleCrop = byModule(crop);
            asm volatile("" : : "m"(mModuleCrop));
        }
    }

    void floor() override {
        for (int i = 0; i < mCalls; ++i) {
            libcamera::Rectangle crop(mCrop.x, mCrop.y, static_cast<unsigned>(mCrop.w),
                                      static_cast<unsigned>(mCrop.h));
            asm volatile("" : "+m"(crop));
            mOtherCrop = byOther(crop);
            asm volatile("" : : "m"(mOtherCrop));
        }
    }

    bool agree() const override { return mModuleCrop == toMRect(mOtherCrop); }

 protected:
    virtual MRect byModule(MRect crop) = 0;
    virtual libcamera::Rectangle byOther(libcamera::Rectangle const& crop) = 0;

 private:
    int mCalls;
    MRect mCrop;
    MRect mModuleCrop;
    libcamera::Rectangle mOtherCrop;
};

class Corrected : public CropWork {
 public:
    using CropWork::CropWork;

 protected:
    /// Sensor 0 delivers 2304x1296.
    libcamera::Size const mOutput{2304, 1296};

 private:
    MRect byModule(MRect crop) final {
        mMgr->correctTgCropRegion(0, kSensorMode, false, {}, crop);
        return crop;
    }

    Rig mRig = makeRig(1, 1);
    std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> mMgr =
        startManager(NSCam::Feature::ZoomOverrideMode::InstantRequest, mRig);
};

class MovedInside final : public Corrected {
 public:
    using Corrected::Corrected;

 private:
    libcamera::Rectangle byOther(libcamera::Rectangle const& crop) override {
        return crop.enclosedIn(libcamera::Rectangle(mOutput));
    }
};

class Shrunk final : public Corrected {
 public:
    using Corrected::Corrected;

 private:
    libcamera::Rectangle byOther(libcamera::Rectangle const& crop) override {
        return mOutput.boundedToAspectRatio(crop.size())
            .centeredTo(libcamera::Rectangle(mOutput).center());
    }
};

/// Of a mode that reads the window (768, 432) 3072x1728 and delivers it at 1536x864.
class Converted final : public CropWork {
 public:
    using CropWork::CropWork;

 private:
    MRect byModule(MRect crop) override {
        return NSCam::Feature::toTgDomain(
            NSCamHW::simplifiedMatrix{
                .xScale = 0.5F, .xOffset = -384.0F, .yScale = 0.5F, .yOffset = -216.0F},
            crop);
    }

    libcamera::Rectangle byOther(libcamera::Rectangle const& crop) override {
        return crop.translatedBy({-768, -432}).scaledBy({1536, 864}, {3072, 1728});
    }
};

}  // namespace

std::vector<Case> yardstickCases() {
    return {
        makeCase<MovedInside>("libcamera/fits", kSmallCalls, MRect{384, 216, 1536, 864}),
        makeCase<MovedInside>("libcamera/moves", kSmallCalls, MRect{1200, -40, 1536, 864}),
        makeCase<Shrunk>("libcamera/shrinks", kSmallCalls, MRect{0, 0, 3000, 2000}),
        makeCase<Converted>("libcamera/converts", kSmallCalls, MRect{1280, 720, 2048, 1152}),
    };
}

}  // namespace Bench
