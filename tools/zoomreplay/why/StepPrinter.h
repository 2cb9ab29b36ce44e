// Prints the steps that made the crops of some requests.
#pragma once

#include <cstdint>
#include <optional>

#include "base/File.h"
#include "base/Terminal.h"
#include "recording/RequestRange.h"
#include "steps/Explainer.h"

namespace zoomreplay {

/// Which crops are asked about; all of them where nothing is said.
struct CropChoice {
    RequestRange requests;
    std::optional<uint32_t> sensorId;
    std::optional<uint16_t> port;
};

class StepPrinter : public OutcomeConsumer {
 public:
    /// @param explainer gets each outcome first; like file, it lives longer
    StepPrinter(File& file, Explainer const& explainer, CropChoice const& choice)
        : mFile(file), mTerminal(Terminal::of(file)), mExplainer(explainer), mChoice(choice) {}

    void consume(Outcome const& outcome) override;

    /// @throws UserError no line asks for what is to be explained
    void finish() override;

    /// Crops whose steps end elsewhere.
    uint64_t unexplained() const { return mUnexplained; }

 private:
    template <typename Need>
    void show(Outcome const& outcome, char const* stage,
              NSCam::Feature::ZoomOverrideRequest const& request, bool isOverridden,
              Need const& need);
    void addCrops(std::string& out, NSCam::Feature::ZoomOverrideP1Need const& need);
    void addCrops(std::string& out, NSCam::Feature::ZoomOverrideP2Need const& need);
    void addSensorCrops(std::string& out, char const* which,
                        std::unordered_map<uint32_t, NSCam::MRect> const& crops,
                        std::map<uint32_t, CropPath> const& paths);
    void addCrop(std::string& out, std::string const& whose, NSCam::MRect const& crop,
                 CropPath const* path);
    bool isAskedFor(uint32_t sensorId) const;

    File& mFile;
    Terminal mTerminal;
    Explainer const& mExplainer;
    CropChoice mChoice;
    bool mHasRequest = false;
    bool mIsOverridden = false;
    bool mHasCrop = false;
    uint64_t mUnexplained = 0;
};

}  // namespace zoomreplay
