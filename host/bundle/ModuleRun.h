/// A module at work in a process of its own, which tells of it line by line.
#pragma once

#include "host/PluginObject.h"

#include <chrono>
#include <filesystem>
#include <optional>

namespace host::bundle {

/// What the lines tell: each is a JSON object with one of these keys, and with "time".
namespace told {
inline constexpr const char* output = "output";   ///< an output line
inline constexpr const char* atEnd = "at_end";    ///< from here on the plugin is being ended
inline constexpr const char* problem = "problem"; ///< of the run
inline constexpr const char* module = "module";   ///< what the module is; a text where it does not tell
} // namespace told

/// Makes a plugin of the module, runs it for that long against the backend library that the module finds,
/// ends it, and asks the module what it is. It asks the service for nothing. All that is printed as it comes,
/// so that nothing of it is lost in a crash.
/// @param length none: nothing is run, the module only tells what it is
void printModuleRun(const std::filesystem::path& module, PluginInterface way,
                    std::optional<std::chrono::seconds> length);

} // namespace host::bundle
