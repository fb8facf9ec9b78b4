#pragma once

#include <stdexcept>

namespace sim {

/// What is wrong with a scenario or with knobs, for a person to read: the place, as a JSON pointer or as line
/// and column, a colon and the complaint.
class ScenarioError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace sim
