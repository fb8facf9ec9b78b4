/// The output lines of session files: which keys a line may hold, and of which kind.
#pragma once

#include <boost/json/object.hpp>

namespace host {

/// Checks one output line. Whoever expects an output may leave keys out, so none but "out" is needed.
/// @throws HostError for an unknown "out", an unknown key and a key of the wrong kind
void checkOutput(const boost::json::object& fields);

} // namespace host
