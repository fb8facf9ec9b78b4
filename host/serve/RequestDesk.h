/// Carries out what pages ask for.
#pragma once

#include "host/serve/LiveHost.h"
#include "host/serve/LiveScreen.h"
#include "host/serve/LoginBrowser.h"
#include "host/serve/PageRequest.h"

#include <string>
#include <string_view>

namespace host::serve {

/// Judges requests by the screen, as a host's window would, and hands what is left to the host. On the thread
/// of the screen.
class RequestDesk {
public:
    using Done = LiveHost::Done;

    /// Both must outlive the desk.
    RequestDesk(LiveScreen& usedScreen, LiveHost& usedHost)
        : screen(usedScreen)
        , host(usedHost) {}

    /// @param done is called once, on this thread or the host's
    void carryOut(const PageRequest& request, Done done);

    /// Tells the plugin how the login in a browser has ended.
    void reportLogin(std::uint64_t browser, const LoginEnd& end);

private:
    /// What a person does in the window: the event document that comes of it.
    /// @throws RequestFault where the screen does not let him
    std::string eventOf(const PageRequest& request) const;
    std::string pressOf(const PageRequest& request) const;
    std::string closeOf(const PageRequest& request) const;
    const ScreenControl& browserOf(const PageRequest& request, std::string_view event) const;
    void carryOutOnScreen(const PageRequest& request, Done done);
    void carryOutByHost(const PageRequest& request, Done done);

    LiveScreen& screen;
    LiveHost& host;
};

} // namespace host::serve
