// Leaves the parsing to simdjson, and refuses what that lets pass or reads differently.
#include "scenario/json/QuickReader.h"

#include <simdjson.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "scenario/json/Json.h"

namespace scenario {
namespace {

namespace dom = simdjson::dom;

/// Texts are rounded to floats at once. A detour over double gives the same, unless it ends halfway
/// between two floats: then what it has dropped decides. Tiny numbers have floats of fewer digits.
bool roundToFloat(double number, float& result) {
    using Limits = std::numeric_limits<float>;
    constexpr uint64_t kBeyondFloat = (uint64_t{1} << 29U) - 1;  // digits of a double
    constexpr uint64_t kHalfway = uint64_t{1} << 28U;
    double const magnitude = std::abs(number);
    bool const isUsual = magnitude >= Limits::min() && magnitude < Limits::max();
    if (!isUsual && number != 0.0) {
        return false;
    }
    result = static_cast<float>(number);
    return (std::bit_cast<uint64_t>(number) & kBeyondFloat) != kHalfway;
}

bool isBefore(Member const& a, Member const& b) {
    return a.name < b.name;
}

bool haveOneName(Member const& a, Member const& b) {
    return a.name == b.name;
}

/// Makes nodes of what simdjson has read. False where that may not be what the line says.
class Copier {
 public:
    explicit Copier(NodeMemory& memory) : mMemory(memory) {}

    bool copy(dom::element const& value, Node& result) {
        switch (value.type()) {
            case dom::element_type::OBJECT:
                return copyObject(value.get_object().value_unsafe(), result);
            case dom::element_type::ARRAY:
                return copyArray(value.get_array().value_unsafe(), result);
            case dom::element_type::STRING:
                result.value = value.get_string().value_unsafe();
                return true;
            case dom::element_type::DOUBLE:
                return roundToFloat(value.get_double().value_unsafe(),
                                    result.value.emplace<float>());
            case dom::element_type::INT64:
                copySigned(value.get_int64().value_unsafe(), result);
                return true;
            case dom::element_type::UINT64:
                result.value = value.get_uint64().value_unsafe();
                return true;
            case dom::element_type::BOOL:
                result.value = value.get_bool().value_unsafe();
                return true;
            case dom::element_type::NULL_VALUE:
                result.value = nullptr;
                return true;
        }
        return false;
    }

    /// Of which simdjson does not tell whether it had a minus sign.
    bool hasZero() const { return mHasZero; }

 private:
    void copySigned(int64_t number, Node& result) {
        mHasZero = mHasZero || number == 0;
        if (number < 0) {
            result.value = number;
        } else {
            result.value = static_cast<uint64_t>(number);
        }
    }

    bool copyArray(dom::array const& array, Node& result) {
        if (++mDepth > kDeepest) {
            return false;
        }
        size_t const count = array.size();
        Node* const elements = mMemory.elements(count);
        Node* next = elements;
        for (dom::element const element : array) {
            if (!copy(element, *next++)) {
                return false;
            }
        }
        result.value = Elements(elements, count);
        --mDepth;
        return true;
    }

    bool copyObject(dom::object const& object, Node& result) {
        if (++mDepth > kDeepest) {
            return false;
        }
        size_t const count = object.size();
        Member* const members = mMemory.members(count);
        Member* next = members;
        for (auto const [name, value] : object) {
            next->name = name;
            if (!copy(value, next++->node)) {
                return false;
            }
        }
        std::sort(members, next, isBefore);
        result.value = Members(members, count);
        --mDepth;
        return std::adjacent_find(members, next, haveOneName) == next;
    }

    NodeMemory& mMemory;
    size_t mDepth = 0;
    bool mHasZero = false;
};

}  // namespace

struct QuickReader::Parser {
    dom::parser parser;
    std::string text;  // of the line, with the room behind it that simdjson wants
};

QuickReader::QuickReader() : mParser(std::make_unique<Parser>()) {}

QuickReader::~QuickReader() = default;

Node const* QuickReader::read(std::string_view line, NodeMemory& memory) {
    auto const first = line.find_first_not_of(" \t\r");
    if (first == std::string_view::npos || line[first] != '{') {
        return nullptr;
    }
    auto& [parser, text] = *mParser;
    text.assign(line);
    text.resize(line.size() + simdjson::SIMDJSON_PADDING);
    dom::element root;
    if (parser.parse(text.data(), line.size(), false).get(root) != simdjson::SUCCESS) {
        return nullptr;
    }

    memory.reset(line.size());
    Copier copier(memory);
    Node* const result = memory.elements(1);
    bool const isCopied = copier.copy(root, *result);
    bool const isSigned = copier.hasZero() && line.find("-0") != std::string_view::npos;
    return isCopied && !isSigned ? result : nullptr;
}

}  // namespace scenario
