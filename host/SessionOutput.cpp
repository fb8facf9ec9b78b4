#include "host/SessionOutput.h"

#include "host/HostError.h"
#include "host/Text.h"

#include <boost/json/serialize.hpp>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>

namespace host {
namespace {

namespace json = boost::json;

enum class ValueKind { Text, NullableText, Number, NullableNumber, Flag, NumberOrFlag, Entries };

struct OutputKey {
    std::string_view name;
    ValueKind kind;
};

struct OutputRule {
    std::string_view word;
    std::span<const OutputKey> keys;
};

constexpr std::array commonKeys{OutputKey{"n", ValueKind::Number}, OutputKey{"optional", ValueKind::Flag}};
constexpr std::array interfacesKeys{OutputKey{"entries", ValueKind::Entries}};
constexpr std::array createdKeys{OutputKey{"object", ValueKind::Flag}};
constexpr std::array outcomeKeys{
    OutputKey{"value", ValueKind::NumberOrFlag}, OutputKey{"size", ValueKind::Number},
    OutputKey{"text", ValueKind::NullableText}, OutputKey{"first_byte", ValueKind::NullableNumber}};
constexpr std::array noticeKeys{OutputKey{"callbacks", ValueKind::Text},
                                OutputKey{"handle", ValueKind::Number}, OutputKey{"xml", ValueKind::Text}};
constexpr std::array stopDoneKeys{OutputKey{"callbacks", ValueKind::Text},
                                  OutputKey{"handle", ValueKind::Number}};
constexpr std::array apiKeys{OutputKey{"operation", ValueKind::Text},
                             OutputKey{"json", ValueKind::NullableText}};
constexpr std::array logKeys{OutputKey{"severity", ValueKind::Number}, OutputKey{"function", ValueKind::Text},
                             OutputKey{"file", ValueKind::Text}, OutputKey{"line", ValueKind::Number},
                             OutputKey{"message", ValueKind::Text}};

constexpr std::array<OutputRule, 7> outputRules{{
    {"interfaces", interfacesKeys},
    {"created", createdKeys},
    {"result", outcomeKeys},
    {"notice", noticeKeys},
    {"stop_done", stopDoneKeys},
    {"api", apiKeys},
    {"log", logKeys},
}};

const OutputRule& ruleOf(const json::value& word) {
    const auto rule = std::find_if(outputRules.begin(), outputRules.end(), [&](const OutputRule& known) {
        return word.is_string() && known.word == std::string_view(word.get_string());
    });
    if (rule == outputRules.end()) {
        throw HostError("unknown \"out\": " + json::serialize(word));
    }
    return *rule;
}

bool isNumber(const json::value& value) { return value.is_int64() || value.is_uint64(); }

bool isInterfaceEntry(const json::value& value) {
    const json::object* entry = value.if_object();
    const json::value* name = entry != nullptr ? entry->if_contains("name") : nullptr;
    const json::value* version = entry != nullptr ? entry->if_contains("version") : nullptr;
    return name != nullptr && version != nullptr && entry->size() == 2 && name->is_string() &&
           isNumber(*version);
}

bool isOfKind(const json::value& value, ValueKind kind) {
    switch (kind) {
    case ValueKind::Text:
        return value.is_string();
    case ValueKind::NullableText:
        return value.is_string() || value.is_null();
    case ValueKind::Number:
        return isNumber(value);
    case ValueKind::NullableNumber:
        return isNumber(value) || value.is_null();
    case ValueKind::Flag:
        return value.is_bool();
    case ValueKind::NumberOrFlag:
        return isNumber(value) || value.is_bool();
    case ValueKind::Entries:
        break;
    }
    const json::array* entries = value.if_array();
    return entries != nullptr && std::all_of(entries->begin(), entries->end(), isInterfaceEntry);
}

const OutputKey* find(std::span<const OutputKey> keys, std::string_view name) {
    const auto key =
        std::find_if(keys.begin(), keys.end(), [&](const OutputKey& known) { return known.name == name; });
    return key == keys.end() ? nullptr : &*key;
}

/// Whether the key is a known text under its name for bytes, and holds such.
bool isBase64Text(std::span<const OutputKey> keys, std::string_view name, const json::value& value) {
    constexpr std::string_view suffix = "_base64";
    if (!name.ends_with(suffix) || !value.is_string()) {
        return false;
    }
    const OutputKey* key = find(keys, name.substr(0, name.size() - suffix.size()));
    return key != nullptr && (key->kind == ValueKind::Text || key->kind == ValueKind::NullableText) &&
           decodeBase64(value.get_string()).has_value();
}

void checkKey(std::span<const OutputKey> keys, std::string_view name, const json::value& value) {
    const OutputKey* key = find(keys, name);
    key = key != nullptr ? key : find(commonKeys, name);
    if (key == nullptr && !isBase64Text(keys, name, value)) {
        throw HostError("unknown key \"" + std::string(name) + "\"");
    }
    if (key != nullptr && !isOfKind(value, key->kind)) {
        throw HostError("key \"" + std::string(name) + "\" is of the wrong kind: " + json::serialize(value));
    }
}

} // namespace

void checkOutput(const boost::json::object& fields) {
    const OutputRule& rule = ruleOf(fields.at("out"));
    for (const auto& [name, value] : fields) {
        if (name != "out") {
            checkKey(rule.keys, name, value);
        }
    }
}

} // namespace host
