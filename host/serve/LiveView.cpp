#include "host/serve/LiveView.h"

#include "host/Text.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <utility>

namespace host::serve {
namespace {

namespace json = boost::json;

constexpr std::size_t mostAtHello = 2'000;

std::optional<OutsidePage> fetch(const BackendControls* controls, const char* method, const std::string& url,
                                 const std::string& body) {
    OutsidePage page;
    const auto receive = [](void* context, std::uint32_t status, const char* location, const char* cookie,
                            const char* html) {
        *static_cast<OutsidePage*>(context) = {status, location != nullptr ? location : "",
                                               cookie != nullptr ? cookie : "", html};
    };
    const bool isThere =
        controls != nullptr && controls->loginPage(method, url.c_str(), body.c_str(), receive, &page);
    return isThere ? std::optional(std::move(page)) : std::nullopt;
}

/// A text of a line, under its key or in its Base64 form.
std::string textOf(const json::object& line, std::string_view key) {
    if (const json::value* plain = line.if_contains(key); plain != nullptr && plain->is_string()) {
        return std::string(plain->get_string());
    }
    const json::value* encoded = line.if_contains(std::string(key) + "_base64");
    return encoded != nullptr ? decodeBase64(encoded->get_string()).value_or("") : "";
}

bool holds(const json::object& line, std::string_view key, std::string_view word) {
    const json::value* value = line.if_contains(key);
    return value != nullptr && value->is_string() && value->get_string() == word;
}

/// The state without its clock, which alone is no change.
std::string withoutClock(const std::string& state) {
    return state.substr(0, state.rfind(R"(,"unix_time":)"));
}

std::string stateOf(const BackendControls& controls) {
    std::string state(controls.state(nullptr, 0), '\0');
    // It may have grown meanwhile, and has to fit with its NUL.
    for (std::size_t needed = state.size() + 1; state.size() < needed;) {
        state.resize(needed);
        needed = controls.state(state.data(), state.size()) + 1;
    }
    state.resize(state.find('\0'));
    return state;
}

} // namespace

LiveView::LiveView(Journal& usedJournal, const MachineTracker& usedTracker, LiveHost& usedHost,
                   Surroundings usedSurroundings, std::function<bool(std::string_view)> hasPage)
    : journal(usedJournal)
    , tracker(usedTracker)
    , host(usedHost)
    , surroundings(std::move(usedSurroundings))
    , hasLocalPage(std::move(hasPage))
    , logins([this](const char* method, const std::string& url, const std::string& body) {
        return fetch(host.standIn(), method, url, body);
    })
    , screen({[this](const LiveBrowser& browser) { return addressOf(browser); },
              [this](std::uint64_t number) { logins.close(number); }})
    , desk(screen, host) {}

std::string LiveView::addressOf(const LiveBrowser& browser) {
    if (browser.operation == "browse_for_cookie") {
        return logins.open(browser);
    }
    std::string address = "pages/" + browser.startUrl;
    return browser.operation == "browse_for_local_content" && hasLocalPage(address) ? address : std::string();
}

void LiveView::follow() {
    for (const JournalEntryPointer& entry : journal.takeNew()) {
        take(*entry);
    }
}

void LiveView::take(const JournalEntry& entry) {
    if (holds(entry.line, "out", "notice")) {
        takeNotice(entry);
    } else if (holds(entry.line, "do", "dispose")) {
        disposal = entry.sequence;
    } else if (holds(entry.line, "out", "result") && entry.input == disposal) {
        screen.clear(); // which may have had a last word while it went
    }
}

void LiveView::takeNotice(const JournalEntry& entry) {
    screen.apply(textOf(entry.line, "xml"), entry.time); // the strict host complains of what is unreadable
}

void LiveView::askService() {
    if (host.standIn() == nullptr) {
        return;
    }
    const std::string state = stateOf(*host.standIn());
    if (std::string bare = withoutClock(state); bare != serviceState && !state.empty()) {
        serviceState = std::move(bare);
        service = {service.version + 1, std::make_shared<const std::string>(serviceMessage(state))};
    }
}

std::string LiveView::hello(std::uint64_t latest) const {
    JournalSlice slice = journal.after(latest > mostAtHello ? latest - mostAtHello : 0, mostAtHello);
    std::erase_if(slice.entries, [&](const auto& entry) { return entry->sequence > latest; });
    return helloMessage(surroundings, host.facts(), slice.entries);
}

const Picture& LiveView::screenPicture() {
    if (drawnScreen.version != screen.version()) {
        drawnScreen = {screen.version(), std::make_shared<const std::string>(screenMessage(screen))};
    }
    return drawnScreen;
}

const Picture& LiveView::machinePicture() {
    const MachineStates states = tracker.states();
    if (!drawnMachine.message || drawnMachine.version != states.version + 1) {
        drawnMachine = {states.version + 1, std::make_shared<const std::string>(machineMessage(states))};
    }
    return drawnMachine;
}

void LiveView::carryOut(const PageRequest& request, LiveHost::Done done) {
    follow();
    desk.carryOut(request, std::move(done));
}

LoginAnswer LiveView::answerLogin(std::uint64_t browser, std::string_view method, const std::string& body) {
    follow();
    LoginAnswer answer = logins.answer(browser, method, body);
    if (answer.end) {
        desk.reportLogin(browser, *answer.end);
    }
    return answer;
}

} // namespace host::serve
