/// The plugin's machine as data, for diagrams and tables.
#pragma once

#include <string>

/// One JSON object, indented, that ends with a line end:
///
///     {"machines": [{"name": TEXT,
///                    "regions": [{"name": TEXT, "initial": STATE, "states": [STATE...],
///                                 "rows": [{"from": STATE, "event": TEXT, "guard": TEXT, "action": TEXT,
///                                           "to": STATE}...]}...]}...]}
///
/// The root comes first; a state of it that bears the name of a later machine is that machine. An empty event
/// is completion, an empty "to" an internal transition. Read off the transition tables themselves.
std::string machineDescription();
