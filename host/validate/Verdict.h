/// What a check came to.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace host::validate {

enum class Outcome {
    Passed,
    Failed,
    Crashed,
    TimedOut,
};

inline constexpr std::array<std::string_view, 4> outcomeWords{"passed", "failed", "crashed", "timed out"};

struct Verdict {
    Outcome outcome = Outcome::Passed;
    std::string reason = {}; ///< one line; empty where it passed
};

/// The line in which a child tells its verdict, passed or failed, without a line end.
std::string verdictLine(const Verdict& verdict);

/// The verdict in a child's output, whatever the module wrote there as well; nothing where there is none.
std::optional<Verdict> verdictIn(std::string_view output);

} // namespace host::validate
