// Replays a scenario line by line.
#pragma once

#include <string_view>
#include <vector>

#include "Library.h"
#include "Outcome.h"
#include "Progress.h"
#include "base/LineReader.h"
#include "base/Messages.h"
#include "scenario/json/Document.h"
#include "scenario/json/LineError.h"

namespace zoomreplay {

/// One a process, as the library's manager is.
class Replay {
 public:
    /// All parameters outlive the replay.
    Replay(LineReader& scenario, bool isLogged, std::vector<OutcomeConsumer*> consumers,
           Progress& progress);

    /// Calls the library with every line and hands each outcome to the consumers, in their order,
    /// before the next line is read. They hold nothing back while the scenario keeps the replay
    /// waiting, and at a bad line. A fatal condition of the library ends the process in here,
    /// with ExitStatus::Fatal, after the consumers have got it and have finished.
    /// A last line that has no line end and is no whole object is told and left out.
    /// @throws UserError a bad line, an unreadable scenario, or what a consumer throws.
    void run();

    /// Replays a line that the scenario does not have. @throws scenario::LineError
    void replayLine(std::string_view line);

 private:
    static void onFatal(char const* text);
    [[noreturn]] void endFatally(std::string_view text);

    bool isCutOff(scenario::LineError const& error) const;
    void replayLines();
    void announce(Input const& input);
    void deliver(Answer&& answer);
    void flush();
    void finish();

    LineReader& mScenario;
    bool mIsLogged;
    std::vector<OutcomeConsumer*> mConsumers;
    Progress& mProgress;
    Library mLibrary;
    scenario::Document mDocument;
    std::string_view mOp;  // of the line in hand
    LineTime mTime;        // likewise
};

}  // namespace zoomreplay
