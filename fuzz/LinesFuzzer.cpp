// Both readers of lines: what the quick one takes is what the strict one reads, to the bit.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>
#include <variant>

#include "scenario/json/Document.h"
#include "scenario/json/QuickReader.h"

namespace {

using namespace scenario;

template <typename T>
bool isSame(T const& a, T const& b) {
    return a == b;
}

bool isSame(float a, float b) {
    return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b);
}

bool isSame(Node const& a, Node const& b);

bool isSame(Member const& a, Member const& b) {
    return a.name == b.name && isSame(a.node, b.node);
}

template <typename T>
bool isSame(Run<T> const& a, Run<T> const& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](T const& x, T const& y) { return isSame(x, y); });
}

bool isSame(Node const& a, Node const& b) {
    return std::visit(
        [](auto const& x, auto const& y) {
            if constexpr (std::is_same_v<decltype(x), decltype(y)>) {
                return isSame(x, y);
            }
            return false;
        },
        a.value, b.value);
}

void check(std::string_view line) {
    static QuickReader quick;
    static NodeMemory quickMemory;
    Node const* const read = quick.read(line, quickMemory);
    if (read == nullptr) {
        return;
    }
    Json const json = parseObject(line);  // throws nothing
    NodeMemory memory;
    memory.reset(line.size());
    if (!isSame(*read, toNode(json, memory))) {
        __builtin_trap();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string_view text(reinterpret_cast<char const*>(data), size);
    while (!text.empty()) {
        auto const line = text.substr(0, text.find('\n'));
        check(line);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return 0;
}
