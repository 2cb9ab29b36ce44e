// Files by system calls, with errors that name them.
#include "File.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Messages.h"

namespace zoomreplay {
namespace {

constexpr char const* kStandardStream = "-";

std::optional<struct stat> statusOf(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return status;
}

int openOrThrow(std::string const& path, int flags) {
    constexpr mode_t kReadableByAll = 0666;  // less the umask
    int const descriptor = open(path.c_str(), flags | O_CLOEXEC, kReadableByAll);
    if (descriptor < 0) {
        bool const isNew = (flags & O_EXCL) != 0;
        throw systemError(path + (isNew ? ": cannot create" : ": cannot open"), errno);
    }
    return descriptor;
}

}  // namespace

File File::openInput(std::string const& path) {
    if (path == kStandardStream) {
        return File(STDIN_FILENO, "<stdin>");
    }
    return File(openOrThrow(path, O_RDONLY), path);
}

File File::openOutput(std::string const& path, std::span<File const* const> inputs) {
    bool const isStandard = path == kStandardStream;
    File file = isStandard ? File(STDOUT_FILENO, "<stdout>")
                           : File(openOrThrow(path, O_WRONLY | O_CREAT), path);
    for (File const* input : inputs) {
        if (file.isSameFile(*input)) {
            throw UserError(file.name() + ": is also read from; results need a file of their own");
        }
    }

    if (!isStandard && file.size().has_value() && ftruncate(file.mDescriptor, 0) != 0) {
        throw systemError(file.name() + ": cannot empty", errno);
    }
    return file;
}

File File::createOutput(std::string const& path) {
    if (path == kStandardStream) {
        return File(STDOUT_FILENO, "<stdout>");
    }
    return File(openOrThrow(path, O_WRONLY | O_CREAT | O_EXCL), path);
}

File::File(int descriptor, std::string name) : mDescriptor(descriptor), mName(std::move(name)) {}

File::File(File&& other) noexcept
    : mDescriptor(std::exchange(other.mDescriptor, -1)),
      mName(std::move(other.mName)),
      mOutlivesReader(other.mOutlivesReader) {}

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
    auto const status = statusOf(mDescriptor);
    if (!status.has_value() || !S_ISREG(status->st_mode)) {
        return std::nullopt;
    }
    return static_cast<uint64_t>(status->st_size);
}

size_t File::read(std::span<char> buffer) {
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
    while (!text.empty()) {
        ssize_t const count = ::write(mDescriptor, text.data(), text.size());
        if (count >= 0) {
            text.remove_prefix(static_cast<size_t>(count));
        } else if (errno == EPIPE) {
            if (mOutlivesReader) {
                return;
            }
            throw ClosedPipe(mName + ": nobody reads it any more");
        } else if (errno != EINTR) {
            throw systemError(mName + ": cannot write", errno);
        }
    }
}

bool File::isSameFile(File const& other) const {
    auto const mine = statusOf(mDescriptor);
    auto const theirs = statusOf(other.mDescriptor);
    return mine.has_value() && theirs.has_value() && S_ISREG(mine->st_mode) &&
           mine->st_dev == theirs->st_dev && mine->st_ino == theirs->st_ino;
}

}  // namespace zoomreplay
