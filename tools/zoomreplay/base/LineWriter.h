// Writes a file line by line, many lines at a time.
#pragma once

#include <cstddef>
#include <string>

#include "base/File.h"

namespace zoomreplay {

/// Holds lines back until there are many, or whoever writes them wants them out. Only whole lines
/// get into the file.
class LineWriter {
 public:
    /// @param file outlives the writer.
    explicit LineWriter(File& file);
    LineWriter(LineWriter const&) = delete;
    LineWriter& operator=(LineWriter const&) = delete;
    ~LineWriter();

    /// Where lines are appended, each with its line end.
    std::string& text() { return mText; }

    /// What has been appended is whole. @throws UserError
    void endLine();

    /// Writes all that is held back. What cannot be written is not tried again. @throws UserError
    void flush();

    /// The same for the handler of a signal, as far as it is possible.
    void flushInCrash() const noexcept;

 private:
    File& mFile;
    size_t mMost;  // to be held back
    std::string mText;
    size_t mWhole = 0;  // of mText
};

/// Lets the signals that a crash raises write first what the writer that was made last holds back,
/// and remove what is unfinished.
void saveLinesOnCrash();

}  // namespace zoomreplay
