/// The server's one thread.
#pragma once

#include <boost/asio/io_context.hpp>

#include <atomic>
#include <functional>
#include <thread>

namespace host::serve {

/// Runs everything of the server's, and lets other threads rouse it.
class ServerLoop {
public:
    ServerLoop() = default;
    ServerLoop(const ServerLoop&) = delete;
    ServerLoop& operator=(const ServerLoop&) = delete;
    /// Ends the thread.
    ~ServerLoop();

    boost::asio::io_context& context() { return loop; }

    /// Starts the thread. @param roused is called on it, once for any number of `rouse`
    void start(std::function<void()> roused);
    /// Any thread, at any time; never waits.
    void rouse();
    /// Waits until the server has nothing more to do.
    void join();

private:
    boost::asio::io_context loop{1};
    std::function<void()> onRoused;
    std::atomic<bool> isRoused = true; ///< before the start nobody needs to be roused
    std::thread thread;
};

} // namespace host::serve
