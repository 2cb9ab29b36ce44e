// Text that a phone printed over adb, whatever the shell at the other end made of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/LineReader.h"

namespace zoomreplay {

/// The lines of such a text, without byte order mark, indentation and line ends.
class PhoneText {
 public:
    explicit PhoneText(File file) : mLines(std::move(file)) {}

    /// The next line that is not blank; empty at the end. Valid until the next call.
    /// @throws UserError the file cannot be read, or is not in a character set of single bytes.
    std::optional<std::string_view> next();

    uint64_t lineNumber() const { return mLines.lineNumber(); }
    File const& file() const { return mLines.file(); }

 private:
    LineReader mLines;
};

// Both read numbers with blanks between them, such as "4 4 4080 3072 ". Brackets count as
// blanks. Empty when one is no number, is beyond the type's range or not finite: so also when
// several stand without a blank between them, which nobody can take apart.
std::optional<std::vector<int32_t>> parseIntegers(std::string_view text);
std::optional<std::vector<float>> parseFloats(std::string_view text);

/// Removes a prefix; false when text does not begin with it.
bool skip(std::string_view& text, std::string_view prefix);

}  // namespace zoomreplay
