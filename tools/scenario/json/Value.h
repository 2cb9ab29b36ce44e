// Typed access to the values of a scenario line. Whatever is wrong with one is told with its path,
// such as "streamSizes.0x700100000000[1]".
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scenario/json/Node.h"

namespace scenario {

/// A JSON value and where it stands in its line. Refers to the node and to the value around it.
class Value {
 public:
    /// A whole line.
    explicit Value(Node const& node) : mNode(node) {}

    /// The value of an object's field; name is not copied.
    Value(Node const& node, Value const& parent, std::string_view name)
        : mNode(node), mParent(&parent), mName(name) {}

    /// The element of an array.
    Value(Node const& node, Value const& parent, size_t index)
        : mNode(node), mParent(&parent), mIndex(index) {}

    /// Null where it is of another of the types that a Node can have.
    template <typename T>
    T const* as() const {
        return std::get_if<T>(&mNode.value);
    }

    /// @throws LineError it is no object.
    Members const& object() const;

    /// @throws LineError it is no array.
    Elements const& array() const;

    /// @throws LineError always: "path: what".
    [[noreturn]] void fail(std::string const& what) const;

    std::string path() const;

 private:
    Node const& mNode;
    Value const* mParent = nullptr;
    std::string_view mName;
    size_t mIndex = 0;
};

// read converts a value into the variable's type. All throw LineError when it does not fit: another
// JSON type, a number outside the range. Integers also come as decimal or hexadecimal strings, a
// uint32_t also as -1, and hexadecimal 64-bit integers (stream ids) are bit patterns.
void read(Value const& value, bool& result);
void read(Value const& value, uint8_t& result);
void read(Value const& value, uint16_t& result);
void read(Value const& value, uint32_t& result);
void read(Value const& value, uint64_t& result);
void read(Value const& value, int32_t& result);
void read(Value const& value, int64_t& result);
void read(Value const& value, float& result);
void read(Value const& value, std::string& result);

/// The text lives as long as the value's node.
void read(Value const& value, std::string_view& result);

// readKey converts the name of a table's entry; entry tells where it stands.
void readKey(Value const& entry, std::string_view name, uint8_t& result);
void readKey(Value const& entry, std::string_view name, uint16_t& result);
void readKey(Value const& entry, std::string_view name, uint32_t& result);
void readKey(Value const& entry, std::string_view name, int64_t& result);

/// Whether a value is an integer in one of its spellings, in range or not.
bool isInteger(Value const& value);

template <typename Table>
void readTable(Value const& value, Table& table) {
    for (auto const& [name, node] : value.object()) {
        Value const entry(node, value, name);
        typename Table::key_type key{};
        readKey(entry, name, key);
        auto const [place, isNew] = table.try_emplace(key);
        if (!isNew) {
            entry.fail("another spelling of a key that is there already");
        }
        read(entry, place->second);
    }
}

template <typename Key, typename Item>
void read(Value const& value, std::unordered_map<Key, Item>& result) {
    readTable(value, result);
}

template <typename Key, typename Item>
void read(Value const& value, std::map<Key, Item>& result) {
    readTable(value, result);
}

template <typename Item>
void read(Value const& value, std::vector<Item>& result) {
    auto const& elements = value.array();
    result.resize(elements.size());
    for (size_t i = 0; i < elements.size(); ++i) {
        read(Value(elements[i], value, i), result[i]);
    }
}

/// The fields of an object. Whoever has read all that it knows calls finish, which refuses the
/// rest.
class Fields {
 public:
    /// @param object outlives the fields.
    explicit Fields(Value const& object) : mObject(object), mMembers(object.object()) {
        mKnown.reserve(kUsualFields);
    }

    bool has(std::string_view name) const { return findMember(mMembers, name) != nullptr; }

    /// Leaves result alone where the field is left out. @return whether it is there.
    template <typename T>
    bool optional(std::string_view name, T& result) {
        mKnown.push_back(name);
        auto const* const field = findMember(mMembers, name);
        if (field == nullptr) {
            return false;
        }
        ++mFound;
        read(Value(field->node, mObject, name), result);
        return true;
    }

    template <typename T>
    void required(std::string_view name, T& result) {
        if (!optional(name, result)) {
            failMissing(name);
        }
    }

    void finish() const;

    /// @throws LineError always, about the object as a whole.
    [[noreturn]] void fail(std::string const& what) const { mObject.fail(what); }

 private:
    static constexpr size_t kUsualFields = 16;

    [[noreturn]] void failMissing(std::string_view name) const;

    Value const& mObject;
    Members mMembers;
    std::vector<std::string_view> mKnown;
    size_t mFound = 0;
};

}  // namespace scenario
