/// One connection that speaks HTTP.
#pragma once

#include "host/serve/Site.h"
#include "host/serve/ViewerHub.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include <functional>
#include <memory>
#include <optional>

namespace host::serve {

/// What connections work with. All that it refers to must outlive the thread of the server.
struct ConnectionContext {
    const Site& site;
    LiveView& view;
    ViewerHub& hub;
    std::size_t open = 0; ///< how many connections there are
};

/// Reads requests and writes answers until one of the two ends it, or the connection becomes a viewer's
/// socket. Lives as long as something is under way. On the server's thread.
class HttpConnection : public std::enable_shared_from_this<HttpConnection> {
public:
    HttpConnection(boost::asio::ip::tcp::socket socket, std::shared_ptr<ConnectionContext> used);
    HttpConnection(const HttpConnection&) = delete;
    HttpConnection& operator=(const HttpConnection&) = delete;
    ~HttpConnection();

    void read();

private:
    using Error = boost::beast::error_code;
    using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;
    using Request = boost::beast::http::request<boost::beast::http::string_body>;

    void onRead(const Error& error);
    void answer(const Request& request);
    void write(SiteAnswer answer, unsigned version, bool isHead, bool keepAlive);
    void refuse(unsigned status, std::string_view words);
    void end();

    boost::beast::tcp_stream stream;
    const std::shared_ptr<ConnectionContext> context; ///< a connection may be the last to go
    boost::beast::flat_buffer buffer;
    std::optional<Parser> parser;
};

} // namespace host::serve
