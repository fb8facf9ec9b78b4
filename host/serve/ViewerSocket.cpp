#include "host/serve/ViewerSocket.h"

#include <boost/asio/dispatch.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/core/buffers_to_string.hpp>

#include <chrono>
#include <utility>

namespace host::serve {
namespace {

namespace beast = boost::beast;
namespace websocket = beast::websocket;

constexpr std::size_t longestMessage = std::size_t{1} << 20;
constexpr std::size_t mostOpenRequests = 64;
constexpr std::chrono::seconds handshakeTime{30};
constexpr std::chrono::seconds silenceTime{20};

} // namespace

ViewerSocket::ViewerSocket(beast::tcp_stream stream, LiveView& usedView, ViewerHub& usedHub)
    : socket(std::move(stream))
    , view(usedView)
    , hub(usedHub)
    , feed(usedView) {}

void ViewerSocket::open(Request request) {
    beast::get_lowest_layer(socket).expires_never(); // the socket has times of its own
    socket.set_option(websocket::stream_base::timeout{handshakeTime, silenceTime, true});
    socket.read_message_max(longestMessage);
    socket.text(true);
    socket.async_accept(request, [self = shared_from_this()](const Error& error) {
        if (!error) {
            self->hub.add(self);
            self->read();
        }
    });
}

void ViewerSocket::look() {
    feed.look();
    write();
}

void ViewerSocket::bidFarewell(const std::string& reason) {
    farewell = reason;
    look();
}

void ViewerSocket::read() {
    if (isReading || isOver || openRequests + feed.waitingReplies() >= mostOpenRequests) {
        return;
    }
    isReading = true;
    socket.async_read(buffer,
                      [self = shared_from_this()](const Error& error, std::size_t) { self->onRead(error); });
}

void ViewerSocket::onRead(const Error& error) {
    isReading = false;
    if (error) {
        return end();
    }
    const std::string message = beast::buffers_to_string(buffer.data());
    buffer.consume(buffer.size());
    if (socket.got_text()) {
        take(message);
    } else {
        answer(std::nullopt, "a request must be a text");
    }
    read();
}

void ViewerSocket::take(const std::string& message) {
    try {
        const PageRequest request(message);
        ++openRequests;
        // The answer comes on another thread, perhaps when the viewer is gone.
        view.carryOut(request, [weak = weak_from_this(), id = request.id(),
                                executor = socket.get_executor()](const std::string& error) {
            boost::asio::post(executor, [weak, id, error] {
                if (const auto self = weak.lock()) {
                    --self->openRequests;
                    self->answer(id, error);
                }
            });
        });
    } catch (const RequestFault& fault) {
        answer(fault.id, fault.what());
    }
}

void ViewerSocket::answer(std::optional<std::uint64_t> id, const std::string& error) {
    view.follow();
    feed.reply(id, error);
    write();
    read();
}

void ViewerSocket::write() {
    if (written || isOver) {
        return;
    }
    written = feed.next();
    if (!written && !farewell.empty()) {
        isOver = true;
        written = std::make_shared<const std::string>(goodbyeMessage(farewell));
    }
    if (written) {
        socket.async_write(
            boost::asio::buffer(*written),
            [self = shared_from_this()](const Error& error, std::size_t) { self->onWritten(error); });
    }
}

void ViewerSocket::onWritten(const Error& error) {
    written = nullptr;
    if (error) {
        return end();
    }
    if (isOver) {
        return socket.async_close(websocket::close_code::going_away,
                                  [self = shared_from_this()](const Error&) { self->end(); });
    }
    write();
    read();
}

void ViewerSocket::end() {
    isOver = true;
    Error ignored;
    beast::get_lowest_layer(socket).socket().close(ignored);
    hub.remove(this);
}

} // namespace host::serve
