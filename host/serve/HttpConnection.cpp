#include "host/serve/HttpConnection.h"

#include "host/serve/ViewerSocket.h"

#include <boost/beast/http/error.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/status.hpp>
#include <boost/beast/http/write.hpp>
#include <boost/beast/websocket/rfc6455.hpp>

#include <chrono>
#include <iterator>
#include <utility>

namespace host::serve {
namespace {

namespace beast = boost::beast;
namespace http = beast::http;

constexpr std::uint32_t longestHeader = 8 * 1024;
constexpr std::uint64_t longestBody = 16 * 1024;
constexpr std::chrono::seconds requestTime{30};
constexpr std::size_t mostViewers = 64;

std::string_view view(beast::string_view text) { return {text.data(), text.size()}; }

/// The one header of a name; nothing if it is missing.
std::optional<std::string_view> header(const http::fields& fields, http::field name,
                                       std::optional<std::string_view> doubled) {
    const auto [begin, end] = fields.equal_range(name);
    if (begin == end) {
        return std::nullopt;
    }
    return std::next(begin) == end ? std::optional(view(begin->value())) : doubled;
}

AccessClaim claimOf(const http::request<http::string_body>& request) {
    return {view(request.target()), header(request, http::field::host, std::nullopt),
            header(request, http::field::origin, std::string_view()), beast::websocket::is_upgrade(request)};
}

} // namespace

HttpConnection::HttpConnection(boost::asio::ip::tcp::socket socket, std::shared_ptr<ConnectionContext> used)
    : stream(std::move(socket))
    , context(std::move(used)) {
    ++context->open;
}

HttpConnection::~HttpConnection() { --context->open; }

void HttpConnection::read() {
    parser.emplace();
    parser->header_limit(longestHeader);
    parser->body_limit(longestBody);
    stream.expires_after(requestTime);
    http::async_read(stream, buffer, *parser,
                     [self = shared_from_this()](const Error& error, std::size_t) { self->onRead(error); });
}

void HttpConnection::onRead(const Error& error) {
    if (!error) {
        return answer(parser->get());
    }
    if (error == http::error::header_limit) {
        return refuse(431, "The header is too long.");
    }
    if (error == http::error::body_limit) {
        return refuse(413, "The body is too long.");
    }
    const bool isFault = error.category() == http::make_error_code(http::error::bad_method).category() &&
                         error != http::error::end_of_stream && error != http::error::partial_message;
    isFault ? refuse(400, "This is not a request.") : end();
}

void HttpConnection::answer(const Request& request) {
    const AccessClaim claim = claimOf(request);
    if (claim.wantsSocket && context->site.admitsSocket(claim)) {
        if (context->hub.size() >= mostViewers) {
            return refuse(503, "There are too many viewers.");
        }
        stream.expires_never();
        return std::make_shared<ViewerSocket>(std::move(stream), context->view, context->hub)
            ->open(parser->release());
    }
    write(context->site.answer({view(request.method_string()), claim, request.body()}), request.version(),
          request.method() == http::verb::head, request.keep_alive());
}

void HttpConnection::write(SiteAnswer answer, unsigned version, bool isHead, bool keepAlive) {
    auto response = std::make_shared<http::response<http::string_body>>(
        static_cast<http::status>(answer.status), version);
    for (const auto& [name, value] : answer.headers) {
        response->set(name, value);
    }
    response->keep_alive(keepAlive);
    response->content_length(answer.body.size());
    if (!isHead) {
        response->body() = std::move(answer.body);
    }
    stream.expires_after(requestTime);
    http::async_write(stream, *response,
                      [self = shared_from_this(), response, keepAlive](const Error& error, std::size_t) {
                          error || !keepAlive ? self->end() : self->read();
                      });
}

void HttpConnection::refuse(unsigned status, std::string_view words) {
    constexpr unsigned version11 = 11;
    write(Site::plainAnswer(status, words), version11, false, false);
}

void HttpConnection::end() {
    Error ignored;
    stream.socket().shutdown(boost::asio::ip::tcp::socket::shutdown_send, ignored);
}

} // namespace host::serve
