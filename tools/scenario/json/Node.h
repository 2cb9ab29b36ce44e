// What a line says, whichever parser has read it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

namespace scenario {

/// Values that follow each other in memory.
template <typename T>
class Run {
 public:
    Run(T const* begin, size_t size) : mBegin(begin), mSize(size) {}

    T const* begin() const { return mBegin; }
    T const* end() const { return mBegin + mSize; }
    size_t size() const { return mSize; }
    T const& operator[](size_t index) const { return mBegin[index]; }

 private:
    T const* mBegin;
    size_t mSize;
};

struct Node;
struct Member;
using Elements = Run<Node>;
using Members = Run<Member>;

/// A JSON value. An integer with a minus sign, be it -0, is an int64_t, any other one a uint64_t;
/// what needs more than 64 bits is a float, as numbers with a fraction or an exponent are.
struct Node {
    std::variant<std::nullptr_t, bool, int64_t, uint64_t, float, std::string_view, Elements,
                 Members>
        value = nullptr;
};

/// The members of an object are in the order of their names, which all differ.
struct Member {
    std::string_view name;
    Node node;
};

inline Member const* findMember(Members const& members, std::string_view name) {
    auto const* const found =
        std::find_if(members.begin(), members.end(),
                     [name](Member const& member) { return member.name == name; });
    return found == members.end() ? nullptr : found;
}

/// The memory of the elements and members of a line, kept from line to line.
class NodeMemory {
 public:
    /// Forgets the line before. @param length of the line to come, in bytes
    void reset(size_t length) {
        size_t const most = length / 2 + 1;  // each takes a byte and a comma
        mElements.clear();
        mElements.reserve(most);
        mMembers.clear();
        mMembers.reserve(most);
    }

    Node* elements(size_t count) { return grow(mElements, count); }
    Member* members(size_t count) { return grow(mMembers, count); }

 private:
    template <typename T>
    static T* grow(std::vector<T>& all, size_t count) {
        size_t const before = all.size();
        all.resize(before + count);
        return all.data() + before;
    }

    std::vector<Node> mElements;
    std::vector<Member> mMembers;
};

}  // namespace scenario
