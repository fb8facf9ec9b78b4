/// Where the plugin's machine stands, as its trace tells.
#pragma once

#include "host/LogLine.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace host::serve {

struct MachineStates {
    std::string root;                           ///< empty: there is no machine
    std::map<std::string, std::string> regions; ///< region and state; empty unless the machine runs
    std::uint64_t version = 0;                  ///< counts up with every change
};

/// Follows the log of one plugin object. Any thread.
class MachineTracker {
public:
    /// A plugin object was made, or is no more.
    void create();
    void dispose();

    /// Looks at a log record. Those that are not of the machine's trace, and states that nobody knows, change
    /// nothing.
    void take(const LogRecord& record);

    MachineStates states() const;

private:
    void enterRoot(std::string state);
    void enterRegion(const std::string& state);

    mutable std::mutex mutex;
    MachineStates present;
};

} // namespace host::serve
