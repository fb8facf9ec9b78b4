#include "backend-sim/ScenarioReader.h"

#include "backend-sim/DuplicateKey.h"
#include "backend-sim/ObjectReader.h"
#include "backend-sim/ScenarioFields.h"

#include <boost/json/parser.hpp>

#include <algorithm>
#include <string>

namespace sim {
namespace {

namespace json = boost::json;

std::string placeOf(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 in the first line
    return "line " + std::to_string(line) + ", column " + std::to_string(offset - lineStart + 1);
}

json::value parse(std::string_view text) {
    json::parser parser;
    json::error_code error;
    const std::size_t parsed = parser.write_some(text.data(), text.size(), error);
    if (!error && parsed < text.size()) {
        error = json::error::extra_data;
    }
    if (error) {
        throw ScenarioError(placeOf(text, parsed) + ": " + error.message());
    }
    if (const auto duplicate = findDuplicateKey(text)) {
        throw ScenarioError(*duplicate + ": comes twice");
    }
    return parser.release();
}

} // namespace

Scenario readScenario(std::string_view text) {
    const json::value document = parse(text);
    Scenario scenario;
    ObjectReader(document, {}).read([&](FieldVisitor& visitor) { visitScenario(visitor, scenario); });
    return scenario;
}

json::object readKnobs(std::string_view text) {
    json::value document = parse(text);
    Scenario scratch;
    ObjectReader(document, {}).read([&](FieldVisitor& visitor) { visitKnobs(visitor, scratch); });
    return std::move(document.get_object());
}

void setKnobs(const json::object& knobs, Scenario& scenario) {
    ObjectReader(knobs, {}).read([&](FieldVisitor& visitor) { visitKnobs(visitor, scenario); });
}

} // namespace sim
