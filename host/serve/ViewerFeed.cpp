#include "host/serve/ViewerFeed.h"

#include <algorithm>
#include <utility>

namespace host::serve {
namespace {

constexpr std::size_t mostEntries = 250; ///< in one message
constexpr std::size_t mostBytes = std::size_t{1} << 20;

SharedText shared(std::string text) { return std::make_shared<const std::string>(std::move(text)); }

} // namespace

void ViewerFeed::reply(std::optional<std::uint64_t> id, const std::string& error) {
    looks = true;
    replies.push_back({view.events().latest(), shared(replyMessage(id, error))});
}

SharedText ViewerFeed::next() {
    if (!isGreeted) {
        return greet();
    }
    // By turns, so that neither a flood of entries holds up the pictures nor the other way round.
    if (!std::exchange(wereEntriesLast, false)) {
        if (SharedText message = nextEntries()) {
            wereEntriesLast = true;
            return message;
        }
    }
    if (SharedText message = nextReply()) {
        return message;
    }
    if (SharedText message = nextPicture()) {
        return message;
    }
    SharedText message = nextEntries();
    wereEntriesLast = message != nullptr;
    return message;
}

SharedText ViewerFeed::greet() {
    isGreeted = true;
    position = view.events().latest();
    return shared(view.hello(position));
}

SharedText ViewerFeed::nextEntries() {
    const JournalSlice slice = view.events().after(position, mostEntries, mostBytes);
    if (slice.entries.empty()) {
        return nullptr;
    }
    position = slice.entries.back()->sequence;
    return shared(entriesMessage(slice));
}

SharedText ViewerFeed::nextReply() {
    if (replies.empty() || replies.front().behind > position) {
        return nullptr;
    }
    SharedText message = std::move(replies.front().message);
    replies.pop_front();
    return message;
}

SharedText ViewerFeed::nextPicture() {
    if (!looks) {
        return nullptr;
    }
    if (SharedText message = screen.newer(view.screenPicture())) {
        return message;
    }
    if (SharedText message = machine.newer(view.machinePicture())) {
        return message;
    }
    looks = false;
    return service.newer(view.servicePicture());
}

SharedText ViewerFeed::Seen::newer(const Picture& picture) {
    return std::exchange(version, picture.version) == picture.version ? nullptr : picture.message;
}

} // namespace host::serve
