#include "DifferenceWriter.h"

#include <string>

#include "scenario/text/JsonText.h"

namespace zoomreplay {

void writeDifference(File& file, Difference const& difference) {
    using scenario::appendJson;
    auto const orNull = [](std::string const& result) { return result.empty() ? "null" : result; };

    std::string line = "{";
    if (difference.request.has_value()) {
        line += "\"request\": " + std::to_string(*difference.request) + ", ";
    }
    line += "\"op\": ";
    appendJson(line, difference.op);
    line += ", \"fields\": [";
    for (FieldDifference const& field : difference.fields) {
        line += &field == difference.fields.data() ? "" : ", ";
        appendJson(line, std::string_view(field.path));
    }
    line += "], \"expected\": " + orNull(difference.expected) +
            ", \"actual\": " + orNull(difference.actual) + "}\n";
    file.write(line);
}

}  // namespace zoomreplay
