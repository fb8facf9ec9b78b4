#include "host/SessionComparison.h"

#include <boost/json/serialize.hpp>

#include <algorithm>
#include <iterator>

namespace host {
namespace {

constexpr std::string_view stampBegin = " timestamp=\"";
constexpr std::string_view anyStamp = " timestamp=\"*\"";
constexpr std::string_view agentBegin = " user_agent=\"";

/// The systems that a module calls itself built for, at the end of a user agent.
constexpr std::string_view systems[] = {"win", "win-arm64", "linux-x86_64", "linux-arm64", "unknown"};

std::string stampAsExpected(std::string_view expected, std::string_view actual) {
    return std::string(expected == "*" ? expected : actual);
}

/// The system at the end of a user agent, with its brackets; nothing where there is none that is known.
std::string_view systemOf(std::string_view agent) {
    const std::size_t open = agent.rfind('(');
    if (open == std::string_view::npos || !agent.ends_with(')')) {
        return {};
    }
    const std::string_view name = agent.substr(open + 1, agent.size() - open - 2);
    return std::ranges::find(systems, name) != std::end(systems) ? agent.substr(open) : std::string_view();
}

std::string agentAsExpected(std::string_view expected, std::string_view actual) {
    const std::string_view wanted = systemOf(expected);
    const std::string_view found = systemOf(actual);
    if (wanted.empty() || found.empty()) {
        return std::string(actual);
    }
    return std::string(actual.substr(0, actual.size() - found.size())).append(wanted);
}

/// The value of the text's next attribute, which is taken off the text with all before it.
std::string_view takeValue(std::string_view& text, std::string_view begin) {
    const std::size_t open = text.find(begin);
    const std::size_t end = open == std::string_view::npos ? open : text.find('"', open + begin.size());
    if (end == std::string_view::npos) {
        text = {};
        return {};
    }
    const std::string_view value = text.substr(open + begin.size(), end - open - begin.size());
    text.remove_prefix(end);
    return value;
}

/// The actual text, each value of the attribute as `choose` has it.
std::string withValues(std::string_view begin, std::string_view expected, std::string_view actual,
                       std::string (*choose)(std::string_view expected, std::string_view actual)) {
    std::string result;
    while (!actual.empty()) {
        const std::string_view rest = actual;
        const std::string_view value = takeValue(actual, begin);
        if (actual.empty()) {
            return result.append(rest);
        }
        result.append(rest.substr(0, static_cast<std::size_t>(value.data() - rest.data())))
            .append(choose(takeValue(expected, begin), value));
    }
    return result;
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

std::string asExpected(std::string_view expected, std::string_view actual) {
    return withValues(agentBegin, expected, withValues(stampBegin, expected, actual, stampAsExpected),
                      agentAsExpected);
}

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
        if (isNotice ? value.get_string() != asExpected(value.get_string(), found->get_string())
                     : value != *found) {
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
