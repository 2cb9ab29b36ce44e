// Bounds-checked access to a table of the pipeline's.
#pragma once

#include <stdexcept>

namespace NSCam::Feature {

/// The value of a key that must be there. Like the table's own at(), with one text for the error:
/// the standard libraries word theirs differently, and a replay must not depend on the library.
/// @throws std::out_of_range the table lacks the key.
template <typename Table>
typename Table::mapped_type const& lookUp(Table const& table, typename Table::key_type const& key) {
    auto const entry = table.find(key);
    if (entry == table.end()) {
        throw std::out_of_range("unordered_map::at: key not found");
    }
    return entry->second;
}

}  // namespace NSCam::Feature
