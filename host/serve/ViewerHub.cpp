#include "host/serve/ViewerHub.h"

#include <utility>

namespace host::serve {
namespace {

/// Between two pictures; an eye needs no more.
constexpr std::chrono::milliseconds newsPause{15};
/// The service is asked; it does not tell by itself.
constexpr std::chrono::milliseconds servicePause{200};

} // namespace

ViewerHub::ViewerHub(boost::asio::io_context& context, LiveView& usedView)
    : view(usedView)
    , newsTimer(context)
    , serviceTimer(context) {}

void ViewerHub::add(std::shared_ptr<Viewer> viewer) {
    viewers.push_back(viewer);
    if (!farewell.empty()) {
        return viewer->bidFarewell(farewell);
    }
    view.follow();
    if (viewers.size() == 1) {
        askService();
    }
    viewer->look();
}

void ViewerHub::remove(const Viewer* viewer) {
    std::erase_if(viewers, [&](const auto& other) { return other.get() == viewer; });
    if (viewers.empty()) {
        serviceTimer.cancel();
    }
}

void ViewerHub::onNews() {
    view.follow();
    if (std::exchange(isTelling, true) || !farewell.empty()) {
        return;
    }
    newsTimer.expires_at(lastTold + newsPause);
    newsTimer.async_wait([this](const boost::system::error_code& error) {
        isTelling = false;
        if (!error) {
            lastTold = Clock::now();
            tell();
        }
    });
}

void ViewerHub::tell() {
    view.follow();
    // One who is told may leave by that.
    for (const auto& viewer : std::vector(viewers)) {
        viewer->look();
    }
}

void ViewerHub::askService() {
    view.askService();
    tell();
    serviceTimer.expires_after(servicePause);
    serviceTimer.async_wait([this](const boost::system::error_code& error) {
        if (!error && !viewers.empty()) {
            askService();
        }
    });
}

void ViewerHub::close(const std::string& reason) {
    farewell = reason;
    newsTimer.cancel();
    serviceTimer.cancel();
    view.follow();
    for (const auto& viewer : std::vector(viewers)) {
        viewer->bidFarewell(reason);
    }
}

} // namespace host::serve
