/// The socket of one viewer.
#pragma once

#include "host/serve/PageRequest.h"
#include "host/serve/ViewerFeed.h"
#include "host/serve/ViewerHub.h"

#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/websocket/stream.hpp>

#include <memory>
#include <string>

namespace host::serve {

/// Sends the viewer what his feed has for him and takes his requests. Whoever neither takes nor answers
/// anything for a while is dropped. Lives as long as something is under way. On the server's thread.
class ViewerSocket final : public Viewer, public std::enable_shared_from_this<ViewerSocket> {
public:
    using Request = boost::beast::http::request<boost::beast::http::string_body>;

    /// @param view and `usedHub` must outlive the socket
    ViewerSocket(boost::beast::tcp_stream stream, LiveView& usedView, ViewerHub& usedHub);

    /// Answers the request for the socket, and begins.
    void open(Request request);

    void look() override;
    void bidFarewell(const std::string& reason) override;

private:
    using Error = boost::beast::error_code;

    void read();
    void onRead(const Error& error);
    void take(const std::string& message);
    void answer(std::optional<std::uint64_t> id, const std::string& error);
    void write();
    void onWritten(const Error& error);
    void end();

    // Never compressed: viewers are on this machine.
    boost::beast::websocket::stream<boost::beast::tcp_stream, false> socket;
    LiveView& view;
    ViewerHub& hub;
    ViewerFeed feed;
    boost::beast::flat_buffer buffer;
    SharedText written; ///< the message that is on its way
    std::size_t openRequests = 0;
    bool isReading = false;
    bool isOver = false;
    std::string farewell; ///< empty: not yet
};

} // namespace host::serve
