/// Work that may take the process with it.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace host::bundle {

/// Takes one line, without its end. Any thread of the work.
using LineTaker = std::function<void(std::string_view line)>;
using Work = std::function<void(const LineTaker&)>;

struct ApartOutcome {
    std::string
        lines; ///< what the work wrote, up to its end or to what ended it; of some 32 MiB and more, the last
    std::string problem; ///< that the process was ended, in words; empty: the work came to its end
};

/// Runs the work in a process of its own where the system lets a process be doubled (Linux); it crashes and
/// hangs alone there. Elsewhere it runs in this one. No other thread may run yet.
/// @param work must not throw
/// @param limit after which a process of its own is ended
/// @throws HostError where there is no such process to be had
ApartOutcome runApart(const Work& work, std::chrono::milliseconds limit);

} // namespace host::bundle
