// Reads a JSON Lines file line by line, in memory that does not grow with the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/File.h"

namespace zoomreplay {

class LineReader {
 public:
    /// No real line comes near it; it bounds the memory that a damaged file can cost.
    static constexpr size_t kLongestLine = size_t{1} << 20U;

    explicit LineReader(File file);

    /// The next line that is neither blank nor a comment, without its line end; empty at the end of
    /// the file. Valid until the next call.
    /// @throws UserError the file cannot be read, or the line is longer than kLongestLine.
    std::optional<std::string_view> next();

    /// Number of the line that next returned last, from 1; blank lines and comments count.
    uint64_t lineNumber() const { return mLineNumber; }

    /// Whether the file ended before the line that next returned last had a line end.
    bool isLastOpen() const { return mIsLastOpen; }

    uint64_t bytesRead() const { return mBytesRead; }
    File const& file() const { return mFile; }

    /// "FILE:LINE" of the line that next returned last.
    std::string place() const;

 private:
    std::optional<std::string_view> nextLine();
    bool fill();

    File mFile;
    std::vector<char> mBuffer;
    size_t mBegin = 0;  // of what has been read and not yet handed out
    size_t mEnd = 0;
    uint64_t mLineNumber = 0;
    uint64_t mBytesRead = 0;
    bool mIsLastOpen = false;
};

}  // namespace zoomreplay
