// Files for reading and writing, standard streams included.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Messages.h"

namespace zoomreplay {

/// Whoever read what is written has seen enough.
class ClosedPipe : public UserError {
 public:
    using UserError::UserError;
};

/// An open file or one of the standard streams. All operations throw UserError with the file's
/// name.
class File {
 public:
    /// Opens for reading; "-" is standard input.
    static File openInput(std::string const& path);

    /// Opens for writing, from an empty file on; "-" is standard output. A file that is one of
    /// inputs is refused before anything of it is lost.
    static File openOutput(std::string const& path, std::span<File const* const> inputs);

    /// Opens for writing a file that is not there yet; "-" is standard output.
    static File createOutput(std::string const& path);

    File(File&& other) noexcept;
    File(File const&) = delete;
    File& operator=(File const&) = delete;
    File& operator=(File&&) = delete;
    ~File();

    std::string const& name() const { return mName; }
    bool isTerminal() const;

    /// The width of a terminal; empty where it does not tell.
    std::optional<size_t> columns() const;

    /// Size in bytes; empty where there is none, as for a pipe.
    std::optional<uint64_t> size() const;

    /// Reads what is there, waiting for at least one byte. @return bytes read, 0 at the end.
    size_t read(std::span<char> buffer);

    /// Writes all of text before it returns. @throws ClosedPipe
    void write(std::string_view text);

    /// From now on what a reader that went away would have got is dropped.
    void outliveReader() { mOutlivesReader = true; }

    /// Whether both are one file on the disk.
    bool isSameFile(File const& other) const;

 private:
    File(int descriptor, std::string name);

    int mDescriptor;
    std::string mName;
    bool mOutlivesReader = false;
};

}  // namespace zoomreplay
