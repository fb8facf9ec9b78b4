/// What one viewer gets next.
#pragma once

#include "host/serve/LiveView.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace host::serve {

/// Gives one viewer its messages, one whenever the last one is out. Nothing is queued for a viewer but its
/// replies: whoever is slow gets fewer and newer pictures, and what the journal no longer holds he has
/// missed. On the server's thread.
class ViewerFeed {
public:
    /// @param usedView must outlive the feed
    explicit ViewerFeed(LiveView& usedView)
        : view(usedView) {}

    /// The pictures may have changed: the next messages bring those that have.
    void look() { looks = true; }
    /// Answers a request, behind all that has happened so far.
    void reply(std::optional<std::uint64_t> id, const std::string& error);
    /// How many replies wait.
    std::size_t waitingReplies() const { return replies.size(); }

    /// The next message; null where the viewer knows everything.
    SharedText next();

private:
    struct Reply {
        std::uint64_t behind; ///< sequence of an entry
        SharedText message;
    };
    /// A picture that the viewer has seen, and how to look at it.
    struct Seen {
        std::uint64_t version = 0;
        SharedText newer(const Picture& picture);
    };

    SharedText greet();
    SharedText nextEntries();
    SharedText nextReply();
    SharedText nextPicture();

    LiveView& view;
    bool isGreeted = false;
    bool wereEntriesLast = false;
    bool looks = true;          ///< at the pictures
    std::uint64_t position = 0; ///< sequence of the last entry that was sent
    std::deque<Reply> replies;
    Seen screen;
    Seen machine;
    Seen service;
};

} // namespace host::serve
