#include "Operations.h"

#include <unordered_map>

namespace zoomreplay {

Operation const* findOperation(std::string_view name) {
    static auto const kByName = [] {
        std::unordered_map<std::string_view, Operation const*> byName;
        for (auto const group : {platformOperations(), managerOperations(), mapperOperations()}) {
            for (Operation const& operation : group) {
                byName.emplace(operation.name, &operation);
            }
        }
        return byName;
    }();

    auto const found = kByName.find(name);
    return found == kByName.end() ? nullptr : found->second;
}

}  // namespace zoomreplay
