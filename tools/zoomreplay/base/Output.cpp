#include "Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "Messages.h"

namespace zoomreplay {
namespace {

[[noreturn]] void failToOpen(std::string const& name, int error) {
    throw systemError(name + ": cannot open", error);
}

void checkAccess(std::string const& path, int kinds, std::string const& name) {
    if (access(path.c_str(), kinds) != 0) {
        failToOpen(name, errno);
    }
}

}  // namespace

Output::Output(std::string const& path)
    : mPath(path), mName(path == "-" ? File::standardOutput().name() : path) {
    if (path == "-") {
        mId = File::standardOutput().id();
        return;
    }

    std::error_code error;
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) {
            failToOpen(mName, EISDIR);
        }
        checkAccess(path, W_OK, mName);
        if (!S_ISREG(status.st_mode)) {
            return;
        }
        mId = {status.st_dev, status.st_ino};
        mPermissions = status.st_mode & 07777U;
        mReplaced = std::filesystem::canonical(path, error);  // a link goes on leading there
        return;
    }
    if (errno != ENOENT) {
        failToOpen(mName, errno);
    }
    std::filesystem::path const file(path);
    auto const folder = std::filesystem::canonical(
        file.has_parent_path() ? file.parent_path() : std::filesystem::path("."), error);
    if (error) {
        failToOpen(mName, error.value());
    }
    checkAccess(folder, W_OK | X_OK, mName);
    mReplaced = folder / file.filename();
}

File Output::open() const {
    if (mPath == "-") {
        return File::standardOutput();
    }
    File file = File::openOutput(mPath, 0, mName);
    file.claim();
    return file;
}

void Output::create(std::string_view text) const {
    if (mPath == "-") {
        open().write(text);
        return;
    }
    UnfinishedFile file(mPath, mName);
    file.file().write(text);
    file.file().sync();
    file.keep();
}

bool Output::isSameAs(Output const& other) const {
    bool const isStandard = mPath == "-" && other.mPath == "-";
    bool const isSameName = !mReplaced.empty() && mReplaced == other.mReplaced;
    return isStandard || isSameName || (mId.has_value() && mId == other.mId);
}

Replacement::Replacement(Output const& output) : mReplaced(output.mReplaced) {
    if (mReplaced.empty()) {
        mFile.emplace(output.open());
        return;
    }
    mPart.emplace(mReplaced + '.' + std::to_string(getpid()) + ".part", output.name());
    if (output.mPermissions.has_value()) {
        mPart->file().setPermissions(*output.mPermissions);
    }
}

void Replacement::finish() {
    if (!mPart.has_value()) {
        return;
    }
    mPart->file().sync();
    if (std::rename(mPart->path().c_str(), mReplaced.c_str()) != 0) {
        throw systemError(mPart->file().name() + ": cannot replace", errno);
    }
    mPart->keep();
}

void checkSeparate(std::vector<Output const*> const& outputs,
                   std::vector<File const*> const& inputs) {
    for (auto output = outputs.begin(); output != outputs.end(); ++output) {
        for (File const* input : inputs) {
            if ((*output)->mId.has_value() && (*output)->mId == input->id()) {
                throw UserError((*output)->name() +
                                ": is also read from; results need a file of their own");
            }
        }
        bool const isTwice = std::any_of(outputs.begin(), output, [&](Output const* earlier) {
            return (*output)->isSameAs(*earlier);
        });
        if (isTwice) {
            throw UserError((*output)->name() + ": is written to twice");
        }
    }
}

}  // namespace zoomreplay
