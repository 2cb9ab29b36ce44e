// The loop over the lines, and the end that the library can make of it.
#include "Replay.h"

#include <android/log.h>
#include <unistd.h>

#include <utility>

#include "Operations.h"
#include "base/UnfinishedFile.h"
#include "host/LiblogCallback.h"
#include "scenario/json/LineError.h"
#include "scenario/json/Value.h"

namespace zoomreplay {

using namespace scenario;

namespace {

// liblog's callbacks take no context.
Replay* theReplay = nullptr;
std::string theLastError;

// liblog would repeat on standard error what --log is for. Only an error matters even without it:
// it is what the library says before it stops the process.
constexpr auto keepError = [](auto const* line, auto... text) {
    if (line->priority == ANDROID_LOG_ERROR) {
        theLastError = NSCam::Host::textOf(line, text...);
    }
};

LineTime readTime(Fields& fields) {
    auto const read = [&fields](std::string_view name) {
        int64_t nanoseconds = 0;
        bool const isThere = fields.optional(name, nanoseconds);
        if (nanoseconds < 0) {
            fields.fail(std::string(name) + ": must not be negative");
        }
        return isThere ? std::optional(nanoseconds) : std::nullopt;
    };
    auto const start = read("t");
    return {start, read("dur")};
}

}  // namespace

Replay::Replay(LineReader& scenario, bool isLogged, std::vector<OutcomeConsumer*> consumers,
               Progress& progress)
    : mScenario(scenario),
      mIsLogged(isLogged),
      mConsumers(std::move(consumers)),
      mProgress(progress),
      mLibrary([this](Input const& input) { announce(input); }) {}

void Replay::run() {
    theReplay = this;
    __android_log_set_aborter(onFatal);
    __android_log_set_logger(keepError);
    NSCam::Host::captureLog(mIsLogged);

    mScenario.setBeforeWait([this] { flush(); });
    try {
        replayLines();
    } catch (UserError const&) {
        flush();  // what came before counts
        throw;
    }
    finish();
}

void Replay::replayLines() {
    while (auto const line = mScenario.next()) {
        try {
            replayLine(*line);
        } catch (LineError const& e) {
            if (isCutOff(e)) {
                mProgress.clear();
                flush();
                complain(mScenario.place() + ": cut off; the record ends with the line before");
                break;
            }
            std::string const op = mOp.empty() ? "" : std::string(mOp) + ": ";
            throw UserError(mScenario.place() + ": " + op + e.what());
        }
        mProgress.tick();
    }
}

// As a record is whose process was killed while it wrote.
bool Replay::isCutOff(LineError const& error) const {
    return mScenario.isLastOpen() && dynamic_cast<UnfinishedLine const*>(&error) != nullptr;
}

void Replay::replayLine(std::string_view line) {
    mOp = {};
    Value const value(mDocument.parse(line));
    Fields fields(value);
    std::string_view op;
    fields.required("op", op);
    Operation const& operation = findOperation(op);
    if (fields.has("line")) {
        fields.fail("line: results have it, a scenario does not");
    }

    mOp = operation.name;
    mTime = readTime(fields);
    theLastError.clear();
    for (OutcomeConsumer* consumer : mConsumers) {
        consumer->begin(mScenario.lineNumber(), mTime);
    }
    auto answer = operation.run(fields, mLibrary);
    if (answer.has_value()) {
        deliver(std::move(*answer));
    }
}

void Replay::announce(Input const& input) {
    for (OutcomeConsumer* consumer : mConsumers) {
        consumer->prepare(mScenario.lineNumber(), input);
    }
}

void Replay::deliver(Answer&& answer) {
    Outcome outcome{mScenario.lineNumber(), mTime, mOp, std::move(answer), mIsLogged, {}};
    if (mIsLogged) {
        outcome.log = NSCam::Host::takeCapturedLog();
    }
    for (OutcomeConsumer* consumer : mConsumers) {
        consumer->consume(outcome);
    }
}

void Replay::flush() {
    for (OutcomeConsumer* consumer : mConsumers) {
        consumer->flush();
    }
}

void Replay::finish() {
    mProgress.clear();
    for (OutcomeConsumer* consumer : mConsumers) {
        consumer->finish();
    }
}

void Replay::onFatal(char const* text) {
    theReplay->endFatally(text);
}

// Runs inside the library, which may hold its lock: it must not be called again, nor destroyed.
void Replay::endFatally(std::string_view text) {
    auto status = ExitStatus::Fatal;
    try {
        text = text.substr(0, text.find_last_not_of("\r\n") + 1);
        deliver(FatalAnswer{std::string(text)});
        finish();
    } catch (std::exception const& e) {
        complain(e.what());
        status = ExitStatus::BadInput;
    }
    if (!theLastError.empty()) {
        complain(theLastError);
    }
    complain(mScenario.place() + ": " + std::string(mOp) + ": the library stopped the process");
    for (OutcomeConsumer* consumer : mConsumers) {
        consumer->stay();
    }
    removeUnfinished();
    _exit(static_cast<int>(status));
}

}  // namespace zoomreplay
