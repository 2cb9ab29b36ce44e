// Text that a phone printed over adb, whatever the shell at the other end made of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/LineReader.h"

namespace zoomreplay {

/// The lines of such a text, in memory that does not grow with it: without byte order mark,
/// indentation, line ends, the quotation marks of a mail and what logcat puts before a line.
class PhoneText {
 public:
    /// Lines longer than LineReader::kLongestLine are cut. No phone prints such a line of what is
    /// read here, but a bugreport holds anything.
    explicit PhoneText(File file) : mLines(std::move(file), LineReader::LongLines::Cut) {}

    /// The next line that is not blank; empty at the end. Valid until the next call.
    /// @throws UserError the file cannot be read, or must be unpacked or converted first.
    std::optional<std::string_view> next();

    /// Number of the line that next returned last, from 1; blank lines count.
    uint64_t lineNumber() const { return mLines.lineNumber(); }
    File const& file() const { return mLines.file(); }

    /// For a text that nothing was found in, once it is read: what it seems to be instead; empty
    /// when that is not known.
    std::string whyNothing() const;

 private:
    void refusePacked(std::string_view firstLine) const;
    void notice(std::string_view line);

    LineReader mLines;
    bool mHasText = false;
    bool mIsWebPage = false;
    std::string mRefusal;  // of the phone, with its line number
};

// Both read numbers with blanks between them, such as "4 4 4080 3072 ". Brackets count as
// blanks. Empty when one is no number, is beyond the type's range or not finite. Floats without a
// blank between them are taken apart where each has the eight decimals that phones print.
std::optional<std::vector<int32_t>> parseIntegers(std::string_view text);
std::optional<std::vector<float>> parseFloats(std::string_view text);

/// The words between blanks and brackets, which a phone may print around each line of values.
std::vector<std::string_view> splitWords(std::string_view text);

/// Whether a text can be a camera's id: printable, without blanks, not empty.
bool isPrintableId(std::string_view id);

/// What numbers are made of.
inline constexpr std::string_view kDigits = "0123456789";

/// Removes the blanks that text begins with.
void skipBlanks(std::string_view& text);

/// Removes a prefix; false when text does not begin with it.
bool skip(std::string_view& text, std::string_view prefix);

}  // namespace zoomreplay
