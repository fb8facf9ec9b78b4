/// What the plugin's machine should do, told by tables of its own that share no code with it: it reads the
/// machine's trace and says where it goes astray.
#pragma once

#include "tests/boundary/MemoryBackend.h"

#include <array>
#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// What the tables' conditions ask about the one event under way.
struct MachineFacts {
    std::string_view event = {}; ///< that the machine may hear of, if it hears of any
    bool statusIsError = false;  ///< of a status document
    std::string_view progress =
        ""; ///< "Started", "Complete" or "Error" of an enrollment or unenrollment status
    std::set<BackendCall> failing = {}; ///< calls of the backend that fail
};

/// The steps of a scene as the machine should hear of them.
MachineFacts factsOf(std::string_view step);

/// The lines of the log that are the machine's trace, in short: "root E", "sub E", "A -> B", or an action's
/// name.
std::vector<std::string> machineTrace(const std::vector<std::string>& messages);

class MachineModel {
public:
    /// Follows what one step brought about.
    /// @param trace in short
    /// @param isRefused whether the plugin called the event unexpected
    /// @return empty where all is as it should be
    std::string follow(const std::vector<std::string>& trace, const MachineFacts& facts, bool isRefused);

private:
    struct Failure {}; ///< an action's call of the backend has failed

    bool dispatch(std::string_view event);
    bool offer(std::string_view event);
    bool offerToRegions(std::string_view event);
    bool offerToRegion(std::size_t region, std::string_view event);
    bool offerToRoot(std::string_view event);
    bool drain();
    bool complete(bool isTaken);
    void act(std::string_view actions);
    void actOne(std::string_view action);
    bool holds(std::string_view condition) const;
    bool isNext(std::string_view line) const;
    void expect(const std::string& line);

    std::string_view root = "Unregistered_s";
    std::array<std::string_view, 5> regions;
    std::deque<std::string_view> queue; ///< events for the root
    bool mayTellOfAlerts = false;       ///< an action has run that may have found other alerts

    const std::vector<std::string>* lines = nullptr;
    std::size_t at = 0;
    MachineFacts now;
    std::string complaint;
};

} // namespace test
