// The operations that the lines of a scenario name.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Outcome.h"
#include "reading/Value.h"

namespace zoomreplay {

class Library;

struct Operation {
    std::string_view name;

    /// Reads the fields, refuses what does not belong there, and only then acts. Empty for a line
    /// that sets up the platform. @throws LineError
    std::optional<Answer> (*run)(Fields& fields, Library& library);
};

/// @throws LineError there is no such operation.
Operation const& findOperation(std::string const& name);

// One group a source file.
std::span<Operation const> platformOperations();
std::span<Operation const> managerOperations();
std::span<Operation const> mapperOperations();

}  // namespace zoomreplay
