/// Comparing XML texts.
#pragma once

#include <string>

namespace test {

/// The text with the value of every "timestamp" attribute replaced by an asterisk.
std::string maskTimestamps(const std::string& xml);

} // namespace test
