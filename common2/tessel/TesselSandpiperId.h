/// The machine id of the endpoint monitoring agent.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

class TesselSandpiperId {
public:
    /// Reads the id that the agent has stored, a UUID.
    /// @param id empty on failure
    /// @return an error code of "global_error", 0 on success
    static std::error_code IdentifySpMachineId(std::string& id);

    /// Whether the text is a UUID in its usual form of 36 characters.
    static bool isValidUuid(std::string_view text);
};
