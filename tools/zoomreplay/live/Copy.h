// A copy of this process, which does something the session must not notice.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>

namespace zoomreplay {

/// The copy has everything that the process has at that moment, the library's state included, but
/// only the thread that made it. What it changes is its own, and what it writes into its pipe can
/// be read here.
class Copy {
 public:
    /// What the copy does. @param output the name of a file to write to
    using Work = std::function<void(std::string const& output)>;

    /// Begins the work. No other thread may hold a lock that the work takes.
    /// @throws UserError
    explicit Copy(Work const& work);
    Copy(Copy&& other) noexcept;
    Copy(Copy const&) = delete;
    Copy& operator=(Copy const&) = delete;
    Copy& operator=(Copy&&) = delete;

    /// The copy is ended, and its work with it.
    ~Copy();

    /// What it has written next, empty at the end; nothing where it takes too long or has failed.
    std::optional<std::string> read();

 private:
    std::optional<std::string> last();

    pid_t mProcess = -1;
    int mPipe = -1;
};

}  // namespace zoomreplay
