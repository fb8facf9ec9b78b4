/// Catches what would go to syslog. A test program that uses it replaces the C library's functions.
#pragma once

#include <string>
#include <vector>

namespace test {

struct SyslogLine {
    int priority = -1;
    std::string text;

    bool operator==(const SyslogLine&) const = default;
};

namespace syslogCapture {

/// Forgets everything.
void reset();
/// The name given to `openlog`, empty while the log is closed.
std::string ident();
/// All lines since `reset`.
std::vector<SyslogLine> lines();

} // namespace syslogCapture
} // namespace test
