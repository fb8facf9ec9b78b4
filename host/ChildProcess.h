/// This program, run again: what goes wrong in there leaves this process whole.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// How a child came to its end.
struct ChildEnd {
    bool isOverdue = false;           ///< it was killed because it took too long
    int exitCode = 0;                 ///< where nothing else ended it
    std::optional<std::string> crash; ///< what else did: "signal 11 (SIGSEGV)", "code 0xC0000005"
    std::string output;               ///< what it wrote to standard output; of too much, the end
};

/// How much of a child's output is kept at the least, in bytes; at the most it is twice that.
inline constexpr std::size_t keptOutput = std::size_t{32} << 20;

/// Runs this program with other arguments and waits for its end. Its standard input is empty, its standard
/// error is this program's. Any thread.
/// @param arguments UTF-8 on Linux, the program's code page on Windows; without the program's name
/// @param limit after which the child is killed
/// @throws HostError where the system starts no process
ChildEnd runChild(const std::vector<std::string>& arguments, std::chrono::milliseconds limit);

} // namespace host
