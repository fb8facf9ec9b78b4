#include "backend-sim/ScenarioWriter.h"

#include "backend-sim/ScenarioFields.h"

#include <boost/json/array.hpp>
#include <boost/json/value.hpp>

#include <utility>

namespace sim {
namespace {

namespace json = boost::json;

class ObjectWriter final : public FieldVisitor {
public:
    void flag(std::string_view key, bool& value) override { written.emplace(key, value); }
    void number(std::string_view key, std::uint32_t& value, std::uint32_t, std::uint32_t) override {
        written.emplace(key, value);
    }
    void time(std::string_view key, Time& value) override {
        if (value) {
            written.emplace(key, *value);
        }
    }
    void text(std::string_view key, std::string& value) override { written.emplace(key, value); }
    void name(std::string_view key, std::string& value, Presence) override { written.emplace(key, value); }
    void word(std::string_view key, Word& value, Words, Presence) override {
        if (!value.empty()) {
            written.emplace(key, value);
        }
    }
    void object(std::string_view key, const VisitFields& fields) override {
        ObjectWriter inner;
        fields(inner);
        written.emplace(key, std::move(inner.written));
    }
    void list(std::string_view key, RecordList& records) override {
        json::array elements;
        for (std::size_t i = 0; i < records.size(); ++i) {
            ObjectWriter inner;
            records.visit(i, inner);
            elements.emplace_back(std::move(inner.written));
        }
        written.emplace(key, std::move(elements));
    }
    void knobs(std::string_view key, json::object& values) override {
        if (!values.empty()) {
            written.emplace(key, values);
        }
    }
    void remark(std::string_view) override {}
    void rule(bool, std::string_view, const std::string&) override {}

    json::object written;
};

} // namespace

json::object writeScenario(Scenario scenario) {
    ObjectWriter writer;
    visitScenario(writer, scenario);
    return std::move(writer.written);
}

} // namespace sim
