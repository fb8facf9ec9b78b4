/// The answers to dataplane authentication requests.
#pragma once

#include "backend-sim/RequestReader.h"
#include "backend-sim/ServiceCore.h"

#include <string>

namespace sim {

/// Belongs to a step of the core.
class DataplaneFlow {
public:
    explicit DataplaneFlow(ServiceCore& usedCore)
        : core(usedCore) {}

    /// With the right cookie its request goes; with any other everything stays. What is left is told to all.
    void answer(const Request& request);

private:
    void judge(const std::string& context, const std::string& cookie);

    ServiceCore& core;
};

} // namespace sim
