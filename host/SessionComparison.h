/// Holds what came of a session against what was expected of it.
#pragma once

#include <boost/json/object.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
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
/// may be missing. Of notices some is left open, as `asExpected` tells.
/// @return the first difference, none where all is as expected
std::optional<SessionDifference> firstDifference(const std::vector<boost::json::object>& expected,
                                                 const std::vector<boost::json::object>& actual);

/// A notice as it would be, had what an expected one leaves open come as expected: a time stamp of "*" stands
/// for any, and a user agent for one that differs in its system, so that a session from one system can be
/// replayed on another.
std::string asExpected(std::string_view expected, std::string_view actual);

/// Leaves the time stamps of all notices open: recordings hold those of their own time.
void maskTimeStamps(std::vector<boost::json::object>& outputs);

/// Whether an output line is as expected.
bool meetsExpectation(const boost::json::object& expected, const boost::json::object& actual);

} // namespace host
