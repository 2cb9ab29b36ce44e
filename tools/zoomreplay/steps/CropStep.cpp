#include "CropStep.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace zoomreplay {
namespace {

std::string hexadecimal(uint64_t number) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%llx", static_cast<unsigned long long>(number));
    return text.data();
}

std::string decimal(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.10g", number);
    return text.data();
}

/// Hands out the numbers one after the other.
class Numbers {
 public:
    explicit Numbers(std::vector<double> const& numbers) : mNumbers(numbers) {}

    std::string textFor(std::string_view placeholder) {
        if (placeholder == "x") {
            return hexadecimal(whole());
        }
        if (placeholder == "stream") {
            uint64_t const high = whole();
            return hexadecimal(high << 32U | whole());
        }
        return decimal(next());
    }

 private:
    double next() { return mNext < mNumbers.size() ? mNumbers[mNext++] : std::nan(""); }
    uint64_t whole() { return static_cast<uint64_t>(next()); }

    std::vector<double> const& mNumbers;
    size_t mNext = 0;
};

}  // namespace

std::string textOf(Saying const& saying) {
    Numbers numbers(saying.numbers);
    std::string text;
    std::string_view rest = saying.words;
    for (auto open = rest.find('{'); open != std::string_view::npos; open = rest.find('{')) {
        auto const close = rest.find('}', open);
        text += rest.substr(0, open);
        text += numbers.textFor(rest.substr(open + 1, close - open - 1));
        rest = rest.substr(close + 1);
    }
    return text.append(rest);
}

}  // namespace zoomreplay
