#include "JumpList.h"

#include <string>

#include "results/CellText.h"

namespace zoomreplay {

void JumpList::finish(ReplaySummary const& replay) {
    JumpFinder::finish(replay);
    if (count() == 0) {
        mFile.write("No jumps: the picture moves with the asked ratio.\n");
        return;
    }
    std::string text = "   line    request  jump\n";
    auto const worst = worstFirst(mLimit);
    for (Jump const& jump : worst) {
        text += padLeft(std::to_string(jump.line), 7) +
                padLeft(std::to_string(jump.requestNo), 11) + "  " + textOf(jump) + '\n';
    }
    if (count() > worst.size()) {
        text += "and " + std::to_string(count() - worst.size()) + " more\n";
    }
    mFile.write(text);
}

}  // namespace zoomreplay
