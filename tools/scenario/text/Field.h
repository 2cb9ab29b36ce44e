// How the fields of a record are described, and that none is forgotten.
#pragma once

#include <cstddef>
#include <string_view>
#include <tuple>

namespace scenario {

/// A field of a record, and of the object that a scenario has for it.
template <typename Record, typename Item>
struct Field {
    std::string_view name;
    Item Record::*member;
    bool isRequired;  ///< of whoever writes a scenario
};

/// A field that scenarios do not carry.
template <typename Record, typename Item>
struct HiddenField {
    std::string_view name;
    Item Record::*member;
};

namespace fields {

template <typename Record, typename Item>
constexpr Field<Record, Item> optional(std::string_view name, Item Record::*member) {
    return {name, member, false};
}

template <typename Record, typename Item>
constexpr Field<Record, Item> required(std::string_view name, Item Record::*member) {
    return {name, member, true};
}

template <typename Record, typename Item>
constexpr HiddenField<Record, Item> hidden(std::string_view name, Item Record::*member) {
    return {name, member};
}

/// Converts to everything, so that it can stand for any field.
struct Anything {
    template <typename T>
    operator T() const;  // NOLINT(google-explicit-constructor)
};

/// How many values an aggregate takes: one a base, one a field.
template <typename Record, typename... Values>
constexpr size_t valuesOf() {
    if constexpr (requires { Record{Values{}..., Anything{}}; }) {
        return valuesOf<Record, Values..., Anything>();
    } else {
        return sizeof...(Values);
    }
}

template <typename Record, typename... Fields>
constexpr auto describe(Fields... fields) {
    static_assert(valuesOf<Record>() == sizeof...(Fields),
                  "the record has fields without a description");
    return std::tuple<Fields...>(fields...);
}

/// Describes a record that begins with another one.
template <typename Record, typename... BaseFields, typename... Fields>
constexpr auto extend(std::tuple<BaseFields...> base, Fields... fields) {
    static_assert(valuesOf<Record>() == 1 + sizeof...(Fields),
                  "the record has fields without a description");
    return std::tuple_cat(base, std::tuple<Fields...>(fields...));
}

}  // namespace fields

}  // namespace scenario
