// Writes JSON the way scenario and result files have it: fast, in a fixed order, and so that every
// number reads back as the same bits.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ZoomOverrideTypes.h"
#include "scenario/text/RecordFields.h"

namespace scenario {

// appendJson appends a value. Floats are rounded to the fewest digits that read back as the same
// float, or are "nan", "inf" and "-inf". A 16-bit integer is a port key and a 64-bit one a stream
// id: strings with their hexadecimal bits. Enumerations are numbers.
void appendJson(std::string& out, bool value);
void appendJson(std::string& out, uint32_t value);
void appendJson(std::string& out, int32_t value);
void appendJson(std::string& out, uint16_t portKey);
void appendJson(std::string& out, int64_t streamId);
void appendJson(std::string& out, uint64_t streamId);
void appendJson(std::string& out, float value);
void appendJson(std::string& out, std::string_view text);
void appendJson(std::string& out, NSCam::MSize const& size);
void appendJson(std::string& out, NSCam::MRect const& rect);
void appendJson(std::string& out, NSCam::MRectF const& rect);
void appendJson(std::string& out, std::vector<int32_t> const& numbers);
void appendJson(std::string& out, NSCam::Feature::ZoomOverrideMode mode);
void appendJson(std::string& out, NSCam::Feature::OverrideNotice notice);

/// An object with all fields of a record.
template <typename Record>
std::enable_if_t<kIsRecord<Record>> appendJson(std::string& out, Record const& record);

/// null for an empty pointer.
template <typename Record>
void appendJson(std::string& out, std::shared_ptr<Record> const& record);

// Tables, in ascending order of their keys. Entries that point nowhere are left out: to the library
// they are as good as missing.
template <typename Key, typename Item>
void appendJson(std::string& out, std::unordered_map<Key, Item> const& table);
template <typename Key, typename Item>
void appendJson(std::string& out, std::map<Key, Item> const& table);

/// A value by itself.
template <typename T>
std::string jsonText(T const& value) {
    std::string text;
    appendJson(text, value);
    return text;
}

/// A number without quotes, such as a line number.
void appendNumber(std::string& out, uint64_t value);

// appendKey appends the name of a table's entry without its quotes: sensor ids, 8-bit ports and the
// like in decimal, port keys and stream ids in hexadecimal.
void appendKey(std::string& out, uint8_t port);
void appendKey(std::string& out, uint32_t sensorId);
void appendKey(std::string& out, uint16_t portKey);
void appendKey(std::string& out, int64_t streamId);

/// The entries of a table in ascending order of their keys.
template <typename Table>
std::vector<typename Table::value_type const*> inKeyOrder(Table const& table) {
    std::vector<typename Table::value_type const*> entries;
    entries.reserve(table.size());
    for (auto const& entry : table) {
        entries.push_back(&entry);
    }
    std::sort(entries.begin(), entries.end(),
              [](auto const* a, auto const* b) { return a->first < b->first; });
    return entries;
}

template <typename Item>
bool pointsNowhere(Item const& /*item*/) {
    return false;
}
template <typename Item>
bool pointsNowhere(std::shared_ptr<Item> const& item) {
    return item == nullptr;
}

template <typename Table>
void appendTable(std::string& out, Table const& table) {
    char const* separator = "\"";
    out += '{';
    for (auto const* entry : inKeyOrder(table)) {
        if (pointsNowhere(entry->second)) {
            continue;
        }
        out += separator;
        appendKey(out, entry->first);
        out += "\": ";
        appendJson(out, entry->second);
        separator = ", \"";
    }
    out += '}';
}

template <typename Key, typename Item>
void appendJson(std::string& out, std::unordered_map<Key, Item> const& table) {
    appendTable(out, table);
}

template <typename Key, typename Item>
void appendJson(std::string& out, std::map<Key, Item> const& table) {
    appendTable(out, table);
}

template <typename Record>
std::enable_if_t<kIsRecord<Record>> appendJson(std::string& out, Record const& record) {
    char const* separator = "\"";
    out += '{';
    visitFields<Record>([&](auto const& field) {
        out.append(separator).append(field.name).append("\": ");
        appendJson(out, record.*field.member);
        separator = ", \"";
    });
    out += '}';
}

template <typename Record>
void appendJson(std::string& out, std::shared_ptr<Record> const& record) {
    if (record == nullptr) {
        out += "null";
    } else {
        appendJson(out, *record);
    }
}

/// Appends ", "name": value", for a field that is not an object's first.
template <typename T>
void appendField(std::string& out, std::string_view name, T const& value) {
    out.append(", \"").append(name).append("\": ");
    appendJson(out, value);
}

}  // namespace scenario
