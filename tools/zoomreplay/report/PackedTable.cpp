// Compresses rows with zlib, many in a block.
#include "PackedTable.h"

#include <zlib.h>

#include <algorithm>
#include <map>

#include "PageText.h"
#include "base/Messages.h"

namespace zoomreplay {
namespace {

using Value = PackedRow::Value;

void appendUnsigned(std::string& out, uint64_t value) {
    constexpr uint64_t kLow = 0x7F;
    while (value > kLow) {
        out += static_cast<char>((value & kLow) | 0x80U);
        value >>= 7U;
    }
    out += static_cast<char>(value);
}

// Differences of either sign are small numbers.
void appendDifference(std::string& out, int64_t difference) {
    uint64_t const doubled = static_cast<uint64_t>(difference) << 1U;
    appendUnsigned(out, difference < 0 ? ~doubled : doubled);
}

int64_t scaled(Value const& value, uint8_t decimals) {
    int64_t digits = value.digits;
    for (uint8_t i = value.decimals; i < decimals; ++i) {
        digits *= 10;
    }
    return digits;
}

void appendColumn(std::string& out, std::vector<Value> const& column) {
    uint8_t decimals = 0;
    for (Value const& value : column) {
        decimals = std::max(decimals, value.decimals);
    }
    appendUnsigned(out, decimals);
    int64_t last = 0;
    for (Value const& value : column) {
        int64_t const number = scaled(value, decimals);
        appendDifference(out, number - last);
        last = number;
    }
}

std::string compressed(std::string const& bytes) {
    uLongf size = compressBound(bytes.size());
    std::string out(size, '\0');
    auto const status = compress2(reinterpret_cast<Bytef*>(out.data()), &size,
                                  reinterpret_cast<Bytef const*>(bytes.data()), bytes.size(),
                                  Z_DEFAULT_COMPRESSION);
    if (status != Z_OK) {
        throw UserError("the report's data cannot be compressed: too little memory");
    }
    out.resize(size);
    return out;
}

}  // namespace

void PackedTable::add(size_t index, PackedRow const& packed) {
    Row row{index, placeOf(packed.words()), packed.values()};
    for (Value& value : row.values) {
        value.digits += value.isText ? static_cast<int64_t>(mTexts.size()) : 0;
    }
    mTexts.insert(mTexts.end(), packed.texts().begin(), packed.texts().end());
    mRows.push_back(std::move(row));
    if (mRows.size() == mRowsPerBlock) {
        mBlocks.push_back(takeBlock());
    }
}

size_t PackedTable::placeOf(std::string const& words) {
    auto const [place, isNew] = mPlaces.emplace(words, mWords.size());
    if (isNew) {
        mWords.push_back(words);
    }
    return place->second;
}

std::string PackedTable::takeBlock() {
    std::vector<Value> words;
    std::vector<Value> indices;
    std::vector<std::vector<std::vector<Value>>> columns;  // of each words
    std::unordered_map<size_t, size_t> places;
    for (Row const& row : mRows) {
        words.push_back({static_cast<int64_t>(row.words), 0, false});
        indices.push_back({static_cast<int64_t>(row.index), 0, false});
        auto const [place, isNew] = places.emplace(row.words, columns.size());
        if (isNew) {
            columns.emplace_back(row.values.size());
        }
        for (size_t i = 0; i < row.values.size(); ++i) {
            columns[place->second][i].push_back(row.values[i]);
        }
    }

    std::string bytes;
    appendUnsigned(bytes, mRows.size());
    appendColumn(bytes, words);
    appendColumn(bytes, indices);
    for (auto const& ofWords : columns) {
        for (auto const& column : ofWords) {
            appendColumn(bytes, column);
        }
    }
    appendUnsigned(bytes, mTexts.size());
    for (std::string const& text : mTexts) {
        appendUnsigned(bytes, text.size());
        bytes += text;
    }
    mRows.clear();
    mTexts.clear();
    return base64(compressed(bytes));
}

void PackedTable::appendJson(std::string& out) {
    if (!mRows.empty()) {
        mBlocks.push_back(takeBlock());
    }
    char const* separator = "";
    out += "{\"words\":[";
    for (std::string const& words : mWords) {
        out.append(separator).append(inScript(words));
        separator = ",";
    }
    separator = "";
    out += "],\"blocks\":[";
    for (std::string const& block : mBlocks) {
        out.append(separator).append(1, '"').append(block).append(1, '"');
        separator = ",";
    }
    out += "]}";
}

}  // namespace zoomreplay
