/// The plugin's machine as data, for diagrams and tables: read off the transition tables themselves.
#pragma once

#include "common/state_machine/SmlWords.h"

#include <string>
#include <vector>

struct DescribedRegion {
    std::string name; ///< what its states' names begin with, as a key: "dataplane_auth"
    smlDescription::Region table;
};

struct DescribedMachine {
    std::string name;
    std::vector<DescribedRegion> regions; ///< run side by side
};

/// The root first. A state that bears the name of a later machine is that machine.
std::vector<DescribedMachine> describedMachines();

/// The same as one JSON object, indented, that ends with a line end:
///
///     {"machines": [{"name": TEXT,
///                    "regions": [{"name": TEXT, "initial": STATE, "states": [STATE...],
///                                 "rows": [{"from": STATE, "event": TEXT, "guard": TEXT, "action": TEXT,
///                                           "to": STATE}...]}...]}...]}
///
/// An empty event is completion, an empty "to" an internal transition.
std::string machineDescription();
