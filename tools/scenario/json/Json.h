// The JSON of one line, parsed strictly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace scenario {

/// Fractions are single precision from the start, so that decimal text is rounded only once.
using Json =
    nlohmann::basic_json<std::map, std::vector, std::string, bool, int64_t, uint64_t, float>;

/// Containers in each other. No line of ours comes near it; it bounds what a damaged line can cost.
constexpr size_t kDeepest = 16;

/// Parses a line that holds one object.
/// @throws LineError anything else, an object that names a field twice, a number beyond the range
/// of
///     a float.
Json parseObject(std::string_view line);

/// A number as a float, the sign of zero kept also where the line says just "-0".
float floatOf(Json const& number);

}  // namespace scenario
