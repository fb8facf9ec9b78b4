/// What happened to a module's plugin: while this program ran it, or in a session file.
#pragma once

#include "host/PluginObject.h"
#include "host/SessionFile.h"
#include "host/serve/Journal.h"

#include <boost/json/object.hpp>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace host::bundle {

struct ModuleStory {
    std::string source;                               ///< in words: where this comes from
    std::string problem;                              ///< what went wrong on the way; empty: nothing
    std::vector<serve::JournalEntryPointer> entries;  ///< outputs; those of a session have no time
    std::vector<serve::JournalEntryPointer> untilEnd; ///< those before the plugin was told to stop
};

/// What a module tells of itself, and what happened to a plugin of it.
struct ModuleReport {
    boost::json::object module; ///< what it is and offers; "problem" where it did not tell
    ModuleStory story;
};

/// Runs the module in a process of its own (`printModuleRun`). What cannot be done is told in the report, and
/// so is what the module did up to a crash, or until it was given up.
/// @param length none: nothing is run, the module only tells what it is
/// @throws HostError where no process is to be had for it
ModuleReport examineAndRun(const std::filesystem::path& module, PluginInterface way,
                           std::optional<std::chrono::seconds> length);

/// The outputs that a session file holds.
ModuleStory storyOf(const Session& session);

/// Where the plugin stood last: the states of its machine, and what was on the screen.
boost::json::object lastState(const ModuleStory& story);

} // namespace host::bundle
