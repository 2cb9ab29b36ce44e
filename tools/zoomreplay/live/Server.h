// Serves the page of a live replay to browsers of this machine.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Broadcast.h"
#include "Copy.h"

namespace zoomreplay {

/// Answers on the loopback address only, and only who knows the address with its token and names
/// this host. Serves nothing but what it is given. Has threads of its own; what readers do stays
/// with them.
class Server {
 public:
    static constexpr size_t kMostReaders = 8;

    struct Offer {
        Broadcast const& broadcast;
        std::function<std::string(std::string const& nonce)> page;  ///< whose scripts may run
        std::function<std::optional<Copy>()> report;                ///< any thread
        std::string reportName;
        std::function<std::optional<Copy>(float ratio)> answer;  ///< likewise; JSON
    };

    /// @param port 0 for any that is free
    /// @throws UserError the port cannot be had
    Server(Offer offer, uint16_t port);
    Server(Server const&) = delete;
    Server& operator=(Server const&) = delete;

    /// Ends when the readers have got what the broadcast has; a slow one is not waited for.
    ~Server();

    /// Of the page, with the token.
    std::string const& address() const;

 private:
    class Site;

    std::unique_ptr<Site> mSite;
};

}  // namespace zoomreplay
