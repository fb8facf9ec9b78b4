/// What a person types in place of clicking.
#pragma once

#include "host/ScreenModel.h"

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What comes of a typed line: an event for the plugin, or an answer for the person.
struct TypedReply {
    std::string event;  ///< a "vtguiEvent" document; empty: nothing to send
    std::string answer; ///< lines to print; empty: nothing to say
    std::string knobs;  ///< JSON for the stand-in service; empty: nothing to set
    bool wantsToQuit = false;
};

/// Reads a typed line against the screen: a control can only be used while it is shown and enabled.
/// @param openPopups ids of the open popups, the one in front last
TypedReply replyTo(std::string_view line, const ScreenModel& screen,
                   const std::vector<std::string>& openPopups);

} // namespace host
