// The values of a line, read as fast as the line allows.
#pragma once

#include <string_view>

#include "scenario/json/Json.h"
#include "scenario/json/Node.h"
#include "scenario/json/QuickReader.h"

namespace scenario {

/// One for many lines: its memory is used again.
class Document {
 public:
    /// Reads a line that holds one object. The node lives until the next call.
    /// @throws LineError as parseObject.
    Node const& parse(std::string_view line);

 private:
    QuickReader mQuick;
    Json mStrict;  // what only parseObject could read
    NodeMemory mMemory;
};

/// What parseObject has read, as a node that refers to it.
Node const& toNode(Json const& json, NodeMemory& memory);

}  // namespace scenario
