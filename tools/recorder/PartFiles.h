// The files of a record. The newest part has the record's own name; older ones are moved aside, to
// name.1 and so on, and the oldest is dropped. A process begins with a part of its own, so that the
// record of a crash survives the restart of the crashed service.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zoomrecorder {

/// Writes whole lines, each with a single call, so that all of them are in the file whatever
/// becomes of the process. The first failure is reported and ends it all. One thread at a time.
class PartFiles {
 public:
    static constexpr int kParts = 4;

    explicit PartFiles(std::string path) : mPath(std::move(path)) {}
    ~PartFiles();
    PartFiles(PartFiles const&) = delete;
    PartFiles& operator=(PartFiles const&) = delete;

    /// Moves the parts that are there aside and opens a new one. Must come before any write.
    void startPart();

    /// Appends whole lines to the newest part. Nothing after a failure.
    void write(std::string_view lines);

    /// Reports and closes: nothing is written any more.
    void giveUp(std::string const& why);

    bool hasFailed() const { return mHasFailed; }

    /// Bytes in the newest part.
    uint64_t size() const { return mSize; }

 private:
    std::string partName(int age) const;
    bool moveAside();
    void giveUpOnError(std::string const& name);
    void close();

    std::string const mPath;
    int mFile = -1;
    uint64_t mSize = 0;
    bool mHasFailed = false;
};

}  // namespace zoomrecorder
