// Builds one line of a scenario.
#pragma once

#include <string>
#include <string_view>

#include "scenario/text/JsonText.h"

namespace scenario {

/// Appends the line to a text, field by field. The text is the caller's, who may reuse its memory.
class Line {
 public:
    Line(std::string& out, std::string_view op) : mOut(out) {
        mOut.append(R"({"op": ")").append(op).append(1, '"');
    }

    template <typename T>
    Line& field(std::string_view name, T const& value) {
        appendField(mOut, name, value);
        return *this;
    }

    /// Empty tables and lists are left out, as are values that their readers take for granted.
    template <typename Table>
    Line& table(std::string_view name, Table const& table) {
        return table.empty() ? *this : field(name, table);
    }

    /// A number that is not negative.
    Line& nanoseconds(std::string_view name, int64_t value) {
        mOut.append(", \"").append(name).append("\": ");
        appendNumber(mOut, static_cast<uint64_t>(value));
        return *this;
    }

    /// A value that is JSON already.
    Line& json(std::string_view name, std::string_view text) {
        mOut.append(", \"").append(name).append("\": ").append(text);
        return *this;
    }

    void end() { mOut += "}\n"; }

 private:
    std::string& mOut;
};

}  // namespace scenario
