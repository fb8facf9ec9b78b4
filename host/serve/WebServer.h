/// The server as a whole.
#pragma once

#include "host/serve/AccessRule.h"
#include "host/serve/Assets.h"
#include "host/serve/HttpConnection.h"
#include "host/serve/ServerLoop.h"
#include "host/serve/Site.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <memory>
#include <string>

namespace host::serve {

/// Listens on this machine alone and serves the page, its frames and its sockets.
class WebServer {
public:
    struct Options {
        unsigned short port = 0; ///< 0: any that is free
        Secrets secrets = Secrets::BlankedOut;
    };

    /// Takes the port. All but the options must outlive this object.
    /// @throws HostError where the port is not to be had
    WebServer(ServerLoop& usedLoop, LiveView& usedView, const Assets& assets, const Options& options);
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;
    ~WebServer() = default;

    /// What a browser has to open.
    std::string address() const;

    /// Begins to serve, on the loop's thread.
    void start();
    /// Sends all viewers away and ends. Waits for it, but for those who do not listen not long.
    void stop(const std::string& reason);

private:
    void accept();
    void endSoon();

    ServerLoop& loop;
    boost::asio::ip::tcp::acceptor acceptor;
    const AccessRule rule;
    const Site site;
    ViewerHub hub;
    const std::shared_ptr<ConnectionContext> connections;
    boost::asio::steady_timer pause;                   ///< between two looks at who is still there
    std::chrono::steady_clock::time_point patienceEnd; ///< when those who are still there are left alone
};

} // namespace host::serve
