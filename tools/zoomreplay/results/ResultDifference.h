// In what two results differ.
#pragma once

#include <string>
#include <vector>

#include "scenario/json/Json.h"

namespace zoomreplay {

/// A field that differs, both values as JSON or "nothing".
struct FieldDifference {
    std::string path;  ///< such as need.tgCrops.0
    std::string expected;
    std::string actual;
};

/// The fields in which two results differ. They compare as JSON: the order of fields and the
/// spelling of numbers do not count, types and the sign of zero do. Logs count only where both
/// sides have them; the line, times, and source lines and addresses inside messages never do.
std::vector<FieldDifference> differencesOf(scenario::Json const& expected,
                                           scenario::Json const& actual);

/// What the library answered as one text. Results with the same one do not differ, but for their
/// logs.
std::string essenceOf(scenario::Json result);

}  // namespace zoomreplay
