// Tells people what is wrong with a line that is not JSON.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace scenario {

/// Puts a message of the JSON parser into the words of those who write scenarios: what stands
/// where, and what should.
/// @param position of the character that the parser stumbled over, from 1; behind the line's last
///     where the line ends too early.
std::string explainJsonError(std::string_view message, std::string_view line, size_t position);

/// What to say of a line that does not begin as an object does.
std::string explainNoObject(std::string_view line);

}  // namespace scenario
