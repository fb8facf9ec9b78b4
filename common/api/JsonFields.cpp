#include "common/api/JsonFields.h"

#include "common2/util/GlobalError.h"

#include <stdexcept>

namespace json_fields {
namespace {

namespace json = boost::json;

const json::string& toString(const json::value& value) {
    if (const json::string* text = value.if_string()) {
        return *text;
    }
    throw std::invalid_argument("not a string");
}

template <class Number>
Number toNumber(const json::value& value) {
    std::error_code error;
    const Number number = value.to_number<Number>(error);
    if (error) {
        throw std::system_error(error);
    }
    return number;
}

/// The product modulo 2^64: unsigned arithmetic wraps where signed arithmetic must not overflow.
QuillTimePoint ticksOf(std::uint64_t seconds) {
    return static_cast<QuillTimePoint>(seconds * static_cast<std::uint64_t>(quillTicksPerSecond));
}

} // namespace

const json::object& toObject(const json::value& value) {
    if (const json::object* object = value.if_object()) {
        return *object;
    }
    throw std::invalid_argument("not an object");
}

const json::array& toArray(const json::value& value) {
    if (const json::array* array = value.if_array()) {
        return *array;
    }
    throw std::invalid_argument("array required");
}

bool toBool(const json::value& value) {
    if (const bool* flag = value.if_bool()) {
        return *flag;
    }
    throw std::invalid_argument("bool required");
}

std::string_view viewOf(const json::value& value) {
    const json::string& text = toString(value);
    return {text.data(), text.size()};
}

std::string toTextBeforeNul(const json::value& value) { return std::string(viewBeforeNul(value)); }

std::string_view viewBeforeNul(const json::value& value) { return toString(value).c_str(); }

std::uint32_t toCounter(const json::value& value) { return toNumber<std::uint32_t>(value); }

QuillTimePoint toTimePoint(const json::value& value) { return ticksOf(toNumber<std::uint64_t>(value)); }

QuillTimePoint toSignedTimePoint(const json::value& value) {
    return ticksOf(static_cast<std::uint64_t>(toNumber<std::int64_t>(value)));
}

Members::Members(const json::object& object) noexcept
    : members(object)
    , last(object.end()) {}

const json::value* Members::find(std::string_view key) const noexcept {
    const auto end = members.end();
    if (last != end) {
        const auto next = last + 1;
        if (next != end && next->key() == key) {
            last = next;
            return &next->value();
        }
        if (last != members.begin() && (last - 1)->key() == key) {
            --last;
            return &last->value();
        }
    } else if (!members.empty() && members.begin()->key() == key) {
        last = members.begin();
        return &last->value();
    }
    const auto found = members.find(key);
    if (found == end) {
        return nullptr;
    }
    last = found;
    return &found->value();
}

const json::value& member(const Members& object, std::string_view key) {
    if (const json::value* value = object.find(key)) {
        return *value;
    }
    throw std::out_of_range("out of range");
}

const json::string* findText(const Members& object, std::string_view key) noexcept {
    const json::value* value = object.find(key);
    return value ? value->if_string() : nullptr;
}

const json::array* findArray(const Members& object, std::string_view key) noexcept {
    const json::value* value = object.find(key);
    return value ? value->if_array() : nullptr;
}

bool readText(const Members& object, std::string_view key, std::string& field) {
    const json::string* text = findText(object, key);
    if (text) {
        field.assign(text->data(), text->size());
    }
    return text != nullptr;
}

void throwBadParameter() { throw std::system_error(makeGlobalError(QuillApiResult::BadParameter)); }

void setBadParameter(std::error_code& error) noexcept {
    error = makeGlobalError(QuillApiResult::BadParameter);
}

} // namespace json_fields
