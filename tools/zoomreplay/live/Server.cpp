// Pages, events and reports by HTTP.
#include "Server.h"

#include <httplib.h>
#include <sys/random.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <set>
#include <string_view>
#include <thread>
#include <utility>

#include "base/Messages.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr char const* kLoopback = "127.0.0.1";
constexpr auto kWriteTimeout = 2s;        // a reader that takes longer is dropped
constexpr auto kReadTimeout = 2s;         // for a request, which browsers send at once
constexpr auto kSignOfLife = 1s;          // so that readers who went away are noticed
constexpr auto kLastWords = 5s;           // for readers to get what they have not got yet
constexpr size_t kOtherConnections = 4;   // beside those of readers
constexpr size_t kMostSlowReaders = 100;  // to be remembered

std::string randomName() {
    std::array<unsigned char, 16> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw systemError("no random numbers", errno);
    }
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string name;
    for (unsigned char const byte : bytes) {
        name += kDigits[byte >> 4U];
        name += kDigits[byte & 0xFU];
    }
    return name;
}

// Takes as long for any text.
bool isSameText(std::string_view a, std::string_view b) {
    unsigned difference = a.size() == b.size() ? 0 : 1;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        difference |= static_cast<unsigned>(a[i] ^ b[i]);
    }
    return difference == 0;
}

void refuse(httplib::Response& response, int status, std::string const& why) {
    response.status = status;
    response.set_content(why + "\n", "text/plain");
}

// What a copy of the process writes.
void sendCopy(httplib::Response& response, std::function<std::optional<Copy>()> const& make,
              char const* type) {
    std::shared_ptr<Copy> copy;
    try {
        if (auto made = make()) {
            copy = std::make_shared<Copy>(std::move(*made));
        }
    } catch (std::exception const& e) {
        return refuse(response, 500, e.what());
    }
    if (copy == nullptr) {
        return refuse(response, 503, "The replay is too busy.");
    }
    response.set_chunked_content_provider(type, [copy](size_t, httplib::DataSink& sink) {
        auto const text = copy->read();
        if (text.has_value() && text->empty()) {
            sink.done();
        }
        return text.has_value() && (text->empty() || sink.write(text->data(), text->size()));
    });
}

}  // namespace

class Server::Site {
 public:
    Site(Offer offer, uint16_t port);
    Site(Site const&) = delete;
    Site& operator=(Site const&) = delete;
    ~Site();

    std::string const& address() const { return mAddress; }

 private:
    struct Reader {
        uint64_t number;
        bool wasSlow;  // an earlier time
        bool isGreeted = false;
        uint64_t read = 0;
        Clock::time_point lastSign = Clock::now();
    };

    bool isFromHere(httplib::Request const& request) const;
    void answer(httplib::Request const& request, httplib::Response& response);
    void sendEvents(httplib::Request const& request, httplib::Response& response);
    void sendReport(httplib::Response& response);
    void sendAnswer(httplib::Request const& request, httplib::Response& response);
    bool follow(Reader& reader, httplib::DataSink& sink);
    bool send(Reader& reader, httplib::DataSink& sink, std::string_view text);
    bool wasSlow(httplib::Request const& request);

    Offer mOffer;
    std::string mToken = randomName();
    std::string mNonce = randomName();
    std::string mPage;
    std::string mHost;
    std::string mAddress;
    std::atomic<size_t> mReaders = 0;
    std::atomic<uint64_t> mLastNumber = 0;
    std::mutex mMutex;
    std::set<uint64_t> mSlow;  // readers that were dropped
    httplib::Server mServer;
    std::thread mThread;
};

Server::Site::Site(Offer offer, uint16_t port)
    : mOffer(std::move(offer)), mPage(mOffer.page(mNonce)) {
    mServer.new_task_queue = [] {
        return new httplib::ThreadPool(kMostReaders + kOtherConnections);
    };
    mServer.set_keep_alive_max_count(1);  // an idle connection keeps a thread
    mServer.set_read_timeout(kReadTimeout);
    mServer.set_write_timeout(kWriteTimeout);
    mServer.set_payload_max_length(0);
    mServer.set_tcp_nodelay(true);
    mServer.set_socket_options([](int socket) {
        int const yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    mServer.set_default_headers({
        {"Content-Security-Policy",
         "default-src 'none'; script-src 'nonce-" + mNonce +
             "'; style-src 'unsafe-inline'; img-src data:; connect-src 'self'; base-uri 'none'; "
             "form-action 'none'; frame-ancestors 'none'"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Referrer-Policy", "no-referrer"},
        {"X-Content-Type-Options", "nosniff"},
        {"Cache-Control", "no-store"},
    });
    mServer.set_pre_routing_handler([this](auto const& request, auto& response) {
        answer(request, response);
        return httplib::Server::HandlerResponse::Handled;
    });
    errno = 0;
    int const bound = port == 0 ? mServer.bind_to_any_port(kLoopback)
                                : (mServer.bind_to_port(kLoopback, port) ? int{port} : -1);
    if (bound < 0) {
        throw systemError("--port " + std::to_string(port) + ": cannot be had", errno);
    }
    mHost = std::string(kLoopback) + ':' + std::to_string(bound);
    mAddress = "http://" + mHost + '/' + mToken + '/';
    mThread = std::thread([this] { mServer.listen_after_bind(); });
    while (!mServer.is_running()) {  // until then it cannot be stopped
        std::this_thread::sleep_for(1ms);
    }
}

Server::Site::~Site() {
    auto const deadline = Clock::now() + kLastWords;
    while (mReaders > 0 && Clock::now() < deadline) {
        std::this_thread::sleep_for(1ms);
    }
    mServer.stop();
    mThread.join();
}

// A page of others may know the port, and have a name of its own for this machine.
bool Server::Site::isFromHere(httplib::Request const& request) const {
    bool const isOwnHost = request.get_header_value("Host") == mHost;
    auto const origin = request.get_header_value("Origin");
    return isOwnHost && (origin.empty() || origin == "http://" + mHost);
}

void Server::Site::answer(httplib::Request const& request, httplib::Response& response) {
    if (!isFromHere(request)) {
        return refuse(response, 403, "This is not the host that was asked for.");
    }
    std::string_view path = request.path;
    size_t const tokenEnd = std::min(path.find('/', 1), path.size());
    if (path.empty() || !isSameText(path.substr(1, tokenEnd - 1), mToken)) {
        return refuse(response, 403, "Only the address that zoomreplay printed leads to its page.");
    }
    path.remove_prefix(tokenEnd);
    if (request.method != "GET") {
        refuse(response, 405, "There is nothing to change here.");
    } else if (path == "/") {
        response.set_content(mPage, "text/html; charset=utf-8");
    } else if (path == "/events") {
        sendEvents(request, response);
    } else if (path == "/report") {
        sendReport(response);
    } else if (path == "/answer") {
        sendAnswer(request, response);
    } else {
        refuse(response, 404, "There is no such page.");
    }
}

// A browser that connects again says what it got last, which is its number.
bool Server::Site::wasSlow(httplib::Request const& request) {
    std::lock_guard const lock(mMutex);
    auto const last = request.get_header_value("Last-Event-ID");
    return !last.empty() && mSlow.erase(std::strtoull(last.c_str(), nullptr, 10)) > 0;
}

void Server::Site::sendEvents(httplib::Request const& request, httplib::Response& response) {
    if (++mReaders > kMostReaders) {
        --mReaders;
        return refuse(response, 503, "Too many pages are open.");
    }
    auto const reader = std::make_shared<Reader>(Reader{++mLastNumber, wasSlow(request)});
    response.set_chunked_content_provider(
        "text/event-stream",
        [this, reader](size_t, httplib::DataSink& sink) { return follow(*reader, sink); },
        [this](bool) { --mReaders; });
}

bool Server::Site::follow(Reader& reader, httplib::DataSink& sink) {
    if (!std::exchange(reader.isGreeted, true)) {
        return send(reader, sink,
                    "retry: 500\nid: " + std::to_string(reader.number) +
                        "\nevent: begin\ndata: " + (reader.wasSlow ? "true" : "false") + "\n\n");
    }
    auto const next = mOffer.broadcast.next(reader.read, 250ms);
    if (next.message != nullptr) {
        reader.read = next.number;
        return send(reader, sink, *next.message);
    }
    if (next.isOver) {
        sink.done();
        return true;
    }
    return Clock::now() - reader.lastSign < kSignOfLife || send(reader, sink, ":\n\n");
}

bool Server::Site::send(Reader& reader, httplib::DataSink& sink, std::string_view text) {
    auto const start = Clock::now();
    reader.lastSign = start;
    if (sink.write(text.data(), text.size())) {
        return true;
    }
    if (Clock::now() - start >= kWriteTimeout) {
        std::lock_guard const lock(mMutex);
        mSlow.insert(reader.number);
        if (mSlow.size() > kMostSlowReaders) {
            mSlow.erase(mSlow.begin());
        }
    }
    return false;
}

void Server::Site::sendReport(httplib::Response& response) {
    response.set_header("Content-Disposition", "attachment; filename=\"" + mOffer.reportName + '"');
    sendCopy(response, mOffer.report, "text/html; charset=utf-8");
}

void Server::Site::sendAnswer(httplib::Request const& request, httplib::Response& response) {
    auto const ratio = scenario::parseNumber<float>(request.get_param_value("ratio"));
    if (!ratio.has_value()) {
        return refuse(response, 400, "ratio: must be a number");
    }
    sendCopy(
        response, [&] { return mOffer.answer(*ratio); }, "application/json");
}

Server::Server(Offer offer, uint16_t port)
    : mSite(std::make_unique<Site>(std::move(offer), port)) {}

Server::~Server() = default;

std::string const& Server::address() const {
    return mSite->address();
}

}  // namespace zoomreplay
