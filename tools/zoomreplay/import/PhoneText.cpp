// Takes byte order marks and indentation off lines, and numbers out of them.
#include "PhoneText.h"

#include <algorithm>
#include <array>

#include "base/Messages.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Files that hold the text in another shape.
struct Packing {
    std::string_view start;
    std::string_view advice;  // FILE stands for the file's name
};

constexpr std::array kPackings{
    Packing{"PK\x03\x04",
            "is a zip archive, as bugreports are; unpack its text with: unzip -p FILE "
            "'bugreport-*.txt' > bugreport.txt"},
    Packing{"\x1F\x8B", "is compressed; unpack it with: gzip -dc FILE > phone.txt"},
    Packing{"\xFF\xFE",
            "is UTF-16, as some shells write; convert it with: iconv -f UTF-16 -t UTF-8 FILE > "
            "phone.txt"},
    Packing{"\xFE\xFF",
            "is UTF-16, as some shells write; convert it with: iconv -f UTF-16 -t UTF-8 FILE > "
            "phone.txt"},
};

std::string withFileName(std::string_view advice, std::string const& name) {
    constexpr std::string_view kPlaceholder = "FILE";
    std::string text(advice);
    auto const place = text.find(kPlaceholder);
    return text.replace(place, kPlaceholder.size(), name);
}

std::string_view trim(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t\r") + 1);
}

// Whether text begins with the shape: 0 stands for a digit, the rest for itself.
bool hasShape(std::string_view text, std::string_view shape) {
    return text.size() >= shape.size() &&
           std::equal(shape.begin(), shape.end(), text.begin(),
                      [](char wanted, char c) { return wanted == '0' ? isDigit(c) : wanted == c; });
}

bool skipNumber(std::string_view& text) {
    auto const length = std::min(text.find_first_not_of(kDigits), text.size());
    text.remove_prefix(length);
    skipBlanks(text);
    return length > 0;
}

// "11-21 12:00:00.000  1234  5678 D Tag     : " and "D/Tag     ( 1234): ", also with a time.
std::string_view withoutLogcatPrefix(std::string_view line) {
    constexpr std::string_view kTime = "00-00 00:00:00.000";
    constexpr std::string_view kLevels = "VDIWEF";
    std::string_view rest = line;
    bool const hasTime = hasShape(rest, kTime);
    if (hasTime) {
        rest.remove_prefix(kTime.size());
        skipBlanks(rest);
    }
    bool const hasProcess = hasTime && skipNumber(rest) && skipNumber(rest);
    if (rest.size() < 2 || kLevels.find(rest[0]) == std::string_view::npos ||
        rest[1] != (hasProcess ? ' ' : '/')) {
        return line;
    }
    auto const end = rest.find(hasProcess ? ": " : "): ");
    return end == std::string_view::npos ? line : trim(rest.substr(rest.find(": ", end) + 2));
}

std::string_view withoutQuotationMarks(std::string_view line) {
    while (!line.empty() && line.front() == '>') {
        line = trim(line.substr(1));
    }
    return line;
}

// How much of a word is its first number.
size_t firstLength(std::string_view /*word*/, int32_t /*type*/) {
    return std::string_view::npos;
}

size_t firstLength(std::string_view word, float /*type*/) {
    constexpr size_t kDecimals = 8;
    auto const point = word.find('.');
    bool const isLast =
        point == std::string_view::npos || word.find('.', point + 1) == std::string_view::npos;
    return isLast ? std::string_view::npos : point + 1 + kDecimals;
}

template <typename T>
std::optional<std::vector<T>> parseNumbers(std::string_view text) {
    std::vector<T> numbers;
    for (std::string_view word : splitWords(text)) {
        while (!word.empty()) {
            auto const first = word.substr(0, firstLength(word, T{}));
            auto const number = scenario::parseNumber<T>(first);
            if (!number.has_value()) {
                return std::nullopt;
            }
            numbers.push_back(*number);
            word.remove_prefix(first.size());
        }
    }
    return numbers;
}

}  // namespace

std::optional<std::string_view> PhoneText::next() {
    while (auto line = mLines.nextLine()) {
        if (lineNumber() == 1) {
            refusePacked(*line);
            skip(*line, "\xEF\xBB\xBF");
        }
        *line = withoutLogcatPrefix(withoutQuotationMarks(trim(*line)));
        if (!line->empty()) {
            notice(*line);
            return line;
        }
    }
    return std::nullopt;
}

std::string PhoneText::whyNothing() const {
    if (!mHasText) {
        return "is empty: did the command run, with a phone connected?";
    }
    if (!mRefusal.empty()) {
        return "the phone refused, " + mRefusal + "; run the command from adb shell";
    }
    return mIsWebPage ? "is a web page; save the phone's text itself" : "";
}

void PhoneText::refusePacked(std::string_view firstLine) const {
    for (Packing const& packing : kPackings) {
        if (firstLine.substr(0, packing.start.size()) == packing.start) {
            throw UserError(file().name() + ": " + withFileName(packing.advice, file().name()));
        }
    }
}

// What a text is when it is not what was looked for.
void PhoneText::notice(std::string_view line) {
    if (!mHasText) {
        mHasText = true;
        mIsWebPage = skip(line, "<!DOCTYPE") || skip(line, "<!doctype") || skip(line, "<html");
    }
    bool const isRefusal = line.find("Permission Denial") != std::string_view::npos ||
                           line.find("Can't find service") != std::string_view::npos;
    if (isRefusal && mRefusal.empty()) {
        constexpr size_t kLongest = 120;
        mRefusal =
            "line " + std::to_string(lineNumber()) + ": " + std::string(line.substr(0, kLongest));
    }
}

std::optional<std::vector<int32_t>> parseIntegers(std::string_view text) {
    return parseNumbers<int32_t>(text);
}

std::optional<std::vector<float>> parseFloats(std::string_view text) {
    return parseNumbers<float>(text);
}

std::vector<std::string_view> splitWords(std::string_view text) {
    constexpr std::string_view kSeparators(" \t[]\0", 5);
    std::vector<std::string_view> words;
    auto begin = text.find_first_not_of(kSeparators);
    while (begin != std::string_view::npos) {
        text.remove_prefix(begin);
        words.push_back(text.substr(0, text.find_first_of(kSeparators)));
        text.remove_prefix(words.back().size());
        begin = text.find_first_not_of(kSeparators);
    }
    return words;
}

bool isPrintableId(std::string_view id) {
    return !id.empty() &&
           std::all_of(id.begin(), id.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

bool skip(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
}

}  // namespace zoomreplay
