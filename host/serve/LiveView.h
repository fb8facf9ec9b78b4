/// The present, as viewers get to see it.
#pragma once

#include "host/serve/Journal.h"
#include "host/serve/LiveHost.h"
#include "host/serve/LiveScreen.h"
#include "host/serve/LoginBrowser.h"
#include "host/serve/MachineTracker.h"
#include "host/serve/Messages.h"
#include "host/serve/RequestDesk.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace host::serve {

/// A message that many may hold.
using SharedText = std::shared_ptr<const std::string>;

/// One of the pictures that are sent whole whenever they change.
struct Picture {
    std::uint64_t version = 0; ///< 0: there is none
    SharedText message;
};

/// Follows the journal and draws the pictures that all viewers get. All on one thread, the server's.
class LiveView {
public:
    /// @param hasPage whether a local page of that name, such as "pages/a/b.html", can be shown
    /// All but the function must outlive this object.
    LiveView(Journal& usedJournal, const MachineTracker& usedTracker, LiveHost& usedHost,
             Surroundings usedSurroundings, std::function<bool(std::string_view)> hasPage);

    /// Takes what is new in the journal.
    void follow();
    /// Asks the stand-in how it is.
    void askService();

    /// The greeting, with the last entries up to that sequence.
    std::string hello(std::uint64_t latest) const;
    /// The pictures as `follow` and `askService` left them. Each is drawn when it is asked for.
    const Picture& screenPicture();
    const Picture& machinePicture();
    const Picture& servicePicture() const { return service; }

    const Journal& events() const { return journal; }

    /// Carries out a request. @param done on this thread or the host's
    void carryOut(const PageRequest& request, LiveHost::Done done);
    /// Answers the frame of a login, and tells the plugin when it has ended.
    LoginAnswer answerLogin(std::uint64_t browser, std::string_view method, const std::string& body);

private:
    std::string addressOf(const LiveBrowser& browser);
    void take(const JournalEntry& entry);
    void takeNotice(const JournalEntry& entry);

    Journal& journal;
    const MachineTracker& tracker;
    LiveHost& host;
    const Surroundings surroundings;
    const std::function<bool(std::string_view)> hasLocalPage;
    LoginBrowser logins;
    LiveScreen screen;
    RequestDesk desk;
    Picture drawnScreen;
    Picture drawnMachine;
    Picture service;
    std::string serviceState;   ///< without its clock
    std::uint64_t disposal = 0; ///< sequence of the input that disposed of a plugin object last
};

} // namespace host::serve
