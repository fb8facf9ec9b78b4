#include "backend-sim/ScenarioFields.h"
#include "backend-sim/ScenarioReader.h"
#include "backend-sim/ScenarioWriter.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// The schema tells people and editors what the loader takes: neither may know more than the other.

namespace {

namespace json = boost::json;

const json::object& schema() {
    static const json::object parsed = [] {
        std::ifstream file(WREN_SOURCE_DIR "/backend-sim/scenario.schema.json");
        std::stringstream text;
        text << file.rdbuf();
        return json::parse(text.str()).as_object();
    }();
    return parsed;
}

/// A node with the definition that it refers to, its own members first.
json::object resolved(const json::object& node) {
    json::object whole = node;
    if (const json::value* reference = node.if_contains("$ref")) {
        const std::string name = reference->as_string().c_str();
        const std::string prefix = "#/$defs/";
        EXPECT_EQ(name.substr(0, prefix.size()), prefix);
        for (const auto& member : schema().at("$defs").at(name.substr(prefix.size())).as_object()) {
            whole.emplace(member.key(), member.value());
        }
    }
    return whole;
}

/// Is shown the loader's fields and looks each up in the schema.
class SchemaChecker final : public sim::FieldVisitor {
public:
    SchemaChecker(const json::object& checked, std::string checkedPath)
        : node(resolved(checked))
        , path(std::move(checkedPath)) {}

    /// Compares the fields of an object, both ways.
    void check(const sim::VisitFields& fields) {
        expect(node, "type", "object");
        expect(node, "additionalProperties", false);
        fields(*this);
        for (const auto& property : node.at("properties").as_object()) {
            EXPECT_TRUE(shown.contains(property.key())) << path << "/" << property.key() << " is no key";
        }
        json::array expected(required.begin(), required.end());
        if (!expected.empty() || node.contains("required")) {
            expect(node, "required", expected);
        }
    }

    void flag(std::string_view key, bool&) override { expectDefault(field(key, "boolean"), key); }
    void number(std::string_view key, std::uint32_t&, std::uint32_t smallest,
                std::uint32_t largest) override {
        const json::object found = field(key, "integer");
        expect(found, "minimum", smallest);
        expect(found, "maximum", largest);
        expectDefault(found, key);
    }
    void time(std::string_view key, sim::Time&) override {
        const json::object found = field(key, "integer");
        expect(found, "minimum", 0);
        expect(found, "maximum", sim::latestTime);
    }
    void text(std::string_view key, std::string&) override { expectDefault(field(key, "string"), key); }
    void name(std::string_view key, std::string&, sim::Presence presence) override {
        expect(field(key, "string"), "minLength", 1);
        note(key, presence);
    }
    void word(std::string_view key, sim::Word& value, sim::Words words, sim::Presence presence) override {
        const json::object found = field(key);
        json::array expected;
        for (const sim::Word word : words) {
            expected.emplace_back(word);
        }
        expect(found, "enum", expected);
        if (!value.empty()) {
            expectDefault(found, key);
        }
        note(key, presence);
    }
    void object(std::string_view key, const sim::VisitFields& fields) override {
        SchemaChecker(field(key), path + "/" + std::string(key)).check(fields);
    }
    void list(std::string_view key, sim::RecordList& records) override {
        const json::object found = field(key, "array");
        expectDefault(found, key);
        records.clear();
        records.add();
        SchemaChecker(found.at("items").as_object(), path + "/" + std::string(key) + "/0")
            .check([&](sim::FieldVisitor& visitor) { records.visit(0, visitor); });
    }
    void knobs(std::string_view key, json::object&) override {
        const json::object found = field(key, "object");
        expect(found, "minProperties", 1);
        sim::Device device;
        SchemaChecker(found, path + "/" + std::string(key)).check([&](sim::FieldVisitor& visitor) {
            sim::visitDevice(visitor, device);
        });
    }
    void remark(std::string_view key) override { field(key, "string"); }
    void rule(bool, std::string_view, const std::string&) override {}

private:
    json::object field(std::string_view key) {
        shown.emplace(key);
        const json::value* found = node.at("properties").as_object().if_contains(key);
        EXPECT_NE(found, nullptr) << path << "/" << key << " is not in the schema";
        if (found == nullptr) {
            return {};
        }
        json::object whole = resolved(found->as_object());
        EXPECT_TRUE(whole.contains("description")) << path << "/" << key;
        return whole;
    }
    json::object field(std::string_view key, const char* type) {
        json::object found = field(key);
        expect(found, "type", type);
        return found;
    }
    void note(std::string_view key, sim::Presence presence) {
        if (presence == sim::Presence::Required) {
            required.emplace_back(key);
        }
    }
    void expect(const json::object& found, std::string_view keyword, const json::value& expected) const {
        const json::value* stands = found.if_contains(keyword);
        EXPECT_TRUE(stands != nullptr && *stands == expected)
            << path << ": " << keyword << " is " << json::serialize(found) << ", expected "
            << json::serialize(expected);
    }
    void expectDefault(const json::object& found, std::string_view key) const {
        EXPECT_TRUE(found.contains("default")) << path << "/" << key;
    }

    const json::object node;
    const std::string path;
    std::set<std::string, std::less<>> shown;
    std::vector<std::string> required;
};

/// An object with every default that the schema tells.
json::value defaultsOf(const json::object& given) {
    const json::object node = resolved(given);
    json::object defaults;
    if (const json::value* properties = node.if_contains("properties")) {
        for (const auto& property : properties->as_object()) {
            json::value value = defaultsOf(property.value().as_object());
            if (!value.is_null()) {
                defaults[property.key()] = std::move(value);
            }
        }
    }
    if (const json::value* told = node.if_contains("default")) {
        if (!told->is_object()) {
            return *told;
        }
        for (const auto& member : told->as_object()) {
            defaults[member.key()] = member.value();
        }
    }
    return defaults.empty() ? json::value() : json::value(defaults);
}

TEST(ScenarioSchema, KnowsExactlyTheLoadersKeys) {
    sim::Scenario scenario;
    SchemaChecker(schema(), "").check([&](sim::FieldVisitor& visitor) {
        sim::visitScenario(visitor, scenario);
    });
}

TEST(ScenarioSchema, TellsTheLoadersDefaults) {
    const std::string defaults = json::serialize(defaultsOf(schema()));
    EXPECT_EQ(json::serialize(sim::writeScenario(sim::readScenario(defaults))),
              json::serialize(sim::writeScenario({})))
        << defaults;
    EXPECT_NE(defaults.find("https://login.example.test/access"), std::string::npos);
}

TEST(ScenarioSchema, TellsWhereWhichFailuresAreTaken) {
    const json::object& fault = schema().at("$defs").at("fault").as_object();
    json::array moments;
    json::array withoutFailure;
    for (const sim::Word when : sim::words::moment) {
        moments.emplace_back(when);
        if (sim::failuresAt(when).empty()) {
            withoutFailure.emplace_back(when);
        }
    }
    EXPECT_EQ(fault.at("properties").at("when").at("enum"), moments);
    const json::array& rules = fault.at("allOf").as_array();
    ASSERT_EQ(rules.size(), 2u);
    EXPECT_EQ(json::serialize(rules[0]),
              R"({"if":{"properties":{"when":{"const":"unenrollment_started"}}},)"
              R"("then":{"properties":{"fail":{"enum":["invalid_enrollment_id","internal_error"]}}}})");
    EXPECT_EQ(rules[1].at("if").at("properties").at("when").at("enum"), withoutFailure);
    EXPECT_EQ(json::serialize(rules[1].at("then")), R"({"properties":{"fail":false}})");
    EXPECT_EQ(json::serialize(fault.at("anyOf")), R"([{"required":["fail"]},{"required":["set"]}])");
}

} // namespace
