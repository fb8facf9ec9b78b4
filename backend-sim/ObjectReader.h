/// Fills fields from a JSON object.
#pragma once

#include "backend-sim/FieldVisitor.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// Leaves alone what the object does not hold; complains of what nobody asks for.
class ObjectReader final : public FieldVisitor {
public:
    /// @param path JSON pointer to the value, for complaints
    /// @throws ScenarioError where the value is no object
    ObjectReader(const boost::json::value& value, std::string path);

    /// Reads all fields of the object, and makes sure that it has no others.
    /// @throws ScenarioError
    void read(const VisitFields& fields);

    void flag(std::string_view key, bool& value) override;
    void number(std::string_view key, std::uint32_t& value, std::uint32_t smallest,
                std::uint32_t largest) override;
    void time(std::string_view key, Time& value) override;
    void text(std::string_view key, std::string& value) override;
    void name(std::string_view key, std::string& value, Presence presence) override;
    void word(std::string_view key, Word& value, Words words, Presence presence) override;
    void object(std::string_view key, const VisitFields& fields) override;
    void list(std::string_view key, RecordList& records) override;
    void knobs(std::string_view key, boost::json::object& values) override;
    void remark(std::string_view key) override;
    void rule(bool holds, std::string_view key, const std::string& complaint) override;

private:
    const boost::json::value* find(std::string_view key, Presence presence = Presence::Optional);
    const boost::json::value* findText(std::string_view key, Presence presence = Presence::Optional);
    template <class Number>
    void readNumber(std::string_view key, Number smallest, Number largest, auto take);
    std::string pathOf(std::string_view key) const;
    [[noreturn]] void fail(std::string_view key, const std::string& complaint) const;

    const std::string ownPath;
    const boost::json::object* own = nullptr;
    std::vector<std::string_view> asked;
};

} // namespace sim
