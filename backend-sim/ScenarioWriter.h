/// Writes a scenario as its file would hold it.
#pragma once

#include "backend-sim/Scenario.h"

#include <boost/json/object.hpp>

namespace sim {

/// Every field in its order; a time that is still to come is left out. `readScenario` takes it back.
boost::json::object writeScenario(Scenario scenario);

} // namespace sim
