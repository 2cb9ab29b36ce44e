#include "scenario/json/Document.h"

namespace scenario {
namespace {

void copyNode(Json const& json, Node& result, NodeMemory& memory) {
    switch (json.type()) {
        case Json::value_t::object: {
            auto const& object = json.get_ref<Json::object_t const&>();
            Member* const members = memory.members(object.size());
            Member* next = members;
            for (auto const& [name, value] : object) {
                next->name = name;
                copyNode(value, next++->node, memory);
            }
            result.value = Members(members, object.size());
            break;
        }
        case Json::value_t::array: {
            Node* const elements = memory.elements(json.size());
            Node* next = elements;
            for (Json const& element : json) {
                copyNode(element, *next++, memory);
            }
            result.value = Elements(elements, json.size());
            break;
        }
        case Json::value_t::string:
            result.value = std::string_view(json.get_ref<std::string const&>());
            break;
        case Json::value_t::boolean:
            result.value = json.get<bool>();
            break;
        case Json::value_t::number_integer:
            result.value = json.get<int64_t>();
            break;
        case Json::value_t::number_unsigned:
            result.value = json.get<uint64_t>();
            break;
        case Json::value_t::number_float:
            result.value = json.get<float>();
            break;
        default:
            result.value = nullptr;
    }
}

}  // namespace

Node const& Document::parse(std::string_view line) {
    if (Node const* const node = mQuick.read(line, mMemory)) {
        return *node;
    }
    mStrict = parseObject(line);
    mMemory.reset(line.size());
    return toNode(mStrict, mMemory);
}

Node const& toNode(Json const& json, NodeMemory& memory) {
    Node* const node = memory.elements(1);
    copyNode(json, *node, memory);
    return *node;
}

}  // namespace scenario
