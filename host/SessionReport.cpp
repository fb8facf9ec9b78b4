#include "host/SessionReport.h"

#include "host/Text.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <string_view>

namespace host {
namespace {

namespace json = boost::json;

constexpr std::size_t shownLine = 300; ///< characters of a whole line
constexpr std::size_t shownBefore = 40;
constexpr std::size_t shownBehind = 80;

/// The part of the text around a place, with dots where something was left out, on one line.
std::string excerpt(std::string_view text, std::size_t place, std::size_t before, std::size_t behind) {
    const std::size_t begin = place > before ? place - before : 0;
    const std::size_t end = std::min(text.size(), place + behind);
    const std::string_view shown = begin < text.size() ? text.substr(begin, end - begin) : std::string_view();
    return (begin > 0 ? "..." : "") + printable(shown) + (end < text.size() ? "..." : "");
}

std::string shortened(const json::value& value) { return excerpt(json::serialize(value), 0, 0, shownLine); }

/// What one key holds, where that is not what was expected of it.
std::string keyReport(std::string_view key, const json::value& expected, const json::value* actual) {
    std::string report = "  " + json::serialize(json::value(key));
    if (actual == nullptr) {
        return report + " is missing; expected " + shortened(expected) + "\n";
    }
    if (!expected.is_string() || !actual->is_string()) {
        return report + "\n    expected " + shortened(expected) + "\n    actual   " + shortened(*actual) +
               "\n";
    }
    const std::string_view wanted = expected.get_string();
    const std::string found = key == "xml" ? asExpected(wanted, actual->get_string())
                                           : std::string(std::string_view(actual->get_string()));
    const auto place =
        static_cast<std::size_t>(std::ranges::mismatch(wanted, std::string_view(found)).in1 - wanted.begin());
    return report + ", from byte " + std::to_string(place) + " on\n    expected " +
           excerpt(wanted, place, shownBefore, shownBehind) + "\n    actual   " +
           excerpt(found, place, shownBefore, shownBehind) + "\n";
}

/// Two outputs of one kind: the keys that differ.
std::string outputReport(const json::object& expected, const json::object& actual) {
    std::string report;
    for (const auto& [key, value] : expected) {
        const json::object wanted{{key, value}};
        if (!meetsExpectation(wanted, actual)) {
            report += keyReport(key, value, actual.if_contains(key));
        }
    }
    return report;
}

bool areOfOneKind(const json::object& expected, const json::object& actual) {
    const json::value* kind = actual.if_contains("out");
    return kind != nullptr && *kind == expected.at("out");
}

/// The input that an output belongs to.
std::string inputReport(const json::object& output, const Session& session) {
    const json::value* number = output.if_contains("n");
    const auto index = number != nullptr && number->is_int64() ? number->get_int64() : 0;
    if (index < 1 || static_cast<std::size_t>(index) > session.inputs.size()) {
        return {};
    }
    const SessionInput& input = session.inputs[static_cast<std::size_t>(index - 1)];
    return "  in input " + std::to_string(index) + ", line " + std::to_string(input.line()) + ": " +
           excerpt(input.json(), 0, 0, shownLine) + "\n";
}

} // namespace

std::string reportOf(const SessionDifference& difference, const Session& session,
                     const std::vector<json::object>& actual) {
    const json::object* found =
        difference.actualIndex < actual.size() ? &actual[difference.actualIndex] : nullptr;
    if (difference.expectedIndex >= session.expectations.size()) {
        return session.name + ": an output too many\n" + inputReport(*found, session) + "    actual   " +
               shortened(*found) + "\n";
    }
    const SessionExpectation& expected = session.expectations[difference.expectedIndex];
    const std::string place = atLine(session.name, expected.line, "");
    if (found == nullptr) {
        return place + "not met: nothing more comes\n" + inputReport(expected.output, session) +
               "    expected " + shortened(expected.output) + "\n";
    }
    const std::string head = place + "not met\n" + inputReport(*found, session);
    return areOfOneKind(expected.output, *found) ? head + outputReport(expected.output, *found)
                                                 : head + "    expected " + shortened(expected.output) +
                                                       "\n    actual   " + shortened(*found) + "\n";
}

} // namespace host
