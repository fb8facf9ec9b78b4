/// Reads scenarios and knobs, as strictly as their schema is written.
#pragma once

#include "backend-sim/Scenario.h"
#include "backend-sim/ScenarioError.h"

#include <boost/json/object.hpp>

#include <string_view>

namespace sim {

/// The scenario in a JSON text; what the text leaves out is as usual.
/// @throws ScenarioError
Scenario readScenario(std::string_view text);

/// Knobs in a JSON text: any part of a scenario, where the keys of "device" may also stand at the top.
/// @throws ScenarioError
boost::json::object readKnobs(std::string_view text);

/// Sets what the knobs name and leaves the rest. A list takes the place of the list that was there.
/// @param knobs from readKnobs, or from a fault's "set"
void setKnobs(const boost::json::object& knobs, Scenario& scenario);

} // namespace sim
