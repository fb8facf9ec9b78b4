/// What works cost.
#pragma once

#include "bench/Workload.h"

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Does a work so often before any count that all its memory has its size.
inline constexpr unsigned warmUpSteps = 2;

/// Does a work in this process, as the child that is counted: first the warm-up, then `steps` steps inside
/// the one function that is counted.
void doSteps(Workload& workload, unsigned steps);

/// The instructions of one step, counted by valgrind's callgrind in a child process.
/// @throws std::runtime_error where valgrind does not run
double instructionsOf(const WorkloadEntry& entry);

/// The allocations of one step.
double allocationsOf(const WorkloadEntry& entry);

/// The nanoseconds of processor time of one step each, by name, the works taking turns.
std::map<std::string, double> timesOf(const std::vector<WorkloadEntry>& entries);

/// What it costs to have the module.
struct Footprint {
    double microsecondsToFirstNotice; ///< from before it is loaded; the median of several loads
    double residentKilobytes;         ///< that the process grows by, at rest after the first status
    double strippedBytes;             ///< of the module's file
};
Footprint footprintOfModule();

/// The lines that a command writes to both its outputs.
/// @throws std::runtime_error where it fails, with those lines
std::vector<std::string> linesOf(const std::string& command);

} // namespace bench
