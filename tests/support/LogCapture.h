/// Catches what is logged while it lives.
#pragma once

#include "common2/logging/Common2Loggers.h"

#include <memory>
#include <string>
#include <vector>

namespace test {

struct LoggedRecord {
    int severity = -1;
    std::string function;
    std::string file;
    int line = 0;
    std::string message;

    bool operator==(const LoggedRecord&) const = default;
};

/// Adds a sink to the log core that keeps every record that passes the filter. Any thread may log meanwhile.
class LogCapture {
public:
    LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    /// All records so far.
    std::vector<LoggedRecord> records() const;
    /// Their messages.
    std::vector<std::string> messages() const;
    /// The messages of that severity.
    std::vector<std::string> messages(int severity) const;
    void clear();

private:
    struct State;
    std::shared_ptr<State> state;
};

} // namespace test
