#include "host/serve/WebServer.h"

#include "host/HostError.h"

#include <boost/asio/post.hpp>
#include <boost/system/system_error.hpp>

#include <chrono>
#include <utility>

namespace host::serve {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;

constexpr std::size_t mostConnections = 256;
constexpr std::chrono::seconds farewellTime{1};

tcp::acceptor listenOn(asio::io_context& context, unsigned short port) {
    try {
        return {context, tcp::endpoint(asio::ip::address_v4::loopback(), port)};
    } catch (const boost::system::system_error& fault) {
        throw HostError("cannot listen on port " + std::to_string(port) + ": " + fault.code().message());
    }
}

} // namespace

WebServer::WebServer(ServerLoop& usedLoop, LiveView& usedView, const Assets& assets, const Options& options)
    : loop(usedLoop)
    , acceptor(listenOn(loop.context(), options.port))
    , rule(randomToken(), acceptor.local_endpoint().port())
    , site(rule, assets, usedView, options.secrets)
    , hub(loop.context(), usedView)
    , connections(std::make_shared<ConnectionContext>(ConnectionContext{site, usedView, hub}))
    , pause(loop.context()) {}

std::string WebServer::address() const {
    return "http://127.0.0.1:" + std::to_string(acceptor.local_endpoint().port()) + rule.root();
}

void WebServer::start() {
    accept();
    loop.start([this] { hub.onNews(); });
}

void WebServer::stop(const std::string& reason) {
    asio::post(loop.context(), [this, reason] {
        boost::system::error_code ignored;
        acceptor.close(ignored);
        hub.close(reason);
        patienceEnd = std::chrono::steady_clock::now() + farewellTime;
        endSoon();
    });
    loop.join();
}

/// Ends when the last viewer has gone, or when patience does.
void WebServer::endSoon() {
    constexpr std::chrono::milliseconds length{10};
    if (hub.size() == 0 || std::chrono::steady_clock::now() >= patienceEnd) {
        return loop.context().stop();
    }
    pause.expires_after(length);
    pause.async_wait([this](const boost::system::error_code&) { endSoon(); });
}

void WebServer::accept() {
    acceptor.async_accept([this](const boost::system::error_code& error, tcp::socket socket) {
        if (!acceptor.is_open()) {
            return;
        }
        if (!error && connections->open < mostConnections) {
            std::make_shared<HttpConnection>(std::move(socket), connections)->read();
        }
        accept();
    });
}

} // namespace host::serve
