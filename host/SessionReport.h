/// Tells people where a session parts from what was expected of it.
#pragma once

#include "host/SessionComparison.h"
#include "host/SessionFile.h"

#include <boost/json/object.hpp>

#include <string>
#include <vector>

namespace host {

/// Some lines, ended by a line end: the place in the file, the input that was under way, and what differs. Of
/// two long texts the parts around the first difference are shown.
/// @param actual the outputs that the difference was found in
std::string reportOf(const SessionDifference& difference, const Session& session,
                     const std::vector<boost::json::object>& actual);

} // namespace host
