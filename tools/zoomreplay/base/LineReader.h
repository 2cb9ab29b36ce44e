// Reads a file line by line, in memory that does not grow with the file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/File.h"

namespace zoomreplay {

class LineReader {
 public:
    /// No real line comes near it; it bounds the memory that a damaged file can cost.
    static constexpr size_t kLongestLine = size_t{1} << 20U;

    enum class LongLines { Refuse, Cut };

    explicit LineReader(File file, LongLines longLines = LongLines::Refuse);

    /// Has beforeWait called whenever the next line may be long in coming, as out of a pipe.
    void setBeforeWait(std::function<void()> beforeWait) { mBeforeWait = std::move(beforeWait); }

    /// The next line of JSON Lines: neither blank nor a comment, without its line end; empty
    /// at the end of the file. Valid until the next call.
    /// @throws UserError the file cannot be read, or the line is longer than kLongestLine and not
    /// to
    ///     be cut.
    std::optional<std::string_view> next();

    /// The same of any text: blank lines and comments are lines as well.
    std::optional<std::string_view> nextLine();

    /// Number of the line that next returned last, from 1; blank lines and comments count.
    uint64_t lineNumber() const { return mLineNumber; }

    /// Whether the file ended before the line that next returned last had a line end.
    bool isLastOpen() const { return mIsLastOpen; }

    uint64_t bytesRead() const { return mBytesRead; }
    File const& file() const { return mFile; }

    /// "FILE:LINE" of the line that next returned last.
    std::string place() const;

 private:
    bool fill();

    File mFile;
    LongLines mLongLines;
    std::function<void()> mBeforeWait = [] {};
    std::vector<char> mBuffer;
    size_t mBegin = 0;  // of what has been read and not yet handed out
    size_t mEnd = 0;
    uint64_t mLineNumber = 0;
    uint64_t mBytesRead = 0;
    bool mIsLastOpen = false;
};

}  // namespace zoomreplay
