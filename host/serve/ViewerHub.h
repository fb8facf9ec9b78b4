/// All who watch.
#pragma once

#include "host/serve/LiveView.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace host::serve {

/// One who watches, as the hub knows him.
class Viewer {
public:
    virtual ~Viewer() = default;
    /// There is news, perhaps.
    virtual void look() = 0;
    /// The end: what is left is sent, then the reason.
    virtual void bidFarewell(const std::string& reason) = 0;
};

/// Lets the viewers know when there is news, not oftener than they can see it. On the server's thread.
class ViewerHub {
public:
    /// Both must outlive the hub.
    ViewerHub(boost::asio::io_context& context, LiveView& usedView);

    void add(std::shared_ptr<Viewer> viewer);
    void remove(const Viewer* viewer);
    std::size_t size() const { return viewers.size(); }

    /// The journal has grown.
    void onNews();
    /// Sends everybody away, those who come later included. No timer runs after this.
    void close(const std::string& reason);

private:
    using Clock = std::chrono::steady_clock;

    void tell();
    void askService();

    LiveView& view;
    std::vector<std::shared_ptr<Viewer>> viewers;
    boost::asio::steady_timer newsTimer;
    boost::asio::steady_timer serviceTimer;
    Clock::time_point lastTold{};
    bool isTelling = false; ///< the news timer runs
    std::string farewell;   ///< empty: not yet
};

} // namespace host::serve
