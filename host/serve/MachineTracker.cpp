#include "host/serve/MachineTracker.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace host::serve {
namespace {

constexpr std::string_view rootMachine = "PresentationPlugin_s";
constexpr std::string_view runningState = "Started_s"; ///< the machine of the regions, and their root's state
constexpr std::string_view firstState = "Unregistered_s";

constexpr std::string_view mainStates[] = {"MainActive_s", "MainEnrolling_s", "MainUnenrolling_s"};
constexpr std::string_view enrollStates[] = {"EnrollIdle_s",     "EnrollRequestPending_s",
                                             "EnrollStarted_s",  "EnrollAuthenticating_s",
                                             "EnrollProgress_s", "EnrollCancelPending_s"};
constexpr std::string_view dataplaneStates[] = {"DataplaneAuthIdle_s", "DataplaneAuthenticating_s"};
constexpr std::string_view unenrollStates[] = {"UnenrollIdle_s", "UnenrollRequestPending_s",
                                               "UnenrollStarted_s"};
constexpr std::string_view alertStates[] = {"AlertIdle_s", "AlertShowingDialog_s"};

struct Region {
    std::string_view name;
    std::span<const std::string_view> states; ///< the first is where it begins
};
constexpr std::array<Region, 5> regions{{
    {"main", mainStates},
    {"enroll", enrollStates},
    {"dataplane_auth", dataplaneStates},
    {"unenroll", unenrollStates},
    {"alert", alertStates},
}};

/// A type's name without the word before it that says what it is.
std::string_view bareName(std::string_view type) {
    for (const std::string_view key : {"struct ", "class "}) {
        if (type.starts_with(key)) {
            type.remove_prefix(key.size());
        }
    }
    return type;
}

struct Transition {
    std::string_view machine;
    std::string_view target;
};

/// Takes apart "[MACHINE][transition] SOURCE -> TARGET".
std::optional<Transition> transitionOf(const LogRecord& record) {
    constexpr std::string_view mark = "][transition] ";
    constexpr std::string_view arrow = " -> ";
    const std::string_view text = record.message;
    const std::size_t machineEnd = text.find(mark);
    const std::size_t sourceEnd = text.find(arrow);
    const bool isTransition = record.function == "QuillSmlLogger_t::log_state_change" &&
                              text.starts_with('[') && machineEnd != text.npos && sourceEnd != text.npos;
    if (!isTransition) {
        return std::nullopt;
    }
    return Transition{bareName(text.substr(1, machineEnd - 1)),
                      bareName(text.substr(sourceEnd + arrow.size()))};
}

} // namespace

void MachineTracker::create() {
    const std::lock_guard lock(mutex);
    enterRoot(std::string(firstState));
}

void MachineTracker::dispose() {
    const std::lock_guard lock(mutex);
    enterRoot({});
}

void MachineTracker::take(const LogRecord& record) {
    const auto transition = transitionOf(record);
    if (!transition) {
        return;
    }
    const std::lock_guard lock(mutex);
    if (transition->machine == rootMachine) {
        enterRoot(std::string(transition->target));
    } else if (transition->machine == runningState) {
        enterRegion(std::string(transition->target));
    }
}

void MachineTracker::enterRoot(std::string state) {
    present.root = std::move(state);
    present.regions.clear();
    if (present.root == runningState) {
        for (const Region& region : regions) {
            present.regions.emplace(region.name, region.states.front());
        }
    }
    ++present.version;
}

void MachineTracker::enterRegion(const std::string& state) {
    const auto region = std::find_if(regions.begin(), regions.end(), [&](const Region& candidate) {
        return std::find(candidate.states.begin(), candidate.states.end(), state) != candidate.states.end();
    });
    if (region != regions.end() && present.root == runningState) {
        present.regions.insert_or_assign(std::string(region->name), state);
        ++present.version;
    }
}

MachineStates MachineTracker::states() const {
    const std::lock_guard lock(mutex);
    return present;
}

} // namespace host::serve
