#include "backend-sim/ObjectReader.h"

#include "backend-sim/ScenarioError.h"
#include "backend-sim/ScenarioFields.h"

#include <algorithm>
#include <utility>

namespace sim {
namespace {

namespace json = boost::json;

std::string quoted(std::string_view text) { return std::string(1, '\'').append(text).append(1, '\''); }

std::string joined(Words words) {
    std::string list;
    for (const Word word : words) {
        list += (list.empty() ? "" : ", ") + std::string(word);
    }
    return list;
}

/// A key as a JSON pointer spells it.
std::string inPointer(std::string_view key) {
    std::string text;
    for (const char c : key) {
        text += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
    return text;
}

std::string_view viewOf(const json::value& text) {
    return {text.get_string().data(), text.get_string().size()};
}

} // namespace

ObjectReader::ObjectReader(const json::value& value, std::string path)
    : ownPath(std::move(path))
    , own(value.if_object()) {
    if (own == nullptr) {
        fail({}, "must be an object");
    }
}

void ObjectReader::read(const VisitFields& fields) {
    fields(*this);
    for (const auto& member : *own) {
        const std::string_view key(member.key().data(), member.key().size());
        if (std::find(asked.begin(), asked.end(), key) == asked.end()) {
            fail(key, "unknown key");
        }
    }
}

void ObjectReader::flag(std::string_view key, bool& value) {
    if (const json::value* found = find(key)) {
        rule(found->is_bool(), key, "must be true or false");
        value = found->get_bool();
    }
}

template <class Number>
void ObjectReader::readNumber(std::string_view key, Number smallest, Number largest, auto take) {
    if (const json::value* found = find(key)) {
        json::error_code error;
        const auto given = found->to_number<Number>(error);
        rule(!error && given >= smallest && given <= largest, key,
             "must be a whole number from " + std::to_string(smallest) + " to " + std::to_string(largest));
        take(given);
    }
}

void ObjectReader::number(std::string_view key, std::uint32_t& value, std::uint32_t smallest,
                          std::uint32_t largest) {
    readNumber(key, smallest, largest, [&](std::uint32_t given) { value = given; });
}

void ObjectReader::time(std::string_view key, Time& value) {
    readNumber<std::int64_t>(key, 0, latestTime, [&](std::int64_t given) { value = given; });
}

void ObjectReader::text(std::string_view key, std::string& value) {
    if (const json::value* found = findText(key)) {
        value = viewOf(*found);
    }
}

void ObjectReader::name(std::string_view key, std::string& value, Presence presence) {
    if (const json::value* found = findText(key, presence)) {
        rule(!found->get_string().empty(), key, "must not be empty");
        value = viewOf(*found);
    }
}

void ObjectReader::word(std::string_view key, Word& value, Words words, Presence presence) {
    if (const json::value* found = findText(key, presence)) {
        const auto known = std::find(words.begin(), words.end(), viewOf(*found));
        rule(known != words.end(), key, quoted(viewOf(*found)) + " is none of " + joined(words));
        value = *known;
    }
}

void ObjectReader::object(std::string_view key, const VisitFields& fields) {
    if (const json::value* found = find(key)) {
        ObjectReader(*found, pathOf(key)).read(fields);
    }
}

void ObjectReader::list(std::string_view key, RecordList& records) {
    const json::value* found = find(key);
    if (found == nullptr) {
        return;
    }
    rule(found->is_array(), key, "must be a list");
    records.clear();
    for (const json::value& element : found->get_array()) {
        records.add();
        const std::size_t index = records.size() - 1;
        ObjectReader(element, pathOf(key) + "/" + std::to_string(index)).read([&](FieldVisitor& visitor) {
            records.visit(index, visitor);
        });
    }
}

void ObjectReader::knobs(std::string_view key, json::object& values) {
    if (const json::value* found = find(key)) {
        Device scratch;
        ObjectReader(*found, pathOf(key)).read([&](FieldVisitor& visitor) { visitDevice(visitor, scratch); });
        rule(!found->get_object().empty(), key, "must not be empty");
        values = found->get_object();
    }
}

void ObjectReader::remark(std::string_view key) { findText(key); }

void ObjectReader::rule(bool holds, std::string_view key, const std::string& complaint) {
    if (!holds) {
        fail(key, complaint);
    }
}

const json::value* ObjectReader::find(std::string_view key, Presence presence) {
    asked.push_back(key);
    const json::value* found = own->if_contains(key);
    rule(found != nullptr || presence == Presence::Optional, key, "is missing");
    return found;
}

const json::value* ObjectReader::findText(std::string_view key, Presence presence) {
    const json::value* found = find(key, presence);
    rule(found == nullptr || found->is_string(), key, "must be a text");
    return found;
}

std::string ObjectReader::pathOf(std::string_view key) const { return ownPath + "/" + inPointer(key); }

void ObjectReader::fail(std::string_view key, const std::string& complaint) const {
    const std::string place = key.empty() ? ownPath : pathOf(key);
    throw ScenarioError((place.empty() ? "/" : place) + ": " + complaint);
}

} // namespace sim
