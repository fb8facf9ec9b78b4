/// A program that a test runs.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace test {

/// What is run, and how.
struct ProcessPlan {
    std::filesystem::path program;
    std::vector<std::string> arguments;
    std::filesystem::path folder = {}; ///< to run in; empty: the test's own
    bool joinsErrors = false;          ///< what goes to standard error comes with the output
};

struct ProcessEnd {
    int exitCode = -1; ///< -1 where the program did not end by itself
    std::string out;
    std::string error; ///< empty where it comes with the output
};

/// A program that runs, with nothing to read and its outputs caught. It is ended with the object. Lines end
/// with "\n" on every system.
class Process {
public:
    explicit Process(const ProcessPlan& plan);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    /// Reads until the output holds `text` or ends.
    /// @return the output so far
    const std::string& waitForOutput(const std::string& text);

    /// Asks the program to end, as a user does in a terminal, or as the system does where it has a way of its
    /// own.
    void interrupt() const;
    void terminate() const;

    /// Reads what is left and waits for the program's end. To be called once.
    ProcessEnd finish();

private:
    struct State;
    std::unique_ptr<State> state;
};

/// Runs a program to its end.
ProcessEnd runProcess(const ProcessPlan& plan);

} // namespace test
