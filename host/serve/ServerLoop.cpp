#include "host/serve/ServerLoop.h"

#include <boost/asio/post.hpp>

#include <utility>

namespace host::serve {

ServerLoop::~ServerLoop() {
    loop.stop();
    join();
}

void ServerLoop::start(std::function<void()> roused) {
    onRoused = std::move(roused);
    isRoused = false;
    rouse();
    thread = std::thread([this] { loop.run(); });
}

void ServerLoop::rouse() {
    if (!isRoused.exchange(true)) {
        boost::asio::post(loop, [this] {
            isRoused = false;
            onRoused();
        });
    }
}

void ServerLoop::join() {
    if (thread.joinable()) {
        thread.join();
    }
}

} // namespace host::serve
