// Makes a scenario of what an application asked for.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "RigFile.h"
#include "WatchLog.h"
#include "base/File.h"

namespace zoomreplay {

/// Writes one request for each frame, asking for the frame's zoom ratio, and what the phone
/// answered as observed lines. The overrides are made of the application's own zoom, so that
/// somebody can put others in their place: in InstantRequest and ExternalAPI mode that of the frame
/// before, as if the override followed the application, in ByRequest mode that of the frame to
/// come, since settings count for the requests before theirs.
class Session : public WatchFollower {
 public:
    /// @param scenario and rig outlive the session.
    /// @param mode any but None.
    Session(File& scenario, PhoneRig const& rig, NSCam::Feature::ZoomOverrideMode mode);

    /// Writes the request, in ByRequest mode the one before it.
    void request(WatchedFrame const& frame) override;

    /// Belongs to the latest request that is not younger; without one it is dropped.
    void observe(WatchedFrame const& frame) override;

    void finish() override;

    /// Writes out what there is.
    void flush();

    /// What is odd about the requests, taken together; empty when nothing is.
    std::string complaint() const;

 private:
    struct Request {
        uint32_t number = 0;
        WatchedFrame frame;
        float zoomRatio = 1.0F;  ///< asked for
    };

    Request makeRequest(WatchedFrame const& frame);
    void write(Request const& request, Request const& source);
    void writeSetUp();
    void writePorts();
    void writePublish(Request const& source);
    void writeSetting(Request const& source);
    void writeMetadata(Request const& source);
    void writeDeposit();
    void writeQuery(char const* op, float zoomRatio);

    /// Whether a request waits for the one after it.
    bool isWrittenLate() const;

    /// Adds a line; write adds its fields.
    template <typename Write>
    void add(char const* op, Write write);

    File& mScenario;
    PhoneRig const& mRig;
    NSCam::Feature::ZoomOverrideMode mMode;
    std::optional<Request> mLatest;  // not written yet where requests are written late
    std::deque<Request> mRecent;     // what results may still come for
    uint32_t mNumber = 0;            // of the request in hand, the last one written
    uint64_t mTime = 0;              // of the lines in hand
    size_t mOutside = 0;             // regions that are not in the master's array
    uint64_t mFirstOutside = 0;      // frame number
    std::string mHeld;               // observed lines of a request that is not written yet
    std::string mOut;
};

}  // namespace zoomreplay
