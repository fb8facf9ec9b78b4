/// What happened to a module's plugin: while this program ran it, or in a session file.
#pragma once

#include "host/PluginObject.h"
#include "host/SessionFile.h"
#include "host/serve/Journal.h"

#include <boost/json/object.hpp>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace host::bundle {

struct ModuleStory {
    std::string source;                               ///< in words: where this comes from
    std::string problem;                              ///< what went wrong on the way; empty: nothing
    std::vector<serve::JournalEntryPointer> entries;  ///< outputs; those of a session have no time
    std::vector<serve::JournalEntryPointer> untilEnd; ///< those before the plugin was told to stop
};

/// Makes a plugin, runs it for that long against the backend library that the module finds, and ends it. It
/// asks for nothing: the service only tells how things are. What cannot be done is told in the story.
ModuleStory runShortly(const std::filesystem::path& module, PluginInterface way, std::chrono::seconds length);

/// The outputs that a session file holds.
ModuleStory storyOf(const Session& session);

/// Where the plugin stood last: the states of its machine, and what was on the screen.
boost::json::object lastState(const ModuleStory& story);

} // namespace host::bundle
