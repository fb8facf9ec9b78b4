/// A plugin whose machine is followed by the model, step by step.
#pragma once

#include "tests/boundary/MachineModel.h"
#include "tests/boundary/Scene.h"
#include "tests/support/LogCapture.h"
#include "tests/support/QuietLog.h"

#include <string>
#include <string_view>

namespace test {

class MachineWalk {
public:
    MachineWalk();

    /// Whether from now on all calls of the backend fail but `Stop`, which is the plugin's own affair.
    void failAll(bool isSo);

    /// Takes a step of the scene.
    /// @return what the model has to say against what came of it; empty for nothing
    std::string step(std::string_view name);

    /// How many events the machine has heard of.
    std::size_t eventCount() const { return events; }

private:
    QuietLog everything{DBG_TRACE}; ///< passes
    LogCapture log;
    Scene scene;
    MachineModel model;
    bool isFailing = false;
    std::size_t events = 0;
};

} // namespace test
