// The operations that the lines of a scenario name.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Outcome.h"
#include "scenario/json/Value.h"

namespace zoomreplay {

class Library;

struct Operation {
    std::string_view name;

    /// Reads the fields, refuses what does not belong there, and only then acts. Empty for a line
    /// that sets up the platform. @throws scenario::LineError
    std::optional<Answer> (*run)(scenario::Fields& fields, Library& library);
};

/// @throws scenario::LineError there is no such operation.
Operation const& findOperation(std::string_view name);

// One group a source file.
std::span<Operation const> platformOperations();
std::span<Operation const> managerOperations();
std::span<Operation const> mapperOperations();

}  // namespace zoomreplay
