/// Catches what would go to the system's log. A test program that uses it replaces the system's functions.
#pragma once

#include <string>
#include <vector>

namespace test {

struct SystemLogLine {
    int level = -1; ///< a priority of syslog(3), or the type of an event
    std::string text;

    bool operator==(const SystemLogLine&) const = default;
};

namespace systemLog {

/// The system's own levels for traces, information, warnings, errors and what is none of them.
struct Levels {
    int trace;
    int info;
    int warning;
    int error;
    int other;
};
Levels levels();

/// Forgets everything. Nothing is caught before the first call.
void reset();
/// The name under which somebody writes to the log, empty while nobody does.
std::string source();
/// All lines since `reset`.
std::vector<SystemLogLine> lines();

} // namespace systemLog
} // namespace test
