// Reads ahead in chunks and cuts lines out of them.
#include "LineReader.h"

#include <cstring>
#include <utility>

#include "base/Messages.h"

namespace zoomreplay {
namespace {

constexpr size_t kChunk = size_t{64} << 10U;

bool isBlankOrComment(std::string_view line) {
    auto const first = line.find_first_not_of(" \t\r");
    return first == std::string_view::npos || line.substr(first, 2) == "//";
}

}  // namespace

LineReader::LineReader(File file, LongLines longLines)
    : mFile(std::move(file)), mLongLines(longLines), mBuffer(kChunk) {}

std::optional<std::string_view> LineReader::next() {
    auto line = nextLine();
    while (line.has_value() && isBlankOrComment(*line)) {
        line = nextLine();
    }
    return line;
}

std::string LineReader::place() const {
    return mFile.name() + ':' + std::to_string(mLineNumber);
}

std::optional<std::string_view> LineReader::nextLine() {
    ++mLineNumber;
    size_t searched = 0;
    while (true) {
        std::string_view const unread(mBuffer.data() + mBegin, mEnd - mBegin);
        auto const length = unread.find('\n', searched);
        if (length != std::string_view::npos) {
            mBegin += length + 1;
            bool const isCut = mLongLines == LongLines::Cut && length > kLongestLine;
            return unread.substr(0, isCut ? kLongestLine : length);
        }

        searched = unread.size();
        if (searched > kLongestLine) {
            if (mLongLines == LongLines::Refuse) {
                throw UserError(place() + ": longer than " + std::to_string(kLongestLine) +
                                " bytes");
            }
            searched = kLongestLine;
            mEnd = mBegin + searched;  // the line goes on, unheard
        }
        if (!fill()) {
            break;
        }
    }

    std::string_view const rest(mBuffer.data() + mBegin, mEnd - mBegin);
    mBegin = mEnd;
    mIsLastOpen = true;
    return rest.empty() ? std::nullopt : std::optional(rest);
}

// Moves what is unread to the front and reads more behind it. False at the end of the file.
bool LineReader::fill() {
    std::memmove(mBuffer.data(), mBuffer.data() + mBegin, mEnd - mBegin);
    mEnd -= std::exchange(mBegin, 0);
    if (mBuffer.size() - mEnd < kChunk) {
        mBuffer.resize(mBuffer.size() + kChunk);
    }

    if (!mFile.size().has_value()) {  // files on a disk keep nobody waiting
        mBeforeWait();
    }
    size_t const count = mFile.read(std::span(mBuffer).subspan(mEnd));
    mEnd += count;
    mBytesRead += count;
    return count > 0;
}

}  // namespace zoomreplay
