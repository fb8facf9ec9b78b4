#include "host/strict/StrictHost.h"

#include "host/HostError.h"
#include "host/Notice.h"
#include "host/Text.h"
#include "host/ThreadStacks.h"
#include "host/strict/EventId.h"
#include "host/strict/NoticeVocabulary.h"

#include <algorithm>
#include <unistd.h>

namespace host {
namespace {

constexpr std::string_view errorPopupId = "wren_client_error_dialog";

/// The channels of the callbacks that this thread is inside, the innermost last.
thread_local std::vector<std::pair<const HostCallbacks*, std::uintptr_t>> openCallbacks;

} // namespace

class StrictHost::InCallback {
public:
    explicit InCallback(const Channel& channel) { openCallbacks.push_back(channel); }
    InCallback(const InCallback&) = delete;
    InCallback& operator=(const InCallback&) = delete;
    ~InCallback() { openCallbacks.pop_back(); }
};

StrictHost::StrictHost(Report report, std::chrono::milliseconds callLimit)
    : onViolation(std::move(report))
    , watch(callLimit, [this](const std::string& call) {
        printThreadStacks(STDERR_FILENO);
        onViolation({Rule::CallOverdue, call});
    }) {}

std::unique_ptr<HostCallbacks> StrictHost::makeCallbacks(HostCallbacks::NoticeHandler onNotice,
                                                         HostCallbacks::StopDoneHandler onStopDone) {
    const auto self = std::make_shared<const HostCallbacks*>();
    auto callbacks = std::make_unique<HostCallbacks>(
        [this, self, onNotice = std::move(onNotice)](std::uintptr_t handle, const char* xml) {
            const InCallback inside({*self, handle});
            // First, because whoever sees the notice may use its controls at once.
            const std::vector<Violation> found = takeNotice({*self, handle}, xml);
            onNotice(handle, xml);
            report(found);
        },
        [this, self, onStopDone = std::move(onStopDone)](std::uintptr_t handle) {
            const InCallback inside({*self, handle});
            const std::vector<Violation> found = takeStopDone({*self, handle});
            onStopDone(handle);
            report(found);
        });
    *self = callbacks.get();
    return callbacks;
}

void StrictHost::report(const std::vector<Violation>& found) const {
    std::for_each(found.begin(), found.end(), onViolation);
}

unsigned StrictHost::add() {
    const std::lock_guard lock(mutex);
    plugins.try_emplace(++lastPlugin);
    return lastPlugin;
}

bool StrictHost::mayCall(unsigned plugin, std::string_view call, const char* event) {
    {
        const std::lock_guard lock(mutex);
        const auto isOwn = [&](const Channel& channel) {
            const auto screen = screens.find(channel);
            return screen != screens.end() && screen->second.plugins.contains(plugin);
        };
        const auto channel = std::find_if(openCallbacks.begin(), openCallbacks.end(), isOwn);
        // Closing the error popup is the one thing that the plugin does without its lock.
        if (channel == openCallbacks.end() ||
            (event != nullptr && screens.at(*channel).errorPopupEvents.contains(eventIdOf(event)))) {
            return true;
        }
    }
    onViolation({Rule::CallFromCallback, std::string(call) + " from inside a callback; refused"});
    return false;
}

bool StrictHost::registers(unsigned plugin, Channel channel) {
    const std::lock_guard lock(mutex);
    plugins.at(plugin).channels.insert(channel);
    return screens[channel].plugins.insert(plugin).second;
}

void StrictHost::isRefused(unsigned plugin, Channel channel) {
    const std::lock_guard lock(mutex);
    Screen& screen = screens[channel];
    screen.plugins.erase(plugin);
    if (screen.plugins.empty() && screen.setUp.empty() && screen.events.empty()) {
        screens.erase(channel); // nothing ever came through it
        plugins.at(plugin).channels.erase(channel);
    }
}

void StrictHost::stops(unsigned plugin, bool begins) {
    const std::lock_guard lock(mutex);
    plugins.at(plugin).stopDone = begins ? StopDone::Awaited : StopDone::Unasked;
}

void StrictHost::unregistered(unsigned plugin) {
    const std::lock_guard lock(mutex);
    for (const Channel& channel : plugins.at(plugin).channels) {
        Screen& screen = screens[channel];
        if (screen.plugins.erase(plugin) > 0) {
            screen.endedBy = Rule::CallbackAfterUnregister;
        }
    }
}

void StrictHost::disposed(unsigned plugin) {
    const std::lock_guard lock(mutex);
    for (const Channel& channel : plugins.at(plugin).channels) {
        Screen& screen = screens[channel];
        screen.plugins.erase(plugin);
        if (screen.plugins.empty()) {
            screen = {};
            screen.endedBy = Rule::CallbackAfterDispose;
        }
    }
    plugins.erase(plugin);
}

void StrictHost::sends(unsigned plugin, std::string_view event) {
    const std::string id = eventIdOf(event);
    {
        const std::lock_guard lock(mutex);
        const std::set<Channel>& channels = plugins.at(plugin).channels;
        const bool isKnown = id.empty() || // no event document: the plugin says so itself
                             std::any_of(channels.begin(), channels.end(), [&](const Channel& channel) {
                                 return screens[channel].events.contains(id);
                             });
        if (isKnown) {
            return;
        }
    }
    onViolation({Rule::UnknownEvent, "\"" + id + "\" is about to be sent"});
}

void StrictHost::checkChannel(const Channel& channel, std::string_view call,
                              std::vector<Violation>& found) const {
    const auto screen = screens.find(channel);
    if (screen == screens.end()) {
        found.push_back(
            {Rule::ForeignHandle, std::string(call) + " with handle " + std::to_string(channel.second)});
    } else if (screen->second.plugins.empty()) {
        found.push_back({screen->second.endedBy, std::string(call)});
    }
}

std::vector<Violation> StrictHost::takeNotice(const Channel& channel, const char* xml) {
    std::vector<Violation> found;
    const std::lock_guard lock(mutex);
    checkChannel(channel, "Notify", found);
    try {
        if (xml == nullptr || !isUtf8(xml)) {
            throw HostError(xml == nullptr ? "a null pointer" : "not UTF-8");
        }
        const NoticeElement notice = parseNotice(xml);
        const std::vector<Violation> faults = vocabularyFaults(notice);
        found.insert(found.end(), faults.begin(), faults.end());
        if (const auto screen = screens.find(channel); screen != screens.end()) {
            takeScreen(notice, screen->second, found);
        }
    } catch (const HostError& fault) {
        found.push_back({Rule::ReadableNotice, fault.what()});
    }
    return found;
}

void StrictHost::takeScreen(const NoticeElement& notice, Screen& screen, std::vector<Violation>& found) {
    const std::string_view type = notice.attribute("type");
    if (type == "apilog") {
        return;
    }
    bindEvents(notice, false, screen);
    for (const NoticeElement& element : notice.children) {
        const std::string_view id = element.attribute("id");
        if (type == "setup") {
            screen.setUp.emplace(id);
        } else if (type == "update" && !id.empty() && !screen.setUp.contains(id)) {
            found.push_back({Rule::UpdateBeforeSetup, "<" + element.name + "> " + std::string(id)});
        }
    }
}

void StrictHost::bindEvents(const NoticeElement& element, bool isErrorPopup, Screen& screen) {
    for (const auto& [name, value] : element.attributes) {
        if (isEventAttribute(name) && !value.empty()) {
            screen.events.insert(value);
            if (isErrorPopup) {
                screen.errorPopupEvents.insert(value);
            }
        }
    }
    for (const NoticeElement& child : element.children) {
        bindEvents(child, isErrorPopup || child.attribute("id") == errorPopupId, screen);
    }
}

std::vector<Violation> StrictHost::takeStopDone(const Channel& channel) {
    std::vector<Violation> found;
    const std::lock_guard lock(mutex);
    checkChannel(channel, "StopDone", found);
    if (!found.empty()) {
        return found;
    }
    bool wasTold = false;
    for (const unsigned number : screens.at(channel).plugins) {
        Plugin& plugin = plugins.at(number);
        if (plugin.stopDone == StopDone::Awaited) {
            plugin.stopDone = StopDone::Told;
            return found;
        }
        wasTold = wasTold || plugin.stopDone == StopDone::Told;
    }
    found.push_back({wasTold ? Rule::StopDoneTwice : Rule::StopDoneUnasked,
                     wasTold ? "StopDone again within one stop" : "StopDone while nothing stops"});
    return found;
}

} // namespace host
