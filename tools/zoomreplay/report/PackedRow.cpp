// Keeps the numbers of a row, and each word once.
#include "PackedRow.h"

#include <cmath>

#include "scenario/text/JsonText.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

constexpr uint8_t kMostDecimals = 7;
constexpr double kLargest = 1e8;  // with all decimals still exact in a browser's numbers

double powerOfTen(uint8_t exponent) {
    double power = 1.0;
    for (uint8_t i = 0; i < exponent; ++i) {
        power *= 10.0;
    }
    return power;
}

}  // namespace

void PackedRow::open(char bracket) {
    separate();
    mWords += bracket;
    mIsFirst = true;
}

void PackedRow::close(char bracket) {
    mWords += bracket;
    mIsFirst = false;
}

PackedRow& PackedRow::key(std::string_view name) {
    separate();
    mWords.append(1, '"').append(name).append("\":");
    mIsFirst = true;
    return *this;
}

void PackedRow::number(int64_t value) {
    add(value, 0);
}

void PackedRow::decimal(double value, uint8_t decimals) {
    double const scaled = std::round(value * powerOfTen(decimals));
    if (!(std::abs(scaled) < kLargest * powerOfTen(kMostDecimals))) {
        null();
        return;
    }
    add(static_cast<int64_t>(scaled), decimals);
}

void PackedRow::number(float value) {
    std::string plain;
    scenario::appendJson(plain, value);
    auto const point = plain.find('.');
    size_t const decimals = point == std::string::npos ? 0 : plain.size() - point - 1;
    bool const isPlain = plain.find_first_not_of("-.0123456789") == std::string::npos;
    bool const isMinusZero = value == 0.0F && std::signbit(value);
    if (!isPlain || isMinusZero || decimals > kMostDecimals || std::abs(value) >= kLargest) {
        if (plain.front() == '"') {
            plain = plain.substr(1, plain.size() - 2);
        }
        text(plain);
        return;
    }
    if (point != std::string::npos) {
        plain.erase(point, 1);
    }
    add(scenario::parseNumber<int64_t>(plain).value(), static_cast<uint8_t>(decimals));
}

void PackedRow::text(std::string_view value) {
    separate();
    mWords += "\"$" + std::to_string(mValues.size()) + '"';
    mValues.push_back({static_cast<int64_t>(mTexts.size()), 0, true});
    mTexts.emplace_back(value);
}

void PackedRow::numbers(NSCam::MSize const& size) {
    open('[');
    number(int64_t{size.w});
    number(int64_t{size.h});
    close(']');
}

void PackedRow::numbers(NSCam::MRect const& rect) {
    open('[');
    number(int64_t{rect.x});
    number(int64_t{rect.y});
    number(int64_t{rect.w});
    number(int64_t{rect.h});
    close(']');
}

void PackedRow::word(std::string_view value) {
    separate();
    scenario::appendJson(mWords, value);
}

void PackedRow::separate() {
    if (!mIsFirst) {
        mWords += ',';
    }
    mIsFirst = false;
}

void PackedRow::literal(std::string_view text) {
    separate();
    mWords += text;
}

void PackedRow::add(int64_t digits, uint8_t decimals) {
    separate();
    mWords += std::to_string(mValues.size());
    mValues.push_back({digits, decimals, false});
}

}  // namespace zoomreplay
