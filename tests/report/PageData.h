// Reads a report's page as its scripts do.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace zoomreplay::test {

/// The data of a page, "requests" and "overview" unpacked, in the order of their deposits.
nlohmann::json pageData(std::string const& page);

}  // namespace zoomreplay::test
