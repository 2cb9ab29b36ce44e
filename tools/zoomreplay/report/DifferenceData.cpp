#include "DifferenceData.h"

namespace zoomreplay {

PackedRow differenceData(Difference const& difference) {
    PackedRow out;
    out.open('{');
    out.key("line").number(static_cast<int64_t>(difference.line));
    if (difference.request.has_value()) {
        out.key("no").number(int64_t{*difference.request});
    }
    out.key("op").word(difference.op);
    if (!difference.expected.empty()) {
        out.key("expected").text(difference.expected);
    }
    out.key("fields").open('[');
    for (FieldDifference const& field : difference.fields) {
        out.open('[');
        out.text(field.path);
        out.text(field.expected);
        out.text(field.actual);
        out.close(']');
    }
    out.close(']');
    out.close('}');
    return out;
}

}  // namespace zoomreplay
