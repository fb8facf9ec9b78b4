#include "host/SessionInput.h"

#include "host/HostError.h"
#include "host/SessionFormat.h"
#include "host/Text.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <limits>

namespace host {
namespace {

namespace json = boost::json;

using Value = std::variant<std::nullptr_t, bool, std::uint64_t, std::int32_t, std::string>;

constexpr std::string_view base64Suffix = "_base64";
constexpr KeyRule objectRule{"object", KeyKind::Name, false};
constexpr KeyRule disposedObjectRule{"object", KeyKind::NullableName, false};

std::string withSuffix(std::string_view key) { return std::string(key).append(base64Suffix); }

/// "a", "b" or "c"
template <class Range, class Name>
std::string alternatives(const Range& range, Name name) {
    std::string list;
    for (std::size_t i = 0; i < range.size(); ++i) {
        list += i == 0 ? "" : i + 1 < range.size() ? ", " : " or ";
        list += jsonString(name(range[i]));
    }
    return list;
}

const LineRule& chooseRule(const json::object& fields) {
    const json::value& word = fields.at("do");
    const auto rules = word.is_string() ? lineRules(word.get_string()) : std::span<const LineRule>();
    if (rules.empty()) {
        throw HostError("unknown \"do\": " + json::serialize(word));
    }
    if (rules.size() == 1) {
        return rules.front();
    }
    const auto found = std::find_if(rules.begin(), rules.end(), [&](const LineRule& rule) {
        return fields.contains(rule.keys.front().name);
    });
    if (found == rules.end()) {
        throw HostError(jsonString(rules.front().word) + " needs " +
                        alternatives(rules, [](const LineRule& rule) { return rule.keys.front().name; }));
    }
    return *found;
}

/// What a value of that rule has to be, in words.
std::string expectation(const KeyRule& rule) {
    switch (rule.kind) {
    case KeyKind::Text:
    case KeyKind::Name:
        return "a text";
    case KeyKind::NullableText:
    case KeyKind::NullableName:
        return "a text or null";
    case KeyKind::Word:
        return alternatives(rule.words, [](std::string_view word) { return word; });
    case KeyKind::Flag:
        return "true or false";
    case KeyKind::True:
        return "true";
    case KeyKind::Count:
        return rule.lowest == rule.highest ? std::to_string(rule.lowest)
                                           : "a whole number from " + std::to_string(rule.lowest) + " to " +
                                                 std::to_string(rule.highest);
    case KeyKind::Number:
        return "a whole number of 32 bits";
    }
    return {};
}

std::optional<Value> countOf(const json::value& value, const KeyRule& rule) {
    // The parser keeps a number as unsigned only where it is too great for a signed one.
    const bool isWhole = value.is_uint64() || (value.is_int64() && value.get_int64() >= 0);
    if (!isWhole) {
        return std::nullopt;
    }
    const std::uint64_t count = value.to_number<std::uint64_t>();
    return count >= rule.lowest && count <= rule.highest ? std::optional<Value>(count) : std::nullopt;
}

std::optional<Value> numberOf(const json::value& value) {
    if (!value.is_int64() || value.get_int64() < std::numeric_limits<std::int32_t>::min() ||
        value.get_int64() > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(value.get_int64());
}

/// The value, if it is what the rule asks for.
std::optional<Value> convert(const json::value& value, const KeyRule& rule) {
    switch (rule.kind) {
    case KeyKind::NullableText:
    case KeyKind::NullableName:
        if (value.is_null()) {
            return nullptr;
        }
        [[fallthrough]];
    case KeyKind::Text:
    case KeyKind::Name:
        return value.is_string() ? std::optional<Value>(std::string(value.get_string())) : std::nullopt;
    case KeyKind::Word: {
        const bool isKnown =
            value.is_string() && std::find(rule.words.begin(), rule.words.end(),
                                           std::string_view(value.get_string())) != rule.words.end();
        return isKnown ? std::optional<Value>(std::string(value.get_string())) : std::nullopt;
    }
    case KeyKind::Flag:
        return value.is_bool() ? std::optional<Value>(value.get_bool()) : std::nullopt;
    case KeyKind::True:
        return value.is_bool() && value.get_bool() ? std::optional<Value>(true) : std::nullopt;
    case KeyKind::Count:
        return countOf(value, rule);
    case KeyKind::Number:
        return numberOf(value);
    }
    return std::nullopt;
}

bool mayBeBase64(const KeyRule& rule) {
    return rule.kind == KeyKind::Text || rule.kind == KeyKind::NullableText;
}

/// The value under the rule's key, or under its Base64 form; nothing if the line holds neither.
std::optional<Value> readKey(const json::object& fields, const KeyRule& rule) {
    if (const json::value* plain = fields.if_contains(rule.name)) {
        auto value = convert(*plain, rule);
        if (!value) {
            throw HostError(jsonString(rule.name) + " must be " + expectation(rule));
        }
        return value;
    }
    const std::string encodedKey = withSuffix(rule.name);
    const json::value* encoded = mayBeBase64(rule) ? fields.if_contains(encodedKey) : nullptr;
    if (encoded == nullptr) {
        return std::nullopt;
    }
    auto bytes = encoded->is_string() ? decodeBase64(encoded->get_string()) : std::nullopt;
    if (!bytes) {
        throw HostError(jsonString(encodedKey) + " must be a text in Base64");
    }
    return std::move(*bytes);
}

bool isKeyOf(const LineRule& rule, std::string_view key) {
    return key == "do" || key == objectRule.name ||
           std::any_of(rule.keys.begin(), rule.keys.end(), [&](const KeyRule& known) {
               return key == known.name || (mayBeBase64(known) && key == withSuffix(known.name));
           });
}

void refuseUnknownKeys(const json::object& fields, const LineRule& rule) {
    for (const auto& [key, value] : fields) {
        if (!isKeyOf(rule, key)) {
            throw HostError(jsonString(rule.word) + " knows no key " + jsonString(key));
        }
    }
    for (const KeyRule& known : rule.keys) {
        if (mayBeBase64(known) && fields.contains(known.name) && fields.contains(withSuffix(known.name))) {
            throw HostError(jsonString(known.name) + " is given twice");
        }
    }
}

struct JsonOf {
    json::value operator()(std::nullptr_t) const { return nullptr; }
    json::value operator()(bool value) const { return value; }
    json::value operator()(std::uint64_t value) const { return value; }
    json::value operator()(std::int32_t value) const { return value; }
    json::value operator()(const std::string& value) const {
        return isUtf8(value) ? json::value(value) : json::value(encodeBase64(value));
    }
};

bool isEncoded(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr && !isUtf8(*text);
}

} // namespace

SessionInput::SessionInput(const json::object& fields, unsigned line)
    : ownLine(line) {
    const LineRule& rule = chooseRule(fields);
    ownKind = rule.kind;
    word = rule.word;
    refuseUnknownKeys(fields, rule);
    const KeyRule& object = ownKind == InputKind::Dispose ? disposedObjectRule : objectRule;
    if (auto value = readKey(fields, object)) {
        values.emplace_back(object.name, std::move(*value));
    }
    for (const KeyRule& key : rule.keys) {
        if (auto value = readKey(fields, key)) {
            values.emplace_back(key.name, std::move(*value));
        } else if (key.isRequired) {
            throw HostError(jsonString(word) + " needs " + jsonString(key.name));
        }
    }
}

const SessionInput::Value* SessionInput::find(std::string_view key) const {
    const auto found =
        std::find_if(values.begin(), values.end(), [&](const auto& entry) { return entry.first == key; });
    return found == values.end() ? nullptr : &found->second;
}

bool SessionInput::isNull(std::string_view key) const {
    const Value* value = find(key);
    return value != nullptr && std::holds_alternative<std::nullptr_t>(*value);
}

const std::string& SessionInput::text(std::string_view key) const {
    return std::get<std::string>(*find(key));
}

bool SessionInput::flag(std::string_view key) const { return std::get<bool>(*find(key)); }

std::uint64_t SessionInput::count(std::string_view key) const { return std::get<std::uint64_t>(*find(key)); }

std::int32_t SessionInput::number(std::string_view key) const { return std::get<std::int32_t>(*find(key)); }

std::string SessionInput::json() const {
    json::object fields{{"do", word}};
    for (const auto& [key, value] : values) {
        fields.emplace(isEncoded(value) ? withSuffix(key) : std::string(key), std::visit(JsonOf{}, value));
    }
    return json::serialize(fields);
}

} // namespace host
