// Finds operations by their names.
#include "Operations.h"

#include <array>
#include <unordered_map>
#include <vector>

#include "scenario/json/LineError.h"
#include "scenario/json/NearMiss.h"

namespace zoomreplay {

using namespace scenario;

namespace {

using OperationsByName = std::unordered_map<std::string_view, Operation const*>;

std::array<std::span<Operation const>, 3> allGroups() {
    return {platformOperations(), managerOperations(), mapperOperations()};
}

OperationsByName const& allOperations() {
    static auto const kByName = [] {
        OperationsByName byName;
        for (auto const group : allGroups()) {
            for (Operation const& operation : group) {
                byName.emplace(operation.name, &operation);
            }
        }
        return byName;
    }();
    return kByName;
}

[[noreturn]] void failUnknown(std::string_view name) {
    std::vector<std::string_view> names;
    for (auto const group : allGroups()) {
        for (Operation const& operation : group) {
            names.push_back(operation.name);  // in their order, which decides between two as near
        }
    }
    throw LineError(std::string(name) + ": unknown operation" + didYouMean(name, names));
}

}  // namespace

Operation const& findOperation(std::string_view name) {
    auto const found = allOperations().find(name);
    if (found == allOperations().end()) {
        failUnknown(name);
    }
    return *found->second;
}

}  // namespace zoomreplay
