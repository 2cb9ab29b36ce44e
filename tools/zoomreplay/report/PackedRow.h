// A row of a table of the page, its words and its numbers apart.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ZoomOverrideTypes.h"

namespace zoomreplay {

/// Builds JSON in which each number is replaced by the place of its column, and each text by "$"
/// and the place. Rows of one kind so share their words, which a page needs to hold only once.
class PackedRow {
 public:
    /// A decimal number, or the index of a text.
    struct Value {
        int64_t digits;
        uint8_t decimals;
        bool isText;
    };

    void open(char bracket);
    void close(char bracket);
    PackedRow& key(std::string_view name);

    void number(int64_t value);
    /// Rounded to so many decimals; null where it is not finite.
    void decimal(double value, uint8_t decimals);
    /// As result files write it, the ones that JSON does not have as a text.
    void number(float value);
    void text(std::string_view value);

    void numbers(NSCam::MSize const& size);
    void numbers(NSCam::MRect const& rect);

    /// One of few texts, which becomes a part of the words.
    void word(std::string_view value);
    void yes() { literal("true"); }
    void null() { literal("null"); }

    std::string const& words() const { return mWords; }
    std::vector<Value> const& values() const { return mValues; }
    std::vector<std::string> const& texts() const { return mTexts; }

 private:
    void separate();
    void literal(std::string_view text);
    void add(int64_t digits, uint8_t decimals);

    std::string mWords;
    std::vector<Value> mValues;
    std::vector<std::string> mTexts;
    bool mIsFirst = true;
};

}  // namespace zoomreplay
