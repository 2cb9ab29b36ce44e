// Opens, writes and moves aside the files of a record, and gives up when one of it fails.
#include "PartFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "Report.h"

namespace zoomrecorder {

PartFiles::~PartFiles() {
    close();
}

void PartFiles::startPart() {
    close();
    if (!moveAside()) {
        return;
    }
    constexpr mode_t kMode = 0644;
    mFile = ::open(mPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    if (mFile < 0) {
        giveUpOnError(mPath);
    }
}

void PartFiles::writeAt(uint64_t place, std::string_view text) {
    if (mHasFailed) {
        return;
    }
    ssize_t const written = tryWrite(place, text);
    if (written == static_cast<ssize_t>(text.size())) {
        mSize = place + text.size();
        return;
    }
    // A full disk takes the beginning of the text and says so only to whoever brings the rest.
    int const error = written < 0 ? errno : ENOSPC;
    if (place < mSize) {
        tryWrite(place, kLineEnd);
    }
    [[maybe_unused]] int const cut = ::ftruncate(mFile, static_cast<off_t>(mSize));
    errno = error;
    giveUpOnError(mPath);
}

ssize_t PartFiles::tryWrite(uint64_t place, std::string_view text) const {
    ssize_t written = 0;
    do {
        written = ::pwrite(mFile, text.data(), text.size(), static_cast<off_t>(place));
    } while (written < 0 && errno == EINTR);
    return written;
}

void PartFiles::giveUp(char const* why) {
    if (!mHasFailed) {
        __android_log_print(ANDROID_LOG_ERROR, kTag, "%s; recording ends, the camera goes on", why);
    }
    mHasFailed = true;
    close();
}

std::string PartFiles::partName(int age) const {
    return age == 0 ? mPath : mPath + "." + std::to_string(age);
}

// A link is not followed: moving aside would move the link, and /dev/stdout is one.
bool PartFiles::moveAside() {
    for (int age = 0; age < kParts; ++age) {
        struct stat info {};
        auto const name = partName(age);
        if (::lstat(name.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
            giveUp((name + ": not a regular file").c_str());
            return false;
        }
    }
    for (int age = kParts - 1; age > 0; --age) {
        auto const name = partName(age - 1);
        if (::rename(name.c_str(), partName(age).c_str()) != 0 && errno != ENOENT) {
            giveUpOnError(name);
            return false;
        }
    }
    return true;
}

void PartFiles::giveUpOnError(std::string const& name) {
    giveUp((name + ": " + std::generic_category().message(errno)).c_str());
}

void PartFiles::close() {
    if (mFile >= 0) {
        ::close(mFile);
    }
    mFile = -1;
    mSize = 0;
}

}  // namespace zoomrecorder
