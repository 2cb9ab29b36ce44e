// Files by system calls, with errors that name them.
#include "File.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Messages.h"

namespace zoomreplay {
namespace {

// Empty for what is not a file on a disk.
std::optional<struct stat> fileStatus(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return status;
}

int openOrThrow(std::string const& path, int flags, std::string const& name) {
    constexpr mode_t kReadableByAll = 0666;  // less the umask
    int const descriptor = open(path.c_str(), flags | O_CLOEXEC, kReadableByAll);
    if (descriptor < 0) {
        bool const isNew = (flags & O_EXCL) != 0;
        throw systemError(name + (isNew ? ": cannot create" : ": cannot open"), errno);
    }
    return descriptor;
}

}  // namespace

File File::openInput(std::string const& path) {
    if (path == "-") {
        return {STDIN_FILENO, "<stdin>"};
    }
    return {openOrThrow(path, O_RDONLY, path), path};
}

File File::openOutput(std::string const& path, int flags, std::string name) {
    int const descriptor = openOrThrow(path, O_WRONLY | O_CREAT | flags, name);
    return {descriptor, std::move(name)};
}

File File::standardOutput() {
    return {STDOUT_FILENO, "<stdout>"};
}

File::File(int descriptor, std::string name) : mDescriptor(descriptor), mName(std::move(name)) {}

File::File(File&& other) noexcept
    : mDescriptor(std::exchange(other.mDescriptor, -1)),
      mName(std::move(other.mName)),
      mOutlivesReader(other.mOutlivesReader),
      mWait(std::move(other.mWait)) {}

File::~File() {
    if (mDescriptor > STDERR_FILENO) {
        close(mDescriptor);
    }
}

bool File::isTerminal() const {
    return isatty(mDescriptor) != 0;
}

std::optional<size_t> File::columns() const {
    winsize size{};
    bool const isTold = ioctl(mDescriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isTold ? std::optional<size_t>(size.ws_col) : std::nullopt;
}

std::optional<uint64_t> File::size() const {
    auto const status = fileStatus(mDescriptor);
    return status.has_value() ? std::optional(static_cast<uint64_t>(status->st_size))
                              : std::nullopt;
}

std::optional<FileId> File::id() const {
    auto const status = fileStatus(mDescriptor);
    return status.has_value() ? std::optional(FileId{status->st_dev, status->st_ino})
                              : std::nullopt;
}

size_t File::read(std::span<char> buffer) {
    if (mWait && !mWait(mDescriptor)) {
        return 0;
    }
    while (true) {
        ssize_t const count = ::read(mDescriptor, buffer.data(), buffer.size());
        if (count >= 0) {
            return static_cast<size_t>(count);
        }
        if (errno != EINTR) {
            throw systemError(mName + ": cannot read", errno);
        }
    }
}

void File::write(std::string_view text) {
    size_t written = 0;
    while (written < text.size()) {
        ssize_t const count = ::write(mDescriptor, text.data() + written, text.size() - written);
        if (count >= 0) {
            written += static_cast<size_t>(count);
        } else if (errno == EPIPE && mOutlivesReader) {
            return;
        } else if (errno == EPIPE) {
            throw ClosedPipe(mName + ": nobody reads it any more");
        } else if (errno != EINTR) {
            int const error = errno;
            size_t const whole = text.substr(0, written).rfind('\n') + 1;  // 0 where there is none
            takeBack(written - whole);
            throw systemError(mName + ": cannot write", error);
        }
    }
}

void File::claim() {
    if (!size().has_value()) {
        return;
    }
    if (flock(mDescriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        throw UserError(mName + ": another run writes to it");
    }
    if (ftruncate(mDescriptor, 0) != 0) {
        throw systemError(mName + ": cannot empty", errno);
    }
}

void File::setPermissions(uint32_t bits) {
    if (fchmod(mDescriptor, bits) != 0) {
        throw systemError(mName + ": cannot set permissions", errno);
    }
}

void File::sync() {
    if (fsync(mDescriptor) != 0) {
        throw systemError(mName + ": cannot write", errno);
    }
}

// Only at the end of a file: what others have written behind stays.
void File::takeBack(size_t count) noexcept {
    off_t const end = lseek(mDescriptor, 0, SEEK_CUR);
    auto const length = static_cast<off_t>(count);
    auto const status = fileStatus(mDescriptor);
    if (!status.has_value() || end < length || status->st_size != end) {
        return;
    }
    if (ftruncate(mDescriptor, end - length) == 0) {
        lseek(mDescriptor, end - length, SEEK_SET);
    }
}

}  // namespace zoomreplay
