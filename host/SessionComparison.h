/// Holds what came of a session against what was expected of it.
#pragma once

#include <boost/json/object.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// Where two sessions part.
struct SessionDifference {
    std::size_t
        expectedIndex; ///< of the expected line that is not met; its count where there is one line too many
    std::size_t actualIndex; ///< of the line that stands in its place; its count where it is missing
    std::string what;        ///< for people
};

/// Compares output lines in order. Of an expected line only the keys that it holds count; "optional" lines
/// may be missing; a time stamp of "*" in an expected notice stands for any.
/// @return the first difference, none where all is as expected
std::optional<SessionDifference> firstDifference(const std::vector<boost::json::object>& expected,
                                                 const std::vector<boost::json::object>& actual);

/// Leaves the time stamps of all notices open: recordings hold those of their own time.
void maskTimeStamps(std::vector<boost::json::object>& outputs);

/// Whether an output line is as expected.
bool meetsExpectation(const boost::json::object& expected, const boost::json::object& actual);

} // namespace host
