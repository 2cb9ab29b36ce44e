// Builds the lines of scenarios and results, and the objects in them, field by field.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "scenario/text/JsonText.h"

namespace scenario {

/// Appends an object to a text, which is the caller's, who may reuse its memory.
class Object {
 public:
    explicit Object(std::string& out) : Object(out, "}") {}

    template <typename T>
    Object& field(std::string_view name, T const& value) {
        appendJson(begin(name), value);
        return *this;
    }

    /// A number without quotes, such as a line number.
    Object& number(std::string_view name, uint64_t value) {
        appendNumber(begin(name), value);
        return *this;
    }

    /// A word that needs no escapes.
    Object& word(std::string_view name, std::string_view value) {
        begin(name).append(1, '"').append(value).append(1, '"');
        return *this;
    }

    /// A value that is JSON already.
    Object& json(std::string_view name, std::string_view text) {
        begin(name).append(text);
        return *this;
    }

    /// Empty tables and lists are left out, as are values that their readers take for granted.
    template <typename Table>
    Object& table(std::string_view name, Table const& table) {
        return table.empty() ? *this : field(name, table);
    }

    /// All fields of a record, but no empty tables.
    template <typename Record>
    Object& fields(Record const& record) {
        visitFields<Record>([&](auto const& known) {
            auto const& value = record.*known.member;
            if constexpr (requires { value.empty(); }) {
                table(known.name, value);
            } else {
                field(known.name, value);
            }
        });
        return *this;
    }

    void end() { mOut += mEnd; }

 protected:
    Object(std::string& out, char const* end) : mOut(out), mEnd(end) { mOut += '{'; }

 private:
    std::string& begin(std::string_view name) {
        mOut.append(mSeparator).append(name).append("\": ");
        mSeparator = ", \"";
        return mOut;
    }

    std::string& mOut;
    char const* mEnd;
    char const* mSeparator = "\"";
};

/// A line of a scenario, with its line end.
class Line : public Object {
 public:
    Line(std::string& out, std::string_view op) : Object(out, "}\n") { word("op", op); }
};

}  // namespace scenario
