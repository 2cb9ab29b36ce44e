// The library under replay: its manager and a mapper of its own, each made when first called.
#pragma once

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "ISensorCropMapperFactory.h"
#include "IZoomOverrideMgr.h"
#include "Outcome.h"

namespace zoomreplay {

class Library {
 public:
    using Announce = std::function<void(Input const&)>;

    /// @param announce gets what the operations hand over, and what they bring about.
    explicit Library(Announce announce) : mAnnounce(std::move(announce)) {}

    void announce(Input const& input) const { mAnnounce(input); }

    /// Runs call(IZoomOverrideMgr&), which returns an answer. An exception becomes one, too.
    template <typename Call>
    Answer callManager(Call&& call) {
        return guard([&] {
            if (mManager == nullptr) {
                mManager = NSCam::Feature::IZoomOverrideMgr::getInstance();
                announce(ManagerInput{});
            }
            return Answer(call(*mManager));
        });
    }

    /// Runs call(ISensorCropMapper&), as callManager.
    template <typename Call>
    Answer callMapper(Call&& call) {
        return guard([&] {
            if (mMapper == nullptr) {
                mMapper =
                    NSCam::Feature::ISensorCropMapperFactory::createSensorCropMapperInstance({});
            }
            if (mMapper == nullptr) {
                throw std::runtime_error("the factory made no mapper");
            }
            return Answer(call(*mMapper));
        });
    }

 private:
    template <typename Call>
    static Answer guard(Call&& call) {
        try {
            return call();
        } catch (std::out_of_range const& e) {
            return ExceptionAnswer{"out_of_range", e.what()};
        } catch (std::logic_error const& e) {
            return ExceptionAnswer{"logic_error", e.what()};
        } catch (std::runtime_error const& e) {
            return ExceptionAnswer{"runtime_error", e.what()};
        } catch (std::bad_alloc const& e) {
            return ExceptionAnswer{"bad_alloc", e.what()};
        } catch (std::exception const& e) {
            return ExceptionAnswer{"exception", e.what()};
        } catch (...) {  // a customer's mapper may throw anything
            return ExceptionAnswer{"unknown", "no std::exception"};
        }
    }

    Announce mAnnounce;
    std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> mManager;
    std::shared_ptr<NSCam::Feature::ISensorCropMapper> mMapper;
};

}  // namespace zoomreplay
