// Files that must not be left behind half written.
#pragma once

#include <string>

#include "File.h"

namespace zoomreplay {

/// A new file that is removed again unless it is kept, also when a signal ends the process.
class UnfinishedFile {
 public:
    /// @param name for messages.
    /// @throws UserError there is a file of that path already, or none can be made.
    UnfinishedFile(std::string path, std::string name);
    UnfinishedFile(UnfinishedFile const&) = delete;
    UnfinishedFile& operator=(UnfinishedFile const&) = delete;
    ~UnfinishedFile();

    File& file() { return mFile; }
    std::string const& path() const { return mPath; }

    /// It is whole, and stays.
    void keep();

 private:
    std::string mPath;
    File mFile;
    bool mIsKept = false;
};

/// Removes all unfinished files, for whoever ends the process without their destructors.
void removeUnfinished();

/// Lets the signals that end a process from outside remove an unfinished file first. Signals that
/// are ignored stay so. Without it, such a signal could also cut a line that is being written.
void removeUnfinishedOnSignals();

}  // namespace zoomreplay
