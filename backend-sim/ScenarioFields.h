/// The scenario's fields as its file names them.
#pragma once

#include "backend-sim/FieldVisitor.h"
#include "backend-sim/Scenario.h"

namespace sim {

void visitDevice(FieldVisitor& visitor, Device& device);
void visitScenario(FieldVisitor& visitor, Scenario& scenario);
/// What may be set while the service runs: the scenario's fields, and those of its device beside them.
void visitKnobs(FieldVisitor& visitor, Scenario& scenario);

} // namespace sim
