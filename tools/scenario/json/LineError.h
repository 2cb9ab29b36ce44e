// What is wrong with one line of a file.
#pragma once

#include <stdexcept>

namespace scenario {

/// Whoever knows the file and the line turns it into a message for the user.
class LineError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// The line ends before its object does.
class UnfinishedLine : public LineError {
 public:
    using LineError::LineError;
};

}  // namespace scenario
