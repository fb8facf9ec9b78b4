#include "host/serve/PageRequest.h"

#include "host/DuplicateKeys.h"
#include "host/SessionFormat.h"
#include "host/Text.h"

#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <iterator>
#include <limits>
#include <span>

namespace host::serve {
namespace {

namespace json = boost::json;

/// The greatest whole number that every JSON reader keeps exactly.
constexpr std::uint64_t greatestId = (std::uint64_t{1} << 53) - 1;
constexpr std::uint64_t most32 = std::numeric_limits<std::uint32_t>::max();

enum class Kind { Text, Word, Number };

struct Key {
    std::string_view name;
    Kind kind = Kind::Text;
    bool isRequired = true;
    std::uint64_t lowest = 0;
    std::uint64_t highest = 0;
    std::span<const std::string_view> words = {};
};

struct Form {
    std::string_view word; ///< value of "do"
    RequestKind kind;
    std::span<const Key> keys;
};

/// The words that a key of a session's input line may have.
std::span<const std::string_view> sessionWords(std::string_view word) {
    return lineRules(word).front().keys.front().words;
}

constexpr std::string_view steps[] = {"create", "register", "start", "stop", "unregister", "dispose"};

constexpr Key pressKeys[] = {{"control"}, {"event", Kind::Text, false}};
constexpr Key closeKeys[] = {{"popup"}};
constexpr Key errorKeys[] = {{"popup"}, {"error"}};
constexpr Key cookieKeys[] = {{"popup"}, {"value"}};
constexpr Key pageEventKeys[] = {{"popup"}, {"type"}, {"value"}};
constexpr Key eventKeys[] = {{"xml"}};
constexpr Key lifecycleKeys[] = {{"step", Kind::Word, true, 0, 0, steps}};
constexpr Key jsonKeys[] = {{"json"}};
constexpr Key paceKeys[] = {{"percent", Kind::Number, true, 0, 10'000}};
constexpr Key slowKeys[] = {{"milliseconds", Kind::Number, true, 0, 5'000}};
const Key failKeys[] = {{"operation", Kind::Word, true, 0, 0, sessionWords("backend")},
                        {"result", Kind::Number, true, 0, most32},
                        {"times", Kind::Number, true, 0, most32}};
const Key deliverKeys[] = {{"document", Kind::Word, true, 0, 0, sessionWords("deliver")},
                           {"json"},
                           {"count", Kind::Number, false, 1, 10'000}};

const Form forms[] = {
    {"press", RequestKind::Press, pressKeys},
    {"close", RequestKind::Close, closeKeys},
    {"browse_error", RequestKind::BrowseError, errorKeys},
    {"cookie", RequestKind::Cookie, cookieKeys},
    {"page_event", RequestKind::PageEvent, pageEventKeys},
    {"event", RequestKind::Event, eventKeys},
    {"lifecycle", RequestKind::Lifecycle, lifecycleKeys},
    {"service", RequestKind::Service, jsonKeys},
    {"scenario", RequestKind::Scenario, jsonKeys},
    {"pace", RequestKind::Pace, paceKeys},
    {"fail", RequestKind::Fail, failKeys},
    {"heal", RequestKind::Heal, {}},
    {"slow", RequestKind::Slow, slowKeys},
    {"deliver", RequestKind::Deliver, deliverKeys},
    {"clear_history", RequestKind::ClearHistory, {}},
};

std::optional<std::uint64_t> wholeNumber(const json::value& value, std::uint64_t lowest,
                                         std::uint64_t highest) {
    // The parser keeps a number as unsigned only where it is too great for a signed one.
    const bool isWhole = value.is_uint64() || (value.is_int64() && value.get_int64() >= 0);
    const std::uint64_t number = isWhole ? value.to_number<std::uint64_t>() : 0;
    return isWhole && number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

std::string alternatives(std::span<const std::string_view> words) {
    std::string list;
    for (std::size_t i = 0; i < words.size(); ++i) {
        list += (i == 0 ? "" : i + 1 < words.size() ? ", " : " or ") + jsonString(words[i]);
    }
    return list;
}

std::string expectation(const Key& key) {
    switch (key.kind) {
    case Kind::Text:
        return "a text";
    case Kind::Word:
        return alternatives(key.words);
    case Kind::Number:
        break;
    }
    return "a whole number from " + std::to_string(key.lowest) + " to " + std::to_string(key.highest);
}

/// The value, if it is what the key asks for.
std::optional<std::variant<std::string, std::uint64_t>> valueOf(const json::value& value, const Key& key) {
    if (key.kind == Kind::Number) {
        return wholeNumber(value, key.lowest, key.highest);
    }
    if (!value.is_string()) {
        return std::nullopt;
    }
    const std::string_view text = value.get_string();
    const bool isKnown =
        key.kind == Kind::Text || std::find(key.words.begin(), key.words.end(), text) != key.words.end();
    return isKnown ? std::optional<std::variant<std::string, std::uint64_t>>(std::string(text))
                   : std::nullopt;
}

json::object objectOf(std::string_view message) {
    json::error_code error;
    json::value value = json::parse(message, error);
    if (error) {
        throw RequestFault(std::nullopt, "a request must be JSON: " + error.message());
    }
    if (!value.is_object()) {
        throw RequestFault(std::nullopt, "a request must be an object");
    }
    return std::move(value.get_object());
}

std::uint64_t idOf(const json::object& fields) {
    const json::value* given = fields.if_contains("id");
    const auto id = given != nullptr ? wholeNumber(*given, 0, greatestId) : std::nullopt;
    if (!id) {
        throw RequestFault(std::nullopt, "a request needs an \"id\", a whole number from 0 to " +
                                             std::to_string(greatestId));
    }
    return *id;
}

const Form& formOf(const json::object& fields, std::uint64_t id) {
    const json::value* word = fields.if_contains("do");
    if (word == nullptr) {
        throw RequestFault(id, "a request needs a \"do\"");
    }
    const auto found = std::find_if(std::begin(forms), std::end(forms), [&](const Form& form) {
        return word->is_string() && form.word == std::string_view(word->get_string());
    });
    if (found == std::end(forms)) {
        throw RequestFault(id, "unknown \"do\": " + json::serialize(*word));
    }
    return *found;
}

void refuseUnknownKeys(const json::object& fields, const Form& form, std::uint64_t id) {
    for (const auto& field : fields) {
        const std::string_view key = field.key();
        const bool isKnown = key == "id" || key == "do" ||
                             std::any_of(form.keys.begin(), form.keys.end(),
                                         [&](const Key& known) { return known.name == key; });
        if (!isKnown) {
            throw RequestFault(id, jsonString(form.word) + " knows no key " + jsonString(key));
        }
    }
}

} // namespace

PageRequest::PageRequest(std::string_view message) {
    const json::object fields = objectOf(message);
    ownId = idOf(fields);
    if (const auto twice = duplicateKey(message)) {
        throw RequestFault(ownId, jsonString(*twice) + " is given twice");
    }
    const Form& form = formOf(fields, ownId);
    ownKind = form.kind;
    refuseUnknownKeys(fields, form, ownId);
    for (const Key& key : form.keys) {
        const json::value* given = fields.if_contains(key.name);
        if (given == nullptr && key.isRequired) {
            throw RequestFault(ownId, jsonString(form.word) + " needs " + jsonString(key.name));
        }
        if (given != nullptr) {
            auto value = valueOf(*given, key);
            if (!value) {
                throw RequestFault(ownId, jsonString(key.name) + " must be " + expectation(key));
            }
            values.emplace(key.name, std::move(*value));
        }
    }
}

const std::string& PageRequest::text(std::string_view key) const {
    return std::get<std::string>(values.find(key)->second);
}

std::uint64_t PageRequest::number(std::string_view key) const {
    return std::get<std::uint64_t>(values.find(key)->second);
}

std::string PageRequest::text(std::string_view key, std::string_view leftOut) const {
    return values.contains(key) ? text(key) : std::string(leftOut);
}

std::uint64_t PageRequest::number(std::string_view key, std::uint64_t leftOut) const {
    return values.contains(key) ? number(key) : leftOut;
}

} // namespace host::serve
