// A log line that is off. The floor is the same loop without the line.
#include "Case.h"
#include "LogLines.h"
#include "Rig.h"

namespace Bench {

namespace {

/// Ten lines a call, as many as a query has, so that the loop itself does not hide their cost.
#define TEN_LINES(LINE) LINE LINE LINE LINE LINE LINE LINE LINE LINE LINE

class LinesOff final : public Work {
 public:
    explicit LinesOff(int calls) : mCalls(calls) { NSCam::Utils::ULog::ULogger::sDetailsLevel = 0; }

    void module() override {
        for (int i = 0; i < mCalls; ++i) {
            TEN_LINES(ZLOG_DEBUG("meta req %d, ratio %.2f!!", i, kOverrideRatio);)
            mLast = i;
        }
    }

    void floor() override {
        for (int i = 0; i < mCalls; ++i) {
            mLast = i;
        }
    }

    bool agree() const override { return mLast == mCalls - 1; }

 private:
    std::string mName = "LinesOff";
    int mCalls;
    int volatile mLast = 0;
};

}  // namespace

std::vector<Case> logCases() {
    return {makeCase<LinesOff>("log/ten-lines-off", kSmallCalls)};
}

}  // namespace Bench
