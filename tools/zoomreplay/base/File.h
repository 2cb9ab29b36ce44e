// Open files, standard streams included.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "Messages.h"

namespace zoomreplay {

/// Whoever read what is written has seen enough.
class ClosedPipe : public UserError {
 public:
    using UserError::UserError;
};

/// What tells files on a disk apart, whatever their names.
struct FileId {
    uint64_t device;
    uint64_t number;

    bool operator==(FileId const&) const = default;
};

/// An open file or one of the standard streams. All operations throw UserError with the file's
/// name.
class File {
 public:
    /// Opens for reading; "-" is standard input.
    static File openInput(std::string const& path);

    /// Opens or makes a file for writing, as it is; made readable by all, less the umask.
    /// @param flags of open, besides O_WRONLY and O_CREAT.
    /// @param name for messages.
    static File openOutput(std::string const& path, int flags, std::string name);

    static File standardOutput();

    File(File&& other) noexcept;
    File(File const&) = delete;
    File& operator=(File const&) = delete;
    File& operator=(File&&) = delete;
    ~File();

    std::string const& name() const { return mName; }
    int descriptor() const { return mDescriptor; }
    bool isTerminal() const;

    /// The width of a terminal; empty where it does not tell.
    std::optional<size_t> columns() const;

    /// Size in bytes; empty where there is none, as for a pipe.
    std::optional<uint64_t> size() const;

    /// Empty for what is not a file on a disk.
    std::optional<FileId> id() const;

    /// Reads what is there, waiting for at least one byte. @return bytes read, 0 at the end.
    size_t read(std::span<char> buffer);

    /// Gets the descriptor before each read, and does the waiting for it. The file ends where it
    /// returns false.
    using Wait = std::function<bool(int descriptor)>;
    void waitBy(Wait wait) { mWait = std::move(wait); }

    /// Writes all of text before it returns; whole lines of it, when a disk is too full for all.
    /// @throws ClosedPipe
    void write(std::string_view text);

    /// From now on what a reader that went away would have got is dropped.
    void outliveReader() { mOutlivesReader = true; }

    /// Empties it for this run alone, until it is closed. What is not a file on a disk stays as it
    /// is. @throws UserError another run writes to it.
    void claim();

    /// Gives it the permissions of another file, the bits of its mode.
    void setPermissions(uint32_t bits);

    /// Has everything on the disk, or throws.
    void sync();

 private:
    File(int descriptor, std::string name);
    void takeBack(size_t count) noexcept;

    int mDescriptor;
    std::string mName;
    bool mOutlivesReader = false;
    Wait mWait;
};

}  // namespace zoomreplay
