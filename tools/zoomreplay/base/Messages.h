// What goes wrong and how the user is told.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace zoomreplay {

enum class ExitStatus { Success = 0, Different = 1, BadInput = 2, Fatal = 3 };

/// Something that the user has to mend. what() is the whole message; it ends the run with
/// ExitStatus::BadInput.
class UserError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// "what: why" of the error number that a system call left behind.
UserError systemError(std::string const& what, int errorNumber);

/// Writes one line to standard error. Parts of it may stem from a damaged file: it is shortened and
/// what a terminal might obey is replaced.
void complain(std::string_view message);

}  // namespace zoomreplay
