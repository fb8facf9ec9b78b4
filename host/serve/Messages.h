/// The messages from the server to its pages, as texts.
#pragma once

#include "host/serve/Journal.h"
#include "host/serve/LiveHost.h"
#include "host/serve/LiveScreen.h"
#include "host/serve/MachineTracker.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host::serve {

/// What does not change while the program runs.
struct Surroundings {
    std::string modulePath;
    std::string schema;  ///< of scenarios, as JSON; empty: there is none
    std::string machine; ///< the machine's picture, as JSON; empty: there is none
    bool hasStandIn = false;
};

std::string helloMessage(const Surroundings& surroundings, const PluginFacts& facts,
                         const std::vector<JournalEntryPointer>& entries);
std::string entriesMessage(const JournalSlice& slice);
std::string screenMessage(const LiveScreen& screen);
std::string machineMessage(const MachineStates& states);
/// @param state as the stand-in tells it, JSON
std::string serviceMessage(const std::string& state);
/// @param error empty: none
std::string replyMessage(std::optional<std::uint64_t> id, const std::string& error);
std::string goodbyeMessage(const std::string& reason);

} // namespace host::serve
