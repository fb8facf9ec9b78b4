#include "host/SessionComparison.h"

#include <boost/json/serialize.hpp>

#include <string_view>

namespace host {
namespace {

constexpr std::string_view stampBegin = " timestamp=\"";
constexpr std::string_view anyStamp = " timestamp=\"*\"";

/// Whether the texts are the same, but for time stamps that the expected one leaves open.
bool meetsText(std::string_view expected, std::string_view actual) {
    for (;;) {
        const std::size_t open = expected.find(anyStamp);
        if (open == std::string_view::npos) {
            return expected == actual;
        }
        const std::size_t value = open + stampBegin.size();
        if (actual.substr(0, value) != expected.substr(0, value)) {
            return false;
        }
        const std::size_t end = actual.find('"', value);
        if (end == std::string_view::npos) {
            return false;
        }
        expected.remove_prefix(open + anyStamp.size());
        actual.remove_prefix(end + 1);
    }
}

std::string masked(std::string_view text) {
    std::string result;
    for (;;) {
        const std::size_t open = text.find(stampBegin);
        const std::size_t end =
            open == std::string_view::npos ? open : text.find('"', open + stampBegin.size());
        if (end == std::string_view::npos) {
            return result.append(text);
        }
        result.append(text.substr(0, open)).append(anyStamp);
        text.remove_prefix(end + 1);
    }
}

bool isOptional(const boost::json::object& line) {
    const boost::json::value* optional = line.if_contains("optional");
    return optional && optional->is_bool() && optional->get_bool();
}

SessionDifference difference(const std::vector<boost::json::object>& expected, std::size_t expectedIndex,
                             const std::vector<boost::json::object>& actual, std::size_t actualIndex) {
    const auto lineAt = [](const std::vector<boost::json::object>& lines, std::size_t index) {
        return index < lines.size() ? boost::json::serialize(lines[index]) : std::string("(nothing more)");
    };
    return {expectedIndex, actualIndex,
            "expected: " + lineAt(expected, expectedIndex) + "\n  actual: " + lineAt(actual, actualIndex)};
}

} // namespace

void maskTimeStamps(std::vector<boost::json::object>& outputs) {
    for (boost::json::object& output : outputs) {
        boost::json::value* xml = output.if_contains("xml");
        if (xml && xml->is_string()) {
            *xml = masked(xml->get_string());
        }
    }
}

bool meetsExpectation(const boost::json::object& expected, const boost::json::object& actual) {
    for (const auto& [key, value] : expected) {
        if (key == "optional") {
            continue;
        }
        const boost::json::value* found = actual.if_contains(key);
        if (!found) {
            return false;
        }
        const bool isNotice = key == "xml" && value.is_string() && found->is_string();
        if (isNotice ? !meetsText(value.get_string(), found->get_string()) : value != *found) {
            return false;
        }
    }
    return true;
}

std::optional<SessionDifference> firstDifference(const std::vector<boost::json::object>& expected,
                                                 const std::vector<boost::json::object>& actual) {
    std::size_t met = 0;
    for (std::size_t index = 0; index < expected.size(); ++index) {
        if (met < actual.size() && meetsExpectation(expected[index], actual[met])) {
            ++met;
        } else if (!isOptional(expected[index])) {
            return difference(expected, index, actual, met);
        }
    }
    if (met < actual.size()) {
        return difference(expected, expected.size(), actual, met);
    }
    return std::nullopt;
}

} // namespace host
