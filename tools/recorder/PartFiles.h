// The files of a record. The newest part has the record's own name; older ones are moved aside, to
// name.1 and so on, and the oldest is dropped. A process begins with a part of its own, so that the
// record of a crash survives the restart of the crashed service.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace zoomrecorder {

/// Writes whole lines, each with a single call, so that what was written is in the file whatever
/// becomes of the process. Where it is killed while it writes, the last line may be cut off at the
/// end of a page. The first failure is reported and ends it all. One thread at a time.
class PartFiles {
 public:
    static constexpr int kParts = 4;
    static constexpr std::string_view kLineEnd = "}\n";

    explicit PartFiles(std::string path) : mPath(std::move(path)) {}
    ~PartFiles();
    PartFiles(PartFiles const&) = delete;
    PartFiles& operator=(PartFiles const&) = delete;

    /// Moves the parts that are there aside and opens a new one. Must come before any write.
    void startPart();

    /// Appends whole lines to the newest part. Nothing after a failure.
    void write(std::string_view lines) { writeAt(mSize, lines); }

    /// As write, but the text begins with what takes the place of kLineEnd in the last line.
    void rewriteEnd(std::string_view text) { writeAt(mSize - kLineEnd.size(), text); }

    /// Reports and closes: nothing is written any more. Needs no memory, the lack of which may be
    /// why.
    void giveUp(char const* why);

    bool hasFailed() const { return mHasFailed; }

    /// Bytes in the newest part.
    uint64_t size() const { return mSize; }

 private:
    std::string partName(int age) const;
    bool moveAside();
    void writeAt(uint64_t place, std::string_view text);
    ssize_t tryWrite(uint64_t place, std::string_view text) const;
    void giveUpOnError(std::string const& name);
    void close();

    std::string const mPath;
    int mFile = -1;
    uint64_t mSize = 0;
    bool mHasFailed = false;
};

}  // namespace zoomrecorder
