/// A host that names the rule that was broken, where another would crash, hang or guess.
#pragma once

#include "host/HostCallbacks.h"
#include "host/PluginObject.h"
#include "host/strict/CallWatch.h"
#include "host/strict/Violation.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

struct NoticeElement;

inline constexpr std::chrono::milliseconds usualCallLimit{5'000};

/// Watches the plugin objects and callback objects that it is given. Any thread.
class StrictHost {
public:
    /// Takes a violation, on the thread that finds it, which may hold locks of the plugin: it must not call
    /// the plugin, nor wait.
    using Report = std::function<void(const Violation&)>;

    /// @param callLimit after which a call into a plugin is overdue: then the stacks of all threads go to
    ///     standard error
    explicit StrictHost(Report onViolation, std::chrono::milliseconds callLimit = usualCallLimit);
    StrictHost(const StrictHost&) = delete;
    StrictHost& operator=(const StrictHost&) = delete;

    /// Wraps an object, so that each call is checked before it is made: one that a callback must not make is
    /// refused (`presentationFailed`, false). This must outlive the object.
    std::unique_ptr<PluginObject> watched(std::unique_ptr<PluginObject> plugin);
    /// Makes a callback object whose calls are checked and then handed on. This must outlive it.
    std::unique_ptr<HostCallbacks> makeCallbacks(HostCallbacks::NoticeHandler onNotice,
                                                 HostCallbacks::StopDoneHandler onStopDone);
    /// For what else calls a plugin, and for time that the host takes itself.
    CallWatch& calls() { return watch; }

private:
    friend class StrictPlugin;

    /// What a callback names: the object that it came to, and the handle.
    using Channel = std::pair<const HostCallbacks*, std::uintptr_t>;
    enum class StopDone { Unasked, Awaited, Told };
    /// What went through a channel.
    struct Screen {
        std::set<unsigned> plugins; ///< that may use it
        std::set<std::string, std::less<>> setUp;
        std::set<std::string, std::less<>> events;
        std::set<std::string, std::less<>> errorPopupEvents;
        Rule endedBy = Rule::CallbackAfterUnregister;
    };
    struct Plugin {
        std::set<Channel> channels; ///< all that it was ever given
        StopDone stopDone = StopDone::Unasked;
    };
    /// A callback that runs, for as long as this lives.
    class InCallback;

    // For the objects that are watched.
    unsigned add();
    bool mayCall(unsigned plugin, std::string_view call, const char* event = nullptr);
    /// @return whether the plugin did not have the channel before
    bool registers(unsigned plugin, Channel channel);
    void isRefused(unsigned plugin, Channel channel);
    void stops(unsigned plugin, bool begins);
    void unregistered(unsigned plugin);
    void disposed(unsigned plugin);
    void sends(unsigned plugin, std::string_view event);

    void checkChannel(const Channel& channel, std::string_view call, std::vector<Violation>& found) const;
    std::vector<Violation> takeNotice(const Channel& channel, const char* xml);
    std::vector<Violation> takeStopDone(const Channel& channel);
    static void bindEvents(const NoticeElement& element, bool isErrorPopup, Screen& screen);
    static void takeScreen(const NoticeElement& notice, Screen& screen, std::vector<Violation>& found);
    void report(const std::vector<Violation>& found) const;

    const Report onViolation;
    mutable std::mutex mutex;
    unsigned lastPlugin = 0;
    std::map<unsigned, Plugin> plugins;
    std::map<Channel, Screen> screens;
    CallWatch watch; ///< last: its thread uses the others
};

} // namespace host
