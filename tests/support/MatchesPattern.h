/// Texts of a form.
#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace test {

/// Whether the whole text has the form of an ECMAScript pattern. The test library's own matcher knows no
/// classes of characters on Windows.
MATCHER_P(MatchesPattern, pattern, std::string("has the form ") + pattern) {
    return std::regex_match(std::string(arg), std::regex(pattern));
}

/// Whether a part of the text has that form.
MATCHER_P(ContainsPattern, pattern, std::string("has a part of the form ") + pattern) {
    return std::regex_search(std::string(arg), std::regex(pattern));
}

} // namespace test
