/// Session files: inputs for a plugin, one a line, perhaps with the outputs that they had.
#pragma once

#include "host/SessionInput.h"

#include <boost/json/object.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// An output line of a session file: what is expected to come of the inputs.
struct SessionExpectation {
    unsigned line = 0; ///< in the file, from 1
    boost::json::object output;
};

/// What a session file holds.
struct Session {
    std::string name; ///< of the file, for messages
    std::vector<SessionInput> inputs;
    std::vector<SessionExpectation> expectations; ///< in the order of the file

    /// The time zone that the session runs in, if it says so.
    std::optional<std::string> timeZone() const;
};

/// Reads a session file and checks all of it.
/// @throws HostError that names the file and the line
Session readSession(const std::filesystem::path& file);

/// The same with the file's content at hand.
Session parseSession(std::string_view content, const std::string& name);

/// "FILE:LINE: what", as all messages about session files read.
std::string atLine(const std::string& name, unsigned line, std::string_view what);

} // namespace host
