// Where the tool writes to. Whatever happens, what was there is untouched or replaced by something
// whole.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "File.h"
#include "UnfinishedFile.h"

namespace zoomreplay {

/// A file to write, or standard output, that has been checked and not been touched yet. All
/// operations throw UserError with the file's name.
class Output {
 public:
    /// @param path "-" is standard output.
    /// @throws UserError it cannot be written to.
    explicit Output(std::string const& path);

    std::string const& name() const { return mName; }

    /// Opens it for a text that grows line by line, from an empty file on.
    /// @throws UserError another run is writing to it.
    File open() const;

    /// Makes the file with this text. @throws UserError there is one already.
    void create(std::string_view text) const;

 private:
    friend class Replacement;
    friend void checkSeparate(std::vector<Output const*> const& outputs,
                              std::vector<File const*> const& inputs);

    bool isSameAs(Output const& other) const;

    std::string mPath;
    std::string mName;
    std::optional<FileId> mId;             // of a file on a disk
    std::optional<uint32_t> mPermissions;  // of a file on a disk
    std::string mReplaced;                 // its full path, or that of the file to be; else empty
};

/// What is being written in the place of an output. Unless it is finished, what was there stays.
/// Standard output, devices and pipes are written to as they are.
class Replacement {
 public:
    /// @throws UserError the output cannot be written to.
    explicit Replacement(Output const& output);

    File& file() { return mPart.has_value() ? mPart->file() : *mFile; }

    /// It is whole, and takes its place. @throws UserError it cannot.
    void finish();

 private:
    std::string mReplaced;
    std::optional<UnfinishedFile> mPart;  // what mReplaced will be
    std::optional<File> mFile;            // where nothing is replaced
};

/// No output may end up in another one or in an input.
/// @throws UserError two of the outputs are one file, or one of them is an input.
void checkSeparate(std::vector<Output const*> const& outputs,
                   std::vector<File const*> const& inputs);

}  // namespace zoomreplay
