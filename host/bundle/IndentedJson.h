/// JSON for people.
#pragma once

#include <boost/json/value.hpp>

#include <string>

namespace host::bundle {

/// The value with each member and element on a line of its own, the last line's end included.
std::string indentedJson(const boost::json::value& value);

} // namespace host::bundle
