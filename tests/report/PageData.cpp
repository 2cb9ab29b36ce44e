#include "PageData.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <map>
#include <vector>

namespace zoomreplay::test {
namespace {

using nlohmann::json;

std::string fromBase64(std::string const& text) {
    static std::string const kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    uint32_t bits = 0;
    uint32_t count = 0;
    for (char const c : text) {
        if (c == '=') {
            break;
        }
        bits = bits << 6U | static_cast<uint32_t>(kDigits.find(c));
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFFU);
        }
    }
    return bytes;
}

std::string inflated(std::string const& bytes) {
    constexpr size_t kLargest = 1U << 24U;
    std::string out(kLargest, '\0');
    uLongf size = out.size();
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(out.data()), &size,
                         reinterpret_cast<Bytef const*>(bytes.data()), bytes.size()),
              Z_OK);
    out.resize(size);
    return out;
}

class Block {
 public:
    explicit Block(std::string bytes) : mBytes(std::move(bytes)) {}

    uint64_t number() {
        uint64_t value = 0;
        uint32_t shift = 0;
        uint8_t byte = 0;
        do {
            byte = static_cast<uint8_t>(mBytes.at(mAt++));
            value |= static_cast<uint64_t>(byte & 0x7FU) << shift;
            shift += 7;
        } while (byte > 0x7F);
        return value;
    }

    std::vector<double> column(size_t length) {
        double const scale = std::pow(10.0, number());
        std::vector<double> values;
        int64_t digits = 0;
        for (size_t i = 0; i < length; ++i) {
            uint64_t const difference = number();
            auto const half = static_cast<int64_t>(difference / 2);
            digits += difference % 2 == 0 ? half : -half - 1;
            values.push_back(static_cast<double>(digits) / scale);
        }
        return values;
    }

    std::string text() {
        size_t const length = number();
        mAt += length;
        return mBytes.substr(mAt - length, length);
    }

 private:
    std::string mBytes;
    size_t mAt = 0;
};

struct Row {
    std::vector<double> values;
    std::vector<std::string> const* texts;
};

// Puts the values into the places that the words leave for them.
void fill(json& words, Row const& row) {
    if (words.is_number()) {
        words = row.values.at(words.get<size_t>());
    } else if (words.is_string() && words.get<std::string>().starts_with('$')) {
        auto const place = static_cast<size_t>(std::stoul(words.get<std::string>().substr(1)));
        words = row.texts->at(static_cast<size_t>(row.values.at(place)));
    } else if (words.is_structured()) {
        for (json& part : words) {
            fill(part, row);
        }
    }
}

size_t widthOf(json const& words) {
    if (words.is_structured()) {
        size_t width = 0;
        for (json const& part : words) {
            width += widthOf(part);
        }
        return width;
    }
    bool const isText = words.is_string() && words.get<std::string>().starts_with('$');
    return words.is_number() || isText ? 1 : 0;
}

void unpackBlock(Block block, std::vector<json> const& allWords, std::map<size_t, json>& records) {
    size_t const count = block.number();
    auto const words = block.column(count);
    auto const indices = block.column(count);
    std::vector<size_t> order;  // of the words
    std::map<size_t, std::vector<size_t>> rowsOf;
    for (size_t i = 0; i < count; ++i) {
        auto const which = static_cast<size_t>(words[i]);
        if (rowsOf[which].empty()) {
            order.push_back(which);
        }
        rowsOf[which].push_back(i);
    }

    std::vector<Row> rows(count);
    for (size_t const which : order) {
        for (size_t column = 0; column < widthOf(allWords.at(which)); ++column) {
            auto const values = block.column(rowsOf[which].size());
            for (size_t i = 0; i < values.size(); ++i) {
                rows[rowsOf[which][i]].values.push_back(values[i]);
            }
        }
    }
    std::vector<std::string> texts(block.number());
    for (std::string& text : texts) {
        text = block.text();
    }
    for (size_t i = 0; i < count; ++i) {
        rows[i].texts = &texts;
        json record = allWords.at(static_cast<size_t>(words[i]));
        fill(record, rows[i]);
        records[static_cast<size_t>(indices[i])] = std::move(record);
    }
}

json unpacked(json const& table) {
    std::vector<json> words;
    for (auto const& text : table["words"]) {
        words.push_back(json::parse(text.get<std::string>()));
    }
    std::map<size_t, json> records;
    for (auto const& block : table["blocks"]) {
        unpackBlock(Block(inflated(fromBase64(block))), words, records);
    }
    json list = json::array();
    for (auto const& [index, record] : records) {
        EXPECT_EQ(index, list.size());
        list.push_back(record);
    }
    return list;
}

}  // namespace

json pageData(std::string const& page) {
    static std::string const kBegin = R"(<script id="data" type="application/json">)";
    auto const begin = page.find(kBegin);
    if (begin == std::string::npos) {
        ADD_FAILURE() << "the page has no data";
        return {};
    }
    auto const text = page.substr(begin + kBegin.size());
    json data = json::parse(text.substr(0, text.find("</script>")));
    data["requests"] = unpacked(data["requests"]);
    data["overview"] = unpacked(data["overview"]);
    return data;
}

}  // namespace zoomreplay::test
