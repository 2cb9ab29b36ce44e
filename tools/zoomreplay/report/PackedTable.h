// Many rows in little room, compressed block by block.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "PackedRow.h"

namespace zoomreplay {

/// Keeps the words of rows once, and their numbers in columns of variable-length differences,
/// compressed with zlib. page/unpack.js reads it.
///
/// A block, once unpacked, holds unsigned numbers of seven bits a byte, the lowest first and the
/// highest bit set in all bytes but the last: the number of rows; their words as a column; their
/// indices as a column; then, for each words in the order of their first row, the columns of its
/// rows; then the number of texts, and each with its length in bytes. A column is the number of
/// decimals and the difference of each number to the one before, in the form 0, -1, 1, -2, 2 as 0,
/// 1, 2, 3, 4.
class PackedTable {
 public:
    explicit PackedTable(size_t rowsPerBlock) : mRowsPerBlock(rowsPerBlock) {}

    void add(size_t index, PackedRow const& packed);

    /// A JSON object: "words", a list of texts, and "blocks", a list in base64. ASCII without "<".
    void appendJson(std::string& out);

    /// What has been added since the last block, as one in base64 that the table keeps no more.
    std::string takeBlock();

    /// By their place in blocks. Blocks that are taken need them, too.
    std::vector<std::string> const& words() const { return mWords; }

 private:
    struct Row {
        size_t index;
        size_t words;
        std::vector<PackedRow::Value> values;
    };

    size_t placeOf(std::string const& words);

    size_t mRowsPerBlock;
    std::unordered_map<std::string, size_t> mPlaces;
    std::vector<std::string> mWords;
    std::vector<Row> mRows;
    std::vector<std::string> mTexts;
    std::vector<std::string> mBlocks;
};

}  // namespace zoomreplay
