// The command line of a live replay, and how it begins and ends.
#include "Live.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Attention.h"
#include "Browser.h"
#include "Feed.h"
#include "LivePage.h"
#include "Server.h"
#include "WhatIf.h"
#include "base/Arguments.h"
#include "base/Output.h"
#include "recording/Recording.h"
#include "replay/Replay.h"
#include "report/Report.h"
#include "steps/Explainer.h"

namespace zoomreplay {
namespace {

constexpr char const* kLiveFooter =
    R"(Prints the address of a page that follows the replay: the page of --report. It
is there until Ctrl-C, for browsers of this machine that know the address.

Examples:
  adb exec-out tail -c +1 -F /data/vendor/camera/zoomoverride.jsonl |
      zoomreplay live -
  zoomreplay live - --report zoom.html < zoom.jsonl

Exit status: 0 ended, 2 bad usage, file or line, 3 the library stopped the
process.)";

struct LiveOptions {
    std::string scenario;
    std::optional<std::string> report;
    uint16_t port = 0;
    bool isLogged = false;
    bool isOpened = false;
    bool isNeverOpened = false;
};

// The name that a browser saves a report under.
std::string reportName(std::string const& scenario) {
    std::string name = scenario == "-" ? "zoom" : std::filesystem::path(scenario).stem().string();
    constexpr char const* kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.";
    for (auto place = name.find_first_not_of(kPlain); place != std::string::npos;
         place = name.find_first_not_of(kPlain, place)) {
        name[place] = '-';
    }
    return name + ".html";
}

/// What goes on beside the replay, from its beginning until somebody ends it.
class Session : public OutcomeConsumer {
 public:
    Session(LiveOptions const& options, File const& input)
        : mAttention(mFeed),
          mReport(input.name(), {options.isLogged, false}),
          mRecording(RequestRange{}, mExplainer, {&mReport, &mFeed}) {
        if (options.report.has_value()) {
            mOutput.emplace(*options.report);
            checkSeparate({&*mOutput}, {&input});
        }
        auto const page = [name = input.name(), isLogged = options.isLogged](
                              std::string const& nonce) { return livePage(name, isLogged, nonce); };
        auto const report = [this] {
            return mAttention.copy([this](std::string const& output) { writeReport(output); });
        };
        auto const answer = [this](float ratio) {
            return mAttention.copy(
                [this, ratio](std::string const& output) { writeAnswer(ratio, output); });
        };
        mServer.emplace(
            Server::Offer{mBroadcast, page, report, reportName(options.scenario), answer},
            options.port);
    }

    /// @param replay that the session is about
    void begin(Replay& replay) { mReplay = &replay; }

    std::string const& address() const { return mServer->address(); }
    bool untilReadable(int descriptor) { return mAttention.untilReadable(descriptor); }

    void begin(uint64_t line, LineTime const& time) override {
        mExplainer.begin(line, time);
        mRecording.begin(line, time);
    }

    void prepare(uint64_t line, Input const& input) override {
        mExplainer.prepare(line, input);
        mRecording.prepare(line, input);
    }

    void consume(Outcome const& outcome) override {
        mExplainer.consume(outcome);
        mRecording.consume(outcome);
    }

    void finish() override {
        if (mAnswerFatally) {
            return;  // of the session nothing is over
        }
        mIsOver = true;
        mRecording.finish();
        if (mOutput.has_value()) {
            Replacement file(*mOutput);
            mReport.write(file.file());
            file.finish();
        }
    }

    /// What came before a bad line is worth a look.
    void breakOff(UserError const& error) {
        complain(error.what());
        if (!mIsOver) {
            finish();
        }
        stayUntilEnded(error.what());
    }

    void stay() override {
        if (mAnswerFatally) {
            mAnswerFatally();
            _exit(0);
        }
        mIsFatal = true;
        stayUntilEnded("");
    }

    /// @param trouble that ended the replay
    void stayUntilEnded(std::string_view trouble) {
        mFeed.end(trouble);
        mAttention.untilEnded();
        mFeed.close();
        mServer.reset();
    }

 private:
    // Both in a copy of the process.
    void writeReport(std::string const& output) {
        mFeed.silence();
        if (!mIsOver) {
            mRecording.finish();
        }
        File file = File::openOutput(output, 0, output);
        mReport.write(file);
    }

    void writeAnswer(float ratio, std::string const& output) {
        ReplayedRequest const* const request = mFeed.newest(canBeAsked);
        if (request == nullptr || mIsFatal) {
            throw UserError("there is nobody to ask");
        }
        WhatIf const question = whatIf(*request, mFeed.freeNumber(), ratio);
        mFeed.silence();
        File file = File::openOutput(output, 0, output);
        mAnswerFatally = [&] { file.write(fatalAnswerOf(question)); };
        for (std::string const& line : question.lines) {
            mReplay->replayLine(line);
        }
        file.write(answerOf(question, *mFeed.seen()));
    }

    Broadcast mBroadcast;
    Feed mFeed{mBroadcast};
    Attention mAttention;
    Explainer mExplainer;
    Report mReport;
    Recording mRecording;
    std::optional<Output> mOutput;
    std::optional<Server> mServer;
    bool mIsOver = false;
    bool mIsFatal = false;
    Replay* mReplay = nullptr;
    std::function<void()> mAnswerFatally;  // in a copy only
};

ExitStatus follow(LiveOptions const& options) {
    File input = File::openInput(options.scenario);
    Session session(options, input);
    File terminal = File::standardOutput();
    terminal.outliveReader();
    terminal.write(session.address() + '\n');
    if (options.isOpened || (hasDesktop() && !options.isNeverOpened)) {
        openBrowser(session.address());
    }

    input.waitBy([&](int descriptor) { return session.untilReadable(descriptor); });
    LineReader scenario(std::move(input));
    Progress progress(scenario, terminal);
    Replay runner(scenario, options.isLogged, {&session}, progress);
    session.begin(runner);
    try {
        runner.run();
    } catch (UserError const& error) {
        session.breakOff(error);
        return ExitStatus::BadInput;
    }
    session.stayUntilEnded("");
    return ExitStatus::Success;
}

}  // namespace

ExitStatus live(int argc, char const* const* argv) {
    LiveOptions options;
    CLI::App app("Shows a replay in a browser while it goes on.", "zoomreplay live");
    app.footer(kLiveFooter);
    app.add_option("SCENARIO", options.scenario, "Scenario file, - for standard input")
        ->required()
        ->type_name("");
    app.add_flag("--log", options.isLogged, "Show what the library logs");
    app.add_option("--report", options.report,
                   "Write a page when the replay ends, as a replay does")
        ->type_name("FILE.html");
    app.add_option("--port", options.port, "Port of this machine; any that is free by default")
        ->type_name("PORT");
    auto* const open =
        app.add_flag("--open", options.isOpened, "Open the page; a desktop's terminal does anyway");
    app.add_flag("--no-browser", options.isNeverOpened, "Only print the address")->excludes(open);
    auto const status = parseArguments(app, argc, argv);
    return status.has_value() ? *status : follow(options);
}

}  // namespace zoomreplay
